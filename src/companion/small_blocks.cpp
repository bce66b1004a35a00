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

std::atomic<size_t> g_siguiente_trozo{0};

} // namespace

char *const g_base_region = i_reserva_region();
// Zero-filled without code, so its pages are touched only as chunks are handed out.
std::atomic<uint8_t> g_clase_trozo[i_NUM_TROZOS];
constinit thread_local i_pool_hilo t_pool i_TLS_DIRECTO;

void *i_toma_de_trozo_nuevo(size_t clase) {
    const size_t indice = g_siguiente_trozo.fetch_add(1, std::memory_order_relaxed);
    if (indice >= i_NUM_TROZOS)
        return nullptr;
    char *trozo = g_base_region + indice * i_TAM_TROZO;
#if defined(_WIN32)
    if (!VirtualAlloc(trozo, i_TAM_TROZO, MEM_COMMIT, PAGE_READWRITE))
        return nullptr;
#endif
    g_clase_trozo[indice].store(static_cast<uint8_t>(clase + 1), std::memory_order_release);
    const size_t tam_clase = i_tam_clase(clase);
    t_pool.libre_trozo[clase] = trozo + tam_clase;
    t_pool.fin_trozo[clase] = trozo + i_TAM_TROZO;
    i_cuenta(static_cast<std::ptrdiff_t>(tam_clase));
    return trozo;
}

void i_devuelve_con_pila_mayor(void *bloque, size_t clase) {
    i_libres &libres = t_pool.libres[clase];
    const size_t capacidad = libres.capacidad ? 2 * libres.capacidad : 1024;
    void *ampliada = std::realloc(libres.bloques, capacidad * sizeof(void *));
    // Without a longer stack the block stays out of use rather than fail the caller.
    if (ampliada) {
        libres.bloques = static_cast<void **>(ampliada);
        libres.capacidad = capacidad;
        libres.bloques[libres.num++] = bloque;
    }
    i_cuenta(-static_cast<std::ptrdiff_t>(i_tam_clase(clase)));
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
