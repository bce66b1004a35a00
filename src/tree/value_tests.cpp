// Tolerant value tests: whether a node holds a value of a type, handing the value out.
#include "tree/nodes.h"

tqbool tqjson2_es_valor_entero(const tqjson2_nodo_t *nodo, int32_t *valor) {
    if (!i_VERIFICA_NO_NULO(valor) || !nodo)
        return FALSO;
    *valor = i_entero_de(nodo); // the fill value for a node of another kind
    return nodo->tipo == TQJSON_TIPO_ENTERO ? CIERTO : FALSO;
}

tqbool tqjson2_es_valor_double(const tqjson2_nodo_t *nodo, double *valor) {
    if (!i_VERIFICA_NO_NULO(valor) || !nodo)
        return FALSO;
    *valor = i_double_de(nodo);
    return nodo->tipo == TQJSON_TIPO_DOUBLE ? CIERTO : FALSO;
}

// Whether a stored text is the word true or false in any letter case, the whole text.
static tqbool i_es_texto_booleano(const char *texto_utf8, tqbool *valor) {
    if (texto_utf8 && cad_cadenas_iguales_may_o_min(texto_utf8, "true") == CIERTO) {
        *valor = CIERTO;
        return CIERTO;
    }
    *valor = FALSO;
    return (texto_utf8 && cad_cadenas_iguales_may_o_min(texto_utf8, "false") == CIERTO) ? CIERTO
                                                                                        : FALSO;
}

tqbool tqjson2_es_valor_booleano(const tqjson2_nodo_t *nodo, tqbool *valor) {
    if (!i_VERIFICA_NO_NULO(nodo) || !i_VERIFICA_NO_NULO(valor))
        return FALSO;
    if (nodo->tipo == TQJSON_TIPO_BOOLEANO) {
        *valor = nodo->booleano;
        return CIERTO;
    }
    return nodo->tipo == TQJSON_TIPO_CADENA ? i_es_texto_booleano(nodo->cadena_utf8, valor) : FALSO;
}

// The string tests hand out a new converted text, not decoded, or null for another kind.
template <class C, class Convierte>
static tqbool i_es_valor_cadena(const tqjson2_nodo_t *nodo, C **valor, Convierte convierte) {
    if (!i_VERIFICA_NO_NULO(valor) || !nodo)
        return FALSO;
    const bool es_cadena = nodo->tipo == TQJSON_TIPO_CADENA;
    *valor = es_cadena ? convierte(nodo->cadena_utf8) : nullptr;
    return es_cadena ? CIERTO : FALSO;
}

tqbool tqjson2_es_valor_cadena_utf8(const tqjson2_nodo_t *nodo, char **valor) {
    return i_es_valor_cadena(nodo, valor, cad_copia_cadena);
}

tqbool tqjson2_es_valor_cadena_unicode(const tqjson2_nodo_t *nodo, char16_t **valor) {
    return i_es_valor_cadena(nodo, valor, unicode_convierte_UTF8_a_UNICODE);
}

tqbool tqjson2_es_valor_cadena_ansi(const tqjson2_nodo_t *nodo, char **valor) {
    return i_es_valor_cadena(nodo, valor, unicode_convierte_UTF8_a_ANSI);
}
