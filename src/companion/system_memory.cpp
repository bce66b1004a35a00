#include "system_memory.h"

#include <cstdint>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

char *i_sistema_reserva(size_t tam, size_t alineacion) {
#if defined(_WIN32)
    // Reservations start at the allocation granularity (64 KiB), which is all the pool asks.
    (void)alineacion;
    return static_cast<char *>(VirtualAlloc(nullptr, tam, MEM_RESERVE, PAGE_NOACCESS));
#else
    // Reserved with room to spare, then cut to the alignment.
    const size_t con_margen = tam + alineacion;
    void *reservado = mmap(nullptr, con_margen, PROT_READ | PROT_WRITE,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reservado == MAP_FAILED)
        return nullptr;
    char *inicio = static_cast<char *>(reservado);
    char *alineado = reinterpret_cast<char *>(
        (reinterpret_cast<uintptr_t>(inicio) + alineacion - 1) & ~(uintptr_t{alineacion} - 1));
    if (alineado > inicio)
        munmap(inicio, static_cast<size_t>(alineado - inicio));
    const size_t cola = static_cast<size_t>(inicio + con_margen - (alineado + tam));
    if (cola > 0)
        munmap(alineado + tam, cola);
    return alineado;
#endif
}

bool i_sistema_compromete(char *paginas, size_t tam) {
#if defined(_WIN32)
    return VirtualAlloc(paginas, tam, MEM_COMMIT, PAGE_READWRITE) != nullptr;
#else
    // Pages are backed as they are first touched.
    (void)paginas, (void)tam;
    return true;
#endif
}

void i_sistema_devuelve(char *paginas, size_t tam) {
#if defined(_WIN32)
    VirtualFree(paginas, tam, MEM_DECOMMIT);
#else
    madvise(paginas, tam, MADV_DONTNEED);
#endif
}
