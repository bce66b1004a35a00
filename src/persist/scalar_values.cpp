// Named scalar values: the graba writers add one member per field of a caller's record, the
// lee readers give a member's value back, or the caller's default.
#include <cmath>

#include "persist/persist.h"
#include "report_texts.h"
#include "tree/guarded_text.h"

void i_comprueba_etiqueta_nueva(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    const tqbool existe = tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato);
    i_VERIFICA_TEXTO(existe == FALSO, i_TEXTO_ETIQUETA_NO_EXISTE);
    i_VERIFICA_TEXTO(nodo_dato == nullptr, i_TEXTO_SIN_DATO);
}

const tqjson2_nodo_t *i_miembro_legible(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    if (tqjson2_tipo_nodo(nodo) != TQJSON_TIPO_OBJETO)
        return nullptr;
    tqjson2_nodo_t *nodo_dato = nullptr;
    return tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO
               ? nodo_dato
               : nullptr;
}

namespace {

void i_graba_entero(const char16_t *etiqueta, int32_t valor, tqjson2_nodo_t *nodo) {
    i_comprueba_etiqueta_nueva(etiqueta, nodo);
    tqjson2_nodo_t *nuevo = tqjson2_crea_nodo_entero(valor);
    tqjson2_append_nodo_a_objeto(nodo, etiqueta, &nuevo);
}

// The member's text by `lee`, a getter that hands out a new text, or null when the label
// names no string member.
template <class C>
C *i_lee_texto(const char16_t *etiqueta, const tqjson2_nodo_t *nodo,
               C *(*lee)(const tqjson2_nodo_t *)) {
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    return nodo_dato && tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_CADENA ? lee(nodo_dato)
                                                                           : nullptr;
}

// Cut toward zero; a value with no 64-bit counterpart (beyond the range, or not a number)
// gives the lowest one, as the processor's own conversion does.
int64_t i_trunca_a_64_bits(double valor) {
    constexpr double limite = 9223372036854775808.0; // 2^63
    return valor >= -limite && valor < limite ? static_cast<int64_t>(valor) : INT64_MIN;
}

int64_t i_lee_tiempo(const char16_t *etiqueta, int64_t defecto, const tqjson2_nodo_t *nodo) {
    if (!nodo || nodo->tipo != TQJSON_TIPO_OBJETO)
        return defecto;
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) != CIERTO)
        return defecto;
    switch (tqjson2_tipo_nodo(nodo_dato)) {
        case TQJSON_TIPO_CADENA: {
            char16_t *texto = tqjson2_get_valor_cadena_u(nodo_dato);
            const double valor = widestr_nousar_atof(texto, i_MODULO, __LINE__);
            widestr_nousar_destruye(&texto, i_MODULO, __LINE__);
            return i_trunca_a_64_bits(valor);
        }
        case TQJSON_TIPO_ENTERO:
            return nodo_dato->entero;
        case TQJSON_TIPO_DOUBLE:
            return i_trunca_a_64_bits(nodo_dato->valor_double);
        default:
            return defecto;
    }
}

} // namespace

void tqjson2_graba_long(const char16_t *etiqueta, int32_t valor, tqjson2_nodo_t *nodo) {
    i_graba_entero(etiqueta, valor, nodo);
}

void tqjson2_graba_ulong(const char16_t *etiqueta, uint32_t valor, tqjson2_nodo_t *nodo) {
    i_graba_entero(etiqueta, cambtipo_unsigned_long_a_long(valor), nodo);
}

void tqjson2_graba_version(const char16_t *etiqueta, uint8_t valor, tqjson2_nodo_t *nodo) {
    i_graba_entero(etiqueta, valor, nodo);
}

void tqjson2_graba_double(const char16_t *etiqueta, double valor, tqjson2_nodo_t *nodo) {
    i_comprueba_etiqueta_nueva(etiqueta, nodo);
    tqjson2_append_double_a_objeto(nodo, etiqueta, valor);
}

void tqjson2_graba_tqbool(const char16_t *etiqueta, tqbool valor, tqjson2_nodo_t *nodo) {
    i_comprueba_etiqueta_nueva(etiqueta, nodo);
    tqjson2_append_tqbool_a_objeto(nodo, etiqueta, valor);
}

