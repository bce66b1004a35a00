// tqbase text-output component.
#include "text_output.h"

#include <cstdarg>

#include "file_handle.h"

int ctxt_printf(lc_fichero_t *fichero, const char *formato, ...) {
    if (!formato || !i_fichero_empieza_escritura(fichero))
        return -1;
    va_list argumentos;
    va_start(argumentos, formato);
    const int resultado = std::vfprintf(fichero->flujo, formato, argumentos);
    va_end(argumentos);
    if (resultado < 0)
        i_fichero_anota_fallo(fichero);
    return resultado;
}
