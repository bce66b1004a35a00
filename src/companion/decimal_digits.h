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

// Writes `valor` in decimal, with a minus sign when negative, at `texto` (room for 11 bytes)
// and returns the end of what was written.
inline char *i_escribe_decimal(char *texto, int32_t valor) {
    uint32_t u = static_cast<uint32_t>(valor);
    if (valor < 0) {
        *texto++ = '-';
        u = 0u - u;
    }
    const int digitos = 1 + (u >= 10) + (u >= 100) + (u >= 1000) + (u >= 10000) + (u >= 100000) +
                        (u >= 1000000) + (u >= 10000000) + (u >= 100000000) + (u >= 1000000000);
    char *const fin = texto + digitos;
    char *p = fin;
    while (u >= 100) {
        p -= 2;
        std::memcpy(p, &i_PARES_DECIMALES[2 * (u % 100)], 2);
        u /= 100;
    }
    if (u >= 10)
        std::memcpy(p - 2, &i_PARES_DECIMALES[2 * u], 2);
    else
        p[-1] = static_cast<char>('0' + u);
    return fin;
}
