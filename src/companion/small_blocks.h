// tqbase memory component: the pool of small blocks. Blocks of up to 256 bytes (nodes, members,
// array records of up to some thirty elements, texts of a line) come from chunks of one size class
// each, carved from one reserved address range, and go back to a per-thread free list: taking and
// giving back a block is a few instructions, whatever the pattern of use. Whether a block is the
// pool's is told by its address alone, so a block of either origin can be freed or resized.
#pragma once

#include <cstddef>

// The largest block the pool serves, and the step between its sizes: 8 bytes, the alignment
// every record of the code base needs, so that a record wastes at most 7 bytes.
inline constexpr size_t i_MAX_BLOQUE_PEQUENO = 256;
inline constexpr size_t i_PASO_BLOQUE_PEQUENO = 8;

// A block of `tam` bytes (1 to i_MAX_BLOQUE_PEQUENO), or null when the pool cannot serve.
void *i_toma_bloque_pequeno(size_t tam);
// True when `bloque` is the pool's.
bool i_es_bloque_pequeno(const void *bloque);
// The usable size of a pool block.
size_t i_tam_bloque_pequeno(const void *bloque);
// Gives a pool block back.
void i_devuelve_bloque_pequeno(void *bloque);
