// tqbase number-conversion component. A value that the target type cannot hold is a caller's
// error: it is reported, and the result saturates at the bound it passes so that the caller
// goes on with the closest value there is.
#include "number_conversion.h"

#include <cmath>

#include "verifica.h"

static const char *const i_MODULO = "tqbase: cambtipo";

int32_t cambtipo_unsigned_long_a_long(uint32_t valor) {
    if (!i_VERIFICA(valor <= INT32_MAX))
        return INT32_MAX;
    return static_cast<int32_t>(valor);
}

uint32_t cambtipo_long_a_unsigned_long(int32_t valor) {
    if (!i_VERIFICA(valor >= 0))
        return 0;
    return static_cast<uint32_t>(valor);
}

uint8_t cambtipo_unsigned_long_a_unsigned_char(uint32_t valor) {
    if (!i_VERIFICA(valor <= UINT8_MAX))
        return UINT8_MAX;
    return static_cast<uint8_t>(valor);
}

uint32_t cambtipo_size_t_a_unsigned_long(size_t valor) {
    if (!i_VERIFICA(valor <= UINT32_MAX))
        return UINT32_MAX;
    return static_cast<uint32_t>(valor);
}

// Both bounds are exact doubles, and a NaN fails both comparisons.
tqbool cambtipo_se_puede_double_a_long(double valor) {
    return (valor >= INT32_MIN && valor <= INT32_MAX) ? CIERTO : FALSO;
}

int32_t cambtipo_double_a_long(double valor) {
    if (!i_VERIFICA(!std::isnan(valor)))
        return 0;
    if (!i_VERIFICA(valor >= INT32_MIN))
        return INT32_MIN;
    if (!i_VERIFICA(valor <= INT32_MAX))
        return INT32_MAX;
    return static_cast<int32_t>(valor);
}

// Rounded by hand, not with the C runtime's round(), whose halfway test some runtimes make by
// adding 0.5 (0.49999999999999994 + 0.5 rounds up to 1.0). Inside the range the fraction is
// taken exactly: truncation to an integer and the subtraction of that integer are both exact.
int32_t roundtol(double valor) {
    if (std::isnan(valor))
        return 0;
    if (valor >= INT32_MAX)
        return INT32_MAX;
    if (valor <= INT32_MIN)
        return INT32_MIN;
    int64_t entero = static_cast<int64_t>(valor);
    const double fraccion = valor - static_cast<double>(entero);
    if (fraccion >= 0.5)
        ++entero;
    else if (fraccion <= -0.5)
        --entero;
    if (entero > INT32_MAX)
        return INT32_MAX;
    if (entero < INT32_MIN)
        return INT32_MIN;
    return static_cast<int32_t>(entero);
}
