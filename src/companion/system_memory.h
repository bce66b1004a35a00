// What the memory component asks of the system, each platform's way in one place: address space
// reserved in large pieces, and pages made usable and given back.
#pragma once

#include <cstddef>

// `tam` bytes of address space aligned to `alineacion` (a power of two, at most `tam`), not yet
// backed by memory; null when the system refuses.
char *i_sistema_reserva(size_t tam, size_t alineacion);
// Makes reserved pages usable; false when the system has no memory for them.
bool i_sistema_compromete(char *paginas, size_t tam);
// Gives the memory of pages back to the system; the range stays reserved for reuse.
void i_sistema_devuelve(char *paginas, size_t tam);
