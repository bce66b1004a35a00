// tqbase letter case: the simple one-to-one case folding of BMP code units, from a generated
// two-level delta table (regenerate it with tools/gen_letter_case.py for a newer Unicode).
#include "letter_case.h"

namespace {

#include "letter_case_table.inc"

constexpr unsigned i_MASCARA_BLOQUE = (1u << i_BITS_BLOQUE) - 1;

// ASCII, the common case by far in member names, folds without the table.
char16_t i_pliega_ascii(char16_t unidad) {
    return (unidad >= u'A' && unidad <= u'Z') ? char16_t(unidad + (u'a' - u'A')) : unidad;
}

char16_t i_pliega_con_tabla(char16_t unidad) {
    const unsigned bloque = i_INDICE_BLOQUE[unidad >> i_BITS_BLOQUE];
    return char16_t(unidad + i_DELTAS[bloque][unidad & i_MASCARA_BLOQUE]);
}

} // namespace

char16_t i_pliega_may_o_min(char16_t unidad) {
    return unidad < 0x80 ? i_pliega_ascii(unidad) : i_pliega_con_tabla(unidad);
}
