// The record behind a file of the file component, shared by the components that write to it.
#pragma once

#include <cstdio>

#include "files.h"
#include "system_files.h"

struct lc_fichero {
    std::FILE *flujo;
    int fallo_escritura; // the system's error number of the first failed write; 0 while none
    unsigned escrituras; // writes begun, counted for the failure seam
    const char *modulo;  // the open's caller, which the reports of the later steps name
    int linea;
    i_ruta_t destino; // the file a save replaces
    i_ruta_t nuevo;   // the new file beside it; empty when the file is written in place
};

// Whether a write may go to the file: not once one has failed (the save is lost and later bytes
// would only fill the disk), nor when the failure seam fails this one.
bool i_fichero_empieza_escritura(lc_fichero_t *fichero);
// Keeps the failure of the write just made: errno's value, or EIO when the system set none.
void i_fichero_anota_fallo(lc_fichero_t *fichero);
