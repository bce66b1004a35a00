// Well-formed UTF-8 judged sixteen bytes a step, where the processor can look bytes up in
// tables (SSSE3). Text of other scripts mixes one-, two- and three-byte characters at random,
// which a byte-by-byte walk mispredicts at nearly every character.
#pragma once

#include <cstddef>

// Whether the vector judgement runs on this processor.
bool i_hay_validacion_utf8_vectorial();

// Whether the bytes [p, fin) are well-formed UTF-8 that encodes no surrogate: no overlong
// form, nothing above U+10FFFF, no sequence cut short. Only where
// i_hay_validacion_utf8_vectorial() holds.
bool i_utf8_bien_formado_vectorial(const unsigned char *p, const unsigned char *fin);
