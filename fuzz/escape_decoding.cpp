// String nodes from arbitrary text, through every string getter and the writer. The first half
// of the input is UTF-8 (a plain string node, and the literal of a one-element array read with
// and without decoding), the second half UTF-16 units (a string node stored in the escaped form).
// The last byte, when odd, switches on the tolerance of bad "\u00" escapes.
#include "fuzz_support.h"

namespace {

// While bad escapes are tolerated, no getter on a string node has anything to report.
bool g_tolerante = false;

// Up to the first zero: what a zero-terminated text holds.
std::string utf8_half(const uint8_t *data, size_t size) {
    std::string s(reinterpret_cast<const char *>(data), size);
    return s.substr(0, s.find('\0'));
}

std::u16string utf16_half(const uint8_t *data, size_t size) {
    std::u16string s;
    for (size_t i = 0; i + 1 < size; i += 2) {
        const auto unidad = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
        if (!unidad)
            break;
        s += unidad;
    }
    return s;
}

bool well_formed_utf16(const std::u16string &s) {
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] >= 0xD800 && s[i] <= 0xDBFF) {
            if (i + 1 == s.size() || s[i + 1] < 0xDC00 || s[i + 1] > 0xDFFF)
                return false;
            ++i;
        } else if (s[i] >= 0xDC00 && s[i] <= 0xDFFF) {
            return false;
        }
    }
    return true;
}

// Every string getter and test on a string node; returns the decoded wide text.
std::u16string query(const tqjson2_nodo_t *nodo) {
    if (tqjson2_tipo_nodo(nodo) != TQJSON_TIPO_CADENA)
        fuzz::finding("a string node is of another kind");
    const char *guardado = tqjson2_get_valor_cadena_utf8(nodo);
    if (!guardado)
        fuzz::finding("a string node holds no text");
    const uint64_t informes_antes = fuzz::reports();
    const std::u16string sin_decodificar = fuzz::take(tqjson2_get_valor_cadena_u(nodo));
    const std::u16string decodificado = fuzz::take(tqjson2_get_valor_cadena_unicode(nodo));
    fuzz::take(tqjson2_get_valor_cadena_decodificada_ANSI(nodo));

    char *utf8 = nullptr;
    if (tqjson2_es_valor_cadena_utf8(nodo, &utf8) != CIERTO || !utf8)
        fuzz::finding("the UTF-8 string test fails on a string node");
    if (std::string(utf8) != guardado)
        fuzz::finding("the UTF-8 string test hands out another text", guardado, utf8);
    fuzz::take(utf8);
    char16_t *ancho = nullptr;
    if (tqjson2_es_valor_cadena_unicode(nodo, &ancho) != CIERTO || !ancho)
        fuzz::finding("the wide string test fails on a string node");
    if (fuzz::take(ancho) != sin_decodificar)
        fuzz::finding("the wide string test and the undecoded getter disagree");
    char *ansi = nullptr;
    if (tqjson2_es_valor_cadena_ansi(nodo, &ansi) != CIERTO || !ansi)
        fuzz::finding("the ANSI string test fails on a string node");
    fuzz::take(ansi);
    tqbool booleano = FALSO;
    tqjson2_es_valor_booleano(nodo, &booleano);
    if (g_tolerante && fuzz::reports() != informes_antes)
        fuzz::finding("a getter made a report while bad escapes were tolerated");
    return decodificado;
}

// The node as the one element of an array, written in both layouts; the array takes it over.
void write_in_array(tqjson2_nodo_t **nodo) {
    tqjson2_nodo_t *array = tqjson2_crea_nodo_array();
    tqjson2_append_elemento_a_array(array, nodo);
    if (*nodo)
        fuzz::finding("appending to an array left the caller's pointer set");
    fuzz::minified(array);
    fuzz::indented(array);
    tqjson2_destruye_nodo(&array);
}

// The first element of `texto` read one way, when it reads as an array holding a string.
tqjson2_nodo_t *read_literal(const std::string &texto, bool decodifica, tqjson2_nodo_t **raiz) {
    *raiz = nullptr;
    const tqbool leido =
        decodifica ? tqjson2_se_lee_texto_utf8(texto.c_str(), raiz)
                   : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), raiz);
    if (leido != CIERTO || tqjson2_tipo_nodo(*raiz) != TQJSON_TIPO_ARRAY)
        return nullptr;
    const std::vector<void *> elementos = fuzz::children(tqjson2_get_valores_array(*raiz));
    if (elementos.empty())
        return nullptr;
    auto *primero = static_cast<tqjson2_nodo_t *>(elementos[0]);
    return tqjson2_tipo_nodo(primero) == TQJSON_TIPO_CADENA ? primero : nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz::install_counting_handler();
    g_tolerante = size > 0 && (data[size - 1] & 1);
    if (g_tolerante)
        tqjson2_apila_desapila_ignorar_assert_se_decodifica(CIERTO);

    const std::string utf8 = utf8_half(data, size / 2);
    const std::u16string ancho = utf16_half(data + size / 2, size - size / 2);

    // Plain text is stored byte for byte and never decoded.
    char *copia_utf8 = fuzz::copy_utf8(utf8);
    tqjson2_nodo_t *plano = tqjson2_crea_nodo_texto_utf8(&copia_utf8);
    if (copia_utf8)
        fuzz::finding("a string node left the caller's UTF-8 pointer set");
    if (std::string(tqjson2_get_valor_cadena_utf8(plano)) != utf8)
        fuzz::finding("a plain string node does not hold its text byte for byte", utf8,
                      tqjson2_get_valor_cadena_utf8(plano));
    query(plano);
    write_in_array(&plano);

    // Wide text is stored escaped and decodes back to itself.
    char16_t *copia_ancho = fuzz::copy_wide(ancho);
    tqjson2_nodo_t *escapado = tqjson2_crea_nodo_texto_unicode_a_utf8(&copia_ancho);
    if (copia_ancho)
        fuzz::finding("a string node left the caller's wide pointer set");
    const std::u16string devuelto = query(escapado);
    if (well_formed_utf16(ancho) && devuelto != ancho)
        fuzz::finding("wide text stored escaped does not decode back to itself");
    write_in_array(&escapado);

    // The same bytes as a literal: decoding when read or when asked gives the same text.
    const std::string texto = "[\"" + utf8 + "\"]";
    tqjson2_nodo_t *raiz_decodificada = nullptr, *raiz_sin_decodificar = nullptr;
    const tqjson2_nodo_t *decodificado = read_literal(texto, true, &raiz_decodificada);
    const tqjson2_nodo_t *sin_decodificar = read_literal(texto, false, &raiz_sin_decodificar);
    if (!decodificado != !sin_decodificar)
        fuzz::finding("a literal reads one way only");
    if (decodificado && query(decodificado) != query(sin_decodificar))
        fuzz::finding("decoding when read and decoding when asked disagree");
    for (tqjson2_nodo_t *raiz : {raiz_decodificada, raiz_sin_decodificar}) {
        if (!raiz)
            continue;
        fuzz::minified(raiz);
        fuzz::indented(raiz);
        tqjson2_destruye_nodo(&raiz);
    }

    if (g_tolerante)
        tqjson2_apila_desapila_ignorar_assert_se_decodifica(FALSO);
    return 0;
}
