// tqbase memory component: the pool of small blocks (see small_blocks.h).
#include "small_blocks.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>

#include "tqbase/memoria.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace {

constexpr size_t i_NUM_CLASES = i_MAX_BLOQUE_PEQUENO / i_PASO_BLOQUE_PEQUENO;
constexpr size_t i_BITS_TROZO = 16; // chunks of 64 KiB
constexpr size_t i_TAM_TROZO = size_t{1} << i_BITS_TROZO;
// Address space reserved once; pages are committed by the system as they are first touched.
constexpr size_t i_TAM_REGION = size_t{1} << 36;
constexpr size_t i_NUM_TROZOS = i_TAM_REGION / i_TAM_TROZO;

// Address space reserved when the library is loaded. Until then, and wherever the reservation
// fails, the base is null and every block comes from the system: a block is the pool's only if
// its address lies in the range, so either kind is freed correctly at any time.
char *i_reserva_region() {
#if defined(TQ_SIN_BLOQUES_PEQUENOS)
    // Sanitized builds take every block from the system, where the sanitizers watch it.
    return nullptr;
#elif defined(_WIN32)
    return static_cast<char *>(VirtualAlloc(nullptr, i_TAM_REGION, MEM_RESERVE, PAGE_NOACCESS));
#else
    void *reservada = mmap(nullptr, i_TAM_REGION, PROT_READ | PROT_WRITE,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return reservada == MAP_FAILED ? nullptr : static_cast<char *>(reservada);
#endif
}
char *const g_base_region = i_reserva_region();
std::atomic<size_t> g_siguiente_trozo{0};
// The size class of each chunk handed out, plus one (0: not yet handed out). Zero-filled
// without code, so its pages are touched only as chunks are handed out.
std::atomic<uint8_t> g_clase_trozo[i_NUM_TROZOS];

// Each thread carves its own chunks and keeps its own free blocks; a block freed by another
// thread simply joins that thread's. Free blocks are kept on a stack of addresses, not linked
// through themselves, so that neither freeing nor reusing a block has to read its cold memory.
struct i_libres {
    void **bloques = nullptr;
    size_t num = 0;
    size_t capacidad = 0;
};

struct i_pool_hilo {
    i_libres libres[i_NUM_CLASES];
    char *libre_trozo[i_NUM_CLASES] = {};
    char *fin_trozo[i_NUM_CLASES] = {};
    // Net of what this thread took and gave back: a thread that frees others' blocks can go
    // below zero.
    std::ptrdiff_t en_uso = 0;
    std::ptrdiff_t pico = 0;
};
// Initial-exec: the pool is reached on every allocation, without a call to find it.
#if defined(__GNUC__)
#define i_TLS_DIRECTO __attribute__((tls_model("initial-exec")))
#else
#define i_TLS_DIRECTO
#endif
thread_local i_pool_hilo t_pool i_TLS_DIRECTO;

size_t i_tam_clase(size_t clase) {
    return (clase + 1) * i_PASO_BLOQUE_PEQUENO;
}

bool i_nuevo_trozo(size_t clase) {
    const size_t indice = g_siguiente_trozo.fetch_add(1, std::memory_order_relaxed);
    if (indice >= i_NUM_TROZOS)
        return false;
    char *trozo = g_base_region + indice * i_TAM_TROZO;
#if defined(_WIN32)
    if (!VirtualAlloc(trozo, i_TAM_TROZO, MEM_COMMIT, PAGE_READWRITE))
        return false;
#endif
    g_clase_trozo[indice].store(static_cast<uint8_t>(clase + 1), std::memory_order_release);
    t_pool.libre_trozo[clase] = trozo;
    t_pool.fin_trozo[clase] = trozo + i_TAM_TROZO;
    return true;
}

void i_cuenta(std::ptrdiff_t bytes) {
    t_pool.en_uso += bytes;
    if (t_pool.en_uso > t_pool.pico)
        t_pool.pico = t_pool.en_uso;
}

} // namespace

void *i_toma_bloque_pequeno(size_t tam) {
    if (!g_base_region)
        return nullptr;
    const size_t clase = tam == 0 ? 0 : (tam - 1) / i_PASO_BLOQUE_PEQUENO;
    const size_t tam_clase = i_tam_clase(clase);
    i_libres &libres = t_pool.libres[clase];
    if (libres.num > 0) {
        i_cuenta(static_cast<std::ptrdiff_t>(tam_clase));
        return libres.bloques[--libres.num];
    }
    // A chunk need not hold a whole number of blocks (24 does not divide 64 KiB).
    const bool sin_sitio =
        static_cast<size_t>(t_pool.fin_trozo[clase] - t_pool.libre_trozo[clase]) < tam_clase;
    if (sin_sitio && !i_nuevo_trozo(clase))
        return nullptr;
    void *bloque = t_pool.libre_trozo[clase];
    t_pool.libre_trozo[clase] += tam_clase;
    i_cuenta(static_cast<std::ptrdiff_t>(tam_clase));
    return bloque;
}

bool i_es_bloque_pequeno(const void *bloque) {
    // The range test as one subtraction and one unsigned comparison.
    const auto desde_base =
        reinterpret_cast<uintptr_t>(bloque) - reinterpret_cast<uintptr_t>(g_base_region);
    return g_base_region && desde_base < i_TAM_REGION;
}

size_t i_tam_bloque_pequeno(const void *bloque) {
    const size_t indice =
        static_cast<size_t>(static_cast<const char *>(bloque) - g_base_region) >> i_BITS_TROZO;
    return i_tam_clase(g_clase_trozo[indice].load(std::memory_order_acquire) - 1u);
}

void i_devuelve_bloque_pequeno(void *bloque) {
    const size_t tam_clase = i_tam_bloque_pequeno(bloque);
    i_libres &libres = t_pool.libres[tam_clase / i_PASO_BLOQUE_PEQUENO - 1];
    if (libres.num == libres.capacidad) {
        const size_t capacidad = libres.capacidad ? 2 * libres.capacidad : 1024;
        void *ampliada = std::realloc(libres.bloques, capacidad * sizeof(void *));
        if (!ampliada) { // the block stays out of use rather than fail the caller
            i_cuenta(-static_cast<std::ptrdiff_t>(tam_clase));
            return;
        }
        libres.bloques = static_cast<void **>(ampliada);
        libres.capacidad = capacidad;
    }
    libres.bloques[libres.num++] = bloque;
    i_cuenta(-static_cast<std::ptrdiff_t>(tam_clase));
}

void marlspy_nousar_uso_bloques_pequenos(size_t *en_uso, size_t *pico) {
    if (en_uso)
        *en_uso = static_cast<size_t>(std::max<std::ptrdiff_t>(t_pool.en_uso, 0));
    if (pico)
        *pico = static_cast<size_t>(std::max<std::ptrdiff_t>(t_pool.pico, 0));
}

void marlspy_nousar_reinicia_pico_bloques_pequenos(void) {
    t_pool.pico = t_pool.en_uso;
}
