// tqbase array component: operations beyond the public contract of tqbase/arrays.h that the
// libraries of the code base use internally.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
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

// Takes the array apart for a caller that frees blocks many at a time: its attachment is let go
// of, the blocks it is made of (at most two: its record's, and its element storage when that is a
// block of its own) go to `bloques`, their count is returned, and the handle is nulled. The
// elements are not touched.
TQBASE_API uint32_t arr_DesmontaPunteroConTipo(arr_puntero_t **arr, void **bloques);

// An attachment: a cache that a library keeps on a typed-pointer array and derives from its
// elements (the tree's index of member names). The array holds it in a word of its own and lets go
// of it, calling `suelta`, before any change made through this component, so that it never
// describes elements the array no longer holds. Its owner makes it the first field of its record.
typedef struct arr_anexo {
    void (*suelta)(struct arr_anexo *anexo); // frees the attachment
} arr_anexo_t;

// As arr_CreaPunteroConTipoCon, with a word for an attachment: 8 bytes more than other arrays.
TQBASE_API arr_puntero_t *arr_CreaPunteroConAnexo(void *const *elementos, uint32_t num);

// The array's attachment, or null (none, or no word for one).
TQBASE_API arr_anexo_t *arr_AnexoPuntero(const arr_puntero_t *arr);

// Puts `anexo` on the array unless it has one already, and answers the attachment the array holds
// after the call: `anexo`, the earlier one (then the caller keeps its own), or null when the array
// has no word for one. Readers of the array may do it side by side: the attachment is published
// for them whole, and only one of them wins.
TQBASE_API arr_anexo_t *arr_PonAnexoPuntero(const arr_puntero_t *arr, arr_anexo_t *anexo);

// Takes the attachment off without letting go of it (null when none): for its owner, before a
// change to the elements that it brings the attachment up to date with itself.
TQBASE_API arr_anexo_t *arr_QuitaAnexoPuntero(arr_puntero_t *arr);

TQBASE_C_FIN
