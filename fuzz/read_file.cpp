// The input written to a file and read from it, with and without decoding escape sequences,
// with and without buffered stream reads. Both ways of reading the file must agree, down to
// where a failed read stopped; and, for UTF-8, the file must read as the same bytes read as
// text (up to the first zero byte, where both stop).
#include <filesystem>
#include <fstream>
#include <random>

#include "fuzz_support.h"

namespace {

// One file per process in the current folder (the replay test's build folder, or the run folder
// that the test script fuzzes in), removed when the process ends normally.
class InputFile {
  public:
    InputFile()
        : path_(std::filesystem::current_path() /
                ("tqjson2_fuzz_read_file_" + std::to_string(std::random_device{}()) + ".json")),
          wide_(path_.u16string()) {}
    ~InputFile() {
        std::error_code ignorado;
        std::filesystem::remove(path_, ignorado);
    }
    void fill(const uint8_t *data, size_t size) const {
        std::ofstream f(path_, std::ios::binary | std::ios::trunc);
        f.write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
        f.close();
        if (!f) {
            std::fprintf(stderr, "cannot write %s\n", path_.string().c_str());
            std::abort(); // not a finding: the harness cannot run
        }
    }
    const char16_t *wide() const { return wide_.c_str(); }

  private:
    std::filesystem::path path_;
    std::u16string wide_;
};

struct Outcome {
    tqbool leido = FALSO;
    std::string minificado;         // when read
    int32_t linea = 0, columna = 0; // when not
};

Outcome read_file(const InputFile &fichero, bool decodifica, bool con_fread) {
    Outcome resultado;
    tqjson2_nodo_t *raiz = nullptr;
    tqjson2_error_t *error = nullptr;
    resultado.leido = tqjson2_se_lee_fichero_ex(fichero.wide(), decodifica ? CIERTO : FALSO,
                                                con_fread ? CIERTO : FALSO, &raiz, &error);
    if (resultado.leido == CIERTO) {
        if (!raiz)
            fuzz::finding("a successful file read handed out no tree");
        if (error)
            fuzz::finding("a successful file read handed out an error record");
        resultado.minificado = fuzz::minified(raiz);
        fuzz::indented(raiz);
        tqjson2_destruye_nodo(&raiz);
    } else {
        if (raiz)
            fuzz::finding("a failed file read handed out a tree");
        if (!error)
            fuzz::finding("a failed file read handed out no error record");
        resultado.linea = error->linea;
        resultado.columna = error->columna;
        tqjson2_error_destruye(&error);
        if (error)
            fuzz::finding("freeing an error record left the pointer set");
    }
    return resultado;
}

Outcome read_text(const std::string &texto, bool decodifica) {
    Outcome resultado;
    tqjson2_nodo_t *raiz = nullptr;
    resultado.leido =
        decodifica
            ? tqjson2_se_lee_texto_utf8(texto.c_str(), &raiz)
            : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), &raiz);
    if (raiz) {
        resultado.minificado = fuzz::minified(raiz);
        tqjson2_destruye_nodo(&raiz);
    }
    return resultado;
}

std::string position(const Outcome &o) {
    return o.leido == CIERTO
               ? "read: " + o.minificado
               : "stopped at " + std::to_string(o.linea) + ":" + std::to_string(o.columna);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz::install_counting_handler();
    static const InputFile fichero;
    fichero.fill(data, size);
    // The text reader takes UTF-8 only; the file reader decodes UTF-16 behind its mark.
    const bool utf16 =
        size >= 2 && ((data[0] == 0xFF && data[1] == 0xFE) || (data[0] == 0xFE && data[1] == 0xFF));
    const std::string texto(reinterpret_cast<const char *>(data), size); // c_str() ends it

    for (const bool decodifica : {true, false}) {
        const Outcome directo = read_file(fichero, decodifica, false);
        const Outcome con_fread = read_file(fichero, decodifica, true);
        if (directo.leido != con_fread.leido || directo.minificado != con_fread.minificado ||
            directo.linea != con_fread.linea || directo.columna != con_fread.columna)
            fuzz::finding("the two ways of reading a file disagree", position(directo),
                          position(con_fread));
        if (utf16)
            continue;
        const Outcome de_texto = read_text(texto, decodifica);
        if (directo.leido != de_texto.leido || directo.minificado != de_texto.minificado)
            fuzz::finding("the file does not read as the text", position(directo),
                          position(de_texto));
    }
    return 0;
}
