// tqbase string component: reading a decimal number from a wide string. The number is found in
// the wide text, narrowed to ASCII and converted by std::from_chars, which rounds correctly
// whatever the number of digits and never looks at the process locale.
#include "wide_strings.h"

#include <charconv>
#include <cmath>

#include "tqbase/memoria.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: widestr";

namespace {

// Numbers up to this many units are narrowed on the stack; longer ones on the heap.
constexpr size_t i_TAM_PILA = 64;

// Decimal exponents are held within this bound: beyond it every number overflows or underflows
// alike, and sums with digit counts cannot overflow.
constexpr int64_t i_EXPONENTE_MAXIMO = 1'000'000'000'000'000;

bool i_es_blanco(char16_t unidad) {
    return unidad == u' ' || (unidad >= u'\t' && unidad <= u'\r');
}

bool i_es_digito(char16_t unidad) {
    return unidad >= u'0' && unidad <= u'9';
}

const char16_t *i_salta_digitos(const char16_t *p) {
    while (i_es_digito(*p))
        ++p;
    return p;
}

const char *i_salta_digitos(const char *p, const char *fin) {
    while (p != fin && i_es_digito(static_cast<char16_t>(*p)))
        ++p;
    return p;
}

// An exponent counts only with at least one digit; otherwise the number ends before its 'e'.
const char16_t *i_fin_exponente(const char16_t *p) {
    if (*p != u'e' && *p != u'E')
        return p;
    const char16_t *digitos = p + 1;
    if (*digitos == u'+' || *digitos == u'-')
        ++digitos;
    const char16_t *fin = i_salta_digitos(digitos);
    return fin == digitos ? p : fin;
}

// End of the unsigned number that begins at `inicio`, or `inicio` when none begins there.
const char16_t *i_fin_numero(const char16_t *inicio) {
    const char16_t *p = i_salta_digitos(inicio);
    bool hay_digitos = p != inicio;
    if (*p == u'.') {
        const char16_t *fraccion = p + 1;
        p = i_salta_digitos(fraccion);
        hay_digitos = hay_digitos || p != fraccion;
    }
    return hay_digitos ? i_fin_exponente(p) : inicio;
}

// The exponent that follows the mantissa in `texto` (0 when there is none), held to its bound.
int64_t i_exponente(const char *texto, const char *fin) {
    while (texto != fin && *texto != 'e' && *texto != 'E')
        ++texto;
    if (texto == fin)
        return 0;
    ++texto;
    const bool negativo = texto != fin && *texto == '-';
    if (texto != fin && (*texto == '+' || *texto == '-'))
        ++texto;
    int64_t exponente = 0;
    for (; texto != fin && exponente < i_EXPONENTE_MAXIMO; ++texto)
        exponente = exponente * 10 + (*texto - '0');
    return negativo ? -exponente : exponente;
}

// The power of ten of the mantissa's first significant digit.
int64_t i_posicion_primera_cifra(const char *texto, const char *fin) {
    const char *punto = i_salta_digitos(texto, fin);
    const char *cifra = texto;
    while (cifra != fin && (*cifra == '0' || *cifra == '.'))
        ++cifra;
    return cifra < punto ? punto - cifra - 1 : punto - cifra;
}

// A number out of a double's range lies either above its largest finite value or below its
// smallest subnormal: above 1 it overflows, below it underflows.
bool i_desborda(const char *texto, const char *fin) {
    return i_posicion_primera_cifra(texto, fin) + i_exponente(texto, fin) >= 0;
}

double i_convierte(const char *texto, const char *fin) {
    double valor = 0.0;
    const std::from_chars_result leido = std::from_chars(texto, fin, valor);
    if (leido.ec == std::errc::result_out_of_range)
        return i_desborda(texto, fin) ? HUGE_VAL : 0.0;
    // The scan admits only what from_chars reads in full.
    i_VERIFICA(leido.ec == std::errc{} && leido.ptr == fin);
    return valor;
}

// The units of a scanned number are all ASCII, so narrowing them loses nothing.
double i_convierte_ascii(const char16_t *inicio, const char16_t *fin) {
    const size_t longitud = static_cast<size_t>(fin - inicio);
    char pila[i_TAM_PILA];
    char *texto =
        longitud <= i_TAM_PILA ? pila : static_cast<char *>(marlspy_nousar_malloc(longitud));
    for (size_t i = 0; i < longitud; ++i)
        texto[i] = static_cast<char>(inicio[i]);
    const double valor = i_convierte(texto, texto + longitud);
    if (texto != pila)
        marlspy_nousar_free_pp(&texto, 1);
    return valor;
}

} // namespace

double widestr_nousar_atof(const char16_t *cadena, const char *modulo, int linea) {
    if (!i_VERIFICA_NO_NULO_EN(modulo, linea, cadena))
        return 0.0;
    while (i_es_blanco(*cadena))
        ++cadena;
    const bool negativo = *cadena == u'-';
    if (*cadena == u'+' || *cadena == u'-')
        ++cadena;
    const char16_t *fin = i_fin_numero(cadena);
    if (fin == cadena)
        return 0.0;
    const double valor = i_convierte_ascii(cadena, fin);
    return negativo ? -valor : valor;
}
