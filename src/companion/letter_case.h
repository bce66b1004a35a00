// tqbase: simple one-to-one letter-case folding of BMP code units.
#pragma once

#include <cstdint>

// The unit's case-folded form: every BMP letter that has a simple one-to-one case mapping maps
// to one representative of its case pair; every other unit maps to itself. Two texts are equal
// ignoring letter case when their units fold equal one by one.
char16_t i_pliega_may_o_min(char16_t unidad);
