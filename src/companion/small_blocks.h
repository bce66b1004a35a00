// tqbase memory component: the pool of small blocks. Blocks of up to 4 KiB (nodes, members,
// arrays of up to some five hundred elements, texts of a paragraph) come from chunks of 64 KiB,
// each of one size class and owned by one thread's heap, and are linked through themselves when
// free: taking and giving back a block on the owning thread is a few instructions.
//
// A block freed on another thread goes onto its chunk's list of remote frees, and the chunk onto
// its owner's list of chunks to look at: the owner takes those blocks back the next time it runs
// short, so memory never follows the thread that frees it. The heap of a thread that ends is
// parked with its chunks and taken over by the next thread that needs one. A chunk that holds no
// live block goes back to a small cache, and beyond it its memory goes back to the system.
//
// Whether a block is the pool's is told by its address, so a block of either origin can be freed
// or resized from any thread.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "thread_slot.h"

// The sizes the pool serves: every multiple of 8 bytes up to 256 (8 is the alignment every record
// of the code base needs, so a record wastes at most 7 bytes), then four sizes between powers of
// two up to 4 KiB (a block wastes at most a fifth), so that the system allocator sees only the
// rare large arrays and texts, whose memory it can give back.
inline constexpr size_t i_MAX_BLOQUE_FINO = 256;
inline constexpr size_t i_PASO_BLOQUE_PEQUENO = 8;
inline constexpr size_t i_MAX_BLOQUE_PEQUENO = 4096;
inline constexpr size_t i_NUM_CLASES_FINAS = i_MAX_BLOQUE_FINO / i_PASO_BLOQUE_PEQUENO;
inline constexpr size_t i_NUM_CLASES = i_NUM_CLASES_FINAS + 4 * 4;

inline constexpr std::array<uint16_t, i_NUM_CLASES> i_TAM_CLASES = [] {
    std::array<uint16_t, i_NUM_CLASES> tams{};
    for (size_t clase = 0; clase < i_NUM_CLASES; ++clase) {
        const size_t gruesa = clase - i_NUM_CLASES_FINAS;
        tams[clase] = static_cast<uint16_t>(clase < i_NUM_CLASES_FINAS
                                                ? (clase + 1) * i_PASO_BLOQUE_PEQUENO
                                                : (5 + gruesa % 4) << (gruesa / 4 + 6));
    }
    return tams;
}();

// The class of a block of `tam` bytes (1 to i_MAX_BLOQUE_PEQUENO; 0 counts as 1).
inline size_t i_clase_de(size_t tam) {
    if (tam <= i_MAX_BLOQUE_FINO)
        return tam == 0 ? 0 : (tam - 1) / i_PASO_BLOQUE_PEQUENO;
    const unsigned potencia = static_cast<unsigned>(std::bit_width(tam - 1)) - 1; // 8 to 11
    return i_NUM_CLASES_FINAS + (potencia - 8) * 4 + (((tam - 1) >> (potencia - 2)) & 3);
}
inline constexpr size_t i_BITS_TROZO = 16; // chunks of 64 KiB, aligned to their size
inline constexpr size_t i_TAM_TROZO = size_t{1} << i_BITS_TROZO;
// The chunk's record comes first; its blocks follow.
inline constexpr size_t i_CABECERA_TROZO = 128;

struct i_bloque {
    i_bloque *siguiente;
};

struct i_monton;

// Where a chunk stands in its heap.
enum i_estado_trozo : uint8_t {
    i_TROZO_ACTUAL,     // the one its class takes blocks from
    i_TROZO_DISPONIBLE, // has free blocks, in the heap's list of its class
    i_TROZO_LLENO,      // had none when last looked at, in the heap's list of full chunks
};

// The word of remote frees: the head of the list, with the low bit set while the chunk is on its
// owner's list of chunks to look at (or the thread that set the bit is about to put it there).
inline constexpr uintptr_t i_AVISADO = 1;

struct i_trozo {
    std::atomic<i_monton *> monton; // the owner; heaps are never freed
    i_bloque *libres;               // the owner's free blocks
    char *sin_usar;                 // blocks not yet handed out run from here to `fin`
    char *fin;
    uint32_t vivos; // blocks out, as the owner knows it: remote frees count once taken back
    uint16_t clase;
    i_estado_trozo estado;
    std::atomic<uintptr_t> remotos;
    i_trozo *siguiente, *anterior; // in the heap's list of its state and class
    i_trozo *siguiente_aviso;      // in the owner's list of chunks to look at
};
static_assert(sizeof(i_trozo) <= i_CABECERA_TROZO);

struct i_monton {
    i_trozo *actual[i_NUM_CLASES];
    i_trozo *disponibles[i_NUM_CLASES];
    i_trozo *llenos[i_NUM_CLASES];
    std::atomic<i_trozo *> avisos; // chunks that other threads freed blocks of
    // Bytes taken less bytes given back on this heap's thread, not yet added to the process's
    // count; written by the owner only.
    std::atomic<int64_t> pendiente;
    std::atomic<bool> aparcado;
    i_monton *siguiente_aparcado;
    i_monton *siguiente_registrado;
};

