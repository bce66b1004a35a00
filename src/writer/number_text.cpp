// The JSON text of a double: integral values in the range of a 32-bit integer as "<n>.0",
// others by "%.*G" with 15 significant digits, and always with a point or an exponent so that
// the text reads back as a double. The non-finite values have no JSON number: an infinity is
// written as a number too large for a double, which reads back as the same infinity, and a NaN
// as null, which JSON writers conventionally put in its place and which reads back as a null
// node.
#include <cmath>

#include "companion/decimal_digits.h"
#include "writer.h"

namespace {

constexpr double i_TOLERANCIA = 1e-15;
constexpr int i_PRECISION = 15;

// The largest finite double is also the fill value of nodes of other kinds; 15 digits would
// round it past the largest double, so it is spelled out with the 17 that read back exactly.
constexpr char i_TEXTO_DOUBLE_MAXIMO[] = "1.7976931348623158e+308";

size_t i_copia(char *texto, const char *literal, size_t longitud) {
    std::memcpy(texto, literal, longitud);
    return longitud;
}

bool i_tiene_punto_o_exponente(const char *texto, size_t longitud) {
    for (size_t i = 0; i < longitud; ++i)
        if (texto[i] == '.' || texto[i] == 'e' || texto[i] == 'E')
            return true;
    return false;
}

// roundtol for a value within the 32-bit range, in line: the nearest integer, halves away from
// zero, saturated at the top (2147483647.5 and above give 2147483647, as roundtol does).
int32_t i_entero_mas_cercano(double numero) {
    const auto truncado = static_cast<int64_t>(numero);
    const double resto = numero - static_cast<double>(truncado);
    int64_t cercano = truncado + (resto >= 0.5 ? 1 : resto <= -0.5 ? -1 : 0);
    if (cercano > INT32_MAX)
        cercano = INT32_MAX;
    if (cercano < INT32_MIN)
        cercano = INT32_MIN;
    return static_cast<int32_t>(cercano);
}

} // namespace

size_t i_texto_double(double numero, char texto[i_TAM_TEXTO_DOUBLE]) {
    if (numero == i_DOUBLE_RELLENO)
        return i_copia(texto, i_TEXTO_DOUBLE_MAXIMO, sizeof i_TEXTO_DOUBLE_MAXIMO - 1);
    if (std::fabs(numero) < i_TOLERANCIA)
        return i_copia(texto, "0.0", 3);
    if (std::isnan(numero))
        return i_copia(texto, "null", 4);
    if (std::isinf(numero))
        return numero > 0 ? i_copia(texto, "1E+999", 6) : i_copia(texto, "-1E+999", 7);
    // Within the 32-bit range (NaN is not), a value within the tolerance of its nearest
    // integer is written as that integer and ".0".
    if (numero <= 2147483647.0 && numero >= -2147483648.0) {
        const int32_t redondeado = i_entero_mas_cercano(numero);
        if (std::fabs(double(redondeado) - numero) < i_TOLERANCIA) {
            const auto longitud = static_cast<size_t>(i_escribe_decimal(texto, redondeado) - texto);
            return longitud + i_copia(texto + longitud, ".0", 2);
        }
    }
    size_t longitud = copiaforu_nousar_texto_G(numero, i_PRECISION, texto, i_TAM_TEXTO_DOUBLE);
    if (!i_tiene_punto_o_exponente(texto, longitud))
        longitud += i_copia(texto + longitud, ".0", 2);
    return longitud;
}
