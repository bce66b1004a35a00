// Precondition checks of the code base's libraries. A failed check is an internal-error report
// whose condition text is the condition exactly as written at the call site; the caller then
// leaves by its safe path, so a broken precondition never turns into a crash.
#pragma once

#include "tqbase/error_interno.h"

inline bool i_verifica(bool cumple, const char *condicion, const char *modulo, int linea) {
    if (cumple) [[likely]]
        return true;
    error_interno(condicion, modulo, linea, 0);
    return false;
}

// Each source file (or its subsystem's private header) defines `i_MODULO`, the module string
// that its reports carry. The condition is stringified here, before any macro in it expands,
// so that "(nodo) != NULL" reaches the handler as written and not with NULL expanded.
#define i_VERIFICA(condicion) i_verifica((condicion), #condicion, i_MODULO, __LINE__)

// The one spelling of a null check's text: "(" x ") != NULL", whatever x is.
#define i_TEXTO_NO_NULO(x)    "(" #x ") != NULL"
#define i_VERIFICA_NO_NULO(x) i_verifica((x) != nullptr, i_TEXTO_NO_NULO(x), i_MODULO, __LINE__)

// A value that no case of a choice covers.
#define i_ERROR_DEFAULT() error_interno_default_error(0, 0, i_MODULO, __LINE__, 0)

// As i_VERIFICA, reported against a caller's module string and source line: for components
// whose callers pass their own position so that the report points at them.
#define i_VERIFICA_EN(modulo, linea, condicion)                                                    \
    i_verifica((condicion), #condicion, (modulo), (linea))
#define i_VERIFICA_NO_NULO_EN(modulo, linea, x)                                                    \
    i_verifica((x) != nullptr, i_TEXTO_NO_NULO(x), (modulo), (linea))
