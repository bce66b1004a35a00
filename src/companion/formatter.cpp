// tqbase string component: formatting into a new wide string. Only the conversions that the
// code base writes are taken; numbers go through std::to_chars, so the output never depends on
// the process locale. The text is built in a stack buffer and the result allocated once.
#include "formatter.h"
#include "shortest_general.h"

#include <charconv>
#include <cstdarg>
#include <cstring>

#include "tqbase/memoria.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: copiaforu";

namespace {

// Enough for every number but a long %s or a %G of many digits, which spill to the heap.
constexpr size_t i_TAM_PILA = 128;

// The longest "%.*G" of a double, whatever the precision: a sign, the 767 significant digits
// of the exact value of the largest subnormal, a point and "E-308".
constexpr size_t i_TAM_DOUBLE = 800;

// The printf default precision, taken when the precision argument is negative.
constexpr int i_PRECISION_POR_DEFECTO = 6;

struct i_Salida {
    char16_t pila[i_TAM_PILA];
    char16_t *datos = pila;
    size_t longitud = 0;
    size_t capacidad = i_TAM_PILA;
};

enum class i_Conversion { cadena, entero_32, entero_64, doble_g, porcentaje, desconocida };

void i_amplia(i_Salida &salida, size_t minimo) {
    size_t capacidad = salida.capacidad * 2;
    while (capacidad < minimo)
        capacidad *= 2;
    const size_t bytes = capacidad * sizeof(char16_t);
    if (salida.datos == salida.pila) {
        auto *datos = static_cast<char16_t *>(marlspy_nousar_malloc(bytes));
        std::memcpy(datos, salida.pila, salida.longitud * sizeof(char16_t));
        salida.datos = datos;
    } else {
        salida.datos = static_cast<char16_t *>(marlspy_nousar_realloc(salida.datos, bytes));
    }
    salida.capacidad = capacidad;
}

// Room for `num` more units and the terminator.
char16_t *i_reserva(i_Salida &salida, size_t num) {
    const size_t minimo = salida.longitud + num + 1;
    if (minimo > salida.capacidad)
        i_amplia(salida, minimo);
    char16_t *destino = salida.datos + salida.longitud;
    salida.longitud += num;
    return destino;
}

void i_anade_unidades(i_Salida &salida, const char16_t *unidades, size_t num) {
    std::memcpy(i_reserva(salida, num), unidades, num * sizeof(char16_t));
}

// ASCII widens unit by unit.
void i_anade_ascii(i_Salida &salida, const char *texto, size_t num) {
    char16_t *destino = i_reserva(salida, num);
    for (size_t i = 0; i < num; ++i)
        destino[i] = static_cast<char16_t>(texto[i]);
}

char16_t *i_entrega(i_Salida &salida) {
    const size_t bytes = (salida.longitud + 1) * sizeof(char16_t);
    char16_t *resultado;
    if (salida.datos == salida.pila) {
        resultado = static_cast<char16_t *>(marlspy_nousar_malloc(bytes));
        std::memcpy(resultado, salida.pila, salida.longitud * sizeof(char16_t));
    } else {
        resultado = static_cast<char16_t *>(marlspy_nousar_realloc(salida.datos, bytes));
    }
    resultado[salida.longitud] = u'\0';
    return resultado;
}

template <class Entero> void i_escribe_entero(i_Salida &salida, Entero valor) {
    char texto[24];
    const std::to_chars_result fin = std::to_chars(texto, texto + sizeof texto, valor);
    i_anade_ascii(salida, texto, static_cast<size_t>(fin.ptr - texto));
}

void i_escribe_double(i_Salida &salida, int precision, double valor) {
    char texto[i_TAM_DOUBLE];
    const size_t longitud = copiaforu_nousar_texto_G(valor, precision, texto, sizeof texto);
    i_anade_ascii(salida, texto, longitud);
}

void i_escribe_cadena(i_Salida &salida, const char16_t *cadena) {
    if (!i_VERIFICA_NO_NULO(cadena))
        return;
    size_t longitud = 0;
    while (cadena[longitud])
        ++longitud;
    i_anade_unidades(salida, cadena, longitud);
}

// Length of `prefijo` when `texto` begins with it, else 0.
size_t i_longitud_prefijo(const char16_t *texto, const char16_t *prefijo) {
    size_t longitud = 0;
    for (; prefijo[longitud]; ++longitud)
        if (texto[longitud] != prefijo[longitud])
            return 0;
    return longitud;
}

bool i_es_parte_de_directiva(char16_t unidad) {
    return unidad != u'\0' && unidad < 0x80 &&
           std::strchr("-+ #0123456789.*hlLqjztI", static_cast<char>(unidad)) != nullptr;
}

// Units of an unknown conversion after its '%': printf's flags, width, precision and length,
// then the conversion letter, so that none of it leaks into the output.
size_t i_longitud_desconocida(const char16_t *directiva) {
    size_t longitud = 0;
    while (i_es_parte_de_directiva(directiva[longitud]))
        ++longitud;
    return directiva[longitud] ? longitud + 1 : longitud;
}

// The conversion that `directiva` (what follows a '%') begins, and its length in units.
i_Conversion i_lee_conversion(const char16_t *directiva, size_t *longitud) {
    static constexpr struct {
        const char16_t *texto;
        i_Conversion conversion;
    } i_CONOCIDAS[] = {{u"s", i_Conversion::cadena},     {u"i", i_Conversion::entero_32},
                       {u"ld", i_Conversion::entero_32}, {u"lld", i_Conversion::entero_64},
                       {u"Id", i_Conversion::entero_64}, {u".*G", i_Conversion::doble_g},
                       {u"%", i_Conversion::porcentaje}};
    for (const auto &conocida : i_CONOCIDAS) {
        *longitud = i_longitud_prefijo(directiva, conocida.texto);
        if (*longitud)
            return conocida.conversion;
    }
    *longitud = i_longitud_desconocida(directiva);
    return i_Conversion::desconocida;
}

// Writes a conversion that takes arguments, reading them.
void i_escribe_argumento(i_Salida &salida, i_Conversion conversion, va_list *argumentos) {
    switch (conversion) {
        case i_Conversion::cadena:
            i_escribe_cadena(salida, va_arg(*argumentos, const char16_t *));
            break;
        case i_Conversion::entero_32:
            i_escribe_entero(salida, va_arg(*argumentos, int32_t));
            break;
        case i_Conversion::entero_64:
            i_escribe_entero(salida, va_arg(*argumentos, int64_t));
            break;
        case i_Conversion::doble_g: {
            const int precision = va_arg(*argumentos, int);
            i_escribe_double(salida, precision, va_arg(*argumentos, double));
            break;
        }
        case i_Conversion::porcentaje:
        case i_Conversion::desconocida:
            break;
    }
}

// Writes one conversion. Arguments are read only while `*alineados`: an unknown conversion
// leaves the type of its argument unknown, so no later argument can be located safely.
void i_escribe_conversion(i_Salida &salida, i_Conversion conversion, va_list *argumentos,
                          bool *alineados) {
    if (conversion == i_Conversion::porcentaje) {
        i_anade_unidades(salida, u"%", 1);
    } else if (conversion == i_Conversion::desconocida) {
        i_ERROR_DEFAULT();
        *alineados = false;
    } else if (*alineados) {
        i_escribe_argumento(salida, conversion, argumentos);
    }
}

size_t i_longitud_literal(const char16_t *texto) {
    size_t longitud = 0;
    while (texto[longitud] && texto[longitud] != u'%')
        ++longitud;
    return longitud;
}

void i_formatea(i_Salida &salida, const char16_t *formato, va_list *argumentos) {
    bool argumentos_alineados = true;
    while (*formato) {
        const size_t literal = i_longitud_literal(formato);
        i_anade_unidades(salida, formato, literal);
        formato += literal;
        if (!*formato)
            break;
        size_t longitud = 0;
        const i_Conversion conversion = i_lee_conversion(formato + 1, &longitud);
        formato += 1 + longitud;
        i_escribe_conversion(salida, conversion, argumentos, &argumentos_alineados);
    }
}

} // namespace

