// tqbase text-output component: formatted writes to a file of the file component.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "files.h"

TQBASE_C_INICIO

// Writes as fprintf does (byte format and arguments); the result is fprintf's, or -1 for a
// null handle and once a write of the file has failed (the save then fails at lc_fclose).
TQBASE_API int ctxt_printf(lc_fichero_t *fichero, const char *formato, ...);

TQBASE_C_FIN
