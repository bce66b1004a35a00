// The input as zero-terminated UTF-8 JSON text, read with and without decoding escape sequences.
// Whatever reads is written in both layouts. Text written from the undecoded tree must read back
// and write again to the same text, unless a member name is one the writer cannot give back.
#include "fuzz_support.h"

namespace {

// Reads `texto` one way; on FALSO the tree must be null.
tqjson2_nodo_t *read(const std::string &texto, bool decodifica, tqbool *leido) {
    tqjson2_nodo_t *raiz = nullptr;
    *leido = decodifica
                 ? tqjson2_se_lee_texto_utf8(texto.c_str(), &raiz)
                 : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), &raiz);
    if (*leido != CIERTO && raiz)
        fuzz::finding("a failed read handed out a tree");
    if (*leido == CIERTO && !raiz)
        fuzz::finding("a successful read handed out no tree");
    return raiz;
}

// `texto`, written from an undecoded tree, read undecoded and written minified again.
std::string rewritten(const std::string &texto, const std::string &original) {
    tqbool leido = FALSO;
    tqjson2_nodo_t *raiz = read(texto, false, &leido);
    if (leido != CIERTO)
        fuzz::finding("written text does not read back", original, texto);
    std::string otra_vez = fuzz::minified(raiz);
    tqjson2_destruye_nodo(&raiz);
    return otra_vez;
}

void check_round_trip(const tqjson2_nodo_t *raiz, const std::string &minificado,
                      const std::string &sangrado) {
    if (!fuzz::names_write_back(raiz))
        return;
    const std::string de_minificado = rewritten(minificado, minificado);
    if (de_minificado != minificado)
        fuzz::finding("minified text does not write back the same", minificado, de_minificado);
    const std::string de_sangrado = rewritten(sangrado, minificado);
    if (de_sangrado != minificado)
        fuzz::finding("indented text does not read as the minified one", minificado, de_sangrado);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz::install_counting_handler();
    const std::string texto(reinterpret_cast<const char *>(data), size); // c_str() ends it

    tqbool leido_decodificado = FALSO, leido_sin_decodificar = FALSO;
    tqjson2_nodo_t *decodificado = read(texto, true, &leido_decodificado);
    tqjson2_nodo_t *sin_decodificar = read(texto, false, &leido_sin_decodificar);
    if (leido_decodificado != leido_sin_decodificar)
        fuzz::finding(leido_decodificado == CIERTO ? "reads decoded only" : "reads undecoded only");

    if (decodificado) {
        fuzz::minified(decodificado);
        fuzz::indented(decodificado);
        tqjson2_destruye_nodo(&decodificado);
    }
    if (sin_decodificar) {
        const std::string minificado = fuzz::minified(sin_decodificar);
        const std::string sangrado = fuzz::indented(sin_decodificar);
        check_round_trip(sin_decodificar, minificado, sangrado);
        tqjson2_destruye_nodo(&sin_decodificar);
    }
    return 0;
}