char16_t *copiaforu_nousar_formatea(const char16_t *formato, ...) {
    i_Salida salida;
    if (i_VERIFICA_NO_NULO(formato)) {
        va_list argumentos;
        va_start(argumentos, formato);
        i_formatea(salida, formato, &argumentos);
        va_end(argumentos);
    }
    return i_entrega(salida);
}

size_t copiaforu_nousar_texto_G(double valor, int precision, char *texto, size_t tam) {
    if (precision < 0)
        precision = i_PRECISION_POR_DEFECTO;
    if (const size_t escalado = i_texto_G_por_escala(valor, precision, texto, tam))
        return escalado;
    if (const size_t rapido = i_texto_G_desde_el_mas_corto(valor, precision, texto, tam))
        return rapido;
    const std::to_chars_result fin =
        std::to_chars(texto, texto + tam, valor, std::chars_format::general, precision);
    if (!i_VERIFICA(fin.ec == std::errc{}))
        return 0;
    // to_chars spells the exponent, "inf" and "nan" in lower case; %G in upper case.
    for (char *c = texto; c != fin.ptr; ++c)
        if (*c >= 'a' && *c <= 'z')
            *c = static_cast<char>(*c - 'a' + 'A');
    return static_cast<size_t>(fin.ptr - texto);
}
