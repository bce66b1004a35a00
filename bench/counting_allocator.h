// Heap use of the benchmark process as its own malloc sees it (counting_allocator.cpp), and of
// tqjson2's pool of small blocks when the library has one, for measuring what a read tree holds.
#pragma once

#include <cstddef>

namespace contador {

// Bytes in use now and the highest figure since the last reset.
struct Uso {
    size_t actual = 0;
    size_t pico = 0;
    size_t de_pool = 0; // the part of `actual` that tqjson2's pool serves
};

// Starts counting with the peak reset to the current figure, and returns that figure.
Uso empieza();
// The figures now, counting still on.
Uso lee();
// Stops counting and returns the figures.
Uso termina();
// Whether tqjson2's pool figures are added in.
bool cuenta_pool();

} // namespace contador
