// Reading trees: kinds, member and element arrays, names and typed values. A getter checks the
// kind it requires and never converts; the value tests are the tolerant way.
#include "codec/codec.h"
#include "report_texts.h"
#include "tree/nodes.h"

namespace {

bool i_es_nodo_de_tipo(const tqjson2_nodo_t *nodo, int32_t tipo, int linea) {
    return i_verifica(nodo != nullptr, i_TEXTO_NO_NULO(nodo), i_MODULO, linea) &&
           i_verifica(nodo->tipo == tipo, i_TEXTO_NODO_DE_TIPO[tipo], i_MODULO, linea);
}

// The stored text as wide text, escape sequences decoded when the node holds the escaped form.
char16_t *i_texto_decodificado(const tqjson2_nodo_t *nodo, uint32_t *sin_informar) {
    char16_t *texto = unicode_convierte_UTF8_a_UNICODE(nodo->cadena_utf8);
    if (nodo->texto_decodificado == CIERTO)
        return texto;
    char16_t *decodificado = i_decodifica_secuencias_escape(texto, sin_informar);
    widestr_nousar_destruye(&texto, i_MODULO, __LINE__);
    return decodificado;
}

// Bad "\u00" digits are reported while this getter holds no text: a trap frame that catches
// a report (the guarded readers) then leaves nothing behind, and the text is made again.
char16_t *i_texto_decodificado(const tqjson2_nodo_t *nodo) {
    uint32_t sin_informar = 0;
    char16_t *decodificado = i_texto_decodificado(nodo, &sin_informar);
    if (sin_informar == 0)
        return decodificado;
    widestr_nousar_destruye(&decodificado, i_MODULO, __LINE__);
    for (uint32_t i = 0; i < sin_informar; ++i)
        i_informa_secuencia_u00_erronea();
    uint32_t otra_vez = 0;
    return i_texto_decodificado(nodo, &otra_vez);
}

} // namespace

int32_t tqjson2_tipo_nodo(const tqjson2_nodo_t *nodo) {
    return i_VERIFICA_NO_NULO(nodo) ? nodo->tipo : TQJSON_TIPO_NULL;
}

arr_puntero_t *tqjson2_get_atributos_objeto(const tqjson2_nodo_t *nodo) {
    return i_es_nodo_de_tipo(nodo, TQJSON_TIPO_OBJETO, __LINE__) ? nodo->atributos_objeto : nullptr;
}

arr_puntero_t *tqjson2_get_valores_array(const tqjson2_nodo_t *nodo) {
    return i_es_nodo_de_tipo(nodo, TQJSON_TIPO_ARRAY, __LINE__) ? nodo->valores_array : nullptr;
}

const char16_t *tqjson2_get_nombre_atributo(const tqjson2_atributo_t *atributo) {
    return i_VERIFICA_NO_NULO(atributo) ? atributo->nombre : nullptr;
}

tqjson2_nodo_t *tqjson2_get_valor_atributo(const tqjson2_atributo_t *atributo) {
    return i_VERIFICA_NO_NULO(atributo) ? atributo->valor : nullptr;
}

int32_t tqjson2_get_valor_entero(const tqjson2_nodo_t *nodo) {
    return i_es_nodo_de_tipo(nodo, TQJSON_TIPO_ENTERO, __LINE__) ? nodo->entero : i_ENTERO_RELLENO;
}

double tqjson2_get_valor_double(const tqjson2_nodo_t *nodo) {
    return i_es_nodo_de_tipo(nodo, TQJSON_TIPO_DOUBLE, __LINE__) ? nodo->valor_double
                                                                 : i_DOUBLE_RELLENO;
}

const char *tqjson2_get_valor_cadena_utf8(const tqjson2_nodo_t *nodo) {
    return i_es_nodo_de_tipo(nodo, TQJSON_TIPO_CADENA, __LINE__) ? nodo->cadena_utf8 : nullptr;
}

char16_t *tqjson2_get_valor_cadena_u(const tqjson2_nodo_t *nodo) {
    if (!i_es_nodo_de_tipo(nodo, TQJSON_TIPO_CADENA, __LINE__))
        return widestr_nousar_creacadena(1);
    return unicode_convierte_UTF8_a_UNICODE(nodo->cadena_utf8);
}

char16_t *tqjson2_get_valor_cadena_unicode(const tqjson2_nodo_t *nodo) {
    if (!i_es_nodo_de_tipo(nodo, TQJSON_TIPO_CADENA, __LINE__))
        return widestr_nousar_creacadena(1);
    return i_texto_decodificado(nodo);
}

char *tqjson2_get_valor_cadena_decodificada_ANSI(const tqjson2_nodo_t *nodo) {
    if (!i_es_nodo_de_tipo(nodo, TQJSON_TIPO_CADENA, __LINE__))
        return cad_copia_cadena("");
    char16_t *texto = i_texto_decodificado(nodo);
    char *ansi = unicode_UNICODE_a_ANSI(texto);
    widestr_nousar_destruye(&texto, i_MODULO, __LINE__);
    return ansi;
}

tqbool tqjson2_get_valor_null(const tqjson2_nodo_t *nodo) {
    return nodo == nullptr ? CIERTO : FALSO;
}
