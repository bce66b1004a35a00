// Trees built through the exports in one expression, obj({{u"a", integer(1)}}), arr({...}),
// and written back as text.
#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "companion/wide_strings.h"
#include "support/texts.h"
#include "tqjson2.h"

// A double's bits, for comparing values bit for bit.
inline uint64_t bits(double valor) {
    return std::bit_cast<uint64_t>(valor);
}

// Short names for the scalar creators.
inline const auto integer = &tqjson2_crea_nodo_entero;
inline const auto dbl = &tqjson2_crea_nodo_double;
inline const auto boolean = &tqjson2_crea_nodo_booleano;
inline const auto null_node = &tqjson2_crea_nodo_null;
// A string node holding `utf8` as plain (decoded) text, stored byte for byte.
inline tqjson2_nodo_t *plain(const std::string &utf8) {
    char *texto = static_cast<char *>(marlspy_nousar_malloc(utf8.size() + 1));
    utf8.copy(texto, utf8.size());
    texto[utf8.size()] = '\0';
    return tqjson2_crea_nodo_texto_utf8(&texto);
}
// A string node from wide text, stored in the escaped form.
inline tqjson2_nodo_t *escaped(const char16_t *texto) {
    char16_t *copia = widestr_nousar_copia(texto, "test", __LINE__);
    return tqjson2_crea_nodo_texto_unicode_a_utf8(&copia);
}
inline tqjson2_nodo_t *arr(std::initializer_list<tqjson2_nodo_t *> elementos) {
    tqjson2_nodo_t *array = tqjson2_crea_nodo_array();
    for (tqjson2_nodo_t *elemento : elementos)
        tqjson2_append_elemento_a_array(array, &elemento);
    return array;
}
inline tqjson2_nodo_t *
obj(std::initializer_list<std::pair<const char16_t *, tqjson2_nodo_t *>> miembros) {
    tqjson2_nodo_t *objeto = tqjson2_crea_nodo_objeto();
    for (auto miembro : miembros)
        tqjson2_append_nodo_a_objeto(objeto, miembro.first, &miembro.second);
    return objeto;
}

// A tree destroyed at the end of the scope.
struct Tree {
    tqjson2_nodo_t *raiz;
    ~Tree() {
        if (raiz)
            tqjson2_destruye_nodo(&raiz);
    }
};

inline std::string indented(const tqjson2_nodo_t *raiz) {
    return take(tqjson2_genera_texto_utf8(raiz));
}
inline std::string minified(const tqjson2_nodo_t *raiz) {
    return take(tqjson2_genera_texto_utf8_minificado(raiz));
}