void tqjson2_graba_cadena_ansi(const char16_t *etiqueta, const char *texto, tqjson2_nodo_t *nodo) {
    i_comprueba_etiqueta_nueva(etiqueta, nodo);
    tqjson2_append_cadena_ansi_a_objeto(nodo, etiqueta, texto);
}

void tqjson2_graba_cadena_unicode(const char16_t *etiqueta, const char16_t *texto,
                                  tqjson2_nodo_t *nodo) {
    i_comprueba_etiqueta_nueva(etiqueta, nodo);
    tqjson2_append_cadena_unicode_a_objeto(nodo, etiqueta, texto);
}

int32_t tqjson2_lee_long(const char16_t *etiqueta, int32_t defecto, const tqjson2_nodo_t *nodo) {
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    int32_t valor = 0;
    return nodo_dato && tqjson2_es_valor_entero(nodo_dato, &valor) == CIERTO ? valor : defecto;
}

// The unsigned reader is the signed one under a second name: the stored 32 bits come back
// unconverted, and both types travel in the same register.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wunknown-warning-option"
#pragma GCC diagnostic ignored "-Wattribute-alias"
extern "C" TQJSON2_API uint32_t tqjson2_lee_ulong(const char16_t *etiqueta, uint32_t defecto,
                                                  const tqjson2_nodo_t *nodo)
    __attribute__((alias("tqjson2_lee_long")));
#pragma GCC diagnostic pop
#endif

double tqjson2_lee_double(const char16_t *etiqueta, double defecto, const tqjson2_nodo_t *nodo) {
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    double valor = 0;
    return nodo_dato && tqjson2_es_valor_double(nodo_dato, &valor) == CIERTO ? valor : defecto;
}

tqbool tqjson2_lee_tqbool(const char16_t *etiqueta, tqbool defecto, const tqjson2_nodo_t *nodo) {
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    tqbool valor = FALSO;
    return nodo_dato && tqjson2_es_valor_booleano(nodo_dato, &valor) == CIERTO ? valor : defecto;
}

uint8_t tqjson2_lee_version_opcional(const char16_t *etiqueta, uint8_t defecto,
                                     const tqjson2_nodo_t *nodo) {
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    int32_t valor = 0;
    if (!nodo_dato || tqjson2_es_valor_entero(nodo_dato, &valor) != CIERTO)
        return defecto;
    return cambtipo_unsigned_long_a_unsigned_char(cambtipo_long_a_unsigned_long(valor));
}

char *tqjson2_lee_cadena_ansi_opcional(const char16_t *etiqueta, const tqjson2_nodo_t *nodo) {
    return i_lee_texto(etiqueta, nodo, tqjson2_get_valor_cadena_decodificada_ANSI);
}

char *tqjson2_lee_cadena_ansi(const char16_t *etiqueta, const char *defecto,
                              const tqjson2_nodo_t *nodo) {
    char *texto = tqjson2_lee_cadena_ansi_opcional(etiqueta, nodo);
    return texto ? texto : cad_copia_cadena(defecto);
}

char16_t *tqjson2_lee_cadena_unicode_opcional(const char16_t *etiqueta,
                                              const tqjson2_nodo_t *nodo) {
    return i_lee_texto(etiqueta, nodo, tqjson2_get_valor_cadena_unicode);
}

char16_t *tqjson2_lee_cadena_unicode(const char16_t *etiqueta, const char16_t *defecto,
                                     const tqjson2_nodo_t *nodo) {
    char16_t *texto = tqjson2_lee_cadena_unicode_opcional(etiqueta, nodo);
    return texto ? texto : widestr_nousar_copia(defecto, i_MODULO, __LINE__);
}

char16_t *tqjson2_lee_cadena_unicode_seguro(const char16_t *etiqueta, const char16_t *defecto,
                                            const tqjson2_nodo_t *nodo) {
    return i_texto_guardado([&] { return tqjson2_lee_cadena_unicode(etiqueta, defecto, nodo); },
                            u"<Readed uninitialized variable>");
}

int64_t tqjson2_lee_time_t(const char16_t *etiqueta, int64_t defecto, const tqjson2_nodo_t *nodo) {
    return i_lee_tiempo(etiqueta, defecto, nodo);
}

int64_t tqjson2_lee_time64_t(const char16_t *etiqueta, int64_t defecto,
                             const tqjson2_nodo_t *nodo) {
    return i_lee_tiempo(etiqueta, defecto, nodo);
}
