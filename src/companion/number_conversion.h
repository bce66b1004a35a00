// tqbase number-conversion component. A value outside the target's range is an internal-error
// report, after which the result saturates at the nearest bound (NaN gives 0).
// Internal to the code base: exported because tqjson2 links against it, but not installed and
// not for applications (see README.md).
#pragma once

#include "tqbase/tipos.h"

TQBASE_C_INICIO

TQBASE_API int32_t cambtipo_unsigned_long_a_long(uint32_t valor);
TQBASE_API uint32_t cambtipo_long_a_unsigned_long(int32_t valor);
TQBASE_API uint8_t cambtipo_unsigned_long_a_unsigned_char(uint32_t valor);
TQBASE_API uint32_t cambtipo_size_t_a_unsigned_long(size_t valor);
// CIERTO when `valor` lies in the signed 32-bit range (NaN does not).
TQBASE_API tqbool cambtipo_se_puede_double_a_long(double valor);
// `valor` truncated toward zero to signed 32-bit.
TQBASE_API int32_t cambtipo_double_a_long(double valor);
// The signed 32-bit integer nearest to `valor`, halves away from zero. Being the nearest, a
// value beyond the range gives the bound it passes, without a report; NaN gives 0.
TQBASE_API int32_t roundtol(double valor);

TQBASE_C_FIN
