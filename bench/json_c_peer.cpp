#include "json_c_peer.h"

#include <json-c/json.h>

namespace json_c_peer {

Arbol *lee(const char *texto) {
    return reinterpret_cast<Arbol *>(json_tokener_parse(texto));
}

void destruye(Arbol *raiz) {
    json_object_put(reinterpret_cast<json_object *>(raiz));
}

size_t escribe(Arbol *raiz, bool indentado) {
    size_t bytes = 0;
    json_object_to_json_string_length(reinterpret_cast<json_object *>(raiz),
                                      indentado ? JSON_C_TO_STRING_PRETTY : JSON_C_TO_STRING_PLAIN,
                                      &bytes);
    return bytes;
}

const char *version() {
    return json_c_version();
}

} // namespace json_c_peer
