// Helpers for tests that look inside tree records.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "support/recording_handler.h"
#include "support/tree_builder.h"
#include "tree/nodes.h"

// Texts from the tqbase memory components, as the creators expect to take over.
inline char16_t *wide(const char16_t *texto) {
    return widestr_nousar_copia(texto, "test", 0);
}
inline char *bytes(const char *texto) {
    return cad_copia_cadena(texto);
}

// A node's kind, whether it has member and element arrays, its integer, its double's bits, its
// boolean and its decoded flag.
using Fields = std::tuple<int32_t, bool, bool, int32_t, uint64_t, tqbool, tqbool>;
inline Fields fields(const tqjson2_nodo_t *n) {
    return Fields(n->tipo, i_atributos_de(n) != nullptr, i_valores_de(n) != nullptr, i_entero_de(n),
                  bits(i_double_de(n)), n->booleano, n->texto_decodificado);
}
// What unused integer and double fields hold.
constexpr int32_t kFill = 2147483647;
constexpr uint64_t kFillBits = 0x7FEFFFFFFFFFFFFFull;

// What a lookup leaves in a value it did not write.
inline tqjson2_nodo_t *const kUntouched = reinterpret_cast<tqjson2_nodo_t *>(0x1);

// Appends a member to an object node through the internal records.
inline void add_member(tqjson2_nodo_t *objeto, tqjson2_atributo_t *atributo) {
    arr_AppendPunteroConTipo(objeto->atributos_objeto, atributo);
}

// The decoded wide text of a string node.
inline std::u16string text_of(const tqjson2_nodo_t *nodo) {
    return take(tqjson2_get_valor_cadena_unicode(nodo));
}

// The member at `i` of an object node, the element at `i` of an array node.
inline const tqjson2_atributo_t *member_at(const tqjson2_nodo_t *objeto, uint32_t i) {
    return static_cast<const tqjson2_atributo_t *>(
        arr_GetPunteroConTipo(objeto->atributos_objeto, i));
}
inline tqjson2_nodo_t *element_at(const tqjson2_nodo_t *array, uint32_t i) {
    return static_cast<tqjson2_nodo_t *>(arr_GetPunteroConTipo(array->valores_array, i));
}
