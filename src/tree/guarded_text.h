// Wide text made inside a trap frame, for the guarded appends and readers: a text that lies in
// unreadable memory, or a report raised while it is made, gives a placeholder instead.
#pragma once

#include "tree/nodes.h"

// The new wide text that `crea` makes, under the guard; a new copy of `marcador` when the frame
// catches a fault or a report raised there; null when the fault passes on. Only `crea` runs
// under the guard, so nothing else is left half-built by a jump back.
template <class Crea> char16_t *i_texto_guardado(Crea crea, const char16_t *marcador) {
    char16_t *volatile texto = nullptr; // volatile: assigned between the guard and a jump back
    int32_t estado;
    trapable_marco_t *marco = trapable_nousar_try_catch_INI(FALSO, &estado);
    if (TRAPABLE_GUARDA(marco)) {
        texto = crea();
    } else if (trapable_nousar_ChequeaExcepcion(marco, trapable_nousar_excepcion(marco)) ==
               CIERTO) {
        trapable_nousar_try_catch_ERROR(marco);
        texto = widestr_nousar_copia(marcador, i_MODULO, __LINE__);
    }
    trapable_nousar_try_catch_END(&marco, FALSO, estado);
    return texto;
}
