#include "document.h"

#include <cstdio>
#include <filesystem>

#include "files.h"
#include "platform.h"
#include "reports.h"
#include "utf.h"

namespace tqjson {

namespace {

// Standard input is text in memory, which the library reads without giving a position.
void read_standard_input(ReadResult &result) {
    const std::string text = read_input("-");
    tqjson2_nodo_t *root = nullptr;
    if (tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(text.c_str(), &root) == CIERTO)
        result.root.reset(root);
}

bool is_readable_file(const std::string &name) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path_from_utf8(name), ignored))
        return false;
    std::FILE *file = open_file(name, "rb");
    if (!file)
        return false;
    std::fclose(file);
    return true;
}

void read_file(const std::string &name, ReadResult &result) {
    const std::optional<std::u16string> wide = utf16_from_utf8(name);
    if (!wide) {
        result.file_error = "file name is not UTF-8 text";
        return;
    }
    // A file the library cannot open is a failed read without a position, like a text that is
    // not a document: the two are told apart here first.
    if (!is_readable_file(name)) {
        result.file_error = "cannot open";
        return;
    }
    tqjson2_nodo_t *root = nullptr;
    tqjson2_error_t *stop = nullptr;
    if (tqjson2_se_lee_fichero_ex(wide->c_str(), FALSO, FALSO, &root, &stop) == CIERTO) {
        result.root.reset(root);
    } else if (stop) {
        result.line = stop->linea;
        result.column = stop->columna;
        tqjson2_error_destruye(&stop);
    } else { // the file went away since it was tested
        result.file_error = "cannot open";
    }
}

// Writes through the library's file writer, which reports a file it cannot open and then
// writes nowhere.
void write_file(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                const std::string &name) {
    const std::u16string wide = wide_file_name(name);
    take_reports();
    tqjson2_escribe_fichero_ex(root, &conf, wide.c_str());
    const ReportCounts reported = take_reports();
    if (reported.integers_beyond_32_bits + reported.others > 0)
        fail(exit_usage_or_file, name + ": cannot write");
}

} // namespace

ReadResult read_document(const std::string &name) {
    ReadResult result;
    take_reports();
    if (name == "-")
        read_standard_input(result);
    else
        read_file(name, result);
    warn_about_reports(name, take_reports());
    return result;
}

std::string failure_place(const std::string &name, const ReadResult &result) {
    if (result.line <= 0)
        return name;
    return name + ":" + std::to_string(result.line) + ":" + std::to_string(result.column);
}

Tree read_document_or_fail(const std::string &name) {
    ReadResult result = read_document(name);
    if (!result.file_error.empty())
        fail(exit_usage_or_file, name + ": " + result.file_error);
    if (!result.root)
        fail(exit_not_as_asked, failure_place(name, result) + ": not a readable JSON document");
    return std::move(result.root);
}

void write_document(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                    const std::optional<std::string> &output) {
    if (output) {
        write_file(root, conf, *output);
        return;
    }
    if (conf.espacio_antes_dos_puntos == CIERTO) {
        const Text text{conf.indentado == CIERTO ? tqjson2_genera_texto_utf8(root)
                                                 : tqjson2_genera_texto_utf8_minificado(root)};
        write_stdout(text.get());
        return;
    }
    // Text in memory always has " : ": without the space, the library writes only files.
    const TemporaryFile temporary;
    write_file(root, conf, temporary.name());
    write_stdout(read_input(temporary.name()));
}

} // namespace tqjson
