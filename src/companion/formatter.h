// tqbase string component: formatting into a new wide string.
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

// A new wide string formatted as the printf family does, for exactly the conversions the code
// base uses:
//   %s          a wide (char16_t) string
//   %i          int32_t
//   %ld         int32_t (long is 32-bit on the home platform; "%ld.0" writes an integral double)
//   %lld, %Id   int64_t
//   %.*G        int precision, then double: the same characters as C's printf
//   %%          a percent sign
// Any other conversion is an internal-error report and writes nothing.
TQBASE_API char16_t *copiaforu_nousar_formatea(const char16_t *formato, ...);

// The ASCII characters that "%.*G" writes for `valor` with `precision` (negative: 6), in
// `texto` of `tam` bytes, without a terminator; the count written. A `tam` too small for the
// text is reported and gives 0. The writer of the code base formats doubles through it.
TQBASE_API size_t copiaforu_nousar_texto_G(double valor, int precision, char *texto, size_t tam);

TQBASE_C_FIN
