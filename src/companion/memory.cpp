// tqbase memory component: one place decides how blocks are obtained. Running out of memory
// ends the process with a message, except for calloc, whose null result callers test.
#include "tqbase/memoria.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "verifica.h"

static const char *const i_MODULO = "tqbase: marlspy";

[[noreturn]] static void i_sin_memoria(size_t tam) {
    std::fprintf(stderr, "tqbase: out of memory allocating %zu bytes\n", tam);
    std::abort();
}

void *marlspy_nousar_malloc(size_t tam) {
    void *bloque = std::malloc(tam ? tam : 1);
    if (!bloque)
        i_sin_memoria(tam);
    return bloque;
}

void *marlspy_nousar_calloc(size_t num, size_t tam) {
    return std::calloc(num ? num : 1, tam ? tam : 1);
}

void *marlspy_nousar_realloc(void *bloque, size_t tam) {
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
    std::free(i_lee_puntero(puntero));
    i_anula_puntero(puntero);
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
