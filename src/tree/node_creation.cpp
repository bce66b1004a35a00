// Creating nodes of every kind and members.
#include "codec/codec.h"
#include "tree/nodes.h"

// Takes over what the address points to; a null address gives null.
template <class T> static T *i_toma_opcional(T **puntero) {
    return puntero ? i_toma(puntero) : nullptr;
}

tqjson2_nodo_t *i_crea_nodo(int32_t tipo, arr_puntero_t **atributos_objeto,
                            arr_puntero_t **valores_array, char **cadena_utf8,
                            tqbool texto_decodificado, int32_t entero, double valor_double,
                            tqbool booleano) {
    tqjson2_nodo_t *nodo = i_nuevo<tqjson2_nodo_t>();
    i_inicia_nodo(nodo, tipo, i_toma_opcional(atributos_objeto), i_toma_opcional(valores_array),
                  i_toma_opcional(cadena_utf8), texto_decodificado, entero, valor_double, booleano);
    return nodo;
}

// A node of a kind that holds no scalar value: every scalar field has its fill value.
static tqjson2_nodo_t *i_crea_nodo_sin_valor(int32_t tipo, arr_puntero_t **atributos_objeto,
                                             arr_puntero_t **valores_array) {
    return i_crea_nodo(tipo, atributos_objeto, valores_array, nullptr, FALSO, i_ENTERO_RELLENO,
                       i_DOUBLE_RELLENO, FALSO);
}

tqjson2_nodo_t *i_crea_nodo_objeto_con_atributos(arr_puntero_t **atributos_objeto) {
    return i_crea_nodo_sin_valor(TQJSON_TIPO_OBJETO, atributos_objeto, nullptr);
}

tqjson2_nodo_t *i_crea_nodo_array_con_valores(arr_puntero_t **valores_array) {
    return i_crea_nodo_sin_valor(TQJSON_TIPO_ARRAY, nullptr, valores_array);
}

tqjson2_nodo_t *i_crea_nodo_cadena(char **cadena_utf8, tqbool texto_decodificado) {
    return i_crea_nodo(TQJSON_TIPO_CADENA, nullptr, nullptr, cadena_utf8, texto_decodificado,
                       i_ENTERO_RELLENO, i_DOUBLE_RELLENO, FALSO);
}

tqjson2_nodo_t *i_crea_nodo_texto_unicode(tqbool codifica, char16_t **texto_unicode,
                                          tqbool texto_decodificado) {
    char *cadena_utf8 = i_convierte_texto_unicode_a_utf8(codifica, texto_unicode);
    return i_crea_nodo_cadena(&cadena_utf8, texto_decodificado);
}

tqjson2_nodo_t *tqjson2_crea_nodo_objeto(void) {
    arr_puntero_t *atributos = arr_CreaPunteroConAnexo(nullptr, 0); // with room for an index
    return i_crea_nodo_objeto_con_atributos(&atributos);
}

tqjson2_nodo_t *tqjson2_crea_nodo_array(void) {
    arr_puntero_t *valores = arr_CreaPunteroConTipo(0);
    return i_crea_nodo_array_con_valores(&valores);
}

tqjson2_nodo_t *tqjson2_crea_nodo_texto_utf8(char **cadena_utf8) {
    return i_crea_nodo_cadena(cadena_utf8, CIERTO);
}

tqjson2_nodo_t *tqjson2_crea_nodo_texto_unicode_a_utf8(char16_t **texto) {
    return i_crea_nodo_texto_unicode(CIERTO, texto, FALSO);
}

tqjson2_nodo_t *tqjson2_crea_nodo_entero(int32_t valor) {
    return i_crea_nodo(TQJSON_TIPO_ENTERO, nullptr, nullptr, nullptr, FALSO, valor,
                       i_DOUBLE_RELLENO, FALSO);
}

tqjson2_nodo_t *tqjson2_crea_nodo_double(double valor) {
    return i_crea_nodo(TQJSON_TIPO_DOUBLE, nullptr, nullptr, nullptr, FALSO, i_ENTERO_RELLENO,
                       valor, FALSO);
}

tqjson2_nodo_t *tqjson2_crea_nodo_booleano(tqbool valor) {
    return i_crea_nodo(TQJSON_TIPO_BOOLEANO, nullptr, nullptr, nullptr, FALSO, i_ENTERO_RELLENO,
                       i_DOUBLE_RELLENO, valor);
}

tqjson2_nodo_t *tqjson2_crea_nodo_null(void) {
    return i_crea_nodo_sin_valor(TQJSON_TIPO_NULL, nullptr, nullptr);
}
