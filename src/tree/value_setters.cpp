// Changing the value of a node in place. The scalar setters pass the fill values for the
// fields the new kind does not use; the decoded-text flag is left as it was, and only the
// setter that stores a text sets it.
#include "codec/codec.h"
#include "report_texts.h"
#include "tree/nodes.h"

void tqjson2_set_nodo_entero(tqjson2_nodo_t *nodo, int32_t valor) {
    if (i_VERIFICA_NO_NULO(nodo))
        i_set_valor_basico(nodo, TQJSON_TIPO_ENTERO, nullptr, valor, i_DOUBLE_RELLENO, FALSO);
}

void tqjson2_set_nodo_double(tqjson2_nodo_t *nodo, double valor) {
    if (i_VERIFICA_NO_NULO(nodo))
        i_set_valor_basico(nodo, TQJSON_TIPO_DOUBLE, nullptr, i_ENTERO_RELLENO, valor, FALSO);
}

void tqjson2_set_nodo_booleano(tqjson2_nodo_t *nodo, tqbool valor) {
    if (i_VERIFICA_NO_NULO(nodo))
        i_set_valor_basico(nodo, TQJSON_TIPO_BOOLEANO, nullptr, i_ENTERO_RELLENO, i_DOUBLE_RELLENO,
                           valor);
}

void tqjson2_set_nodo_texto_unicode_a_utf8(tqjson2_nodo_t *nodo, char16_t **texto) {
    char *utf8 = i_convierte_texto_unicode_a_utf8(CIERTO, texto);
    if (!nodo) { // reported by the change below; the text is not leaked meanwhile
        marlstr_destruye(&utf8);
        i_VERIFICA_NO_NULO(nodo);
        return;
    }
    i_set_valor_basico(nodo, TQJSON_TIPO_CADENA, &utf8, i_ENTERO_RELLENO, i_DOUBLE_RELLENO, FALSO);
    if (nodo->tipo == TQJSON_TIPO_CADENA)
        nodo->texto_decodificado = FALSO;
}

void tqjson2_set_nodo_valores_array(tqjson2_nodo_t *nodo, arr_puntero_t **valores) {
    if (!i_VERIFICA_NO_NULO(nodo) || !i_VERIFICA_TEXTO(nodo->tipo == TQJSON_TIPO_ARRAY,
                                                       i_TEXTO_NODO_DE_TIPO[TQJSON_TIPO_ARRAY])) {
        // Refused, but taken over all the same, so that the caller's elements are not leaked.
        arr_puntero_t *rechazados = i_toma_no_null(valores);
        if (rechazados)
            arr_DestruyeEstructurasConTipo(&rechazados, i_destruye_nodo_elemento);
        return;
    }
    // The old elements go first, through one array node, so that their destruction keeps to
    // constant stack depth however deep they are.
    tqjson2_nodo_t *viejos = i_crea_nodo_array_con_valores(&nodo->valores_array);
    tqjson2_destruye_nodo(&viejos);
    arr_puntero_t *nuevos = i_toma_no_null(valores);
    // A refused null array leaves the node an empty array rather than none.
    nodo->valores_array = nuevos ? nuevos : arr_CreaPunteroConTipo(0);
}
