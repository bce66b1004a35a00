// tqbase array component: typed-pointer arrays. The array holds the caller's pointers and
// destroys an element only through the destructor the caller gives.
#include <atomic>
#include <new>

#include "array_storage.h"
#include "arrays.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: arrays";

struct arr_puntero {
    i_almacen<void *> a;
};

static bool i_array_valido(const arr_puntero *arr) {
    return i_VERIFICA_NO_NULO(arr);
}

static bool i_indice_valido(const arr_puntero *arr, uint32_t indice) {
    return i_array_valido(arr) && i_VERIFICA(indice < arr->a.num);
}

using i_hueco_anexo = std::atomic<arr_anexo_t *>;
static_assert(sizeof(i_hueco_anexo) == i_TAM_PREFIJO);

// The word that holds an array's attachment, or null when the array has none.
static i_hueco_anexo *i_hueco(const arr_puntero *arr) {
    return arr->a.con_prefijo ? static_cast<i_hueco_anexo *>(i_prefijo(arr)) : nullptr;
}

// Takes the attachment off. A change never overlaps another use of the array, so no reader can
// put one on meanwhile.
static arr_anexo_t *i_quita_anexo(arr_puntero *arr) {
    i_hueco_anexo *hueco = i_hueco(arr);
    arr_anexo_t *anexo = hueco ? hueco->load(std::memory_order_acquire) : nullptr;
    if (anexo)
        hueco->store(nullptr, std::memory_order_relaxed);
    return anexo;
}

// Every change made through this component begins here: the attachment describes the elements
// as they were, so it goes.
static void i_suelta_anexo(arr_puntero *arr) {
    if (arr_anexo_t *anexo = i_quita_anexo(arr))
        anexo->suelta(anexo);
}

arr_puntero_t *arr_CreaPunteroConTipo(uint32_t num) {
    return i_crea_array<arr_puntero>(num);
}

arr_puntero_t *arr_CreaPunteroConAnexo(void *const *elementos, uint32_t num) {
    if (num > 0 && !i_VERIFICA_NO_NULO(elementos))
        num = 0;
    arr_puntero *arr = i_crea_array_con<arr_puntero>(elementos, num, true);
    new (i_prefijo(arr)) i_hueco_anexo(nullptr);
    return arr;
}

arr_anexo_t *arr_AnexoPuntero(const arr_puntero_t *arr) {
    const i_hueco_anexo *hueco = i_array_valido(arr) ? i_hueco(arr) : nullptr;
    return hueco ? hueco->load(std::memory_order_acquire) : nullptr;
}

arr_anexo_t *arr_PonAnexoPuntero(const arr_puntero_t *arr, arr_anexo_t *anexo) {
    i_hueco_anexo *hueco = i_array_valido(arr) ? i_hueco(arr) : nullptr;
    if (!hueco)
        return nullptr;
    arr_anexo_t *anterior = nullptr;
    if (hueco->compare_exchange_strong(anterior, anexo, std::memory_order_acq_rel,
                                       std::memory_order_acquire))
        return anexo;
    return anterior;
}

arr_anexo_t *arr_QuitaAnexoPuntero(arr_puntero_t *arr) {
    return i_array_valido(arr) ? i_quita_anexo(arr) : nullptr;
}

arr_puntero_t *arr_CreaPunteroConTipoCon(void *const *elementos, uint32_t num) {
    if (num > 0 && !i_VERIFICA_NO_NULO(elementos))
        num = 0;
    return i_crea_array_con<arr_puntero>(elementos, num);
}

uint32_t arr_NumElemsPuntero(const arr_puntero_t *arr) {
    return i_array_valido(arr) ? arr->a.num : 0;
}

void *arr_GetPunteroConTipo(const arr_puntero_t *arr, uint32_t indice) {
    return i_indice_valido(arr, indice) ? arr->a.datos[indice] : nullptr;
}

void arr_SetPunteroConTipo(arr_puntero_t *arr, uint32_t indice, void *elemento) {
    if (!i_indice_valido(arr, indice))
        return;
    i_suelta_anexo(arr);
    arr->a.datos[indice] = elemento;
}

