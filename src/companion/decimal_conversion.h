// tqbase: a decimal significand and exponent to the nearest double, without big arithmetic,
// for the numbers of JSON text. Inline, so that the lexer and the reader convert as they scan.
//
// Two ways, each exact where it answers: when the significand and the power of ten are both
// exact doubles, one multiplication or division rounds correctly; otherwise the significand is
// multiplied by a 128-bit approximation of the power of five and the rounding is read off the
// product. Where the product cannot tell (a tie it cannot prove, a result below the normal
// range or beyond the largest double) the caller converts the text the slow way.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

struct i_potencia_cinco {
    uint64_t alta, baja;
};

inline constexpr int i_MENOR_EXPONENTE_DECIMAL = -342;
inline constexpr int i_MAYOR_EXPONENTE_DECIMAL = 308;
inline constexpr i_potencia_cinco i_POTENCIAS_DE_CINCO[] = {
#include "powers_of_five.inc"
};
static_assert(sizeof i_POTENCIAS_DE_CINCO / sizeof i_POTENCIAS_DE_CINCO[0] ==
              i_MAYOR_EXPONENTE_DECIMAL - i_MENOR_EXPONENTE_DECIMAL + 1);

inline constexpr double i_POTENCIAS_EXACTAS_DE_DIEZ[] = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The value of `significando` x 10^`exponente` rounded to nearest, ties to even, in `*valor`;
// false where the caller must convert the text itself. A zero significand is 0.0.
[[gnu::always_inline]] inline bool i_decimal_a_double(uint64_t significando, int64_t exponente,
                                                      double *valor) {
    if (significando == 0) {
        *valor = 0.0;
        return true;
    }
    // Both operands exact doubles: the one operation rounds correctly.
    if (significando <= (uint64_t{1} << 53) && exponente >= -22 && exponente <= 22) {
        const auto d = static_cast<double>(significando);
        *valor = exponente < 0 ? d / i_POTENCIAS_EXACTAS_DE_DIEZ[-exponente]
                               : d * i_POTENCIAS_EXACTAS_DE_DIEZ[exponente];
        return true;
    }
    if (exponente < i_MENOR_EXPONENTE_DECIMAL || exponente > i_MAYOR_EXPONENTE_DECIMAL)
        return false;
    const int q = static_cast<int>(exponente);
    const i_potencia_cinco &potencia = i_POTENCIAS_DE_CINCO[q - i_MENOR_EXPONENTE_DECIMAL];
    const int ceros = std::countl_zero(significando);
    const uint64_t w = significando << ceros;

    // The leading 128 bits of w x 5^q. The second product matters only when the 55 bits that
    // make the mantissa and its rounding bits could still change.
    unsigned __int128 producto = static_cast<unsigned __int128>(w) * potencia.alta;
    auto alta = static_cast<uint64_t>(producto >> 64);
    auto baja = static_cast<uint64_t>(producto);
    constexpr uint64_t i_MASCARA_PRECISION = ~uint64_t{0} >> 55;
    if ((alta & i_MASCARA_PRECISION) == i_MASCARA_PRECISION) {
        const unsigned __int128 segundo = static_cast<unsigned __int128>(w) * potencia.baja;
        const auto acarreo = static_cast<uint64_t>(segundo >> 64);
        baja += acarreo;
        if (baja < acarreo)
            ++alta;
    }
    // All ones: the truncated tail of the power could still carry into the mantissa.
    if (baja == ~uint64_t{0} && (q < -27 || q > 55))
        return false;
    const unsigned bit_alto = static_cast<unsigned>(alta >> 63);
    uint64_t mantisa = alta >> (bit_alto + 64 - 52 - 3);
    // The binary exponent, biased: floor(q log2 10) + 63 from 217706 / 2^16 ~ log2 10.
    int32_t potencia2 =
        (((152170 + 65536) * q) >> 16) + 63 + static_cast<int32_t>(bit_alto) - ceros + 1023;
    if (potencia2 <= 0) // below the normal range
        return false;
    // Exactly halfway between two doubles only where the product is exact, which it is for
    // these exponents; then ties go to even.
    if (baja <= 1 && q >= -4 && q <= 23 && (mantisa & 3) == 1 &&
        (mantisa << (bit_alto + 64 - 52 - 3)) == alta)
        mantisa &= ~uint64_t{1};
    mantisa += mantisa & 1;
    mantisa >>= 1;
    if (mantisa >= uint64_t{2} << 52) { // rounding carried into a new binary digit
        mantisa = uint64_t{1} << 52;
        ++potencia2;
    }
    mantisa &= ~(uint64_t{1} << 52);
    if (potencia2 >= 0x7FF) // beyond the largest double
        return false;
    const uint64_t bits = mantisa | static_cast<uint64_t>(potencia2) << 52;
    std::memcpy(valor, &bits, sizeof bits);
    return true;
}