// Most blocks are of the fine sizes, whose size is their class's multiple of 8.
inline size_t i_tam_clase(size_t clase) {
    return clase < i_NUM_CLASES_FINAS ? (clase + 1) * i_PASO_BLOQUE_PEQUENO : i_TAM_CLASES[clase];
}

inline i_trozo *i_trozo_de(const void *bloque) {
    return reinterpret_cast<i_trozo *>(reinterpret_cast<uintptr_t>(bloque) &
                                       ~(uintptr_t{i_TAM_TROZO} - 1));
}

// The chunks are carved from one range of address space, reserved at the first chunk (4 GiB,
// backed by memory only chunk by chunk): a block is the pool's when its address lies there, one
// subtraction and one comparison. Until then the base lies at the top of the address space,
// where no block can be. Beyond 4 GiB of chunks, blocks come from the system allocator.
inline constexpr size_t i_TAM_REGION = size_t{1} << 32;
extern std::atomic<uintptr_t> g_base_region;

inline bool i_es_bloque_pequeno(const void *bloque) {
    return reinterpret_cast<uintptr_t>(bloque) - g_base_region.load(std::memory_order_acquire) <
           i_TAM_REGION;
}

// The usable size of a pool block.
inline size_t i_tam_bloque_pequeno(const void *bloque) {
    return i_tam_clase(i_trozo_de(bloque)->clase);
}

// The rare ways, out of line.
i_monton *i_monton_para_hilo_nuevo();
void *i_toma_lento(i_monton *monton, size_t clase);
void i_cambia_trozo(i_monton *monton, i_trozo *trozo);
void i_devuelve_remoto(i_trozo *trozo, i_bloque *bloque);
// Ends the process with a message: memory is exhausted.
[[noreturn]] void i_sin_memoria(size_t tam);
void i_vuelca_cuenta(i_monton *monton, int64_t pendiente);

// The process's count moves in steps of at most this many bytes a thread, so that no allocation
// writes memory that other threads write.
inline constexpr int64_t i_LOTE_CUENTA = 16 * 1024;

inline i_monton *i_monton_del_hilo() {
    if (void *monton = i_hilo_lee()) [[likely]]
        return static_cast<i_monton *>(monton);
    return i_monton_para_hilo_nuevo();
}

[[gnu::always_inline]] inline void i_cuenta(i_monton *monton, int64_t bytes) {
    const int64_t pendiente = monton->pendiente.load(std::memory_order_relaxed) + bytes;
    if (static_cast<uint64_t>(pendiente + i_LOTE_CUENTA) > uint64_t{2 * i_LOTE_CUENTA})
        i_vuelca_cuenta(monton, pendiente);
    else
        monton->pendiente.store(pendiente, std::memory_order_relaxed);
}

// A block of `tam` bytes (1 to i_MAX_BLOQUE_PEQUENO), or null when the pool cannot serve.
// Inline, with the free list and the chunk being carved, because every record of every tree
// is taken and given back here.
[[gnu::always_inline]] inline void *i_toma_bloque_pequeno(size_t tam) {
#if defined(TQ_SIN_BLOQUES_PEQUENOS)
    (void)tam;
    return nullptr;
#else
    const size_t clase = i_clase_de(tam);
    const size_t tam_clase = i_tam_clase(clase);
    i_monton *monton = i_monton_del_hilo();
    if (i_trozo *trozo = monton->actual[clase]) [[likely]] {
        if (i_bloque *bloque = trozo->libres) {
            trozo->libres = bloque->siguiente;
            ++trozo->vivos;
            i_cuenta(monton, static_cast<int64_t>(tam_clase));
            return bloque;
        }
        // A chunk need not hold a whole number of blocks (24 does not divide 64 KiB).
        if (static_cast<size_t>(trozo->fin - trozo->sin_usar) >= tam_clase) {
            void *bloque = trozo->sin_usar;
            trozo->sin_usar += tam_clase;
            ++trozo->vivos;
            i_cuenta(monton, static_cast<int64_t>(tam_clase));
            return bloque;
        }
    }
    return i_toma_lento(monton, clase);
#endif
}

// Gives a pool block back to `monton`, the calling thread's heap, from any thread, and returns
// its size, which the caller counts.
[[gnu::always_inline]] inline size_t i_devuelve_sin_contar(i_monton *monton, void *bloque) {
    i_trozo *trozo = i_trozo_de(bloque);
    const size_t tam = i_tam_clase(trozo->clase);
    auto *libre = static_cast<i_bloque *>(bloque);
    // Only this thread makes its own heap a chunk's owner, so a stale view cannot match.
    if (trozo->monton.load(std::memory_order_relaxed) != monton) {
        i_devuelve_remoto(trozo, libre);
        return tam;
    }
    libre->siguiente = trozo->libres;
    trozo->libres = libre;
    if (--trozo->vivos == 0 || trozo->estado == i_TROZO_LLENO) [[unlikely]]
        i_cambia_trozo(monton, trozo);
    return tam;
}

// Gives a pool block back, from any thread.
[[gnu::always_inline]] inline void i_devuelve_bloque_pequeno(void *bloque) {
    i_monton *monton = i_monton_del_hilo();
    i_cuenta(monton, -static_cast<int64_t>(i_devuelve_sin_contar(monton, bloque)));
}
