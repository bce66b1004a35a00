// Destroying nodes and members. Destruction runs on a work stack instead of the C stack, so a
// tree of any depth is destroyed in constant stack space.
#include "tree/nodes.h"

// Frees the member's name and record and hands back the value it owned (null for a borrowed
// or missing value), which the caller destroys.
static tqjson2_nodo_t *i_desmonta_atributo(tqjson2_atributo_t **atributo) {
    tqjson2_atributo_t *a = i_toma(atributo);
    widestr_nousar_destruye(&a->nombre, i_MODULO, __LINE__);
    tqjson2_nodo_t *valor_propio = (a->es_propietario == CIERTO) ? a->valor : nullptr;
    i_libera(&a);
    return valor_propio;
}

void i_destruye_atributo(tqjson2_atributo_t **atributo) {
    if (!i_VERIFICA((atributo) != NULL) || !i_VERIFICA((*atributo) != NULL))
        return;
    if (tqjson2_nodo_t *valor = i_desmonta_atributo(atributo))
        tqjson2_destruye_nodo(&valor);
}

// Moves the nodes that `nodo` owns onto `pendientes`, frees everything else it holds and the
// record itself.
static void i_desmonta_nodo(tqjson2_nodo_t *nodo, arr_puntero_t *pendientes) {
    switch (nodo->tipo) {
        case TQJSON_TIPO_OBJETO:
            if (arr_puntero_t *atributos = nodo->atributos_objeto) {
                for (uint32_t i = 0, n = arr_NumElemsPuntero(atributos); i < n; ++i) {
                    auto *atributo =
                        static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, i));
                    if (tqjson2_nodo_t *valor = atributo ? i_desmonta_atributo(&atributo) : nullptr)
                        arr_AppendPunteroConTipo(pendientes, valor);
                }
                arr_DestruyeEstructurasConTipo(&nodo->atributos_objeto, nullptr);
            }
            break;
        case TQJSON_TIPO_ARRAY:
            if (arr_puntero_t *valores = nodo->valores_array) {
                for (uint32_t i = 0, n = arr_NumElemsPuntero(valores); i < n; ++i)
                    if (void *elemento = arr_GetPunteroConTipo(valores, i))
                        arr_AppendPunteroConTipo(pendientes, elemento);
                arr_DestruyeEstructurasConTipo(&nodo->valores_array, nullptr);
            }
            break;
        case TQJSON_TIPO_CADENA:
            marlstr_destruye(&nodo->cadena_utf8);
            break;
        case TQJSON_TIPO_ENTERO:
        case TQJSON_TIPO_DOUBLE:
        case TQJSON_TIPO_BOOLEANO:
        case TQJSON_TIPO_NULL:
            break;
        default:
            i_ERROR_DEFAULT(); // the record is freed all the same
            break;
    }
    i_libera(&nodo);
}

void tqjson2_destruye_nodo(tqjson2_nodo_t **nodo) {
    if (!i_VERIFICA((nodo) != NULL) || !i_VERIFICA((*nodo) != NULL))
        return;
    tqjson2_nodo_t *raiz = i_toma(nodo);
    if (raiz->tipo != TQJSON_TIPO_OBJETO && raiz->tipo != TQJSON_TIPO_ARRAY) {
        i_desmonta_nodo(raiz, nullptr); // owns no nodes: no work stack needed
        return;
    }
    arr_puntero_t *pendientes = arr_CreaPunteroConTipo(0);
    for (void *siguiente = raiz; siguiente; siguiente = arr_ExtraeUltimoPunteroConTipo(pendientes))
        i_desmonta_nodo(static_cast<tqjson2_nodo_t *>(siguiente), pendientes);
    arr_DestruyeEstructurasConTipo(&pendientes, nullptr);
}

void i_destruye_nodo_elemento(void *nodo) {
    tqjson2_destruye_nodo(static_cast<tqjson2_nodo_t **>(nodo));
}
