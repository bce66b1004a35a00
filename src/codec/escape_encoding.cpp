// The escaped form of stored text: control characters, the solidus and the backslash stand as
// JSON escape sequences; every other unit, the quotation mark included, stands as itself.
#include <cstring>
#include <string>

#include "codec/codec.h"
#include "report_texts.h"
#include "tqjson2_modulo.h"

namespace {

// The seven fixed two-unit sequences.
struct i_secuencia_fija {
    char16_t caracter;
    const char16_t *secuencia;
};
constexpr i_secuencia_fija i_SECUENCIAS_FIJAS[] = {
    {0x08, u"\\b"}, {0x09, u"\\t"}, {0x0A, u"\\n"},  {0x0C, u"\\f"},
    {0x0D, u"\\r"}, {0x2F, u"\\/"}, {0x5C, u"\\\\"},
};

// Only units below 0x80 are ever escaped; their sequences are worked out once, by the
// definition above, and kept here so that escaping a text costs one table read a unit.
struct i_escape_ascii {
    uint8_t longitud[0x80]; // 0: the unit stands as itself
    char16_t secuencia[0x80][8];
};

i_escape_ascii i_construye_escape_ascii() {
    i_escape_ascii tabla{};
    char16_t secuencia[i_TAM_BUFFER_SECUENCIA_ESCAPE];
    for (char16_t c = 0; c < 0x80; ++c) {
        if (i_secuencia_escape_caracter(c, secuencia) != CIERTO)
            continue;
        const size_t longitud_secuencia_escape = std::char_traits<char16_t>::length(secuencia);
        if (!i_VERIFICA_TEXTO(longitud_secuencia_escape > 0, i_TEXTO_SECUENCIA_NO_VACIA) ||
            !i_VERIFICA(longitud_secuencia_escape < 8))
            continue;
        tabla.longitud[c] = static_cast<uint8_t>(longitud_secuencia_escape);
        std::memcpy(tabla.secuencia[c], secuencia, sizeof(char16_t) * longitud_secuencia_escape);
    }
    return tabla;
}

const i_escape_ascii &i_tabla_escape() {
    static const i_escape_ascii tabla = i_construye_escape_ascii();
    return tabla;
}

// Units the escaped form of `texto` takes.
size_t i_longitud_escapada(const char16_t *texto, size_t n, const i_escape_ascii &tabla) {
    size_t total = n;
    for (size_t i = 0; i < n; ++i)
        if (texto[i] < 0x80 && tabla.longitud[texto[i]])
            total += tabla.longitud[texto[i]] - 1;
    return total;
}

} // namespace

void i_copia_secuencia_escape(const char16_t *origen, char16_t *secuencia) {
    const size_t tam_secuencia = std::char_traits<char16_t>::length(origen);
    if (!i_VERIFICA_TEXTO(tam_secuencia < i_TAM_BUFFER_SECUENCIA_ESCAPE - 1,
                          i_TEXTO_SECUENCIA_CABE))
        return;
    std::memcpy(secuencia, origen, sizeof(char16_t) * (tam_secuencia + 1));
}

tqbool i_secuencia_escape_caracter(char16_t caracter, char16_t *secuencia) {
    for (const i_secuencia_fija &fija : i_SECUENCIAS_FIJAS) {
        if (fija.caracter == caracter) {
            i_copia_secuencia_escape(fija.secuencia, secuencia);
            return CIERTO;
        }
    }
    if (caracter > 0x1F) {
        secuencia[0] = u'\0';
        return FALSO;
    }
    char16_t digito_1 = u'0', digito_2 = u'0';
    const tqbool se_codifica = marlstrhex_codifica_caracter_u(caracter, &digito_1, &digito_2);
    i_VERIFICA_TEXTO(se_codifica == CIERTO, i_TEXTO_SE_CODIFICA);
    const char16_t unidades[] = {u'\\', u'u', u'0', u'0', digito_1, digito_2, u'\0'};
    std::memcpy(secuencia, unidades, sizeof unidades);
    return CIERTO;
}

void i_codifica_secuencias_escape(char16_t **texto_unicode) {
    if (!i_VERIFICA_NO_NULO(texto_unicode) || !i_VERIFICA_NO_NULO(*texto_unicode))
        return;
    const char16_t *texto = *texto_unicode;
    const i_escape_ascii &tabla = i_tabla_escape();
    const size_t n = std::char_traits<char16_t>::length(texto);
    const size_t total = i_longitud_escapada(texto, n, tabla);
    if (total == n) // nothing to escape: the text is its own escaped form
        return;
    // Sized exactly by the counting pass, so the buffer never grows and never shrinks.
    char16_t *escapado = widestr_nousar_creacadena(total + 1);
    size_t p = 0;
    for (size_t i = 0; i < n; ++i) {
        const char16_t u = texto[i];
        if (u < 0x80 && tabla.longitud[u]) {
            std::memcpy(escapado + p, tabla.secuencia[u], sizeof(char16_t) * tabla.longitud[u]);
            p += tabla.longitud[u];
        } else {
            escapado[p++] = u;
        }
    }
    escapado[p] = u'\0';
    widestr_nousar_destruye(texto_unicode, i_MODULO, __LINE__);
    *texto_unicode = escapado;
}

char *i_convierte_texto_unicode_a_utf8(tqbool codifica_secuencias_escape,
                                       char16_t **texto_unicode) {
    if (!i_VERIFICA_NO_NULO(texto_unicode) || !i_VERIFICA_NO_NULO(*texto_unicode))
        return cad_copia_cadena("");
    if (codifica_secuencias_escape == CIERTO)
        i_codifica_secuencias_escape(texto_unicode);
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(*texto_unicode);
    widestr_nousar_destruye(texto_unicode, i_MODULO, __LINE__);
    return utf8;
}
