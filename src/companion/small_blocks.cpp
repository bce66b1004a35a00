// tqbase memory component: the pool of small blocks (see small_blocks.h).
#include "small_blocks.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>

#include "system_memory.h"
#include "tqbase/memoria.h"

std::atomic<uintptr_t> g_base_region{UINTPTR_MAX - i_TAM_REGION + 1};

namespace {

// Empty chunks kept for reuse (8 MiB), beyond which their memory goes back to the system: enough
// that reading and destroying documents of a few megabytes in turn reuses the same memory
// instead of having the system clear it again for every read.
constexpr size_t i_MAX_TROZOS_EN_CACHE = 128;

// Chunks: taken from and given back to the system under one lock, 64 KiB at a time.
struct i_almacen_trozos {
    std::mutex cerrojo;
    char *siguiente = nullptr, *fin_region = nullptr; // the region not yet carved
    bool sin_region = false;                          // the system refused it
    i_trozo *cache = nullptr;
    size_t num_cache = 0;
    // Chunks whose memory went back: their address space stays the pool's, for reuse.
    char **devueltos = nullptr;
    size_t num_devueltos = 0, capacidad_devueltos = 0;
    size_t retenido = 0; // bytes of chunks backed by memory: with live blocks or cached
    size_t devuelto = 0; // bytes given back, in all
};
// Built on first use and never destroyed: threads may take and give back blocks, and the heaps
// of ending threads be parked, while the process runs its exit-time destructors.
template <class T> T &i_perenne() {
    alignas(T) static unsigned char memoria[sizeof(T)];
    static T *objeto = new (memoria) T();
    return *objeto;
}

i_almacen_trozos &i_almacen() {
    return i_perenne<i_almacen_trozos>();
}

// Heaps: every heap made is registered (for the exact count of bytes in use), and those of ended
// threads wait parked for the next thread.
std::mutex &i_cerrojo_montones() {
    return i_perenne<std::mutex>();
}
i_monton *g_registrados = nullptr;
i_monton *g_aparcados = nullptr;

std::atomic<int64_t> g_en_uso{0};
std::atomic<int64_t> g_pico{0};

void i_sube_pico(int64_t valor) {
    int64_t pico = g_pico.load(std::memory_order_relaxed);
    while (valor > pico && !g_pico.compare_exchange_weak(pico, valor, std::memory_order_relaxed))
        ;
}

// Under the store's lock: an empty chunk backed by memory, or null when the system has none.
char *i_trozo_nuevo_bloqueado() {
    i_almacen_trozos &a = i_almacen();
    if (i_trozo *cacheado = a.cache) {
        a.cache = cacheado->siguiente;
        --a.num_cache;
        return reinterpret_cast<char *>(cacheado);
    }
    if (a.num_devueltos > 0) {
        char *trozo = a.devueltos[a.num_devueltos - 1];
        if (!i_sistema_compromete(trozo, i_TAM_TROZO))
            return nullptr;
        --a.num_devueltos;
        a.retenido += i_TAM_TROZO;
        return trozo;
    }
    if (!a.siguiente && !a.sin_region) {
        char *region = i_sistema_reserva(i_TAM_REGION, i_TAM_TROZO);
        a.sin_region = !region;
        if (region) {
            a.siguiente = region;
            a.fin_region = region + i_TAM_REGION;
            g_base_region.store(reinterpret_cast<uintptr_t>(region), std::memory_order_release);
        }
    }
    if (a.siguiente == a.fin_region || !i_sistema_compromete(a.siguiente, i_TAM_TROZO))
        return nullptr;
    char *trozo = a.siguiente;
    a.siguiente += i_TAM_TROZO;
    a.retenido += i_TAM_TROZO;
    return trozo;
}

void i_suelta_trozo(i_trozo *trozo) {
    i_almacen_trozos &a = i_almacen();
    std::lock_guard<std::mutex> cerrojo(a.cerrojo);
    if (a.num_cache < i_MAX_TROZOS_EN_CACHE) {
        trozo->siguiente = a.cache;
        a.cache = trozo;
        ++a.num_cache;
        return;
    }
    if (a.num_devueltos == a.capacidad_devueltos) {
        const size_t capacidad = std::max<size_t>(64, 2 * a.capacidad_devueltos);
        void *mayor = std::realloc(a.devueltos, capacidad * sizeof(char *));
        if (!mayor) // kept in the cache rather than lost
            return (void)(trozo->siguiente = a.cache, a.cache = trozo, ++a.num_cache);
        a.devueltos = static_cast<char **>(mayor);
        a.capacidad_devueltos = capacidad;
    }
    char *memoria = reinterpret_cast<char *>(trozo);
    i_sistema_devuelve(memoria, i_TAM_TROZO);
    a.devueltos[a.num_devueltos++] = memoria;
    a.retenido -= i_TAM_TROZO;
    a.devuelto += i_TAM_TROZO;
}

// The heap's lists of chunks, by state and class: the owner's alone.
i_trozo **i_lista_de(i_monton *monton, const i_trozo *trozo) {
    return trozo->estado == i_TROZO_LLENO ? &monton->llenos[trozo->clase]
                                          : &monton->disponibles[trozo->clase];
}

void i_enlaza(i_monton *monton, i_trozo *trozo) {
    i_trozo **lista = i_lista_de(monton, trozo);
    trozo->anterior = nullptr;
    trozo->siguiente = *lista;
    if (*lista)
        (*lista)->anterior = trozo;
    *lista = trozo;
}

void i_desenlaza(i_monton *monton, i_trozo *trozo) {
    if (trozo->anterior)
        trozo->anterior->siguiente = trozo->siguiente;
    else
        *i_lista_de(monton, trozo) = trozo->siguiente;
    if (trozo->siguiente)
        trozo->siguiente->anterior = trozo->anterior;
}

// Takes back the blocks other threads freed of `trozo`. `quita_aviso` also clears the mark that
// the chunk is on the owner's list: only where it was just taken off that list.
void i_recoge_remotos(i_trozo *trozo, bool quita_aviso) {
    uintptr_t palabra;
    if (quita_aviso) {
        // Release too: a thread that marks the chunk again next writes its link to the owner's
        // list, which this thread has just read.
        palabra = trozo->remotos.exchange(0, std::memory_order_acq_rel);
    } else {
        palabra = trozo->remotos.load(std::memory_order_relaxed);
        do {
            if ((palabra & ~i_AVISADO) == 0)
                return;
        } while (!trozo->remotos.compare_exchange_weak(
            palabra, palabra & i_AVISADO, std::memory_order_acquire, std::memory_order_relaxed));
    }
    auto *bloque = reinterpret_cast<i_bloque *>(palabra & ~i_AVISADO);
    while (bloque) {
        i_bloque *siguiente = bloque->siguiente;
        bloque->siguiente = trozo->libres;
        trozo->libres = bloque;
        --trozo->vivos;
        bloque = siguiente;
    }
}

// As the owner (or, for a parked heap, under the heaps' lock): the chunks that other threads
// freed blocks of, their blocks taken back.
void i_atiende_avisos(i_monton *monton) {
    i_trozo *trozo = monton->avisos.exchange(nullptr, std::memory_order_seq_cst);
    while (trozo) {
        i_trozo *siguiente = trozo->siguiente_aviso;
        i_recoge_remotos(trozo, true);
        i_cambia_trozo(monton, trozo);
        trozo = siguiente;
    }
}

void *i_saca_bloque(i_monton *monton, i_trozo *trozo) {
    const size_t tam_clase = i_tam_clase(trozo->clase);
    void *bloque;
    if (i_bloque *libre = trozo->libres) {
        trozo->libres = libre->siguiente;
        bloque = libre;
    } else {
        bloque = trozo->sin_usar;
        trozo->sin_usar += tam_clase;
    }
    ++trozo->vivos;
    i_cuenta(monton, static_cast<int64_t>(tam_clase));
    return bloque;
}

bool i_tiene_bloque(const i_trozo *trozo) {
    return trozo->libres ||
           static_cast<size_t>(trozo->fin - trozo->sin_usar) >= i_tam_clase(trozo->clase);
}

// At the end of a thread: its heap keeps only chunks with live blocks, and waits for the next.
void i_aparca_monton(void *valor) {
    auto *monton = static_cast<i_monton *>(valor);
    std::lock_guard<std::mutex> cerrojo(i_cerrojo_montones());
    monton->aparcado.store(true, std::memory_order_seq_cst);
    i_atiende_avisos(monton);
    for (size_t clase = 0; clase < i_NUM_CLASES; ++clase) {
        i_trozo *trozo = monton->actual[clase];
        if (!trozo)
            continue;
        monton->actual[clase] = nullptr;
        i_recoge_remotos(trozo, false);
        trozo->estado = i_tiene_bloque(trozo) ? i_TROZO_DISPONIBLE : i_TROZO_LLENO;
        i_enlaza(monton, trozo);
        i_cambia_trozo(monton, trozo);
    }
    i_vuelca_cuenta(monton, monton->pendiente.load(std::memory_order_relaxed));
    monton->siguiente_aparcado = g_aparcados;
    g_aparcados = monton;
}

// Whatever a parked heap was sent is looked at by the thread that sent it.
void i_atiende_aparcado(i_monton *monton) {
    std::lock_guard<std::mutex> cerrojo(i_cerrojo_montones());
    if (monton->aparcado.load(std::memory_order_seq_cst))
        i_atiende_avisos(monton);
}

// The exact bytes in use over the process, under the heaps' lock.
int64_t i_en_uso_exacto() {
    int64_t total = g_en_uso.load(std::memory_order_relaxed);
    for (i_monton *m = g_registrados; m; m = m->siguiente_registrado)
        total += m->pendiente.load(std::memory_order_relaxed);
    return total;
}

} // namespace

