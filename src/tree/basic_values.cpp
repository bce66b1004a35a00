// Kinds that hold one scalar value, and changing such a value in place.
#include "report_texts.h"
#include "tree/nodes.h"

tqbool i_es_tipo_basico(int32_t tipo) {
    switch (tipo) {
        case TQJSON_TIPO_CADENA:
        case TQJSON_TIPO_ENTERO:
        case TQJSON_TIPO_DOUBLE:
        case TQJSON_TIPO_BOOLEANO:
            return CIERTO;
        case TQJSON_TIPO_OBJETO:
        case TQJSON_TIPO_ARRAY:
        case TQJSON_TIPO_NULL:
            return FALSO;
        default:
            i_ERROR_DEFAULT();
            return FALSO;
    }
}

void i_set_valor_basico(tqjson2_nodo_t *nodo, int32_t tipo, char **cadena_utf8, int32_t entero,
                        double valor_double, tqbool booleano) {
    // The text is taken over on every path, so that a refused change leaks nothing.
    char *cadena = cadena_utf8 ? i_toma(cadena_utf8) : nullptr;
    if (!i_VERIFICA_TEXTO(i_es_tipo_basico(tipo) == CIERTO, i_TEXTO_TIPO_NUEVO_BASICO) ||
        !i_VERIFICA_TEXTO(i_es_tipo_basico(nodo->tipo) == CIERTO, i_TEXTO_TIPO_ACTUAL_BASICO)) {
        marlstr_destruye(&cadena);
        return;
    }
    if (nodo->tipo == TQJSON_TIPO_CADENA)
        marlstr_destruye(&nodo->cadena_utf8);
    nodo->tipo = tipo;
    i_guarda_valor(nodo, nullptr, nullptr, cadena, entero, valor_double);
    nodo->booleano = booleano;
}
