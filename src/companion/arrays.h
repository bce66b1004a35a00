// tqbase array component: operations beyond the public contract of tqbase/arrays.h that the
// libraries of the code base use internally.
#pragma once

#include "tqbase/arrays.h"

TQBASE_C_INICIO

// Removes the last element and returns it without destroying it: lets a typed-pointer array
// serve as a work stack (null for an empty array).
TQBASE_API void *arr_ExtraeUltimoPunteroConTipo(arr_puntero_t *arr);

// The elements as one contiguous block, valid until the array next changes, and their count in
// `*num`: lets a reader that visits every element skip a call and an index check per element.
TQBASE_API void *const *arr_DatosPunteroConTipo(const arr_puntero_t *arr, uint32_t *num);

// A new array holding a copy of the `num` pointers at `elementos`, with room for exactly them:
// lets a reader that gathers elements elsewhere build each array in one step.
TQBASE_API arr_puntero_t *arr_CreaPunteroConTipoCon(void *const *elementos, uint32_t num);

// Takes the array apart for a caller that frees blocks many at a time: the blocks it is made of
// (at most two: its record, and its element storage when that is a block of its own) go to
// `bloques`, their count is returned, and the handle is nulled. The elements are not touched.
TQBASE_API uint32_t arr_DesmontaPunteroConTipo(arr_puntero_t **arr, void **bloques);

TQBASE_C_FIN
