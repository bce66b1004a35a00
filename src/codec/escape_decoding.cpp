// Decoding the escaped form back into plain text (wide text, or a read literal's UTF-8 bytes in
// place), and the process-wide tolerance counter that decides what a "\u00" sequence with bad
// digits becomes.
#include <atomic>
#include <cstring>
#include <type_traits>

#include "codec/codec.h"
#include "report_texts.h"
#include "tqjson2.h"
#include "tqjson2_modulo.h"

namespace {

// Non-zero: a "\u00" sequence whose digits do not decode becomes '?' without a report. Relaxed
// atomics give the unsynchronised counter the interface promises, without a data race.
std::atomic<int32_t> g_tolerancia{0};

constexpr char16_t i_PREFIJO_SIN_DECODIFICAR[] = u"data:application/octet-stream";
constexpr char i_PREFIJO_SIN_DECODIFICAR_UTF8[] = "data:application/octet-stream";
constexpr char16_t i_CARACTER_REEMPLAZO = u'?';

// The unit after the backslash, and what the pair decodes to, in search order.
struct i_reemplazo {
    char16_t escapado, decodificado;
};
constexpr i_reemplazo i_REEMPLAZOS[] = {
    {u'"', u'"'},  {u'\\', u'\\'}, {u'b', u'\b'}, {u't', u'\t'},
    {u'n', u'\n'}, {u'f', u'\f'},  {u'r', u'\r'}, {u'/', u'/'},
};

// What a backslash followed by `escapado` decodes to; the terminator when the pair is no escape.
char16_t i_reemplazo_de(char16_t escapado) {
    for (const i_reemplazo &fila : i_REEMPLAZOS)
        if (fila.escapado == escapado)
            return fila.decodificado;
    return u'\0';
}

// The unit that "\u00" and the digit units `d1` and `d2` stand for; a digit place past the end
// of the text (`completa` false) fails like a non-hexadecimal digit. Bad digits are reported,
// or counted in `*sin_informar` when the caller reports them itself.
char16_t i_decodifica_u00(char16_t d1, char16_t d2, bool completa, uint32_t *sin_informar) {
    char16_t caracter = i_CARACTER_REEMPLAZO;
    const tqbool se_decodifica =
        completa ? marlstrhex_decodifica_caracter_u(d1, d2, &caracter) : FALSO;
    if (se_decodifica != CIERTO) {
        caracter = i_CARACTER_REEMPLAZO;
        if (g_tolerancia.load(std::memory_order_relaxed) != 0)
            return caracter;
        if (sin_informar)
            ++*sin_informar;
        else
            i_informa_secuencia_u00_erronea();
    }
    return caracter;
}

// What one escape sequence decodes to: the unit, where the text goes on, and for UTF-8 the
// second half of a pair that the sequence's last digit place cut in two.
struct i_paso_escape {
    char16_t unidad;
    size_t fin;
    char16_t resto;
};

// The one rule both decoders follow, for the backslash at `i` of a text of `n` units (wide
// text) or bytes (UTF-8): the last unit stands as itself; "\u00" takes two digit places, read by
// `lee_lugar`, which says what each place holds and where the next begins; a single-character
// escape gives its unit; any other backslash stands as itself.
template <class Unidad, class LeeLugar>
i_paso_escape i_decodifica_escape(const Unidad *texto, size_t i, size_t n, LeeLugar lee_lugar,
                                  uint32_t *sin_informar) {
    const auto unidad = [texto](size_t j) {
        return static_cast<char16_t>(static_cast<std::make_unsigned_t<Unidad>>(texto[j]));
    };
    if (i + 1 == n)
        return {u'\\', n, 0};
    if (i + 3 < n && unidad(i + 1) == u'u' && unidad(i + 2) == u'0' && unidad(i + 3) == u'0') {
        char16_t digitos[2] = {};
        unsigned llenos = 0;
        char16_t resto = 0;
        size_t j = i + 4;
        while (llenos < 2 && j < n) // nothing beyond the end of the text is read
            j = lee_lugar(j, digitos, llenos, resto);
        return {i_decodifica_u00(digitos[0], digitos[1], llenos == 2, sin_informar), j, resto};
    }
    if (const char16_t decodificado = i_reemplazo_de(unidad(i + 1)))
        return {decodificado, i + 2, 0};
    return {u'\\', i + 1, 0};
}

} // namespace

