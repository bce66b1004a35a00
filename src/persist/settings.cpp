// Settings kept in an object node: readers with a default that also take a null node, tests
// of whether a value can be read, and setters that change a present member in place or append
// a missing one. Reports name this module.
#include <climits>

#include "persist/persist.h"
#include "report_texts.h"

namespace {

constexpr char i_MODULO_LSN[] = "tqjson2: tqjsonlsn";
#define i_VERIFICA_NO_NULO_LSN(x) i_VERIFICA_NO_NULO_EN(i_MODULO_LSN, __LINE__, x)

// The value of the one member named `etiqueta`, or null (also for a null node, unreported; a
// node that is not an object is reported by the lookup).
tqjson2_nodo_t *i_miembro(const tqjson2_nodo_t *nodo, const char16_t *etiqueta) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (!nodo || tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) != CIERTO)
        return nullptr;
    return nodo_dato;
}

// A member that `es_valor` can read, through a test of the value kind, or `defecto`.
template <class T, class U>
T i_lee_con_defecto(const tqjson2_nodo_t *nodo, const char16_t *etiqueta, T defecto,
                    tqbool (*es_valor)(const tqjson2_nodo_t *, U *)) {
    const tqjson2_nodo_t *nodo_dato = i_miembro(nodo, etiqueta);
    U valor{};
    return nodo_dato && es_valor(nodo_dato, &valor) == CIERTO ? static_cast<T>(valor) : defecto;
}

// A present member's value changed in place by `cambia`, or a new member made by `agrega`.
template <class Cambia, class Agrega>
void i_set(tqjson2_nodo_t *nodo, const char16_t *etiqueta, Cambia cambia, Agrega agrega) {
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) == CIERTO)
        cambia(nodo_dato);
    else
        agrega();
}

} // namespace

tqbool tqjsonlsn_leer_valor_booleano_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                       const char16_t *etiqueta, tqbool defecto) {
    return i_lee_con_defecto(nodo, etiqueta, defecto, tqjson2_es_valor_booleano);
}

double tqjsonlsn_leer_valor_double_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                     const char16_t *etiqueta, double defecto) {
    return i_lee_con_defecto(nodo, etiqueta, defecto, tqjson2_es_valor_double);
}

int32_t tqjsonlsn_leer_valor_long_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                    const char16_t *etiqueta, int32_t defecto) {
    return i_lee_con_defecto(nodo, etiqueta, defecto, tqjson2_es_valor_entero);
}

uint32_t tqjsonlsn_leer_valor_ulong_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                      const char16_t *etiqueta, uint32_t defecto) {
    return static_cast<uint32_t>(
        tqjsonlsn_leer_valor_long_con_valor_defecto(nodo, etiqueta, static_cast<int32_t>(defecto)));
}

uint16_t tqjsonlsn_leer_valor_ushort_con_valor_defecto(const tqjson2_nodo_t *nodo,
                                                       const char16_t *etiqueta, uint16_t defecto) {
    // Whatever the signed reader gives is tested, the default too; a negative value passes.
    const int32_t valor = tqjsonlsn_leer_valor_long_con_valor_defecto(nodo, etiqueta, defecto);
    i_verifica(valor < USHRT_MAX, i_TEXTO_CABE_EN_USHORT, i_MODULO_LSN, __LINE__);
    return static_cast<uint16_t>(valor);
}

tqbool tqjsonlsn_es_posible_leer_double(const char16_t *etiqueta, const tqjson2_nodo_t *nodo,
                                        double *valor) {
    if (!i_VERIFICA_NO_NULO_LSN(valor))
        return FALSO;
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    if (nodo_dato && tqjson2_es_valor_double(nodo_dato, valor) == CIERTO)
        return CIERTO;
    *valor = i_DOUBLE_RELLENO;
    return FALSO;
}

tqbool tqjsonlsn_es_posible_leer_cadena_unicode(const char16_t *etiqueta,
                                                const tqjson2_nodo_t *nodo, char16_t **cadena) {
    if (!i_VERIFICA_NO_NULO_LSN(cadena))
        return FALSO;
    const tqjson2_nodo_t *nodo_dato = i_miembro_legible(etiqueta, nodo);
    const bool es_cadena = nodo_dato && tqjson2_tipo_nodo(nodo_dato) == TQJSON_TIPO_CADENA;
    *cadena = es_cadena ? tqjson2_get_valor_cadena_unicode(nodo_dato) : nullptr;
    return es_cadena ? CIERTO : FALSO;
}

