// tqbase standard-library wrapper: the C functions the libraries call, behind one name each.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

TQBASE_API size_t tqstdc_strlen(const char *cadena);
TQBASE_API double tqstdc_fabs(double valor);
TQBASE_API void *tqstdc_memset(void *destino, int valor, size_t num);

TQBASE_C_FIN