void tqjson2_apila_desapila_ignorar_assert_se_decodifica(tqbool apila) {
    g_tolerancia.fetch_add(apila == CIERTO ? 1 : -1, std::memory_order_relaxed);
}

void i_append_caracter_cadena_decodificada(char16_t caracter, char16_t **cadena_decodificada,
                                           uint32_t *longitud_cadena_decodificada,
                                           uint32_t *pos_cadena_decodificada) {
    if (!i_VERIFICA_NO_NULO(cadena_decodificada) ||
        !i_VERIFICA_NO_NULO(longitud_cadena_decodificada) ||
        !i_VERIFICA_NO_NULO(pos_cadena_decodificada) ||
        !i_VERIFICA(*pos_cadena_decodificada <= *longitud_cadena_decodificada))
        return;
    (*cadena_decodificada)[(*pos_cadena_decodificada)++] = caracter;
}

void i_informa_secuencia_u00_erronea() {
    error_interno(i_TEXTO_SE_DECODIFICA, i_MODULO, __LINE__, 0);
}

char16_t *i_decodifica_secuencias_escape(const char16_t *texto, uint32_t *sin_informar) {
    if (widestr_nousar_es_subcadena_inicial(texto, i_PREFIJO_SIN_DECODIFICAR, i_MODULO, __LINE__) ==
        CIERTO)
        return widestr_nousar_copia(texto, i_MODULO, __LINE__);
    uint32_t longitud_cadena_decodificada = widestr_nousar_longitud(texto, i_MODULO, __LINE__);
    const uint32_t n = longitud_cadena_decodificada;
    // Decoding never lengthens a text, so the input's length is room enough.
    char16_t *cadena_decodificada = widestr_nousar_creacadena(size_t{n} + 1);
    uint32_t pos_cadena_decodificada = 0;
    auto agrega = [&](char16_t c) {
        i_append_caracter_cadena_decodificada(
            c, &cadena_decodificada, &longitud_cadena_decodificada, &pos_cadena_decodificada);
    };
    // In wide text each digit place is one unit.
    const auto lee_lugar = [texto](size_t j, char16_t(&digitos)[2], unsigned &llenos, char16_t &) {
        digitos[llenos++] = texto[j];
        return j + 1;
    };
    for (size_t i = 0; i < n;) {
        if (texto[i] != u'\\') {
            agrega(texto[i++]);
            continue;
        }
        const i_paso_escape paso = i_decodifica_escape(texto, i, n, lee_lugar, sin_informar);
        agrega(paso.unidad);
        i = paso.fin;
    }
    agrega(u'\0');
    return cadena_decodificada;
}

