// tqbase string component, byte strings: zero-terminated UTF-8 or ANSI text. Every string
// returned is new and the caller's, freed with marlstr_destruye (tqbase/cadenas.h).
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/cadenas.h"

TQBASE_C_INICIO

// Writable string with room for `tam` bytes, terminator included; it starts empty.
TQBASE_API char *creacadena(size_t tam);
// String of exactly `num` copies of `caracter`.
TQBASE_API char *creacadena_con_caracter(size_t num, char caracter);
// Copy of `cadena` (null is reported and gives an empty string).
TQBASE_API char *cad_copia_cadena(const char *cadena);
// Appends `sufijo` to `*cadena`, which is extended in place or replaced; the pointer follows.
TQBASE_API void cad_concatena(char **cadena, const char *sufijo);
// CIERTO when both are equal ignoring the letter case of ASCII letters.
TQBASE_API tqbool cad_cadenas_iguales_may_o_min(const char *cadena_1, const char *cadena_2);

TQBASE_C_FIN
