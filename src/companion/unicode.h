// tqbase Unicode component: conversions between UTF-8, UTF-16 and the ANSI code page
// (Windows-1252 where the platform has none of its own). Each returns a new string owned by the
// caller; the input stays the caller's. A null input is reported and gives an empty string.
//
// Invalid UTF-8 becomes U+FFFD (one per maximal ill-formed subpart). An unpaired surrogate in
// wide text is written as its three-byte generalised UTF-8 form and read back as the same
// unit, so every wide text round-trips through UTF-8. A character the ANSI code page cannot
// hold becomes '?'.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

TQBASE_API char *unicode_convierte_ANSI_a_UTF8(const char *texto_ansi);
TQBASE_API char *unicode_convierte_UTF8_a_ANSI(const char *texto_utf8);
TQBASE_API char16_t *unicode_convierte_UTF8_a_UNICODE(const char *texto_utf8);
TQBASE_API char *unicode_convierte_UNICODE_a_UTF8(const char16_t *texto);
TQBASE_API char *unicode_UNICODE_a_ANSI(const char16_t *texto);

// For writers that build their output in place: the bytes of the UTF-8 form of `texto`
// (terminator excluded), and that form written at `salida` without a terminator, returning
// the end of what was written.
TQBASE_API size_t unicode_longitud_UNICODE_a_UTF8(const char16_t *texto);
TQBASE_API char *unicode_escribe_UNICODE_a_UTF8(const char16_t *texto, char *salida);
// CIERTO for well-formed UTF-8 that encodes no surrogate: text that reads into UTF-16 and
// writes back to the same bytes, so a writer may copy it as it is. `*longitud` receives the
// text's length in bytes either way.
TQBASE_API tqbool unicode_es_UTF8_estable(const char *texto, size_t *longitud);
// The same for the `longitud` bytes at `texto`, which need no terminator.
TQBASE_API tqbool unicode_es_UTF8_estable_n(const char *texto, size_t longitud);

// For readers that scan UTF-8 in place. Each reads characters as the conversion to UTF-16
// does (an ill-formed subpart is one U+FFFD); a bound must fall between characters, where the
// next byte is ASCII or the terminator.
// Bytes of the character that begins at `texto` (1 for ASCII, the subpart for ill-formed).
TQBASE_API size_t unicode_longitud_caracter_UTF8(const char *texto);
// UTF-16 units of the `longitud` bytes at `texto`.
TQBASE_API size_t unicode_unidades_UTF8(const char *texto, size_t longitud);
// The UTF-16 form of the `longitud` bytes at `texto`, written at `salida` (room for one unit
// per byte) without a terminator; the end of what was written.
TQBASE_API char16_t *unicode_escribe_UTF8_a_UNICODE(const char *texto, size_t longitud,
                                                    char16_t *salida);

TQBASE_C_FIN
