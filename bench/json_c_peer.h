// json-c for peers_bench, behind functions of its own: json-c and jansson declare some of the
// same names (json_type, json_object_iter_next), so their headers cannot share a source file.
#pragma once

#include <cstddef>

namespace json_c_peer {

struct Arbol; // a json-c root object

// The tree of a zero-terminated text, or null when the text does not read.
Arbol *lee(const char *texto);
void destruye(Arbol *raiz);
// Writes the tree, indented (two spaces a level) or plain, and returns the size of the text.
// json-c writes into a buffer the root object owns and keeps for the next write: there is no
// text to free, and from the second write on no buffer to grow.
size_t escribe(Arbol *raiz, bool indentado);
const char *version();

} // namespace json_c_peer
