// tqbase lexer component: the scanner's steps over UTF-8 text, inline, so that the lexer and
// the reader, which scans and builds in one pass, find the same token ends by the same code.
// Every input ends at a zero byte, which no step passes.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "decimal_conversion.h"
#include "lexer.h"
#include "unicode.h"

enum i_clase_byte : uint8_t {
    i_BLANCO = 1,
    i_DIGITO = 2,
    i_INICIO_PALABRA = 4,
    i_PALABRA = 8,
    i_FIN_LITERAL_JSON = 16, // what a JSON literal's scan stops at: " \ line feed, zero
};

inline constexpr std::array<uint8_t, 256> i_CLASES_BYTE = [] {
    std::array<uint8_t, 256> clases{};
    for (const char c : {' ', '\t', '\n', '\r', '\v', '\f'})
        clases[static_cast<unsigned char>(c)] |= i_BLANCO;
    for (int c = '0'; c <= '9'; ++c)
        clases[c] |= i_DIGITO | i_PALABRA;
    for (int c = 'a'; c <= 'z'; ++c)
        clases[c] |= i_INICIO_PALABRA | i_PALABRA;
    for (int c = 'A'; c <= 'Z'; ++c)
        clases[c] |= i_INICIO_PALABRA | i_PALABRA;
    clases['_'] |= i_INICIO_PALABRA | i_PALABRA;
    for (const char c : {'"', '\\', '\n', '\0'})
        clases[static_cast<unsigned char>(c)] |= i_FIN_LITERAL_JSON;
    return clases;
}();

inline bool i_es(char c, i_clase_byte clase) {
    return (i_CLASES_BYTE[static_cast<unsigned char>(c)] & clase) != 0;
}

// Indented text puts long runs of spaces after each line feed: they are passed sixteen at a time
// where the processor has SSE2, else eight.
inline const char *i_salta_sangria(const char *p, const char *fin) {
#if defined(__SSE2__) || defined(_M_X64)
    const __m128i espacios = _mm_set1_epi8(' ');
    while (fin - p >= 16) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        const auto iguales = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(x, espacios)));
        if (iguales != 0xFFFFu)
            return p + std::countr_one(iguales);
        p += 16;
    }
#endif
    constexpr uint64_t i_OCHO_ESPACIOS = 0x2020202020202020u;
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        if (ocho != i_OCHO_ESPACIOS)
            break;
        p += 8;
    }
    return p;
}

// The first byte at or after `p` that is no blank. The usual cases first, each a branch that a
// document takes the same way again and again: no blank (minified text), one space (after a
// colon), a line feed and its indentation (indented text).
[[gnu::always_inline]] inline const char *i_salta_blancos(const char *p, const char *fin) {
    if (!i_es(*p, i_BLANCO))
        return p;
    if (*p == ' ' && !i_es(p[1], i_BLANCO))
        return p + 1;
    if (*p == '\n') {
        p = i_salta_sangria(p + 1, fin);
        if (!i_es(*p, i_BLANCO))
            return p;
    }
    while (i_es(*p, i_BLANCO))
        if (*p++ == '\n')
            p = i_salta_sangria(p, fin);
    return p;
}

// Passes the bytes of a JSON literal that need no look: it stops at a quotation mark, a
// backslash, a line feed or a zero byte, sixteen bytes a step where the processor has SSE2
// (every x86-64 does), else eight at a time up to the word that holds one. `*altos` gathers
// the bytes passed, whose top bit says whether any lies outside ASCII.
inline const char *i_salta_texto_literal(const char *p, const char *fin, uint64_t *altos) {
#if defined(__SSE2__) || defined(_M_X64)
    const __m128i comilla = _mm_set1_epi8('"'), barra = _mm_set1_epi8('\\'),
                  salto = _mm_set1_epi8('\n'), cero = _mm_setzero_si128();
    while (fin - p >= 16) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        const __m128i especial =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(x, comilla), _mm_cmpeq_epi8(x, barra)),
                         _mm_or_si128(_mm_cmpeq_epi8(x, salto), _mm_cmpeq_epi8(x, cero)));
        const auto mascara = static_cast<unsigned>(_mm_movemask_epi8(especial));
        const auto fuera_ascii = static_cast<unsigned>(_mm_movemask_epi8(x));
        if (mascara != 0) {
            const int pasados = std::countr_zero(mascara);
            *altos |= (fuera_ascii & ((1u << pasados) - 1)) != 0 ? 0x80u : 0u;
            return p + pasados;
        }
        *altos |= fuera_ascii != 0 ? 0x80u : 0u;
        p += 16;
    }
