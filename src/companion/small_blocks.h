// tqbase memory component: the pool of small blocks. Blocks of up to 256 bytes (nodes, members,
// array records of up to some thirty elements, texts of a line) come from chunks of one size class
// each, carved from one reserved address range, and go back to a per-thread free list: taking and
// giving back a block is a few instructions, whatever the pattern of use. Whether a block is the
// pool's is told by its address alone, so a block of either origin can be freed or resized.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

// The largest block the pool serves, and the step between its sizes: 8 bytes, the alignment
// every record of the code base needs, so that a record wastes at most 7 bytes.
inline constexpr size_t i_MAX_BLOQUE_PEQUENO = 256;
inline constexpr size_t i_PASO_BLOQUE_PEQUENO = 8;

inline constexpr size_t i_NUM_CLASES = i_MAX_BLOQUE_PEQUENO / i_PASO_BLOQUE_PEQUENO;
inline constexpr size_t i_BITS_TROZO = 16; // chunks of 64 KiB
inline constexpr size_t i_TAM_TROZO = size_t{1} << i_BITS_TROZO;
// Address space reserved once; pages are committed by the system as they are first touched.
inline constexpr size_t i_TAM_REGION = size_t{1} << 36;
inline constexpr size_t i_NUM_TROZOS = i_TAM_REGION / i_TAM_TROZO;

// The reserved range, null until the library is loaded or where the reservation failed: then
// every block comes from the system.
extern char *const g_base_region;
// The size class of each chunk handed out, plus one (0: not yet handed out).
extern std::atomic<uint8_t> g_clase_trozo[i_NUM_TROZOS];

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
// Initial-exec and constant-initialised: the pool is reached on every allocation, without a
// call to find it or to initialise it.
#if defined(__GNUC__)
#define i_TLS_DIRECTO __attribute__((tls_model("initial-exec")))
#else
#define i_TLS_DIRECTO
#endif
extern constinit thread_local i_pool_hilo t_pool i_TLS_DIRECTO;

inline size_t i_tam_clase(size_t clase) {
    return (clase + 1) * i_PASO_BLOQUE_PEQUENO;
}

inline void i_cuenta(std::ptrdiff_t bytes) {
    t_pool.en_uso += bytes;
    if (t_pool.en_uso > t_pool.pico)
        t_pool.pico = t_pool.en_uso;
}

// The rare ways of taking and giving back, out of line: a new chunk, a longer free stack.
void *i_toma_de_trozo_nuevo(size_t clase);
void i_devuelve_con_pila_mayor(void *bloque, size_t clase);

// A block of `tam` bytes (1 to i_MAX_BLOQUE_PEQUENO), or null when the pool cannot serve.
// Inline, with the free list and the chunk being carved, because every record of every tree
// is taken and given back here.
inline void *i_toma_bloque_pequeno(size_t tam) {
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
    if (static_cast<size_t>(t_pool.fin_trozo[clase] - t_pool.libre_trozo[clase]) < tam_clase)
        return i_toma_de_trozo_nuevo(clase);
    void *bloque = t_pool.libre_trozo[clase];
    t_pool.libre_trozo[clase] += tam_clase;
    i_cuenta(static_cast<std::ptrdiff_t>(tam_clase));
    return bloque;
}

// True when `bloque` is the pool's: the range test as one subtraction and one comparison.
inline bool i_es_bloque_pequeno(const void *bloque) {
    const auto desde_base =
        reinterpret_cast<uintptr_t>(bloque) - reinterpret_cast<uintptr_t>(g_base_region);
    return g_base_region && desde_base < i_TAM_REGION;
}

// The usable size of a pool block.
inline size_t i_tam_bloque_pequeno(const void *bloque) {
    const size_t indice =
        static_cast<size_t>(static_cast<const char *>(bloque) - g_base_region) >> i_BITS_TROZO;
    return i_tam_clase(g_clase_trozo[indice].load(std::memory_order_acquire) - 1u);
}

// Gives a pool block back.
inline void i_devuelve_bloque_pequeno(void *bloque) {
    const size_t clase = i_tam_bloque_pequeno(bloque) / i_PASO_BLOQUE_PEQUENO - 1;
    i_libres &libres = t_pool.libres[clase];
    if (libres.num == libres.capacidad) {
        i_devuelve_con_pila_mayor(bloque, clase);
        return;
    }
    libres.bloques[libres.num++] = bloque;
    i_cuenta(-static_cast<std::ptrdiff_t>(i_tam_clase(clase)));
}