namespace {

// Writes the UTF-8 form of a unit decoded from "\u00" (U+0000..U+00FF).
char *i_escribe_latin1(char *salida, char16_t unidad) {
    if (unidad < 0x80) {
        *salida++ = static_cast<char>(unidad);
    } else {
        *salida++ = static_cast<char>(0xC0 | (unidad >> 6));
        *salida++ = static_cast<char>(0x80 | (unidad & 0x3F));
    }
    return salida;
}

constexpr char16_t i_NO_HEXADECIMAL = 0xFFFF;

// The escape sequences of `texto[0..n)` decoded in place, as i_decodifica_secuencias_escape
// decodes the same text in wide form. Its digit places count UTF-16 units: a character outside
// ASCII fills one (two from U+10000 up). When the second place takes only the first half of a
// pair, the second half stays behind as an unpaired surrogate, in its three-byte form. Every
// step consumes at least the bytes it writes, so the text is rewritten over itself.
// A "\u0000" ends the text where it stands; later sequences are still judged.
void i_decodifica_en_sitio_utf8(char *texto, size_t n, uint32_t *sin_informar) {
    const auto byte = [texto](size_t i) { return static_cast<unsigned char>(texto[i]); };
    // A digit place is one UTF-16 unit: an ASCII byte is a digit; any other character is not,
    // and one from U+10000 up fills both places, the second half of its pair left over when
    // only one place was free.
    const auto lee_lugar = [&](size_t j, char16_t(&digitos)[2], unsigned &llenos,
                               char16_t &resto) -> size_t {
        const unsigned char b = byte(j);
        if (b < 0x80) {
            digitos[llenos++] = b;
            return j + 1;
        }
        if (b < 0xF0) {
            digitos[llenos++] = i_NO_HEXADECIMAL;
            return j + (b < 0xE0 ? 2 : 3);
        }
        if (llenos == 1) {
            const char32_t punto =
                (char32_t(b & 0x07) << 18) | (char32_t(byte(j + 1) & 0x3F) << 12) |
                (char32_t(byte(j + 2) & 0x3F) << 6) | char32_t(byte(j + 3) & 0x3F);
            resto = static_cast<char16_t>(0xDC00 + ((punto - 0x10000) & 0x3FF));
        }
        digitos[0] = digitos[1] = i_NO_HEXADECIMAL;
        llenos = 2;
        return j + 4;
    };
    char *salida = texto;
    for (size_t i = 0; i < n;) {
        if (texto[i] != '\\') { // the runs between escapes of a literal are short: byte by byte
            *salida++ = texto[i++];
            continue;
        }
        const i_paso_escape paso = i_decodifica_escape(texto, i, n, lee_lugar, sin_informar);
        salida = i_escribe_latin1(salida, paso.unidad);
        if (paso.resto != 0) { // left as an unpaired surrogate, in its three-byte form
            *salida++ = static_cast<char>(0xED);
            *salida++ = static_cast<char>(0x80 | ((paso.resto >> 6) & 0x3F));
            *salida++ = static_cast<char>(0x80 | (paso.resto & 0x3F));
        }
        i = paso.fin;
    }
    *salida = '\0';
}

} // namespace

char *i_literal_json_utf8(const char *bytes, size_t longitud, tqbool decodifica) {
    char *texto = creacadena(longitud + 1);
    size_t n = 0;
    // A quotation mark among a literal's bytes is always an escaped one: without one, the
    // bytes stand as they are.
    if (!std::memchr(bytes, '"', longitud)) {
        std::memcpy(texto, bytes, longitud);
        n = longitud;
    }
    for (size_t i = n; i < longitud;) {
        const void *barra = std::memchr(bytes + i, '\\', longitud - i);
        const size_t tramo =
            (barra ? static_cast<size_t>(static_cast<const char *>(barra) - bytes) : longitud) - i;
        std::memcpy(texto + n, bytes + i, tramo);
        n += tramo;
        i += tramo;
        if (i == longitud)
            break;
        // A backslash: before a quotation mark it goes; any other pair stays as written.
        if (i + 1 < longitud && bytes[i + 1] == '"') {
            texto[n++] = '"';
        } else {
            texto[n++] = '\\';
            if (i + 1 < longitud)
                texto[n++] = bytes[i + 1];
        }
        i += 2;
    }
    texto[n] = '\0';
    if (decodifica == CIERTO && (texto[0] != i_PREFIJO_SIN_DECODIFICAR_UTF8[0] ||
                                 std::strncmp(texto, i_PREFIJO_SIN_DECODIFICAR_UTF8,
                                              sizeof i_PREFIJO_SIN_DECODIFICAR_UTF8 - 1) != 0))
        i_decodifica_en_sitio_utf8(texto, n, nullptr);
    return texto;
}
