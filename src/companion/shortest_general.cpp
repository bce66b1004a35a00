// "%.*G" from the shortest digits. For a normal double and a precision of at most 15 digits,
// the decimal grid of the precision is coarser than the double's spacing, so the shortest
// digits S that read back as the value v round to the same digits as v itself: if S has no
// more digits than the precision, S is on the grid and v is within half a step of it; if it
// has more, no midpoint of the grid lies between S and v (it would be a shorter text that reads
// back as v), so only S standing exactly on a midpoint leaves the rounding open. Shortest
// digits come much faster than exactly rounded ones.
#include "shortest_general.h"

#include "decimal_digits.h"

#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr int i_PRECISION_MAXIMA = 15;

// Digits and decimal exponent: the value is 0.d1d2d3... x 10^(exponente + 1).
struct i_digitos {
    char d[32]; // room for i_formatea's fixed-size reads
    int num;
    int exponente;
};

bool i_lee_cientifico(const char *p, const char *fin, i_digitos &digitos) {
    digitos.num = 0;
    for (; p != fin && *p != 'e'; ++p)
        if (*p != '.')
            digitos.d[digitos.num++] = *p;
    if (p == fin)
        return false;
    const std::from_chars_result leido =
        std::from_chars(p + 1 + (p[1] == '+'), fin, digitos.exponente);
    return leido.ec == std::errc{};
}

// Rounds to `precision` digits, half away from zero; false on an exact tie.
bool i_redondea(i_digitos &digitos, int precision) {
    if (digitos.num <= precision)
        return true;
    const char primero = digitos.d[precision];
    bool resto = false;
    for (int i = precision + 1; i < digitos.num; ++i)
        resto = resto || digitos.d[i] != '0';
    if (primero == '5' && !resto)
        return false;
    digitos.num = precision;
    if (primero < '5')
        return true;
    int i = precision - 1;
    while (i >= 0 && digitos.d[i] == '9')
        digitos.d[i--] = '0';
    if (i >= 0) {
        ++digitos.d[i];
    } else { // 99...9 became 100...0
        digitos.d[0] = '1';
        ++digitos.exponente;
    }
    return true;
}

// Lays out `num` significant digits (the last not a zero, unless it is the only one) whose first
// stands for 10^exponente, as "%G" does at `precision`. Every piece goes as one move of fixed
// size, so up to 32 bytes are written at `texto` and up to 32 read at `d`, whatever lies past
// the digits.
size_t i_formatea(const char *d, int num, int exponente, int precision, bool negativo,
                  char *texto) {
    char *p = texto;
    *p = '-';
    p += negativo;
    const int x = exponente;
    if (x < -4 || x >= precision) {
        p[0] = d[0];
        p[1] = '.';
        std::memcpy(p + 2, d + 1, 16);
        p += num > 1 ? num + 1 : 1;
        *p++ = 'E';
        *p++ = x < 0 ? '-' : '+';
        const int magnitud = x < 0 ? -x : x;
        if (magnitud < 10)
            *p++ = '0';
        p = std::to_chars(p, p + 4, magnitud).ptr;
    } else if (x >= 0) {
        const int enteros = x + 1;
        std::memcpy(p, d, 16);
        if (num <= enteros) {
            std::memset(p + num, '0', 16);
            p += enteros;
        } else {
            p[enteros] = '.';
            std::memcpy(p + enteros + 1, d + enteros, 16);
            p += num + 1;
        }
    } else {
        std::memcpy(p, "0.000", 5);
        p += 1 - x; // "0." and -x - 1 zeros
        std::memcpy(p, d, 16);
        p += num;
    }
    return static_cast<size_t>(p - texto);
}

// Drops the zeros at the end of the digits, keeping the first digit.
int i_sin_ceros_finales(const char *d, int num) {
    while (num > 1 && d[num - 1] == '0')
        --num;
    return num;
}

size_t i_formatea(const i_digitos &digitos, int precision, bool negativo, char *texto) {
    return i_formatea(digitos.d, i_sin_ceros_finales(digitos.d, digitos.num), digitos.exponente,
                      precision, negativo, texto);
}

// The count of '0' bytes at the end of the 8 bytes at `d`: the last byte is the word's highest
// on a little-endian machine, the first on a big-endian one.
int i_ceros_al_final_de_ocho(const char *d) {
    uint64_t ocho;
    std::memcpy(&ocho, d, sizeof ocho);
    ocho ^= 0x3030303030303030u;
    if constexpr (std::endian::native == std::endian::little)
        return ocho ? std::countl_zero(ocho) / 8 : 8;
    else
        return ocho ? std::countr_zero(ocho) / 8 : 8;
}

