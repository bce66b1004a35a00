// tqbase array component: operations beyond the public contract of tqbase/arrays.h that the
// libraries of the code base use internally.
#pragma once

#include "tqbase/arrays.h"

TQBASE_C_INICIO

// Removes the last element and returns it without destroying it: lets a typed-pointer array
// serve as a work stack (null for an empty array).
TQBASE_API void *arr_ExtraeUltimoPunteroConTipo(arr_puntero_t *arr);

TQBASE_C_FIN
