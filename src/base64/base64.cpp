// Base64 of RFC 4648 (standard alphabet, '=' padding, one line): an encoder sized from the
// input length alone, and a lenient decoder that skips every byte outside the encoding and
// stops at the first group holding padding.
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "companion/companion.h"
#include "report_texts.h"
#include "tqjson2.h"

namespace {

constexpr char i_MODULO_BASE64[] = "tqjson2: tqjsonbase64";
constexpr char i_base64_table[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char i_FUERA = 0x80; // not part of the encoding
// Inside the decoder '=' is told apart from 'A' by this mark; it still stands for 0.
constexpr unsigned char i_RELLENO = 0x40;

// Two characters for every 12 bits, so that the encoder makes one lookup per 12 bits.
struct i_tabla_pares {
    char pares[4096][2];
    constexpr i_tabla_pares() : pares{} {
        for (int i = 0; i < 4096; ++i) {
            pares[i][0] = i_base64_table[i >> 6];
            pares[i][1] = i_base64_table[i & 63];
        }
    }
};
constexpr i_tabla_pares i_PARES;

uint32_t i_tam_salida(const unsigned char *out, const unsigned char *pos) {
    if (!i_verifica(out <= pos, i_TEXTO_SALIDA_EN_ORDEN, i_MODULO_BASE64, __LINE__))
        return 0;
    return cambtipo_size_t_a_unsigned_long(static_cast<size_t>(pos - out));
}

// Whether a byte is an alphabet character or '=', as the decoding table tells.
inline unsigned i_es_de_la_codificacion(unsigned char c) {
    return (static_cast<unsigned char>(c - 'A') < 26) | (static_cast<unsigned char>(c - 'a') < 26) |
           (static_cast<unsigned char>(c - '0') < 10) | (c == '+') | (c == '/') | (c == '=');
}

#if defined(__SSE2__) || defined(_M_X64)
// 0xFF in the lanes of `x` that lie in [lo, lo + n).
inline __m128i i_en_rango(__m128i x, char lo, char n) {
    const __m128i d = _mm_sub_epi8(x, _mm_set1_epi8(lo));
    return _mm_cmpeq_epi8(_mm_min_epu8(d, _mm_set1_epi8(static_cast<char>(n - 1))), d);
}
#endif

// The decoder's first pass: the bytes that the second pass does not skip, 16 at a time where
// the processor has SSE2 (every x86-64 does).
uint32_t i_cuenta_de_la_codificacion(const unsigned char *in, uint32_t len) {
    uint32_t cuenta = 0, i = 0;
#if defined(__SSE2__) || defined(_M_X64)
    while (len - i >= 16) {
        __m128i suma = _mm_setzero_si128(); // counts per lane, at most 255 rounds
        for (uint32_t rondas = 0; rondas < 255 && len - i >= 16; ++rondas, i += 16) {
            const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in + i));
            __m128i es = _mm_or_si128(i_en_rango(x, 'A', 26), i_en_rango(x, 'a', 26));
            es = _mm_or_si128(es, i_en_rango(x, '0', 10));
            es = _mm_or_si128(es, _mm_cmpeq_epi8(x, _mm_set1_epi8('+')));
            es = _mm_or_si128(es, _mm_cmpeq_epi8(x, _mm_set1_epi8('/')));
            es = _mm_or_si128(es, _mm_cmpeq_epi8(x, _mm_set1_epi8('=')));
            suma = _mm_sub_epi8(suma, es);
        }
        const __m128i par = _mm_sad_epu8(suma, _mm_setzero_si128());
        cuenta += static_cast<uint32_t>(_mm_cvtsi128_si32(par) +
                                        _mm_cvtsi128_si32(_mm_srli_si128(par, 8)));
    }
#endif
    for (; i < len; ++i)
        cuenta += i_es_de_la_codificacion(in[i]);
    return cuenta;
}

inline void i_escribe_par(unsigned char *pos, uint32_t doce_bits) {
    std::memcpy(pos, i_PARES.pares[doce_bits], 2);
}

} // namespace

