// What the named-value families share: the writers' check that a label is new and the
// readers' lookup of the one member a label names.
#pragma once

#include "tree/nodes.h"

// Reports a label that `nodo` already holds; the writer appends all the same.
void i_comprueba_etiqueta_nueva(const char16_t *etiqueta, const tqjson2_nodo_t *nodo);

// The value of the one member named `etiqueta` when `nodo` is an object (a null node is
// reported by the kind query), else null.
const tqjson2_nodo_t *i_miembro_legible(const char16_t *etiqueta, const tqjson2_nodo_t *nodo);
