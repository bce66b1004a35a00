/* tqbase: memory blocks and the hand-over of pointers between owners. */
#ifndef TQBASE_MEMORIA_H
#define TQBASE_MEMORIA_H

#include "tipos.h"

TQBASE_C_INICIO

/* A new block of `tam` bytes. Ends the process with a message when memory is exhausted,
   so the result is never null. Free it with marlspy_nousar_free_pp. */
TQBASE_API void *marlspy_nousar_malloc(size_t tam);

/* A new zero-filled block of `num` elements of `tam` bytes, or null when it cannot be had:
   the one allocation whose failure callers test. */
TQBASE_API void *marlspy_nousar_calloc(size_t num, size_t tam);

/* The block resized to `tam` bytes (a null block allocates). Ends the process when memory
   is exhausted. */
TQBASE_API void *marlspy_nousar_realloc(void *bloque, size_t tam);

/* Frees the block whose address is given (a `T **` passed as `void *`) and sets the caller's
   pointer to null. `tam` is the record's size, or 1 for byte buffers. A null block is
   accepted. */
TQBASE_API void marlspy_nousar_free_pp(void *puntero, size_t tam);

/* Hand-over: returns the pointer stored at the address given (a `T **` passed as `void *`)
   and sets the caller's pointer to null, so that the receiver owns what it points to. */
TQBASE_API void *marlspy_nousar_asigna_doble_puntero(void *puntero);

/* As marlspy_nousar_asigna_doble_puntero, and refuses a null pointer with an internal-error
   report. */
TQBASE_API void *marlspy_nousar_asigna_doble_puntero_no_null(void *puntero);

/* For measurements: the calling thread's use of the pool that serves blocks of up to 256 bytes
   (which the system allocator never sees): bytes of the blocks it has taken less those it has
   given back (0 if it gave back more, freeing other threads' blocks), and the highest that
   figure reached since the last reset. */
TQBASE_API void marlspy_nousar_uso_bloques_pequenos(size_t *en_uso, size_t *pico);
/* Starts the calling thread's highest figure again from its present use. */
TQBASE_API void marlspy_nousar_reinicia_pico_bloques_pequenos(void);

TQBASE_C_FIN

#endif
