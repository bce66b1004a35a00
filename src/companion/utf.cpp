// tqbase Unicode component: UTF-8 <-> UTF-16. Every string value of the library passes through
// here, so both directions run in one linear pass with an ASCII fast path, and allocate the
// result once.
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "tqbase/memoria.h"
#include "unicode.h"
#include "utf8_validation.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: unicode";

namespace {

constexpr char16_t i_SUSTITUTO = 0xFFFD;
constexpr char32_t i_PRIMERO_SUPLEMENTARIO = 0x10000;

bool i_es_alto(char32_t u) {
    return u >= 0xD800 && u <= 0xDBFF;
}
bool i_es_bajo(char32_t u) {
    return u >= 0xDC00 && u <= 0xDFFF;
}
bool i_es_continuacion(unsigned char b) {
    return (b & 0xC0) == 0x80;
}

// ---- UTF-8 -> UTF-16 ----

// What a lead byte announces: how many continuation bytes follow and the range the first of
// them must lie in. The narrowed first ranges reject overlongs and code points above U+10FFFF
// at the earliest byte, so that every maximal ill-formed subpart ends where it should.
// ED keeps the full 80..BF range: the generalised three-byte form of a surrogate is accepted
// and read back as that unit, so unpaired surrogates survive a trip through UTF-8.
struct i_Lider {
    uint8_t continuaciones; // 0: the byte cannot start a sequence
    unsigned char minimo, maximo;
};

constexpr i_Lider i_lider_de(unsigned b) {
    if (b >= 0xC2 && b <= 0xDF)
        return {1, 0x80, 0xBF};
    if (b == 0xE0)
        return {2, 0xA0, 0xBF};
    if (b >= 0xE1 && b <= 0xEF)
        return {2, 0x80, 0xBF};
    if (b == 0xF0)
        return {3, 0x90, 0xBF};
    if (b >= 0xF1 && b <= 0xF3)
        return {3, 0x80, 0xBF};
    if (b == 0xF4)
        return {3, 0x80, 0x8F};
    return {0, 0, 0}; // ASCII, continuation bytes, C0, C1 and F5..FF
}

// Looked up, not worked out: a text of non-Latin script asks for every character.
constexpr std::array<i_Lider, 256> i_crea_lideres() {
    std::array<i_Lider, 256> lideres{};
    for (unsigned b = 0; b < 256; ++b)
        lideres[b] = i_lider_de(b);
    return lideres;
}
constexpr std::array<i_Lider, 256> i_LIDERES = i_crea_lideres();

i_Lider i_lider(unsigned char b) {
    return i_LIDERES[b];
}

// Reads the sequence that starts at the non-ASCII byte `*p` and leaves `p` after it. An
// ill-formed sequence gives U+FFFD and leaves `p` after its maximal subpart, at the byte that
// broke it (the terminator stops it too, since it is no continuation byte).
char32_t i_lee_secuencia(const unsigned char *&p) {
    const i_Lider lider = i_lider(*p);
    const unsigned char primero = *p++;
    if (lider.continuaciones == 0)
        return i_SUSTITUTO;
    char32_t punto = primero & (0x3F >> lider.continuaciones);
    if (*p < lider.minimo || *p > lider.maximo)
        return i_SUSTITUTO;
    punto = (punto << 6) | (*p++ & 0x3F);
    for (int i = 1; i < lider.continuaciones; ++i) {
        if (!i_es_continuacion(*p))
            return i_SUSTITUTO;
        punto = (punto << 6) | (*p++ & 0x3F);
    }
    return punto;
}

char16_t *i_escribe_utf16(char16_t *salida, char32_t punto) {
    if (punto < i_PRIMERO_SUPLEMENTARIO) {
        *salida++ = char16_t(punto);
        return salida;
    }
    punto -= i_PRIMERO_SUPLEMENTARIO;
    *salida++ = char16_t(0xD800 + (punto >> 10));
    *salida++ = char16_t(0xDC00 + (punto & 0x3FF));
    return salida;
}

// Decodes into `salida`, which has room for one unit per byte (no sequence yields more units
// than it has bytes), and returns the end of what was written.
char16_t *i_decodifica_utf8(const unsigned char *p, char16_t *salida) {
    while (*p) {
        while (*p && *p < 0x80)
            *salida++ = *p++;
        if (*p)
            salida = i_escribe_utf16(salida, i_lee_secuencia(p));
    }
    return salida;
}

char16_t *i_wide_vacia() {
    char16_t *texto = static_cast<char16_t *>(marlspy_nousar_malloc(sizeof(char16_t)));
    texto[0] = u'\0';
    return texto;
}

// ---- UTF-16 -> UTF-8 ----

bool i_es_par(const char16_t *p) {
    return i_es_alto(p[0]) && i_es_bajo(p[1]);
}

// Bytes the UTF-8 form of `texto` takes, terminator excluded. An unpaired surrogate takes three,
// like any other unit from U+0800 up.
size_t i_bytes_utf8(const char16_t *p) {
    size_t bytes = 0;
    for (; *p; ++p) {
        if (*p < 0x80)
            bytes += 1;
        else if (*p < 0x800)
            bytes += 2;
        else if (i_es_par(p))
            bytes += 4, ++p;
        else
            bytes += 3;
    }
    return bytes;
}

char *i_escribe_utf8(char *salida, char32_t punto) {
    if (punto < 0x800) {
        *salida++ = char(0xC0 | (punto >> 6));
    } else if (punto < i_PRIMERO_SUPLEMENTARIO) {
        *salida++ = char(0xE0 | (punto >> 12));
        *salida++ = char(0x80 | ((punto >> 6) & 0x3F));
    } else {
        *salida++ = char(0xF0 | (punto >> 18));
        *salida++ = char(0x80 | ((punto >> 12) & 0x3F));
        *salida++ = char(0x80 | ((punto >> 6) & 0x3F));
    }
    *salida++ = char(0x80 | (punto & 0x3F));
    return salida;
}

// Reads the character at the non-ASCII unit `*p` (a pair or a single unit, unpaired surrogates
// included) and leaves `p` after it.
char32_t i_lee_caracter(const char16_t *&p) {
    if (!i_es_par(p))
        return *p++;
    const char32_t punto =
        i_PRIMERO_SUPLEMENTARIO + ((char32_t(p[0]) - 0xD800) << 10) + (char32_t(p[1]) - 0xDC00);
    p += 2;
    return punto;
}

// Writes the UTF-8 form of `p` without a terminator and returns the end of what was written.
char *i_codifica_utf8(const char16_t *p, char *salida) {
    while (*p) {
        while (*p && *p < 0x80)
            *salida++ = char(*p++);
        if (*p)
            salida = i_escribe_utf8(salida, i_lee_caracter(p));
    }
    return salida;
}

// ---- UTF-8 that reads back unchanged ----

// Skips ASCII bytes, sixteen at a time with SSE2, else eight.
const unsigned char *i_salta_ascii(const unsigned char *p, const unsigned char *fin) {
#if defined(__SSE2__) || defined(_M_X64)
    while (fin - p >= 16) {
        const int altos = _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(p)));
        if (altos)
            return p + std::countr_zero(static_cast<unsigned>(altos));
        p += 16;
    }
