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

void marlspy_nousar_malloc_lote(size_t tam, void **bloques, uint32_t num) {
    for (uint32_t i = 0; i < num; ++i)
        bloques[i] = marlspy_nousar_malloc(tam);
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
    if (!i_VERIFICA((puntero) != NULL))
        return;
    void *bloque = i_lee_puntero(puntero);
    if (i_es_bloque_pequeno(bloque))
        i_devuelve_bloque_pequeno(bloque);
    else
        std::free(bloque);
    i_anula_puntero(puntero);
}

void marlspy_nousar_free_lote(void *const *bloques, uint32_t num) {
    for (uint32_t i = 0; i < num; ++i) {
        if (i_es_bloque_pequeno(bloques[i]))
            i_devuelve_bloque_pequeno(bloques[i]);
        else
            std::free(bloques[i]);
    }
}

void *marlspy_nousar_asigna_doble_puntero(void *puntero) {
    if (!i_VERIFICA((puntero) != NULL))
        return nullptr;
    void *valor = i_lee_puntero(puntero);
    i_anula_puntero(puntero);
    return valor;
}

void *marlspy_nousar_asigna_doble_puntero_no_null(void *puntero) {
    if (!i_VERIFICA((puntero) != NULL))
        return nullptr;
    void *valor = i_lee_puntero(puntero);
    i_VERIFICA((valor) != NULL);
    i_anula_puntero(puntero);
    return valor;
}