i_monton *i_monton_para_hilo_nuevo() {
    i_hilo_prepara(i_aparca_monton);
    i_monton *monton;
    {
        std::lock_guard<std::mutex> cerrojo(i_cerrojo_montones());
        monton = g_aparcados;
        if (monton) {
            g_aparcados = monton->siguiente_aparcado;
            monton->aparcado.store(false, std::memory_order_seq_cst);
        } else {
            void *memoria = std::calloc(1, sizeof(i_monton));
            if (!memoria)
                i_sin_memoria(sizeof(i_monton));
            monton = new (memoria) i_monton{};
            monton->siguiente_registrado = g_registrados;
            g_registrados = monton;
        }
    }
    i_hilo_fija(monton);
    return monton;
}

void *i_toma_lento(i_monton *monton, size_t clase) {
    if (i_trozo *actual = monton->actual[clase]) {
        i_recoge_remotos(actual, false);
        if (actual->libres)
            return i_saca_bloque(monton, actual);
        actual->estado = i_TROZO_LLENO;
        i_enlaza(monton, actual);
        monton->actual[clase] = nullptr;
    }
    i_atiende_avisos(monton);
    i_trozo *trozo = monton->disponibles[clase];
    if (trozo) {
        i_desenlaza(monton, trozo);
    } else {
        char *memoria;
        {
            std::lock_guard<std::mutex> cerrojo(i_almacen().cerrojo);
            memoria = i_trozo_nuevo_bloqueado();
        }
        if (!memoria)
            return nullptr;
        trozo = reinterpret_cast<i_trozo *>(memoria);
        trozo->libres = nullptr;
        trozo->sin_usar = memoria + i_CABECERA_TROZO;
        trozo->fin = memoria + i_TAM_TROZO;
        trozo->vivos = 0;
        trozo->clase = static_cast<uint16_t>(clase);
        trozo->remotos.store(0, std::memory_order_relaxed);
        trozo->siguiente_aviso = nullptr;
        trozo->monton.store(monton, std::memory_order_relaxed);
    }
    trozo->estado = i_TROZO_ACTUAL;
    monton->actual[clase] = trozo;
    return i_saca_bloque(monton, trozo);
}

