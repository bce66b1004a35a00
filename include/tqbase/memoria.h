/** @file
   tqbase: memory blocks and the hand-over of pointers between owners. */
#ifndef TQBASE_MEMORIA_H
#define TQBASE_MEMORIA_H

#include "tipos.h"

TQBASE_C_INICIO

/** A new block of `tam` bytes. Ends the process with a message when memory is exhausted,
   so the result is never null. Free it with marlspy_nousar_free_pp. */
TQBASE_API void *marlspy_nousar_malloc(size_t tam);

/** A new zero-filled block of `num` elements of `tam` bytes, or null when it cannot be had:
   the one allocation whose failure callers test. */
TQBASE_API void *marlspy_nousar_calloc(size_t num, size_t tam);

/** The block resized to `tam` bytes (a null block allocates). Ends the process when memory
   is exhausted. */
TQBASE_API void *marlspy_nousar_realloc(void *bloque, size_t tam);

/** Frees the block whose address is given (a `T **` passed as `void *`) and sets the caller's
   pointer to null. `tam` is the record's size, or 1 for byte buffers. A null block is
   accepted. */
TQBASE_API void marlspy_nousar_free_pp(void *puntero, size_t tam);

/** Hand-over: returns the pointer stored at the address given (a `T **` passed as `void *`)
   and sets the caller's pointer to null, so that the receiver owns what it points to. */
TQBASE_API void *marlspy_nousar_asigna_doble_puntero(void *puntero);

/** As marlspy_nousar_asigna_doble_puntero, and refuses a null pointer with an internal-error
   report. */
TQBASE_API void *marlspy_nousar_asigna_doble_puntero_no_null(void *puntero);

/** The pool that serves blocks of up to 4 KiB (which the system allocator never sees), over
   every thread of the process. Exact when no other thread is taking or giving back blocks. */
typedef struct marlspy_estado_bloques_pequenos {
    size_t en_uso;   /**< bytes of the blocks taken and not given back */
    size_t pico;     /**< the highest en_uso since the last reset; a thread's steps of up to
                        16 KiB between its reports to the process may go unseen */
    size_t en_cache; /**< bytes of empty chunks kept for reuse */
    size_t retenido; /**< bytes of chunks backed by memory: holding blocks, or cached */
    size_t devuelto; /**< bytes of chunks whose memory went back to the system, in all */
} marlspy_estado_bloques_pequenos_t;
/** Fills `estado` with the pool's figures. */
TQBASE_API void marlspy_nousar_estado_bloques_pequenos(marlspy_estado_bloques_pequenos_t *estado);

/** For measurements: the pool's bytes in use and their highest figure since the last reset, as
   marlspy_nousar_estado_bloques_pequenos gives them. */
TQBASE_API void marlspy_nousar_uso_bloques_pequenos(size_t *en_uso, size_t *pico);
/** Starts the highest figure again from the present use. */
TQBASE_API void marlspy_nousar_reinicia_pico_bloques_pequenos(void);

TQBASE_C_FIN

#endif
