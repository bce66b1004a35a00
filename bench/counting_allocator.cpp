// A malloc of the benchmark executable that forwards to glibc and counts the usable size of live
// blocks. Defined in the executable, it takes the place of glibc's for every shared library of
// the process too (tqjson2, the peers, libstdc++'s operator new). Counting is off except while a
// memory benchmark measures, so the timed loops pay only a test of a flag; blocks are counted by
// malloc_usable_size both ways, so a block taken before counting started and freed during it
// shows up as a residual after the tree is destroyed. The figures are plain globals: the
// benchmark runs on one thread.
#include "counting_allocator.h"

#include "tqbase/memoria.h"

#include <cerrno>
#include <cstdlib>
#include <malloc.h>

extern "C" {
void *__libc_malloc(size_t);
void __libc_free(void *);
void *__libc_calloc(size_t, size_t);
void *__libc_realloc(void *, size_t);
void *__libc_memalign(size_t, size_t);
void *__libc_valloc(size_t);
void *__libc_pvalloc(size_t);
}

namespace {

bool g_contando = false;
size_t g_actual = 0;
size_t g_pico = 0;

inline void i_suma(void *bloque) {
    if (g_contando && bloque) {
        g_actual += malloc_usable_size(bloque);
        if (g_actual > g_pico)
            g_pico = g_actual;
    }
}

inline void i_resta(void *bloque) {
    if (g_contando && bloque)
        g_actual -= malloc_usable_size(bloque);
}

bool i_alineacion_valida(size_t alineacion) {
    return alineacion != 0 && (alineacion & (alineacion - 1)) == 0;
}

// tqjson2 serves small blocks from a pool of its own that malloc never sees; the pool's own
// figures are added in.
contador::Uso i_uso() {
    contador::Uso uso{g_actual, g_pico, 0};
    {
        size_t en_uso = 0, pico = 0;
        marlspy_nousar_uso_bloques_pequenos(&en_uso, &pico);
        // The sum of the two peaks: an upper bound of the peak of the sum, and close to it while
        // a tree only grows.
        uso.actual += en_uso;
        uso.pico += pico;
        uso.de_pool = en_uso;
    }
    return uso;
}

} // namespace

namespace contador {

Uso empieza() {
    g_pico = g_actual;
    marlspy_nousar_reinicia_pico_bloques_pequenos();
    g_contando = true;
    return i_uso();
}

Uso lee() {
    return i_uso();
}

Uso termina() {
    g_contando = false;
    return i_uso();
}

bool cuenta_pool() {
    return true;
}

} // namespace contador

// Visible by default whatever the build's preset, so that the executable exports them all.
#define TQ_EXPORTA __attribute__((visibility("default")))

extern "C" {

TQ_EXPORTA void *malloc(size_t tam) noexcept {
    void *bloque = __libc_malloc(tam);
    i_suma(bloque);
    return bloque;
}

TQ_EXPORTA void free(void *bloque) noexcept {
    i_resta(bloque);
    __libc_free(bloque);
}

TQ_EXPORTA void *calloc(size_t num, size_t tam) noexcept {
    void *bloque = __libc_calloc(num, tam);
    i_suma(bloque);
    return bloque;
}

TQ_EXPORTA void *realloc(void *bloque, size_t tam) noexcept {
    const size_t antes = g_contando && bloque ? malloc_usable_size(bloque) : 0;
    void *nuevo = __libc_realloc(bloque, tam);
    // A failed realloc leaves the block as it was; realloc to zero bytes frees it.
    if (g_contando && (nuevo || tam == 0)) {
        g_actual -= antes;
        i_suma(nuevo);
    }
    return nuevo;
}

TQ_EXPORTA void *reallocarray(void *bloque, size_t num, size_t tam) noexcept {
    size_t total = 0;
    if (__builtin_mul_overflow(num, tam, &total)) {
        errno = ENOMEM;
        return nullptr;
    }
    return realloc(bloque, total);
}

TQ_EXPORTA void *memalign(size_t alineacion, size_t tam) noexcept {
    void *bloque = __libc_memalign(alineacion, tam);
    i_suma(bloque);
    return bloque;
}

TQ_EXPORTA void *aligned_alloc(size_t alineacion, size_t tam) noexcept {
    if (!i_alineacion_valida(alineacion)) {
        errno = EINVAL;
        return nullptr;
    }
    return memalign(alineacion, tam);
}

TQ_EXPORTA int posix_memalign(void **destino, size_t alineacion, size_t tam) noexcept {
    if (!i_alineacion_valida(alineacion) || alineacion % sizeof(void *) != 0)
        return EINVAL;
    void *bloque = memalign(alineacion, tam);
    if (!bloque)
        return ENOMEM;
    *destino = bloque;
    return 0;
}

TQ_EXPORTA void *valloc(size_t tam) noexcept {
    void *bloque = __libc_valloc(tam);
    i_suma(bloque);
    return bloque;
}

TQ_EXPORTA void *pvalloc(size_t tam) noexcept {
    void *bloque = __libc_pvalloc(tam);
    i_suma(bloque);
    return bloque;
}

} // extern "C"
