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

tqjson2_atributo_t *i_crea_atributo_con_nombre_en_linea(size_t unidades) {
    const size_t bytes_nombre = (unidades + 1) * sizeof(char16_t);
    auto *atributo = static_cast<tqjson2_atributo_t *>(marlspy_nousar_malloc(
        offsetof(tqjson2_atributo, es_propietario) + sizeof(tqbool) + bytes_nombre));
    atributo->nombre = i_nombre_en_linea(atributo);
    atributo->nombre[unidades] = u'\0';
    atributo->valor = nullptr;
    atributo->es_propietario = CIERTO;
    return atributo;
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
