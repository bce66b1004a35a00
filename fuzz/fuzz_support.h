// What the fuzz targets share: the entry point they define, a quiet counting handler for
// internal-error reports, the texts the library hands out taken into strings, checks that end
// the run on a finding, and a reader of the input as a script of small values.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tqjson2.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fuzz {

// Reports are expected (wrong kinds, out-of-range integers, bad "\u00" escapes): counting them
// keeps the run fast and its output readable.
inline uint64_t &reports() {
    static uint64_t count = 0;
    return count;
}
inline void count_report(const char *, const char *, int) {
    ++reports();
}
inline void install_counting_handler() {
    static const bool installed = (error_interno_set_manejador(count_report), true);
    (void)installed;
}

// A broken property of the library: says which and ends the run so the input is kept.
[[noreturn]] inline void finding(const char *what, const std::string &a = {},
                                 const std::string &b = {}) {
    std::fprintf(stderr, "FINDING: %s\n", what);
    if (!a.empty() || !b.empty())
        std::fprintf(stderr, "--- first (%zu bytes)\n%s\n--- second (%zu bytes)\n%s\n", a.size(),
                     a.c_str(), b.size(), b.c_str());
    std::abort();
}

// A text the library handed out, freed.
inline std::string take(char *texto) {
    std::string s = texto ? texto : "";
    if (texto)
        marlstr_destruye(&texto);
    return s;
}
inline std::u16string take(char16_t *texto) {
    std::u16string s = texto ? texto : u"";
    if (texto)
        widestr_nousar_destruye(&texto, "fuzz", __LINE__);
    return s;
}

// New zero-terminated copies from the library's memory component, as the functions that take
// a text over require.
inline char *copy_utf8(const std::string &bytes) {
    auto *copia = static_cast<char *>(marlspy_nousar_malloc(bytes.size() + 1));
    std::memcpy(copia, bytes.data(), bytes.size());
    copia[bytes.size()] = '\0';
    return copia;
}
inline char16_t *copy_wide(const std::u16string &texto) {
    auto *copia =
        static_cast<char16_t *>(marlspy_nousar_malloc((texto.size() + 1) * sizeof(char16_t)));
    std::memcpy(copia, texto.data(), texto.size() * sizeof(char16_t));
    copia[texto.size()] = u'\0';
    return copia;
}

// Both layouts of a tree whose root is an object or an array.
inline std::string minified(const tqjson2_nodo_t *raiz) {
    return take(tqjson2_genera_texto_utf8_minificado(raiz));
}
inline std::string indented(const tqjson2_nodo_t *raiz) {
    return take(tqjson2_genera_texto_utf8(raiz));
}

// The members of an object node and the elements of an array node, in order.
inline std::vector<void *> children(const arr_puntero_t *arr) {
    std::vector<void *> out;
    const uint32_t n = arr ? arr_NumElemsPuntero(arr) : 0;
    out.reserve(n);
    for (uint32_t i = 0; i < n; ++i)
        out.push_back(arr_GetPunteroConTipo(arr, i));
    return out;
}

// Empty or made of blanks only (space, tab, LF, CR, VT, FF): the writer leaves such a name out.
inline bool blank_name(const char16_t *nombre) {
    for (const char16_t *p = nombre; *p; ++p)
        if (*p != u' ' && *p != u'\t' && *p != u'\n' && *p != u'\r' && *p != u'\v' && *p != u'\f')
            return false;
    return true;
}

// Whether every member name of the tree is written back as it reads: names are written as
// stored, unescaped, and blank names not at all.
inline bool names_write_back(const tqjson2_nodo_t *raiz) {
    std::vector<const tqjson2_nodo_t *> pendientes{raiz};
    while (!pendientes.empty()) {
        const tqjson2_nodo_t *nodo = pendientes.back();
        pendientes.pop_back();
        const int32_t tipo = tqjson2_tipo_nodo(nodo);
        if (tipo == TQJSON_TIPO_ARRAY) {
            for (void *hijo : children(tqjson2_get_valores_array(nodo)))
                pendientes.push_back(static_cast<const tqjson2_nodo_t *>(hijo));
        } else if (tipo == TQJSON_TIPO_OBJETO) {
            for (void *hijo : children(tqjson2_get_atributos_objeto(nodo))) {
                const auto *atributo = static_cast<const tqjson2_atributo_t *>(hijo);
                const char16_t *nombre = tqjson2_get_nombre_atributo(atributo);
                if (blank_name(nombre))
                    return false;
                for (const char16_t *p = nombre; *p; ++p)
                    if (*p == u'"' || *p == u'\\')
                        return false;
                pendientes.push_back(tqjson2_get_valor_atributo(atributo));
            }
        }
    }
    return true;
}

// The input read as a sequence of small values; past its end every read gives zeros.
class Script {
  public:
    Script(const uint8_t *data, size_t size) : data_(data), size_(size) {}
    bool done() const { return pos_ >= size_; }
    uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }
    uint32_t below(uint32_t n) { return n ? byte() % n : 0; }
    uint32_t u32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i)
            v = (v << 8) | byte();
        return v;
    }
    double f64() {
        uint64_t bits = 0;
        for (int i = 0; i < 8; ++i)
            bits = (bits << 8) | byte();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        return v;
    }
    // Up to `max` bytes, none of them zero.
    std::string bytes(size_t max) {
        std::string s;
        for (size_t n = below(static_cast<uint32_t>(max + 1)); n > 0 && !done(); --n) {
            const uint8_t b = byte();
            if (b)
                s += static_cast<char>(b);
        }
        return s;
    }
    // Up to `max` UTF-16 units, none of them zero, lone surrogates possible.
    std::u16string wide(size_t max) {
        std::u16string s;
        for (size_t n = below(static_cast<uint32_t>(max + 1)); n > 0 && !done(); --n) {
            // ASCII in one byte, which keeps escapes and names short; any unit in three.
            const uint8_t primero = byte();
            char16_t unidad = primero;
            if (primero & 0x80) {
                const uint8_t alto = byte();
                unidad = static_cast<char16_t>((alto << 8) | byte());
            }
            if (unidad)
                s += unidad;
        }
        return s;
    }

  private:
    const uint8_t *data_;
    size_t size_;
    size_t pos_ = 0;
};

} // namespace fuzz