#endif
    constexpr uint64_t i_UNOS = 0x0101010101010101u, i_ALTOS = 0x8080808080808080u;
    const auto tiene_cero = [](uint64_t v) { return (v - i_UNOS) & ~v & i_ALTOS; };
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        if (tiene_cero(ocho ^ (i_UNOS * '"')) | tiene_cero(ocho ^ (i_UNOS * '\\')) |
            tiene_cero(ocho ^ (i_UNOS * '\n')) | tiene_cero(ocho))
            break;
        *altos |= ocho;
        p += 8;
    }
    return p;
}

// A JSON literal from its opening quotation mark: a backslash escapes the next byte; a raw line
// feed or the end of the input before the closing mark breaks it.
struct i_literal_escaneado {
    const char *fin; // past the closing mark; where a broken literal's token ends
    bool cerrado;
    bool barras;      // a backslash among its bytes
    bool fuera_ascii; // a byte outside ASCII among its bytes
};

// Kept out of line: the reader's loop, with this inlined into it at every literal, ran 2 to 6%
// slower (bench/run.sh peers, side by side).
[[gnu::noinline]] inline i_literal_escaneado i_escanea_literal_json(const char *p,
                                                                    const char *fin) {
    const char *q = p + 1;
    uint64_t altos = 0;
    bool barras = false;
    for (;;) {
        q = i_salta_texto_literal(q, fin, &altos);
        while (!i_es(*q, i_FIN_LITERAL_JSON))
            altos |= static_cast<unsigned char>(*q++);
        const bool fuera_ascii = (altos & 0x8080808080808080u) != 0;
        if (*q == '"')
            return {q + 1, true, barras, fuera_ascii};
        if (*q != '\\' || q[1] == '\n' || q + 1 == fin) // a raw line feed or the end
            return {*q == '\\' ? q + 1 : q, false, barras, fuera_ascii};
        barras = true;
        altos |= static_cast<unsigned char>(q[1]);
        q += 2;
    }
}

// The value of eight digits: the first byte, the lowest of the word read from memory, is the
// leading digit.
static_assert(std::endian::native == std::endian::little);
[[gnu::always_inline]] inline uint32_t i_valor_ocho_digitos(uint64_t ocho) {
    ocho -= 0x3030303030303030u;
    ocho = ocho * 10 + (ocho >> 8);
    ocho = (((ocho & 0x000000FF000000FFu) * (100 + (1000000ull << 32))) +
            (((ocho >> 16) & 0x000000FF000000FFu) * (1 + (10000ull << 32)))) >>
           32;
    return static_cast<uint32_t>(ocho);
}

// JSON's number without its sign: an integer, then an optional fraction and exponent, each
// taken only when digits follow. Its value is gathered on the way, as a significand and a power
// of ten, exact while it has at most 19 significant digits.
struct i_numero_escaneado {
    const char *fin;
    bool real;
    bool exacto; // `significando` x 10^`exponente` is the value
    uint64_t significando;
    int64_t exponente;
};

inline constexpr uint64_t i_POTENCIAS_DE_DIEZ_ENTERAS[] = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

// Gathers the digits from `p` into `significando` (modulo 2^64 beyond 19 digits): eight a step
// while eight bytes remain before the end, the last few of a run in one step too.
[[gnu::always_inline]] inline const char *i_acumula_digitos(const char *p, const char *fin,
                                                            uint64_t &significando) {
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        const uint64_t no_digitos =
            ((ocho + 0x4646464646464646u) | (ocho - 0x3030303030303030u)) & 0x8080808080808080u;
        if (no_digitos == 0) {
            significando = significando * 100000000u + i_valor_ocho_digitos(ocho);
            p += 8;
            continue;
        }
        // The bytes before the first that is no digit are exact in the test above; they become
        // the last of eight digits whose first ones are zeros.
        const auto digitos = static_cast<unsigned>(std::countr_zero(no_digitos)) / 8;
        if (digitos != 0) {
            const uint64_t rellenos =
                (ocho << (8 * (8 - digitos))) | (0x3030303030303030u >> (8 * digitos));
            significando = significando * i_POTENCIAS_DE_DIEZ_ENTERAS[digitos] +
                           i_valor_ocho_digitos(rellenos);
        }
        return p + digitos;
    }
    for (; i_es(*p, i_DIGITO); ++p)
        significando = significando * 10 + static_cast<uint64_t>(*p - '0');
    return p;
}

