/** @file
   tqbase: internal-error reports, made when a caller breaks a precondition. */
#ifndef TQBASE_ERROR_INTERNO_H
#define TQBASE_ERROR_INTERNO_H

#include "tipos.h"

TQBASE_C_INICIO

/** Receives every report: the checked condition as written in the source (or "default" for a
   case no branch covers), the module string of the reporting library and the source line. */
typedef void (*error_interno_manejador_t)(const char *condicion, const char *modulo, int linea);

/** Installs `manejador` for the whole process and returns the previous one. Null restores the
   default handler, which writes `<modulo>:<linea>: internal error: <condicion>` on standard
   error and returns, so that the operation goes on. */
TQBASE_API error_interno_manejador_t
error_interno_set_manejador(error_interno_manejador_t manejador);

/** Reports a broken precondition. Inside an open trap frame of the calling thread the frame
   catches the report after the handler has seen it; otherwise this returns. */
TQBASE_API void error_interno(const char *condicion, const char *modulo, int linea,
                              int32_t reservado);

/** Reports a value that no case of a choice covers; the handler sees the condition "default". */
TQBASE_API void error_interno_default_error(const void *reservado_1, int32_t reservado_2,
                                            const char *modulo, int linea, int32_t reservado_3);

TQBASE_C_FIN

#endif