// A chunk after its count of live blocks fell or blocks came back to it: an empty one goes to
// the store, unless a thread that freed a block of it may still be putting it on the owner's
// list, or is carved again if it is the current one of its class; a full one that has free
// blocks again becomes available. (No remote free is pending in a chunk without live blocks.)
void i_cambia_trozo(i_monton *monton, i_trozo *trozo) {
    if (trozo->estado == i_TROZO_ACTUAL) {
        // Emptied, the current chunk is carved again from its start: blocks handed out in order
        // of address, without reading the cold links of the blocks freed in it.
        if (trozo->vivos == 0) {
            trozo->libres = nullptr;
            trozo->sin_usar = reinterpret_cast<char *>(trozo) + i_CABECERA_TROZO;
        }
        return;
    }
    if (trozo->vivos == 0 && trozo->remotos.load(std::memory_order_acquire) == 0) {
        i_desenlaza(monton, trozo);
        i_suelta_trozo(trozo);
        return;
    }
    if (trozo->estado == i_TROZO_LLENO && trozo->libres) {
        i_desenlaza(monton, trozo);
        trozo->estado = i_TROZO_DISPONIBLE;
        i_enlaza(monton, trozo);
    }
}

// The block goes onto the chunk's list of remote frees; the thread that marks the chunk puts it
// on its owner's list, and looks at the owner itself when the owner's thread has ended.
void i_devuelve_remoto(i_trozo *trozo, i_bloque *bloque) {
    uintptr_t palabra = trozo->remotos.load(std::memory_order_relaxed);
    do {
        bloque->siguiente = reinterpret_cast<i_bloque *>(palabra & ~i_AVISADO);
    } while (!trozo->remotos.compare_exchange_weak(
        palabra, reinterpret_cast<uintptr_t>(bloque) | i_AVISADO, std::memory_order_acq_rel,
        std::memory_order_relaxed));
    if (palabra & i_AVISADO)
        return;
    i_monton *dueno = trozo->monton.load(std::memory_order_relaxed);
    i_trozo *cabeza = dueno->avisos.load(std::memory_order_relaxed);
    do {
        trozo->siguiente_aviso = cabeza;
    } while (!dueno->avisos.compare_exchange_weak(cabeza, trozo, std::memory_order_seq_cst,
                                                  std::memory_order_relaxed));
    if (dueno->aparcado.load(std::memory_order_seq_cst))
        i_atiende_aparcado(dueno);
}