tqbool tqjsonlsn_nousar_es_posible_leer_enum(
    const char16_t *etiqueta, tqjsonlsn_func_es_correcto_valor_enum_t func_es_correcto_valor_enum,
    tqjsonlsn_func_get_texto_valor_enum_t func_get_texto_valor_enum, const tqjson2_nodo_t *nodo,
    int32_t *valor_enum) {
    if (!i_VERIFICA_NO_NULO_LSN(valor_enum))
        return FALSO;
    tqjson2_nodo_t *nodo_dato = nullptr;
    if (tqjson2_existe_atributo_con_nombre_en_objeto(nodo, etiqueta, &nodo_dato) != CIERTO) {
        *valor_enum = -1;
        return FALSO;
    }
    // Both callbacks are judged, so that a null first one does not hide a null second.
    const bool hay_es_correcto = i_VERIFICA_NO_NULO_LSN(func_es_correcto_valor_enum);
    const bool hay_funciones = i_VERIFICA_NO_NULO_LSN(func_get_texto_valor_enum) && hay_es_correcto;
    char16_t *texto = tqjson2_get_valor_cadena_unicode(nodo_dato);
    int32_t encontrado = -1;
    for (int32_t valor = 0; hay_funciones && func_es_correcto_valor_enum(valor) == CIERTO;
         ++valor) {
        if (widestr_nousar_cadenas_iguales(func_get_texto_valor_enum(valor), texto, i_MODULO_LSN,
                                           __LINE__) == CIERTO) {
            encontrado = valor;
            break;
        }
    }
    *valor_enum = encontrado;
    widestr_nousar_destruye(&texto, i_MODULO_LSN, __LINE__);
    return encontrado >= 0 ? CIERTO : FALSO;
}

void tqjsonlsn_set_valor_booleano(tqjson2_nodo_t *nodo, const char16_t *etiqueta, tqbool valor) {
    i_set(
        nodo, etiqueta, [&](tqjson2_nodo_t *dato) { tqjson2_set_nodo_booleano(dato, valor); },
        [&] { tqjson2_append_tqbool_a_objeto(nodo, etiqueta, valor); });
}

void tqjsonlsn_set_valor_double(tqjson2_nodo_t *nodo, const char16_t *etiqueta, double valor) {
    i_set(
        nodo, etiqueta, [&](tqjson2_nodo_t *dato) { tqjson2_set_nodo_double(dato, valor); },
        [&] { tqjson2_append_double_a_objeto(nodo, etiqueta, valor); });
}

void tqjsonlsn_set_valor_long(tqjson2_nodo_t *nodo, const char16_t *etiqueta, int32_t valor) {
    i_set(
        nodo, etiqueta, [&](tqjson2_nodo_t *dato) { tqjson2_set_nodo_entero(dato, valor); },
        [&] { tqjson2_append_long_a_objeto(nodo, etiqueta, valor); });
}

void tqjsonlsn_set_valor_ulong(tqjson2_nodo_t *nodo, const char16_t *etiqueta, uint32_t valor) {
    tqjsonlsn_set_valor_long(nodo, etiqueta, static_cast<int32_t>(valor));
}

void tqjsonlsn_set_valor_ushort(tqjson2_nodo_t *nodo, const char16_t *etiqueta, uint16_t valor) {
    tqjsonlsn_set_valor_long(nodo, etiqueta, valor);
}

void tqjsonlsn_set_valor_cadena_unicode(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                                        const char16_t *texto) {
    i_set(
        nodo, etiqueta,
        [&](tqjson2_nodo_t *dato) {
            char16_t *copia = widestr_nousar_copia(texto, i_MODULO_LSN, __LINE__);
            tqjson2_set_nodo_texto_unicode_a_utf8(dato, &copia);
        },
        [&] { tqjson2_append_cadena_unicode_a_objeto(nodo, etiqueta, texto); });
}

void tqjsonlsn_set_nodos_array(tqjson2_nodo_t *nodo, const char16_t *etiqueta,
                               arr_puntero_t **valores) {
    i_set(
        nodo, etiqueta,
        [&](tqjson2_nodo_t *dato) { tqjson2_set_nodo_valores_array(dato, valores); },
        [&] {
            tqjson2_nodo_t *array = tqjson2_crea_nodo_array();
            tqjson2_set_nodo_valores_array(array, valores);
            tqjson2_append_nodo_a_objeto(nodo, etiqueta, &array);
        });
}
