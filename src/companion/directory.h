// tqbase directory component.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

// CIERTO when `nombre_fichero` (wide, UTF-16) names an existing regular file.
TQBASE_API tqbool cdir_existe_fichero_UNICODE(const char16_t *nombre_fichero);

TQBASE_C_FIN
