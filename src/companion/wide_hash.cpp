// tqbase string component: keyed hashes of wide text, for tables whose keys come from outside.
// SipHash-1-3 over the text's UTF-16 units taken as little-endian bytes, four units a word.
#include <bit>

#include "letter_case.h"
#include "wide_strings.h"

namespace {

struct i_estado_sip {
    uint64_t v0, v1, v2, v3;

    void ronda() {
        v0 += v1, v1 = std::rotl(v1, 13), v1 ^= v0, v0 = std::rotl(v0, 32);
        v2 += v3, v3 = std::rotl(v3, 16), v3 ^= v2;
        v0 += v3, v3 = std::rotl(v3, 21), v3 ^= v0;
        v2 += v1, v1 = std::rotl(v1, 17), v1 ^= v2, v2 = std::rotl(v2, 32);
    }
    void absorbe(uint64_t palabra) {
        v3 ^= palabra;
        ronda();
        v0 ^= palabra;
    }
};

// `pliega` gives each unit as it enters the hash: itself, or its case-folded form.
template <char16_t (*pliega)(char16_t)>
uint64_t i_resumen(const char16_t *cadena, const uint64_t clave[2]) {
    i_estado_sip s{clave[0] ^ 0x736f6d6570736575ull, clave[1] ^ 0x646f72616e646f6dull,
                   clave[0] ^ 0x6c7967656e657261ull, clave[1] ^ 0x7465646279746573ull};
    uint64_t palabra = 0;
    uint64_t unidades = 0;
    for (; *cadena; ++cadena) {
        palabra |= uint64_t{pliega(*cadena)} << (16 * (unidades % 4));
        if (++unidades % 4 == 0) {
            s.absorbe(palabra);
            palabra = 0;
        }
    }
    // The last word carries the length in bytes, so that no text hashes as its own extension.
    s.absorbe(palabra | (unidades * 2) << 56);
    s.v2 ^= 0xff;
    s.ronda(), s.ronda(), s.ronda();
    return s.v0 ^ s.v1 ^ s.v2 ^ s.v3;
}

char16_t i_tal_cual(char16_t unidad) {
    return unidad;
}

} // namespace

uint64_t widestr_nousar_resumen(const char16_t *cadena, const uint64_t clave[2]) {
    return i_resumen<i_tal_cual>(cadena, clave);
}

uint64_t widestr_nousar_resumen_may_o_min(const char16_t *cadena, const uint64_t clave[2]) {
    return i_resumen<i_pliega_may_o_min>(cadena, clave);
}
