// Creating and destroying the members of object nodes.
#include <cstring>

#include "tree/nodes.h"

tqjson2_atributo_t *i_crea_atributo(char16_t **nombre, tqbool es_propietario,
                                    tqjson2_nodo_t *valor) {
    char16_t *propio = i_toma_no_null(nombre);
    if (!propio) // refused above; an empty name keeps the member's name non-null
        propio = widestr_nousar_creacadena(1);
    tqjson2_atributo_t *atributo = i_nuevo<tqjson2_atributo_t>();
    atributo->nombre = propio;
    atributo->es_propietario = es_propietario;
    atributo->valor = valor;
    return atributo;
}

tqjson2_atributo_t *i_crea_atributo_propietario(char16_t **nombre, tqjson2_nodo_t **nodo) {
    return i_crea_atributo(nombre, CIERTO, i_toma(nodo));
}

tqjson2_atributo_t *i_crea_atributo_const(const char16_t *nombre, tqjson2_nodo_t *valor) {
    char16_t *copia = widestr_nousar_copia(nombre, i_MODULO, __LINE__);
    return i_crea_atributo(&copia, FALSO, valor);
}

tqjson2_atributo_t *tqjson2_crea_atributo(const char16_t *nombre, tqjson2_nodo_t **nodo) {
    char16_t *copia = widestr_nousar_copia(nombre, i_MODULO, __LINE__);
    return i_crea_atributo_propietario(&copia, nodo);
}

void i_destruye_atributo_elemento(void *atributo) {
    i_destruye_atributo(static_cast<tqjson2_atributo_t **>(atributo));
}