[[gnu::always_inline]] inline i_numero_escaneado i_escanea_numero(const char *p, const char *fin) {
    i_numero_escaneado n{};
    // An integer part other than 0 begins with its first significant digit.
    const char *q = *p == '0' ? p + 1 : i_acumula_digitos(p, fin, n.significando);
    uint64_t cifras = *p == '0' ? 0 : static_cast<uint64_t>(q - p);
    if (*q == '.' && i_es(q[1], i_DIGITO)) {
        n.real = true;
        const char *fraccion = q + 1;
        const char *r = fraccion;
        if (cifras == 0) // zeros that lead the fraction of 0.
            while (*r == '0')
                ++r;
        q = i_acumula_digitos(r, fin, n.significando);
        cifras += static_cast<uint64_t>(q - r);
        n.exponente -= q - fraccion;
    }
    if (*q == 'e' || *q == 'E') {
        const char *r = q + 1;
        const bool negativo = *r == '-';
        if (*r == '+' || *r == '-')
            ++r;
        if (i_es(*r, i_DIGITO)) {
            n.real = true;
            int64_t exponente = 0;
            for (; i_es(*r, i_DIGITO); ++r)
                if (exponente < 1000000) // far beyond any double; the value stays exact enough
                    exponente = exponente * 10 + (*r - '0');
            n.exponente += negativo ? -exponente : exponente;
            q = r;
        }
    }
    n.fin = q;
    n.exacto = cifras <= 19;
    return n;
}

// The number's value where the scan alone gives it exactly; false where the text must be
// converted the slow way.
[[gnu::always_inline]] inline bool i_valor_escaneado(const i_numero_escaneado &n, double *valor) {
    return n.exacto && i_decimal_a_double(n.significando, n.exponente, valor);
}

// The token of each one-character punctuation mark; 0 for every other byte.
inline constexpr std::array<uint8_t, 256> i_PUNTUACION = [] {
    std::array<uint8_t, 256> tokens{};
    tokens['{'] = ANLEX_LLAVE_ABR;
    tokens['}'] = ANLEX_LLAVE_CER;
    tokens['['] = ANLEX_CORCH_ABR;
    tokens[']'] = ANLEX_CORCH_CER;
    tokens[','] = ANLEX_COMA;
    tokens[':'] = ANLEX_DOS_PUNTOS;
    tokens['-'] = ANLEX_MENOS;
    return tokens;
}();

// A token found by i_escanea_token: its kind and extent, and what its kind makes known.
struct i_token_escaneado {
    uint32_t token;
    const char *inicio;
    const char *fin;
    bool barras;      // literals: a backslash among the bytes
    bool fuera_ascii; // literals: a byte outside ASCII among the bytes
    uint32_t id_palabra;
    i_numero_escaneado numero; // integer and real constants
};

// The token at or after `p`, blanks passed. Without the JSON criterion a literal runs to the
// next quotation mark. `palabra(inicio, longitud, &id)` tells whether a word is reserved.
template <class Palabra>
[[gnu::always_inline]] inline void i_escanea_token(const char *p, const char *fin,
                                                   bool criterio_json, Palabra &&palabra,
                                                   i_token_escaneado &t) {
    p = i_salta_blancos(p, fin);
    t.inicio = p;
    if (p == fin) {
        t.token = ANLEX_FIN;
        t.fin = p;
    } else if (const uint8_t puntuacion = i_PUNTUACION[static_cast<unsigned char>(*p)]) {
        t.token = puntuacion;
        t.fin = p + 1;
    } else if (*p == '"') {
        if (criterio_json) {
            const i_literal_escaneado literal = i_escanea_literal_json(p, fin);
            t.token = literal.cerrado ? ANLEX_LITERAL : ANLEX_ERROR;
            t.fin = literal.fin;
            t.barras = literal.barras;
            t.fuera_ascii = literal.fuera_ascii;
        } else {
            const void *comilla = std::memchr(p + 1, '"', static_cast<size_t>(fin - p - 1));
            t.token = comilla ? ANLEX_LITERAL : ANLEX_ERROR;
            t.fin = comilla ? static_cast<const char *>(comilla) + 1 : fin;
            t.barras = false;
            t.fuera_ascii = true; // not looked at
        }
    } else if (i_es(*p, i_DIGITO)) {
        t.numero = i_escanea_numero(p, fin);
        t.token = t.numero.real ? ANLEX_CTE_REAL : ANLEX_CTE_ENTERA;
        t.fin = t.numero.fin;
    } else if (i_es(*p, i_INICIO_PALABRA)) {
        const char *q = p + 1;
        while (i_es(*q, i_PALABRA))
            ++q;
        t.token = palabra(p, static_cast<size_t>(q - p), &t.id_palabra) ? ANLEX_PALABRA_RESERVADA
                                                                        : ANLEX_IDENTIFICADOR;
        t.fin = q;
    } else {
        t.token = ANLEX_ERROR;
        t.fin = p + unicode_longitud_caracter_UTF8(p);
    }
}
