// Reading texts in tests: the result, and the tree as its minified text.
#pragma once

#include <string>

#include "support/tree_builder.h"

struct ReadResult {
    tqbool ok;
    std::string text; // the tree written minified; empty without a tree
    bool operator==(const ReadResult &) const = default;
};

// Reads `texto` (decoding when `decodifica`), writes what was read, destroys it.
inline ReadResult read_text(const std::string &texto, tqbool decodifica = CIERTO) {
    tqjson2_nodo_t *nodo = integer(0); // must be overwritten
    tqjson2_nodo_t *previo = nodo;
    const tqbool ok =
        decodifica == CIERTO
            ? tqjson2_se_lee_texto_utf8(texto.c_str(), &nodo)
            : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), &nodo);
    tqjson2_destruye_nodo(&previo);
    if (!nodo)
        return {ok, ""};
    ReadResult result{ok, take_text(tqjson2_genera_texto_utf8_minificado(nodo))};
    tqjson2_destruye_nodo(&nodo);
    return result;
}

inline std::ostream &operator<<(std::ostream &out, const ReadResult &r) {
    return out << (r.ok == CIERTO ? "CIERTO " : "FALSO ") << r.text;
}
