// Typed forms of the memory component's hand-over and release, for the C++ internals.
#pragma once

#include "tqbase/memoria.h"

// Takes over what `*puntero` points to and nulls the caller's pointer.
template <class T> inline T *i_toma(T **puntero) {
    return static_cast<T *>(marlspy_nousar_asigna_doble_puntero(puntero));
}

// As i_toma, and a null pointer is an internal-error report.
template <class T> inline T *i_toma_no_null(T **puntero) {
    return static_cast<T *>(marlspy_nousar_asigna_doble_puntero_no_null(puntero));
}

// A new uninitialised record of type T.
template <class T> inline T *i_nuevo() {
    return static_cast<T *>(marlspy_nousar_malloc(sizeof(T)));
}

// Frees a record of type T and nulls the caller's pointer.
template <class T> inline void i_libera(T **puntero) {
    marlspy_nousar_free_pp(puntero, sizeof(T));
}