#endif
    constexpr uint64_t i_BITS_ALTOS = 0x8080808080808080u;
    while (fin - p >= 8) {
        uint64_t ocho;
        std::memcpy(&ocho, p, sizeof ocho);
        if (ocho & i_BITS_ALTOS)
            break;
        p += 8;
    }
    while (p != fin && *p < 0x80)
        ++p;
    return p;
}

// Bytes of the sequence at the non-ASCII byte `p` when it is well formed and encodes no
// surrogate, so that reading it into UTF-16 and writing it back gives the same bytes; else 0.
// (The generalised form of a surrogate reads as one unit, and two of them that make a pair
// come back as one four-byte sequence.)
size_t i_secuencia_estable(const unsigned char *p, const unsigned char *fin) {
    const i_Lider lider = i_lider(*p);
    const size_t bytes = size_t(lider.continuaciones) + 1;
    if (lider.continuaciones == 0 || size_t(fin - p) < bytes)
        return 0;
    const unsigned char maximo = *p == 0xED ? 0x9F : lider.maximo;
    if (p[1] < lider.minimo || p[1] > maximo)
        return 0;
    for (size_t i = 2; i < bytes; ++i)
        if (!i_es_continuacion(p[i]))
            return 0;
    return bytes;
}

char *i_utf8_vacia() {
    char *texto = static_cast<char *>(marlspy_nousar_malloc(1));
    texto[0] = '\0';
    return texto;
}

} // namespace

