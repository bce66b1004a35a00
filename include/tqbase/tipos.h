/** @file
   tqbase: the code base's basic types and the export macro of the companion library. */
#ifndef TQBASE_TIPOS_H
#define TQBASE_TIPOS_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h> /* char16_t: wide text is UTF-16 on every platform */
#endif

#if defined(_WIN32)
#if defined(TQBASE_BUILD)
#define TQBASE_API __declspec(dllexport)
#else
#define TQBASE_API __declspec(dllimport)
#endif
#else
/** Marks the companion library's exports. */
#define TQBASE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define TQBASE_C_INICIO extern "C" {
#define TQBASE_C_FIN    }
#else
/** Opens the block of C declarations of a header: extern "C" { in C++, nothing in C. */
#define TQBASE_C_INICIO
/** Closes the block that TQBASE_C_INICIO opens. */
#define TQBASE_C_FIN
#endif

/** The code base's 16-bit boolean. Only CIERTO (1) is true where a flag is tested against it. */
typedef uint16_t tqbool;
#define CIERTO 1 /**< true */
#define FALSO  0 /**< false */

#endif
