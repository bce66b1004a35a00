// The text codec: the escaped form in which wide text is stored as a string value.
#pragma once

#include "companion/companion.h"

// Room of the buffer that receives one unit's escape sequence, terminator included.
inline constexpr uint32_t i_TAM_BUFFER_SECUENCIA_ESCAPE = 64;

// The UTF-8 text to store for `*texto_unicode`, in the escaped form when
// `codifica_secuencias_escape` is CIERTO. The wide text is taken over: destroyed and nulled.
char *i_convierte_texto_unicode_a_utf8(tqbool codifica_secuencias_escape, char16_t **texto_unicode);

// Replaces `*texto_unicode` by its escaped form.
void i_codifica_secuencias_escape(char16_t **texto_unicode);

// CIERTO with the unit's escape sequence in `secuencia` (i_TAM_BUFFER_SECUENCIA_ESCAPE units)
// when the unit is escaped; FALSO with `secuencia` empty when it stands as itself.
tqbool i_secuencia_escape_caracter(char16_t caracter, char16_t *secuencia);

// Copies a fixed escape sequence, terminator included, into a sequence buffer.
void i_copia_secuencia_escape(const char16_t *origen, char16_t *secuencia);

// A new plain wide text from text that holds JSON escape sequences: the single-character
// escapes and "\u00" with two hexadecimal digits are decoded, any other backslash stands as
// itself. A text that begins with "data:application/octet-stream" is copied undecoded.
// "\u00" with bad digits becomes '?' and is reported, unless `sin_informar` is given: then it
// is counted there, for the caller to report with i_informa_secuencia_u00_erronea.
char16_t *i_decodifica_secuencias_escape(const char16_t *texto, uint32_t *sin_informar = nullptr);
void i_informa_secuencia_u00_erronea();

// The string value a JSON literal's `longitud` bytes (well-formed UTF-8 that encodes no
// surrogate, escapes still in) stand for, in UTF-8: each escaped quotation mark bare, and
// with `decodifica` CIERTO the rest decoded as i_decodifica_secuencias_escape decodes the
// literal's wide form. The same result without the trip through wide text. Bad "\u00" digits
// are reported.
char *i_literal_json_utf8(const char *bytes, size_t longitud, tqbool decodifica);

// Stores one unit at the write position of a decoded text and advances the position.
void i_append_caracter_cadena_decodificada(char16_t caracter, char16_t **cadena_decodificada,
                                           uint32_t *longitud_cadena_decodificada,
                                           uint32_t *pos_cadena_decodificada);
