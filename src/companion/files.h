// tqbase file component: files opened by wide name for writing through the text-output
// component (text_output.h).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

typedef struct lc_fichero lc_fichero_t;

// Opens `nombre` (wide, UTF-16) in the fopen manner with the wide mode `modo` ("wt": write from
// the start, creating or emptying the file, as text; on POSIX text mode changes no byte). The
// handle is buffered. A file that cannot be opened is reported against the caller's `modulo`
// and `linea` and gives null, which ctxt_printf and lc_fclose accept and ignore.
TQBASE_API lc_fichero_t *f_lc_fopen_u(const char16_t *nombre, const char16_t *modo,
                                      const char *modulo, int linea);
// Puts every byte written into the file and closes it; 0 on success, as fclose.
TQBASE_API int lc_fclose(lc_fichero_t *fichero);

TQBASE_C_FIN
