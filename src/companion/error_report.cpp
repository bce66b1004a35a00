// tqbase assertion component: internal-error reports go to one installable handler.
#include "tqbase/error_interno.h"

#include <atomic>
#include <cstdio>

#include "trap_catch.h"

namespace {

std::atomic<error_interno_manejador_t> g_manejador{nullptr};

// A report is never fatal by default: the libraries read data from outside, and a bad input
// number must not end the application.
void i_manejador_defecto(const char *condicion, const char *modulo, int linea) {
    std::fprintf(stderr, "%s:%d: internal error: %s\n", modulo, linea, condicion);
}

void i_informa(const char *condicion, const char *modulo, int linea) {
    error_interno_manejador_t manejador = g_manejador.load(std::memory_order_acquire);
    if (!manejador)
        manejador = i_manejador_defecto;
    manejador(condicion ? condicion : "", modulo ? modulo : "", linea);
    i_trapable_captura_error_interno();
}

} // namespace

error_interno_manejador_t error_interno_set_manejador(error_interno_manejador_t manejador) {
    return g_manejador.exchange(manejador, std::memory_order_acq_rel);
}

void error_interno(const char *condicion, const char *modulo, int linea, int32_t) {
    i_informa(condicion, modulo, linea);
}

void error_interno_default_error(const void *, int32_t, const char *modulo, int linea, int32_t) {
    i_informa("default", modulo, linea);
}
