// tqbase file component: files saved by wide name (tqbase/ficheros.h), written through lc_fwrite
// or the text-output component (text_output.h).
#pragma once

#include "tqbase/ficheros.h"

// The steps of a save that the failure seam can make fail.
enum i_paso_fichero_t { i_PASO_NINGUNO, i_PASO_ESCRITURA, i_PASO_VOLCADO, i_PASO_SUSTITUCION };

// What lc_fclose reports for the first step of a save that failed.
inline constexpr char i_TEXTO_FALLO_ESCRITURA[] = "(fallo_escritura) == 0";
inline constexpr char i_TEXTO_FALLO_VOLCADO[] = "(fallo_volcado) == 0";
inline constexpr char i_TEXTO_FALLO_CIERRE[] = "(fallo_cierre) == 0";
inline constexpr char i_TEXTO_FALLO_SUSTITUCION[] = "(fallo_sustitucion) == 0";

// For tests: from now on every save fails at `paso` as the system would, with EIO (for writes,
// at the `escritura`th write of each file, counted from 1), until i_PASO_NINGUNO is set.
void i_ficheros_simula_fallo(i_paso_fichero_t paso, unsigned escritura);
