// tqbase string component, wide strings: zero-terminated UTF-16 text. Every operation but
// widestr_nousar_creacadena takes, last, the caller's module string and source line, which it
// uses only in its own internal-error reports. Strings returned are new and the caller's,
// freed with widestr_nousar_destruye (tqbase/cadenas.h).
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/cadenas.h"

TQBASE_C_INICIO

// Writable wide string with room for `tam` units, terminator included; it starts empty.
TQBASE_API char16_t *widestr_nousar_creacadena(size_t tam);
TQBASE_API char16_t *widestr_nousar_copia(const char16_t *cadena, const char *modulo, int linea);
// Length in units, terminator excluded.
TQBASE_API uint32_t widestr_nousar_longitud(const char16_t *cadena, const char *modulo, int linea);
// Appends `sufijo` to `*cadena`; the pointer follows the extended string.
TQBASE_API void widestr_nousar_cad_concatena(char16_t **cadena, const char16_t *sufijo,
                                             const char *modulo, int linea);
// Frees `*cadena` and stores a copy of `nueva` in its place; the caller keeps `nueva`.
TQBASE_API void widestr_nousar_sustituye(char16_t **cadena, const char16_t *nueva,
                                         const char *modulo, int linea);
// CIERTO when equal unit by unit.
TQBASE_API tqbool widestr_nousar_cadenas_iguales(const char16_t *cadena_1, const char16_t *cadena_2,
                                                 const char *modulo, int linea);
// CIERTO when equal ignoring letter case: every BMP letter with a one-to-one case mapping folds.
TQBASE_API tqbool widestr_nousar_cadenas_iguales_may_o_min(const char16_t *cadena_1,
                                                           const char16_t *cadena_2,
                                                           const char *modulo, int linea);
// A keyed hash of the text (SipHash-1-3 of its units, with the 128-bit `clave`): texts that
// widestr_nousar_cadenas_iguales calls equal hash alike, and without the key nobody can choose
// texts that collide. The text must not be null.
TQBASE_API uint64_t widestr_nousar_resumen(const char16_t *cadena, const uint64_t clave[2]);
// The same of the text's case-folded units: texts equal ignoring letter case hash alike.
TQBASE_API uint64_t widestr_nousar_resumen_may_o_min(const char16_t *cadena,
                                                     const uint64_t clave[2]);
// CIERTO when `cadena` begins with `prefijo` (compared unit by unit).
TQBASE_API tqbool widestr_nousar_es_subcadena_inicial(const char16_t *cadena,
                                                      const char16_t *prefijo, const char *modulo,
                                                      int linea);
// CIERTO when empty or made only of blanks: space, tab, line feed, carriage return, vertical
// tab, form feed.
TQBASE_API tqbool widestr_nousar_es_cadena_en_blanco(const char16_t *cadena, const char *modulo,
                                                     int linea);
// Position of the first `caracter` in `cadena`, or null.
TQBASE_API const char16_t *widestr_nousar_strchr(const char16_t *cadena, char16_t caracter,
                                                 const char *modulo, int linea);
// The decimal number that begins `cadena`, as strtod reads it in the C locale: leading blanks,
// sign, digits, fraction, exponent; 0.0 when no number begins it.
TQBASE_API double widestr_nousar_atof(const char16_t *cadena, const char *modulo, int linea);

TQBASE_C_FIN
