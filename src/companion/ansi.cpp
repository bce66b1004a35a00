// tqbase Unicode component: the ANSI code page, the system's own on Windows and Windows-1252
// elsewhere (POSIX has none). ASCII text is copied as it is; other text goes through UTF-16, so
// that UTF-8 is read and written by utf.cpp alone, with the same handling of invalid input.
#include <array>
#include <cstring>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "tqbase/cadenas.h"
#include "tqbase/memoria.h"
#include "unicode.h"
#include "verifica.h"

static const char *const i_MODULO = "tqbase: unicode";

namespace {

constexpr char i_NO_REPRESENTABLE = '?';

bool i_es_par(const char16_t *p) {
    return p[0] >= 0xD800 && p[0] <= 0xDBFF && p[1] >= 0xDC00 && p[1] <= 0xDFFF;
}

#if defined(_WIN32)

// The system converts, with no best fit (a character the code page cannot hold is '?', not a
// look-alike). A surrogate pair is one character and so one '?': it is put as '?' first, since
// the system would write one for each half.
constexpr char i_NO_REPRESENTABLE_TEXTO[] = {i_NO_REPRESENTABLE, '\0'};

std::u16string i_pares_como_interrogacion(const char16_t *p) {
    std::u16string texto;
    for (; *p; ++p) {
        if (i_es_par(p)) {
            texto += char16_t(i_NO_REPRESENTABLE);
            ++p;
        } else {
            texto += *p;
        }
    }
    return texto;
}

char *i_wide_a_ansi(const char16_t *p) {
    const std::u16string sin_pares = i_pares_como_interrogacion(p);
    const auto *wide = reinterpret_cast<const wchar_t *>(sin_pares.c_str());
    const int tam = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide, -1, nullptr, 0,
                                        i_NO_REPRESENTABLE_TEXTO, nullptr);
    char *ansi = static_cast<char *>(marlspy_nousar_malloc(tam > 0 ? size_t(tam) : 1));
    if (tam <= 0 || WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide, -1, ansi, tam,
                                        i_NO_REPRESENTABLE_TEXTO, nullptr) != tam)
        ansi[0] = '\0';
    return ansi;
}

char16_t *i_ansi_a_wide(const unsigned char *p, size_t longitud) {
    const auto *texto = reinterpret_cast<const char *>(p);
    const int num = static_cast<int>(longitud);
    const int tam = MultiByteToWideChar(CP_ACP, 0, texto, num, nullptr, 0);
    char16_t *wide = static_cast<char16_t *>(
        marlspy_nousar_malloc(sizeof(char16_t) * (tam > 0 ? size_t(tam) + 1 : 1)));
    const int escritos =
        tam > 0 ? MultiByteToWideChar(CP_ACP, 0, texto, num, reinterpret_cast<wchar_t *>(wide), tam)
                : 0;
    wide[escritos > 0 ? escritos : 0] = u'\0';
    return wide;
}

#else

// Bytes 0x80..0x9F. The five bytes that the code page leaves undefined map to the C1 control of
// the same value, as Windows converts them.
constexpr char16_t i_ALTOS_1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The character of every byte: the bytes outside 0x80..0x9F are Latin-1.
constexpr std::array<char16_t, 256> i_CARACTER_DE_BYTE = [] {
    std::array<char16_t, 256> tabla{};
    for (unsigned b = 0; b < 256; ++b)
        tabla[b] = (b >= 0x80 && b < 0xA0) ? i_ALTOS_1252[b - 0x80] : char16_t(b);
    return tabla;
}();

// The byte of every character below U+0100, 0 for those the code page cannot hold (U+0000 is
// never looked up: it ends the text).
constexpr std::array<unsigned char, 256> i_BYTE_DE_LATIN1 = [] {
    std::array<unsigned char, 256> tabla{};
    for (unsigned b = 1; b < 256; ++b)
        if (i_CARACTER_DE_BYTE[b] < 0x100)
            tabla[i_CARACTER_DE_BYTE[b]] = static_cast<unsigned char>(b);
    return tabla;
}();