void i_vuelca_cuenta(i_monton *monton, int64_t pendiente) {
    monton->pendiente.store(0, std::memory_order_relaxed);
    i_sube_pico(g_en_uso.fetch_add(pendiente, std::memory_order_relaxed) + pendiente);
}

void marlspy_nousar_uso_bloques_pequenos(size_t *en_uso, size_t *pico) {
    marlspy_estado_bloques_pequenos_t estado;
    marlspy_nousar_estado_bloques_pequenos(&estado);
    if (en_uso)
        *en_uso = estado.en_uso;
    if (pico)
        *pico = estado.pico;
}

void marlspy_nousar_reinicia_pico_bloques_pequenos(void) {
    std::lock_guard<std::mutex> cerrojo(i_cerrojo_montones());
    g_pico.store(i_en_uso_exacto(), std::memory_order_relaxed);
}

void marlspy_nousar_estado_bloques_pequenos(marlspy_estado_bloques_pequenos_t *estado) {
    if (!estado)
        return;
    int64_t en_uso;
    {
        std::lock_guard<std::mutex> cerrojo(i_cerrojo_montones());
        en_uso = i_en_uso_exacto();
        i_sube_pico(en_uso);
    }
    estado->en_uso = static_cast<size_t>(std::max<int64_t>(en_uso, 0));
    estado->pico = static_cast<size_t>(std::max<int64_t>(g_pico.load(), 0));
    std::lock_guard<std::mutex> cerrojo(i_almacen().cerrojo);
    const i_almacen_trozos &a = i_almacen();
    estado->en_cache = a.num_cache * i_TAM_TROZO;
    estado->retenido = a.retenido;
    estado->devuelto = a.devuelto;
}