char *tqjsonbase64_encode(const void *src, uint32_t len, uint32_t *out_len) {
    const uint32_t tam = len * 4u / 3u + 4u + 1u; // wraps from 2^30 bytes on: refused below
    if (tam < len)
        return nullptr;
    auto *out = static_cast<unsigned char *>(marlspy_nousar_calloc(tam, 1));
    if (!out)
        return nullptr;
    const auto *in = static_cast<const unsigned char *>(src);
    unsigned char *pos = out;
    uint32_t i = 0;
    for (; len - i >= 3; i += 3, pos += 4) {
        const uint32_t grupo = uint32_t{in[i]} << 16 | uint32_t{in[i + 1]} << 8 | in[i + 2];
        i_escribe_par(pos, grupo >> 12);
        i_escribe_par(pos + 2, grupo & 0xFFF);
    }
    if (len - i == 1) {
        const uint32_t b0 = in[i];
        *pos++ = i_base64_table[b0 >> 2];
        *pos++ = i_base64_table[(b0 & 3) << 4];
        *pos++ = '=';
        *pos++ = '=';
    } else if (len - i == 2) {
        const uint32_t b0 = in[i], b1 = in[i + 1];
        *pos++ = i_base64_table[b0 >> 2];
        *pos++ = i_base64_table[((b0 & 3) << 4) | (b1 >> 4)];
        *pos++ = i_base64_table[(b1 & 15) << 2];
        *pos++ = '=';
    }
    *pos = '\0'; // already zero: the terminator is part of the calloc'ed size
    if (out_len)
        *out_len = i_tam_salida(out, pos);
    return reinterpret_cast<char *>(out);
}

unsigned char *tqjsonbase64_decode(const void *src, uint32_t len, uint32_t *out_len) {
    unsigned char tabla[256]; // built on every call: no shared state between threads
    tqstdc_memset(tabla, i_FUERA, sizeof tabla);
    for (unsigned char v = 0; v < 64; ++v)
        tabla[static_cast<unsigned char>(i_base64_table[v])] = v;
    tabla[static_cast<unsigned char>('=')] = i_RELLENO;

    const auto *in = static_cast<const unsigned char *>(src);
    const uint32_t cuenta = i_cuenta_de_la_codificacion(in, len);
    if (cuenta == 0 || cuenta % 4 != 0)
        return nullptr;
    auto *out = static_cast<unsigned char *>(marlspy_nousar_calloc(cuenta / 4 * 3, 1));
    if (!out)
        return nullptr;

    unsigned char *pos = out;
    uint32_t i = 0;
    for (;;) {
        // Four characters of the alphabet in a row make a group without a test per byte.
        while (len - i >= 4) {
            const unsigned v0 = tabla[in[i]], v1 = tabla[in[i + 1]], v2 = tabla[in[i + 2]],
                           v3 = tabla[in[i + 3]];
            if ((v0 | v1 | v2 | v3) >= 64)
                break;
            pos[0] = static_cast<unsigned char>(v0 << 2 | v1 >> 4);
            pos[1] = static_cast<unsigned char>(v1 << 4 | v2 >> 2);
            pos[2] = static_cast<unsigned char>(v2 << 6 | v3);
            pos += 3;
            i += 4;
        }
        // One group a byte at a time: skipped bytes, and padding, which ends the scan.
        unsigned grupo[4];
        unsigned n = 0, relleno = 0;
        for (; i < len && n < 4; ++i) {
            const unsigned v = tabla[in[i]];
            if (v == i_FUERA)
                continue;
            relleno += v == i_RELLENO;
            grupo[n++] = v == i_RELLENO ? 0 : v;
        }
        if (n < 4) // the count is a multiple of 4: only the end of the input gets here
            break;
        pos[0] = static_cast<unsigned char>(grupo[0] << 2 | grupo[1] >> 4);
        pos[1] = static_cast<unsigned char>(grupo[1] << 4 | grupo[2] >> 2);
        pos[2] = static_cast<unsigned char>(grupo[2] << 6 | grupo[3]);
        pos += 3;
        if (relleno > 2) {
            marlspy_nousar_free_pp(&out, 1);
            return nullptr;
        }
        if (relleno > 0) {
            pos -= relleno;
            break;
        }
    }
    if (out_len)
        *out_len = i_tam_salida(out, pos);
    return out;
}
