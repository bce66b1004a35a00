// The index of a large object's members: hash tables from member names to positions, which the
// member array keeps as its attachment. A lookup makes the table it needs the first time it meets
// a large object; the tree's own changes bring the tables up to date, and any change made through
// the array component lets the whole index go (arr_anexo_t), so that it never answers for members
// the object no longer holds.
#pragma once

#include "tree/nodes.h"

// Objects of fewer members are searched member by member and never indexed: below this size,
// looking each member up once costs less without an index than making one, ignoring letter case
// above all (bench/lookup_bench.cpp, first_exact and first_any_case).
inline constexpr uint32_t i_UMBRAL_INDICE = 24;

// What a lookup matches: the name exactly, or ignoring letter case.
enum i_coincidencia { i_EXACTA = 0, i_MAY_O_MIN = 1 };

// Looks `etiqueta` up among the `num` members `datos` of the array `atributos` through its index,
// which it makes first when the array has none. True when the index answers, with `*posicion`:
// - exact: the position of the only member of that very name; ARR_NO_ENCONTRADO when no member or
//   several bear it;
// - ignoring case: the position of the member whose value the member-by-member search gives (the
//   first match holding a value other than null, else the last match); ARR_NO_ENCONTRADO when
//   nothing matches.
// False when the members must be searched one by one, whose reports the index could not give: a
// null name, a null member, or, ignoring case, a match holding no value node.
bool i_busca_en_indice(const arr_puntero_t *atributos, void *const *datos, uint32_t num,
                       const char16_t *etiqueta, i_coincidencia coincidencia, uint32_t *posicion);

// Appends the member (taken over) to the array, and extends the index in place.
void i_agrega_atributo(arr_puntero_t *atributos, tqjson2_atributo_t *atributo);

// Removes the member at `posicion` from the array and destroys it, and updates the index.
void i_borra_atributo(arr_puntero_t *atributos, uint32_t posicion);
