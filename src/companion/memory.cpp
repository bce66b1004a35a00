// tqbase memory component: one place decides how blocks are obtained. Running out of memory
// ends the process with a message, except for calloc, whose null result callers test.
#include "tqbase/memoria.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "block_batches.h"
#include "small_blocks.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: marlspy";

[[noreturn]] void i_sin_memoria(size_t tam) {
    std::fprintf(stderr, "tqbase: out of memory allocating %zu bytes\n", tam);
    std::abort();
}

void *marlspy_nousar_malloc(size_t tam) {
    if (tam <= i_MAX_BLOQUE_PEQUENO)
        if (void *pequeno = i_toma_bloque_pequeno(tam))
            return pequeno;
    void *bloque = std::malloc(tam ? tam : 1);
    if (!bloque)
        i_sin_memoria(tam);
    return bloque;
}

// The class, the heap and the count are settled once for the batch; the blocks come from the
// class's current chunk while it has them, the rest one by one.
void marlspy_nousar_malloc_lote(size_t tam, void **bloques, uint32_t num) {
    uint32_t hechos = 0;
#if !defined(TQ_SIN_BLOQUES_PEQUENOS)
    if (tam <= i_MAX_BLOQUE_PEQUENO) {
        const size_t clase = i_clase_de(tam);
        const size_t tam_clase = i_tam_clase(clase);
        i_monton *monton = i_monton_del_hilo();
        if (i_trozo *trozo = monton->actual[clase]) {
            for (; hechos < num && trozo->libres; ++hechos) {
                bloques[hechos] = trozo->libres;
                trozo->libres = trozo->libres->siguiente;
            }
            for (; hechos < num && static_cast<size_t>(trozo->fin - trozo->sin_usar) >= tam_clase;
                 ++hechos) {
                bloques[hechos] = trozo->sin_usar;
                trozo->sin_usar += tam_clase;
            }
            trozo->vivos += hechos;
            i_cuenta(monton, static_cast<int64_t>(hechos * tam_clase));
        }
    }
#endif
    for (; hechos < num; ++hechos)
        bloques[hechos] = marlspy_nousar_malloc(tam);
}

void *marlspy_nousar_calloc(size_t num, size_t tam) {
    return std::calloc(num ? num : 1, tam ? tam : 1);
}

void *marlspy_nousar_realloc(void *bloque, size_t tam) {
    if (!bloque)
        return marlspy_nousar_malloc(tam);
    if (i_es_bloque_pequeno(bloque)) {
        const size_t tam_actual = i_tam_bloque_pequeno(bloque);
        if (tam <= tam_actual && i_tam_clase(i_clase_de(tam)) == tam_actual)
            return bloque;
        void *movido = marlspy_nousar_malloc(tam);
        std::memcpy(movido, bloque, tam < tam_actual ? tam : tam_actual);
        i_devuelve_bloque_pequeno(bloque);
        return movido;
    }
    void *nuevo = std::realloc(bloque, tam ? tam : 1);
    if (!nuevo)
        i_sin_memoria(tam);
    return nuevo;
}

// The pointer is read and written through memcpy: the caller's `T *` is not a `void *` object,
// and memcpy is the access that every pointer type permits.
static void *i_lee_puntero(const void *direccion) {
    void *p;
    std::memcpy(&p, direccion, sizeof p);
    return p;
}

static void i_anula_puntero(void *direccion) {
    void *nulo = nullptr;
    std::memcpy(direccion, &nulo, sizeof nulo);
}

void marlspy_nousar_free_pp(void *puntero, size_t) {
    if (!i_VERIFICA_NO_NULO(puntero))
        return;
    void *bloque = i_lee_puntero(puntero);
    if (i_es_bloque_pequeno(bloque))
        i_devuelve_bloque_pequeno(bloque);
    else
        std::free(bloque);
    i_anula_puntero(puntero);
}

// As marlspy_nousar_free_pp a block, with the heap found and the count made once.
void marlspy_nousar_free_lote(void *const *bloques, uint32_t num) {
    i_monton *monton = nullptr;
    int64_t devueltos = 0;
    // The region's base is read once: it is set before any block of the pool exists, so a
    // block in the batch cannot be the pool's under a base read earlier.
    const uintptr_t base = g_base_region.load(std::memory_order_acquire);
    for (uint32_t i = 0; i < num; ++i) {
        if (reinterpret_cast<uintptr_t>(bloques[i]) - base >= i_TAM_REGION) {
            std::free(bloques[i]);
            continue;
        }
        if (!monton)
            monton = i_monton_del_hilo();
        devueltos += static_cast<int64_t>(i_devuelve_sin_contar(monton, bloques[i]));
    }
    if (monton)
        i_cuenta(monton, -devueltos);
}

void *marlspy_nousar_asigna_doble_puntero(void *puntero) {
    if (!i_VERIFICA_NO_NULO(puntero))
        return nullptr;
    void *valor = i_lee_puntero(puntero);
    i_anula_puntero(puntero);
    return valor;
}

void *marlspy_nousar_asigna_doble_puntero_no_null(void *puntero) {
    if (!i_VERIFICA_NO_NULO(puntero))
        return nullptr;
    void *valor = i_lee_puntero(puntero);
    i_VERIFICA_NO_NULO(valor);
    i_anula_puntero(puntero);
    return valor;
}
