/** @file
   tqbase: releasing the byte and wide strings that libraries of the code base hand out. */
#ifndef TQBASE_CADENAS_H
#define TQBASE_CADENAS_H

#include "tipos.h"

TQBASE_C_INICIO

/** Frees a zero-terminated byte string and sets the caller's pointer to null. */
TQBASE_API void marlstr_destruye(char **cadena);

/** Frees a zero-terminated wide (UTF-16) string and sets the caller's pointer to null. A null
   pointer is reported against `modulo` and `linea`, the caller's source position. */
TQBASE_API void widestr_nousar_destruye(char16_t **cadena, const char *modulo, int linea);

/** As widestr_nousar_destruye; a null string is accepted and left alone. */
TQBASE_API void widestr_nousar_destruye_opcional(char16_t **cadena, const char *modulo, int linea);

TQBASE_C_FIN

#endif