void arr_AppendPunteroConTipo(arr_puntero_t *arr, void *elemento) {
    if (!i_array_valido(arr))
        return;
    i_suelta_anexo(arr);
    i_VERIFICA(arr->a.agrega(elemento));
}

void *arr_ExtraeUltimoPunteroConTipo(arr_puntero_t *arr) {
    if (!i_array_valido(arr) || arr->a.num == 0)
        return nullptr;
    i_suelta_anexo(arr);
    return arr->a.datos[--arr->a.num];
}

void *const *arr_DatosPunteroConTipo(const arr_puntero_t *arr, uint32_t *num) {
    if (!i_VERIFICA_NO_NULO(num))
        return nullptr;
    *num = i_array_valido(arr) ? arr->a.num : 0;
    return *num ? arr->a.datos : nullptr;
}

void arr_BorrarEstructuraConTipo(arr_puntero_t *arr, uint32_t indice, arr_destructor_t destructor) {
    if (!i_indice_valido(arr, indice))
        return;
    i_suelta_anexo(arr);
    if (destructor)
        destructor(&arr->a.datos[indice]);
    arr->a.quita(indice);
}

void arr_DestruyeEstructurasConTipo(arr_puntero_t **arr, arr_destructor_t destructor) {
    if (!i_VERIFICA_NO_NULO(arr) || !i_VERIFICA_NO_NULO(*arr))
        return;
    i_suelta_anexo(*arr);
    if (destructor)
        for (uint32_t i = 0; i < (*arr)->a.num; ++i)
            destructor(&(*arr)->a.datos[i]);
    i_destruye_array(arr);
}

uint32_t arr_DesmontaPunteroConTipo(arr_puntero_t **arr, void **bloques) {
    if (!i_VERIFICA_NO_NULO(arr) || !i_VERIFICA_NO_NULO(*arr) || !i_VERIFICA_NO_NULO(bloques))
        return 0;
    i_suelta_anexo(*arr);
    return i_desmonta_array(arr, bloques);
}

// Index of the first element at or after `inicio` that matches, or ARR_NO_ENCONTRADO.
static uint32_t i_busca(const arr_puntero *arr, uint32_t inicio, const void *clave,
                        arr_comparador_t comparador) {
    for (uint32_t i = inicio; i < arr->a.num; ++i)
        if (comparador(arr->a.datos[i], clave) == CIERTO)
            return i;
    return ARR_NO_ENCONTRADO;
}

static bool i_busqueda_valida(const arr_puntero *arr, arr_comparador_t comparador) {
    return i_array_valido(arr) && i_VERIFICA_NO_NULO(comparador);
}

uint32_t arr_BuscarEstructuraConTipo(const arr_puntero_t *arr, const void *clave,
                                     arr_comparador_t comparador) {
    return i_busqueda_valida(arr, comparador) ? i_busca(arr, 0, clave, comparador)
                                              : ARR_NO_ENCONTRADO;
}

uint32_t arr_BuscarSiguienteEstructuraConTipo(const arr_puntero_t *arr, uint32_t inicio,
                                              const void *clave, arr_comparador_t comparador) {
    return i_busqueda_valida(arr, comparador) ? i_busca(arr, inicio, clave, comparador)
                                              : ARR_NO_ENCONTRADO;
}

tqbool arr_ExisteUnicaEstructuraConTipo(const arr_puntero_t *arr, const void *clave,
                                        arr_comparador_t comparador, uint32_t *indice) {
    if (!i_busqueda_valida(arr, comparador))
        return FALSO;
    // One pass: the first match, then a look past it to establish that it is the only one.
    const uint32_t primera = i_busca(arr, 0, clave, comparador);
    if (primera == ARR_NO_ENCONTRADO ||
        i_busca(arr, primera + 1, clave, comparador) != ARR_NO_ENCONTRADO)
        return FALSO;
    if (i_VERIFICA_NO_NULO(indice))
        *indice = primera;
    return CIERTO;
}
