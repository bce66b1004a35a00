// Helpers for tests that look inside tree records.
#pragma once

#include <cstring>
#include <string>

#include "tree/nodes.h"

// A wide string from the tqbase memory component, as the creators expect to take over.
inline char16_t *wide(const char16_t *texto) {
    return widestr_nousar_copia(texto, "test", 0);
}
// A byte string from the tqbase memory component.
inline char *bytes(const char *texto) {
    return cad_copia_cadena(texto);
}

inline uint64_t bits(double valor) {
    uint64_t b;
    std::memcpy(&b, &valor, sizeof b);
    return b;
}

// An array node whose only element is `hijo`, built through the internal creators.
inline tqjson2_nodo_t *array_of(tqjson2_nodo_t *hijo) {
    arr_puntero_t *valores = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(valores, hijo);
    return i_crea_nodo_array_con_valores(&valores);
}

// Appends a member to an object node through the internal records.
inline void add_member(tqjson2_nodo_t *objeto, tqjson2_atributo_t *atributo) {
    arr_AppendPunteroConTipo(objeto->atributos_objeto, atributo);
}

// The decoded wide text of a string node, freed here.
inline std::u16string text_of(const tqjson2_nodo_t *nodo) {
    char16_t *texto = tqjson2_get_valor_cadena_unicode(nodo);
    std::u16string s(texto);
    widestr_nousar_destruye(&texto, "test", 0);
    return s;
}

// The member at `i` of an object node.
inline const tqjson2_atributo_t *member_at(const tqjson2_nodo_t *objeto, uint32_t i) {
    return static_cast<const tqjson2_atributo_t *>(
        arr_GetPunteroConTipo(objeto->atributos_objeto, i));
}

// The element at `i` of an array node.
inline tqjson2_nodo_t *element_at(const tqjson2_nodo_t *array, uint32_t i) {
    return static_cast<tqjson2_nodo_t *>(arr_GetPunteroConTipo(array->valores_array, i));
}
