// Decimal digits two at a time, for the writers of numbers on hot paths: a table of "00" to
// "99" and an integer writer small enough to be inlined where it is used.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

// "00" to "99", two bytes each.
inline constexpr std::array<char, 200> i_PARES_DECIMALES = [] {
    std::array<char, 200> pares{};
    for (int i = 0; i < 100; ++i) {
        pares[2 * i] = static_cast<char>('0' + i / 10);
        pares[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pares;
}();

// Four digits, leading zeros included.
inline void i_cuatro_digitos(char *d, uint32_t n) {
    std::memcpy(d, &i_PARES_DECIMALES[2 * (n / 100)], 2);
    std::memcpy(d + 2, &i_PARES_DECIMALES[2 * (n % 100)], 2);
}

// `n` (below 10^8) as exactly eight digits, in two independent halves.
inline void i_ocho_digitos(char *d, uint32_t n) {
    i_cuatro_digitos(d, n / 10000);
    i_cuatro_digitos(d + 4, n % 10000);
}

// `n` below 10^4 without leading zeros; the end of what was written.
inline char *i_hasta_cuatro_digitos(char *d, uint32_t n) {
    if (n < 10) {
        *d = static_cast<char>('0' + n);
        return d + 1;
    }
    if (n < 100) {
        std::memcpy(d, &i_PARES_DECIMALES[2 * n], 2);
        return d + 2;
    }
    if (n < 1000) {
        *d = static_cast<char>('0' + n / 100);
        std::memcpy(d + 1, &i_PARES_DECIMALES[2 * (n % 100)], 2);
        return d + 3;
    }
    i_cuatro_digitos(d, n);
    return d + 4;
}

// Writes `valor` in decimal, with a minus sign when negative, at `texto` (room for 11 bytes)
// and returns the end of what was written. The leading part of up to four digits is written
// alone; the rest in groups of four, whose pairs do not wait on each other.
inline char *i_escribe_decimal(char *texto, int32_t valor) {
    uint32_t u = static_cast<uint32_t>(valor);
    if (valor < 0) {
        *texto++ = '-';
        u = 0u - u;
    }
    if (u < 10000)
        return i_hasta_cuatro_digitos(texto, u);
    if (u < 100000000) {
        texto = i_hasta_cuatro_digitos(texto, u / 10000);
        i_cuatro_digitos(texto, u % 10000);
        return texto + 4;
    }
    texto = i_hasta_cuatro_digitos(texto, u / 100000000); // at most 42
    i_ocho_digitos(texto, u % 100000000);
    return texto + 8;
}
