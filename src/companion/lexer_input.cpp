// The lexer's inputs: a file read whole in pieces of the read-buffer length, then put into
// UTF-8. A UTF-16 file is written as UTF-8 in the form that reads back to the same units, so
// that the scanner sees what a lexer over the UTF-16 text would see.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

#include "lexer_record.h"
#include "tqbase/cadenas.h"
#include "unicode.h"

namespace {

struct i_lector {
    virtual ~i_lector() = default;
    // Bytes read into `destino` (at most `num`); 0 at the end or on a failure.
    virtual size_t lee(char *destino, size_t num) = 0;
};

#if defined(_WIN32)
using i_ruta_t = const wchar_t *;
i_ruta_t i_ruta(const std::u16string &nombre, std::string &) {
    return reinterpret_cast<const wchar_t *>(nombre.c_str());
}
#else
using i_ruta_t = const char *;
i_ruta_t i_ruta(const std::u16string &nombre, std::string &utf8) {
    char *convertido = unicode_convierte_UNICODE_a_UTF8(nombre.c_str());
    utf8 = convertido;
    marlstr_destruye(&convertido);
    return utf8.c_str();
}
#endif

struct i_lector_flujo : i_lector {
    std::FILE *flujo;
    explicit i_lector_flujo(i_ruta_t ruta) {
#if defined(_WIN32)
        flujo = _wfopen(ruta, L"rb");
#else
        flujo = std::fopen(ruta, "rb");
#endif
    }
    ~i_lector_flujo() override {
        if (flujo)
            std::fclose(flujo);
    }
    size_t lee(char *destino, size_t num) override {
        return flujo ? std::fread(destino, 1, num, flujo) : 0;
    }
};

struct i_lector_descriptor : i_lector {
    int descriptor;
    explicit i_lector_descriptor(i_ruta_t ruta) {
#if defined(_WIN32)
        descriptor = _wopen(ruta, _O_RDONLY | _O_BINARY);
#else
        descriptor = open(ruta, O_RDONLY);
#endif
    }
    ~i_lector_descriptor() override {
        if (descriptor >= 0)
            close(descriptor);
    }
    size_t lee(char *destino, size_t num) override {
        if (descriptor < 0)
            return 0;
        for (;;) {
            const auto leidos = read(descriptor, destino, static_cast<unsigned>(num));
            if (leidos >= 0)
                return static_cast<size_t>(leidos);
            if (errno != EINTR)
                return 0;
        }
    }
};

// Reads to the end, asking at most `trozo` bytes at a time.
void i_lee_todo(i_lector &lector, size_t trozo, std::string &bytes) {
    constexpr size_t i_CAPACIDAD_INICIAL = size_t{1} << 16;
    if (trozo == 0)
        trozo = 1;
    bytes.resize(i_CAPACIDAD_INICIAL);
    size_t usados = 0;
    for (;;) {
        if (usados == bytes.size())
            bytes.resize(2 * bytes.size());
        const size_t pide = std::min(trozo, bytes.size() - usados);
        const size_t leidos = lector.lee(bytes.data() + usados, pide);
        if (leidos == 0)
            break;
        usados += leidos;
    }
    bytes.resize(usados);
}

// UTF-16 behind its byte-order mark, to UTF-8; the first zero unit ends the text.
std::string i_utf16_a_utf8(const std::string &bytes, bool big_endian) {
    std::u16string unidades((bytes.size() - 2) / 2, u'\0');
    for (size_t i = 0; i < unidades.size(); ++i) {
        const auto alto = static_cast<unsigned char>(bytes[2 + 2 * i + (big_endian ? 0 : 1)]);
        const auto bajo = static_cast<unsigned char>(bytes[2 + 2 * i + (big_endian ? 1 : 0)]);
        unidades[i] = static_cast<char16_t>(alto << 8 | bajo);
    }
    char *utf8 = unicode_convierte_UNICODE_a_UTF8(unidades.c_str());
    std::string resultado(utf8);
    marlstr_destruye(&utf8);
    return resultado;
}

bool i_empieza_por(const std::string &bytes, const char *marca, size_t longitud) {
    return bytes.size() >= longitud && std::memcmp(bytes.data(), marca, longitud) == 0;
}

} // namespace

void i_usa_texto_propio(anlex *lex) {
    lex->texto = lex->propio.c_str();
    lex->fin = lex->texto + std::strlen(lex->texto);
}

void i_carga_fichero(anlex *lex) {
    std::string ruta;
    std::string bytes;
    if (lex->origen == i_origen_lexico::fichero_fread) {
        i_lector_flujo lector(i_ruta(lex->nombre_fichero, ruta));
        i_lee_todo(lector, lex->longitud_buffer, bytes);
    } else {
        i_lector_descriptor lector(i_ruta(lex->nombre_fichero, ruta));
        i_lee_todo(lector, lex->longitud_buffer, bytes);
    }
    if (i_empieza_por(bytes, "\xEF\xBB\xBF", 3))
        lex->propio.assign(bytes, 3);
    else if (i_empieza_por(bytes, "\xFF\xFE", 2))
        lex->propio = i_utf16_a_utf8(bytes, false);
    else if (i_empieza_por(bytes, "\xFE\xFF", 2))
        lex->propio = i_utf16_a_utf8(bytes, true);
    else
        lex->propio = std::move(bytes);
    i_usa_texto_propio(lex);
}
