// tqbase string component: "%.*G" from a double's shortest round-trip digits.
#pragma once

#include <cstddef>

// Writes what "%.*G" writes for `valor` at `precision` (1 to 15) into `texto` (`tam` bytes,
// at least 32), from its shortest round-trip digits, and returns the count; 0 when those
// digits cannot decide the rounding (a tie, a subnormal, zero, an infinity or a NaN), and the
// caller formats the exact value instead.
size_t i_texto_G_desde_el_mas_corto(double valor, int precision, char *texto, size_t tam);

// The same by scaling the value by a power of ten, which needs no digit generation; answers
// for normal doubles from about 1e-8 to 1e37, except one exactly on a rounding midpoint.
size_t i_texto_G_por_escala(double valor, int precision, char *texto, size_t tam);