char16_t *unicode_convierte_UTF8_a_UNICODE(const char *texto_utf8) {
    if (!i_VERIFICA_NO_NULO(texto_utf8))
        return i_wide_vacia();
    const size_t maximo = std::strlen(texto_utf8) + 1;
    char16_t *texto = static_cast<char16_t *>(marlspy_nousar_malloc(sizeof(char16_t) * maximo));
    char16_t *fin = i_decodifica_utf8(reinterpret_cast<const unsigned char *>(texto_utf8), texto);
    *fin = u'\0';
    const size_t usado = size_t(fin - texto) + 1;
    if (usado == maximo) // ASCII, or nothing shorter than its bytes
        return texto;
    return static_cast<char16_t *>(marlspy_nousar_realloc(texto, sizeof(char16_t) * usado));
}

char *unicode_convierte_UNICODE_a_UTF8(const char16_t *texto) {
    if (!i_VERIFICA_NO_NULO(texto))
        return i_utf8_vacia();
    char *utf8 = static_cast<char *>(marlspy_nousar_malloc(i_bytes_utf8(texto) + 1));
    *i_codifica_utf8(texto, utf8) = '\0';
    return utf8;
}

size_t unicode_longitud_UNICODE_a_UTF8(const char16_t *texto) {
    if (!i_VERIFICA_NO_NULO(texto))
        return 0;
    return i_bytes_utf8(texto);
}

char *unicode_escribe_UNICODE_a_UTF8(const char16_t *texto, char *salida) {
    if (!i_VERIFICA_NO_NULO(texto))
        return salida;
    return i_codifica_utf8(texto, salida);
}

tqbool unicode_es_UTF8_estable(const char *texto, size_t *longitud) {
    if (!i_VERIFICA_NO_NULO(texto) || !i_VERIFICA_NO_NULO(longitud))
        return FALSO;
    *longitud = std::strlen(texto);
    return unicode_es_UTF8_estable_n(texto, *longitud);
}

tqbool unicode_es_UTF8_estable_n(const char *texto, size_t longitud) {
    const auto *p = reinterpret_cast<const unsigned char *>(texto);
    const unsigned char *const fin = p + longitud;
    while (p != fin) {
        p = i_salta_ascii(p, fin);
        if (p == fin)
            break;
        if (i_hay_validacion_utf8_vectorial())
            return i_utf8_bien_formado_vectorial(p, fin) ? CIERTO : FALSO;
        // A run of characters outside ASCII, as in text of other scripts, is walked here
        // without going back to the ASCII skip after each one.
        do {
            const size_t bytes = i_secuencia_estable(p, fin);
            if (bytes == 0)
                return FALSO;
            p += bytes;
        } while (p != fin && *p >= 0x80);
    }
    return CIERTO;
}

// The bounded readers below rely on the byte at the bound being no continuation byte, so that
// no sequence runs past it; they stop there even if it were.

size_t unicode_longitud_caracter_UTF8(const char *texto) {
    const auto *p = reinterpret_cast<const unsigned char *>(texto);
    if (*p < 0x80)
        return 1;
    const unsigned char *inicio = p;
    i_lee_secuencia(p);
    return size_t(p - inicio);
}

size_t unicode_unidades_UTF8(const char *texto, size_t longitud) {
    const auto *p = reinterpret_cast<const unsigned char *>(texto);
    const unsigned char *const fin = p + longitud;
    size_t unidades = 0;
    while (p < fin) {
        if (*p < 0x80) {
            ++p, ++unidades;
            continue;
        }
        unidades += i_lee_secuencia(p) < i_PRIMERO_SUPLEMENTARIO ? 1 : 2;
    }
    return unidades;
}

char16_t *unicode_escribe_UTF8_a_UNICODE(const char *texto, size_t longitud, char16_t *salida) {
    const auto *p = reinterpret_cast<const unsigned char *>(texto);
    const unsigned char *const fin = p + longitud;
    while (p < fin) {
        if (*p < 0x80)
            *salida++ = *p++;
        else
            salida = i_escribe_utf16(salida, i_lee_secuencia(p));
    }
    return salida;
}