// Reading texts in tests: the result, and the tree as its minified text.
#pragma once

#include <ostream>
#include <string>

#include "support/tree_builder.h"

struct ReadResult {
    tqbool ok;
    std::string text; // the tree written minified; empty without a tree
    bool operator==(const ReadResult &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const ReadResult &r) {
    return out << (r.ok == CIERTO ? "CIERTO " : "FALSO ") << r.text;
}

// Reads `texto` into `tree`, decoding when `decodifica`.
inline tqbool read_tree(const std::string &texto, Tree &tree, tqbool decodifica = CIERTO) {
    return decodifica == CIERTO ? tqjson2_se_lee_texto_utf8(texto.c_str(), &tree.raiz)
                                : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(
                                      texto.c_str(), &tree.raiz);
}

// Reads `texto`, decoding when `decodifica`; the node given in must be overwritten.
inline ReadResult read_text(const std::string &texto, tqbool decodifica = CIERTO) {
    const Tree previo{integer(0)};
    Tree tree{previo.raiz};
    const tqbool ok = read_tree(texto, tree, decodifica);
    return {ok, tree.raiz ? minified(tree.raiz) : ""};
}
