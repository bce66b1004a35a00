/** @file
   tqbase: save streams, the code base's own format for saving values in sequence. A stream is
   written from the start and read back from the start in the same order; reading past what was
   written is an internal-error report and gives FALSO or an empty text. */
#ifndef TQBASE_MARLSAVE_H
#define TQBASE_MARLSAVE_H

#include "tipos.h"

TQBASE_C_INICIO

/** A save stream. */
typedef struct marlsave marlsave_t;

/** A new empty stream in memory, positioned at its start. Destroy it with marlsave_destruye. */
TQBASE_API marlsave_t *marlsave_crea_en_memoria(void);
/** Reading starts again at the beginning of what was written. */
TQBASE_API void marlsave_rebobina(marlsave_t *stream);
/** Frees the stream and nulls the caller's pointer. */
TQBASE_API void marlsave_destruye(marlsave_t **stream);

/** A tqbool, as one byte. */
TQBASE_API void marlsave_graba_bool(tqbool valor, marlsave_t *stream);
/** The next flag; FALSO, reported, past the end. */
TQBASE_API tqbool marlsave_lee_bool(marlsave_t *stream);
/** A zero-terminated byte text, as its 32-bit length and its bytes. The text read back is new;
   free it with marlstr_destruye. */
TQBASE_API void marlsave_graba_cadena_como_buffer(const char *cadena, marlsave_t *stream);
/** The next text, new; an empty text, reported, when the stream holds no whole text. */
TQBASE_API char *marlsave_lee_cadena_como_buffer(marlsave_t *stream);

TQBASE_C_FIN

#endif
