/** @file
   tqbase: the array component. Every array is an opaque handle of its own element kind; indexes
   and counts are unsigned 32-bit, index 0 first, in the order of appending. Searches answer
   ARR_NO_ENCONTRADO when nothing matches. An index at or beyond the count, or a null handle, is
   an internal-error report; the read then gives 0 or null and a write is dropped. */
#ifndef TQBASE_ARRAYS_H
#define TQBASE_ARRAYS_H

#include "tipos.h"

TQBASE_C_INICIO

/** What a search answers when nothing matches. */
#define ARR_NO_ENCONTRADO 0xFFFFFFFFu

typedef struct arr_puntero arr_puntero_t;   /**< untyped pointers to records of the caller */
typedef struct arr_bool arr_bool_t;         /**< tqbool */
typedef struct arr_ulong arr_ulong_t;       /**< unsigned 32-bit integers */
typedef struct arr_double arr_double_t;     /**< doubles */
typedef struct arr_cadena arr_cadena_t;     /**< byte strings, owned by the array */
typedef struct arr_cadena_u arr_cadena_u_t; /**< wide strings, owned by the array */

/** Destroys one element given the address of its pointer (a `T **` passed as `void *`). */
typedef void (*arr_destructor_t)(void *elemento);
/** CIERTO when `elemento` matches the search key `clave`. */
typedef tqbool (*arr_comparador_t)(const void *elemento, const void *clave);

/* ---- typed-pointer arrays: the array never frees an element but through a destructor ---- */

/** New array of `num` null elements. Destroy it with arr_DestruyeEstructurasConTipo. */
TQBASE_API arr_puntero_t *arr_CreaPunteroConTipo(uint32_t num);
/** The number of elements. */
TQBASE_API uint32_t arr_NumElemsPuntero(const arr_puntero_t *arr);
/** The element at `indice`; it stays the array's. */
TQBASE_API void *arr_GetPunteroConTipo(const arr_puntero_t *arr, uint32_t indice);
/** Stores `elemento` at `indice`, which must be below the count; the old one is not freed. */
TQBASE_API void arr_SetPunteroConTipo(arr_puntero_t *arr, uint32_t indice, void *elemento);
/** `elemento` becomes the last element; the caller has given up its reference. */
TQBASE_API void arr_AppendPunteroConTipo(arr_puntero_t *arr, void *elemento);
/** Destroys the element at `indice` and moves the later ones one place forward. */
TQBASE_API void arr_BorrarEstructuraConTipo(arr_puntero_t *arr, uint32_t indice,
                                            arr_destructor_t destructor);
/** Calls `destructor` on every element (none when it is null), frees the array, nulls `*arr`. */
TQBASE_API void arr_DestruyeEstructurasConTipo(arr_puntero_t **arr, arr_destructor_t destructor);
/** CIERTO and the match's index in `*indice` when exactly one element matches; otherwise FALSO
   and `*indice` is not written. */
TQBASE_API tqbool arr_ExisteUnicaEstructuraConTipo(const arr_puntero_t *arr, const void *clave,
                                                   arr_comparador_t comparador, uint32_t *indice);
/** Index of the first match, or ARR_NO_ENCONTRADO. */
TQBASE_API uint32_t arr_BuscarEstructuraConTipo(const arr_puntero_t *arr, const void *clave,
                                                arr_comparador_t comparador);
/** Index of the first match at or after `inicio`, or ARR_NO_ENCONTRADO. */
TQBASE_API uint32_t arr_BuscarSiguienteEstructuraConTipo(const arr_puntero_t *arr, uint32_t inicio,
                                                         const void *clave,
                                                         arr_comparador_t comparador);

/* ---- plain arrays: new arrays of `num` elements hold 0, FALSO or null strings ---- */

