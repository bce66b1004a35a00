// tqbase memory component: blocks taken and given back many at a time, for the loops that make
// or destroy a tree's records one after another, where a call a block would cost more than the
// pool's own work. The blocks are the memory component's like any other: each may be freed or
// resized alone, from any thread.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

/* Fills `bloques` with `num` new blocks of `tam` bytes each, as marlspy_nousar_malloc gives
   them (never null: exhausted memory ends the process). */
TQBASE_API void marlspy_nousar_malloc_lote(size_t tam, void **bloques, uint32_t num);
/* Frees the `num` blocks listed (null entries are passed over); the list stays the caller's. */
TQBASE_API void marlspy_nousar_free_lote(void *const *bloques, uint32_t num);

TQBASE_C_FIN
