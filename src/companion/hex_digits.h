// tqbase string component, hexadecimal digits of one code unit's low byte.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

// CIERTO, with the two digits of the unit's low byte (upper case, high digit first).
TQBASE_API tqbool marlstrhex_codifica_caracter_u(char16_t caracter, char16_t *digito_1,
                                                 char16_t *digito_2);
// CIERTO and the unit 16 * digito_1 + digito_2 when both are hexadecimal digits of either
// case; FALSO, and `*caracter` untouched, otherwise.
TQBASE_API tqbool marlstrhex_decodifica_caracter_u(char16_t digito_1, char16_t digito_2,
                                                   char16_t *caracter);

TQBASE_C_FIN