/** Arrays of tqbool: created with `num` FALSO elements, destroyed with arr_DestruyeBOOL. */
TQBASE_API arr_bool_t *arr_CreaBOOL(uint32_t num);
/** The number of elements. */
TQBASE_API uint32_t arr_NumElemsBOOL(const arr_bool_t *arr);
/** The element at `indice`. */
TQBASE_API tqbool arr_GetBOOL(const arr_bool_t *arr, uint32_t indice);
/** Stores `valor` at `indice`, which must be below the count. */
TQBASE_API void arr_SetBOOL(arr_bool_t *arr, uint32_t indice, tqbool valor);
/** Frees the array and nulls `*arr`. */
TQBASE_API void arr_DestruyeBOOL(arr_bool_t **arr);

/** Arrays of unsigned 32-bit integers, created with `num` zeros. */
TQBASE_API arr_ulong_t *arr_CreaULong(uint32_t num);
/** The number of elements. */
TQBASE_API uint32_t arr_NumElemsULong(const arr_ulong_t *arr);
/** The element at `indice`. */
TQBASE_API uint32_t arr_GetULong(const arr_ulong_t *arr, uint32_t indice);
/** Stores `valor` at `indice`, which must be below the count. */
TQBASE_API void arr_SetULong(arr_ulong_t *arr, uint32_t indice, uint32_t valor);
/** Frees the array and nulls `*arr`. */
TQBASE_API void arr_DestruyeULong(arr_ulong_t **arr);

/** Arrays of doubles, created with `num` zeros. */
TQBASE_API arr_double_t *arr_CreaDouble(uint32_t num);
/** The number of elements. */
TQBASE_API uint32_t arr_NumElemsDouble(const arr_double_t *arr);
/** The element at `indice`. */
TQBASE_API double arr_GetDouble(const arr_double_t *arr, uint32_t indice);
/** Stores `valor` at `indice`, which must be below the count. */
TQBASE_API void arr_SetDouble(arr_double_t *arr, uint32_t indice, double valor);
/** Frees the array and nulls `*arr`. */
TQBASE_API void arr_DestruyeDouble(arr_double_t **arr);

/** Byte strings. Get returns the array's own string (null where none was set). */
TQBASE_API arr_cadena_t *arr_CreaCADENA(uint32_t num);
/** The number of strings. */
TQBASE_API uint32_t arr_NumElemsCADENA(const arr_cadena_t *arr);
/** The array's own string at `indice` (null where none was set): do not free it. */
TQBASE_API const char *arr_GetCADENA(const arr_cadena_t *arr, uint32_t indice);
/** Stores a copy of `cadena`; the caller keeps its own. */
TQBASE_API void arr_SetCADENA(arr_cadena_t *arr, uint32_t indice, const char *cadena);
/** Takes the caller's string over without copying and nulls the caller's pointer. */
TQBASE_API void arr_SetCADENAOriginal(arr_cadena_t *arr, uint32_t indice, char **cadena);
/** A copy of `cadena` becomes the last element. */
TQBASE_API void arr_AppendCADENA(arr_cadena_t *arr, const char *cadena);
/** Frees the array and its strings, nulls `*arr`. */
TQBASE_API void arr_DestruyeCADENA(arr_cadena_t **arr);

/** Wide strings, with the same ownership as the byte strings. */
TQBASE_API arr_cadena_u_t *arr_CreaCADENA_u(uint32_t num);
/** The number of strings. */
TQBASE_API uint32_t arr_NumElemsCADENA_u(const arr_cadena_u_t *arr);
/** The array's own string at `indice` (null where none was set): do not free it. */
TQBASE_API const char16_t *arr_GetCADENA_u(const arr_cadena_u_t *arr, uint32_t indice);
/** Stores a copy of `cadena`; the caller keeps its own. */
TQBASE_API void arr_SetCADENA_u(arr_cadena_u_t *arr, uint32_t indice, const char16_t *cadena);
/** Takes the caller's string over without copying and nulls the caller's pointer. */
TQBASE_API void arr_SetCADENAOriginal_u(arr_cadena_u_t *arr, uint32_t indice, char16_t **cadena);
/** Frees the array and its strings, nulls `*arr`. */
TQBASE_API void arr_DestruyeCADENA_u(arr_cadena_u_t **arr);

TQBASE_C_FIN

#endif