constexpr double i_POTENCIAS_10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int i_MAX_POTENCIA_EXACTA = 22;

// |valor| scaled by 10^escala, which must be exact: a correctly rounded product or quotient of
// two exact doubles.
double i_escala(double magnitud, int escala) {
    return escala >= 0 ? magnitud * i_POTENCIAS_10[escala] : magnitud / i_POTENCIAS_10[-escala];
}

} // namespace

// The digits by scaling: |v| x 10^k, with k chosen so that the precision's digits stand before
// the point, is one correctly rounded operation on exact doubles, so rounding it gives the digits
// that rounding the exact value gives unless it lands on a midpoint; there the operation's exact
// error decides, and only an exact tie is left to the caller. No digit generation is needed.
size_t i_texto_G_por_escala(double valor, int precision, char *texto, size_t tam) {
    if (precision > i_PRECISION_MAXIMA || tam < 32 || !std::isnormal(valor))
        return 0;
    if (precision == 0)
        precision = 1;
    const double magnitud = std::fabs(valor);
    const double menor = i_POTENCIAS_10[precision - 1], mayor = i_POTENCIAS_10[precision];
    // floor(log10 |v|) from the binary exponent, possibly one too small; the loop corrects it.
    uint64_t bits;
    std::memcpy(&bits, &magnitud, sizeof bits);
    const int exponente_2 = static_cast<int>(bits >> 52) - 1023;
    int exponente = (exponente_2 * 78913) >> 18; // 78913 / 2^18 is log10(2) to 6 digits
    double escalado = 0.0;
    int escala = 0;
    for (int intento = 0; intento < 2; ++intento) {
        escala = precision - 1 - exponente;
        if (escala > i_MAX_POTENCIA_EXACTA || escala < -i_MAX_POTENCIA_EXACTA)
            return 0;
        escalado = i_escala(magnitud, escala);
        if (escalado < menor)
            --exponente;
        else if (escalado >= mayor)
            ++exponente;
        else
            break;
    }
    if (escalado < menor || escalado >= mayor)
        return 0;
    const double entero = std::floor(escalado);
    double desde_la_mitad = (escalado - entero) - 0.5; // both steps exact
    if (desde_la_mitad == 0.0) {
        // Rounding is monotonic and the midpoint is a double, so the scaling may land on the
        // midpoint but never cross it. There the operation's exact error, which a fused
        // multiply-add gives, tells the side: one rounding keeps a sign, and gives zero only
        // for an exact zero.
        const double potencia = i_POTENCIAS_10[escala >= 0 ? escala : -escala];
        desde_la_mitad = escala >= 0 ? std::fma(magnitud, potencia, -escalado)
                                     : std::fma(-escalado, potencia, magnitud);
        if (desde_la_mitad == 0.0) // an exact tie
            return 0;
    }
    auto digitos_enteros = static_cast<uint64_t>(entero) + (desde_la_mitad > 0.0 ? 1 : 0);
    if (static_cast<double>(digitos_enteros) >= mayor) { // 99...9 rounded up to 100...0
        digitos_enteros = static_cast<uint64_t>(menor);
        ++exponente;
    }
    // Sixteen digits with leading zeros, of which the last `precision` are the value's, and
    // room for i_formatea's fixed-size reads.
    char digitos[48] = {};
    i_ocho_digitos(digitos, static_cast<uint32_t>(digitos_enteros / 100000000u));
    i_ocho_digitos(digitos + 8, static_cast<uint32_t>(digitos_enteros % 100000000u));
    int ceros = i_ceros_al_final_de_ocho(digitos + 8);
    if (ceros == 8)
        ceros += i_ceros_al_final_de_ocho(digitos);
    const int num = precision - (ceros < precision ? ceros : precision - 1);
    return i_formatea(digitos + 16 - precision, num, exponente, precision, valor < 0, texto);
}

size_t i_texto_G_desde_el_mas_corto(double valor, int precision, char *texto, size_t tam) {
    if (precision > i_PRECISION_MAXIMA || tam < 32 || !std::isnormal(valor))
        return 0;
    if (precision == 0) // as printf: a precision of 0 means 1
        precision = 1;
    const double magnitud = std::fabs(valor);
    char cientifico[32];
    const std::to_chars_result fin = std::to_chars(cientifico, cientifico + sizeof cientifico,
                                                   magnitud, std::chars_format::scientific);
    i_digitos digitos{};
    if (fin.ec != std::errc{} || !i_lee_cientifico(cientifico, fin.ptr, digitos) ||
        !i_redondea(digitos, precision))
        return 0;
    return i_formatea(digitos, precision, valor < 0, texto);
}