char i_byte_de_altos(char16_t caracter) {
    for (unsigned i = 0; i < 32; ++i)
        if (i_ALTOS_1252[i] == caracter)
            return char(0x80 + i);
    return i_NO_REPRESENTABLE;
}

char i_byte_ansi(char16_t caracter) {
    if (caracter >= 0x100)
        return i_byte_de_altos(caracter);
    const unsigned char byte = i_BYTE_DE_LATIN1[caracter];
    return byte ? char(byte) : i_NO_REPRESENTABLE;
}

// One byte per character: a surrogate pair is one character and gives one '?'.
size_t i_caracteres(const char16_t *p) {
    size_t caracteres = 0;
    for (; *p; ++p, ++caracteres)
        if (i_es_par(p))
            ++p;
    return caracteres;
}

char *i_wide_a_ansi(const char16_t *p) {
    char *ansi = static_cast<char *>(marlspy_nousar_malloc(i_caracteres(p) + 1));
    char *salida = ansi;
    for (; *p; ++p) {
        if (i_es_par(p))
            ++p;
        *salida++ = *p < 0x80 ? char(*p) : i_byte_ansi(*p);
    }
    *salida = '\0';
    return ansi;
}

char16_t *i_ansi_a_wide(const unsigned char *p, size_t longitud) {
    char16_t *wide =
        static_cast<char16_t *>(marlspy_nousar_malloc(sizeof(char16_t) * (longitud + 1)));
    for (size_t i = 0; i < longitud; ++i)
        wide[i] = i_CARACTER_DE_BYTE[p[i]];
    wide[longitud] = u'\0';
    return wide;
}

#endif

bool i_es_ascii(const char *texto, size_t longitud) {
    for (size_t i = 0; i < longitud; ++i)
        if (static_cast<unsigned char>(texto[i]) >= 0x80)
            return false;
    return true;
}

// ASCII reads the same in UTF-8 and in the code page.
char *i_copia(const char *texto, size_t longitud) {
    char *copia = static_cast<char *>(marlspy_nousar_malloc(longitud + 1));
    std::memcpy(copia, texto, longitud + 1);
    return copia;
}

char *i_ansi_vacia() {
    return i_copia("", 0);
}

char *i_utf8_a_ansi_via_wide(const char *texto_utf8) {
    char16_t *wide = unicode_convierte_UTF8_a_UNICODE(texto_utf8);
    char *ansi = i_wide_a_ansi(wide);
    widestr_nousar_destruye(&wide, i_MODULO, __LINE__);
    return ansi;
}

char *i_ansi_a_utf8_via_wide(const char *texto_ansi, size_t longitud) {
    char16_t *wide = i_ansi_a_wide(reinterpret_cast<const unsigned char *>(texto_ansi), longitud);
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(wide);
    widestr_nousar_destruye(&wide, i_MODULO, __LINE__);
    return utf8;
}

} // namespace

char *unicode_convierte_ANSI_a_UTF8(const char *texto_ansi) {
    if (!i_VERIFICA_NO_NULO(texto_ansi))
        return i_ansi_vacia();
    const size_t longitud = std::strlen(texto_ansi);
    if (i_es_ascii(texto_ansi, longitud))
        return i_copia(texto_ansi, longitud);
    return i_ansi_a_utf8_via_wide(texto_ansi, longitud);
}

char *unicode_convierte_UTF8_a_ANSI(const char *texto_utf8) {
    if (!i_VERIFICA_NO_NULO(texto_utf8))
        return i_ansi_vacia();
    const size_t longitud = std::strlen(texto_utf8);
    if (i_es_ascii(texto_utf8, longitud))
        return i_copia(texto_utf8, longitud);
    return i_utf8_a_ansi_via_wide(texto_utf8);
}

char *unicode_UNICODE_a_ANSI(const char16_t *texto) {
    if (!i_VERIFICA_NO_NULO(texto))
        return i_ansi_vacia();
    return i_wide_a_ansi(texto);
}
