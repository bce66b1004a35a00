// tqbase trap frames: a guarded call survives an access fault or an internal-error report made
// inside it, and runs its fallback instead. Frames nest and belong to the thread that opens
// them. While any frame is open in the process, the component holds the SIGSEGV and SIGBUS
// dispositions (on Windows, a vectored exception handler that is called first); the previous
// ones come back when the last frame closes.
//
//     int32_t estado;
//     trapable_marco_t *marco = trapable_nousar_try_catch_INI(FALSO, &estado);
//     if (TRAPABLE_GUARDA(marco)) {
//         guarded_call();
//     } else if (trapable_nousar_ChequeaExcepcion(marco, trapable_nousar_excepcion(marco))) {
//         trapable_nousar_try_catch_ERROR(marco);
//         fallback();
//     }
//     trapable_nousar_try_catch_END(&marco, FALSO, estado);
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

#include <setjmp.h>
#if defined(_WIN32)
// Armed without a frame: the C runtime's longjmp then restores the registers and does not unwind
// the system's exception frames on its way, which a jump out of a failed call must not do.
typedef jmp_buf trapable_salto_t;
#define i_TRAPABLE_ARMA(salto)  _setjmp((salto), NULL)
#define i_TRAPABLE_SALTA(salto) longjmp((salto), 1)
// What an access fault reaches the filter as: the system's exception code.
#define TRAPABLE_CODIGO_ACCESO  ((int32_t)0xC0000005) /* EXCEPTION_ACCESS_VIOLATION */
#define TRAPABLE_CODIGO_PAGINA  ((int32_t)0xC0000006) /* EXCEPTION_IN_PAGE_ERROR */
#else
#include <signal.h>
typedef sigjmp_buf trapable_salto_t;
#define i_TRAPABLE_ARMA(salto)  sigsetjmp(salto, 1)
#define i_TRAPABLE_SALTA(salto) siglongjmp((salto), 1)
// What an access fault reaches the filter as: the signal number.
#define TRAPABLE_CODIGO_ACCESO  SIGSEGV
#define TRAPABLE_CODIGO_PAGINA  SIGBUS
#endif

TQBASE_C_INICIO

typedef struct trapable_marco trapable_marco_t;

// What reached the guard: TRAPABLE_CODIGO_ACCESO or TRAPABLE_CODIGO_PAGINA for an access
// fault, or TRAPABLE_CODIGO_ERROR_INTERNO for a report.
typedef struct trapable_excepcion {
    int32_t codigo;
    const void *direccion; // the faulting address of an access fault, else null
} trapable_excepcion_t;

#define TRAPABLE_CODIGO_ERROR_INTERNO (-1)

// Status values written through the INI status address.
#define TRAPABLE_ESTADO_SIN_ERROR 0
#define TRAPABLE_ESTADO_ERROR     1

// Opens a frame on the calling thread and writes TRAPABLE_ESTADO_SIN_ERROR to `*estado`.
// `muestra_error` CIERTO makes the END of a failed frame write a line on standard error.
TQBASE_API trapable_marco_t *trapable_nousar_try_catch_INI(tqbool muestra_error, int32_t *estado);
// The jump buffer the guard macro arms; internal to TRAPABLE_GUARDA.
TQBASE_API trapable_salto_t *trapable_nousar_salto(trapable_marco_t *marco);
// What the frame caught, for the filter.
TQBASE_API const trapable_excepcion_t *trapable_nousar_excepcion(const trapable_marco_t *marco);
// The filter: CIERTO for access faults and internal-error reports.
TQBASE_API tqbool trapable_nousar_ChequeaExcepcion(const trapable_marco_t *marco,
                                                   const trapable_excepcion_t *excepcion);
// Marks the frame failed (status TRAPABLE_ESTADO_ERROR) and stops it catching, so that a
// failure in the fallback goes to the enclosing frame.
TQBASE_API void trapable_nousar_try_catch_ERROR(trapable_marco_t *marco);
// Closes the frame, frees it and nulls `*marco`.
TQBASE_API void trapable_nousar_try_catch_END(trapable_marco_t **marco, tqbool muestra_error,
                                              int32_t estado);

// True when the guarded code is to run; false after a caught failure. It must be evaluated in
// the function that runs the guarded call, which therefore must not return before the frame
// closes.
#define TRAPABLE_GUARDA(marco) (i_TRAPABLE_ARMA(*trapable_nousar_salto(marco)) == 0)

TQBASE_C_FIN
