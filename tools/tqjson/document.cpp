#include "document.h"

#include <cerrno>

#include "files.h"
#include "platform.h"
#include "reports.h"
#include "utf.h"

namespace tqjson {

namespace {

bool starts_with(const std::string &bytes, std::string_view mark) {
    return std::string_view(bytes).starts_with(mark);
}

// UTF-16 of either byte order behind its mark, as UTF-8.
std::string utf8_from_utf16_bytes(std::string_view bytes, bool big_endian) {
    std::u16string units(bytes.size() / 2, u'\0');
    for (size_t i = 0; i < units.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[2 * i]);
        const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        units[i] = static_cast<char16_t>(big_endian ? first << 8 | second : second << 8 | first);
    }
    return utf8_from_utf16(units);
}

// The input's text as the library reads a file.
std::string input_text(std::string bytes) {
    if (starts_with(bytes, "\xEF\xBB\xBF"))
        return bytes.substr(3);
    if (starts_with(bytes, "\xFF\xFE") || starts_with(bytes, "\xFE\xFF"))
        return utf8_from_utf16_bytes(std::string_view(bytes).substr(2), bytes[0] == '\xFE');
    return bytes;
}

// The library reads the text as a text in memory, keeping string values as they are written so
// that they can be written back as they were.
Document read_text(const std::string &text, uint32_t first_line) {
    Document document;
    document.first_line = first_line;
    tqjson2_nodo_t *root = nullptr;
    if (tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(text.c_str(), &root) == CIERTO)
        document.root.reset(root);
    document.scan = strict_scan(text, first_line);
    if (document.root) // the library decides: a stop the strict reading saw is not one
        document.scan.stop.reset();
    return document;
}

bool is_blank_line(std::string_view line) {
    return line.find_first_not_of(" \t\r\v\f") == std::string_view::npos;
}

void write_file(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                const std::string &name) {
    const std::u16string wide = wide_file_name(name);
    // The library reports a file it cannot open and then writes nowhere, without the system's
    // reason: the file is opened once here first, without changing it, to learn that.
    errno = 0;
    if (!File{open_file(name, "ab")})
        fail_system(name, "cannot write");
    take_reports();
    tqjson2_escribe_fichero_ex(root, &conf, wide.c_str());
    if (take_reports().others > 0)
        fail(exit_usage_or_file, name + ": cannot write");
}

} // namespace

void for_each_document(const std::string &name, bool lines,
                       const std::function<void(Document &)> &each) {
    const std::string text = input_text(read_input(name));
    take_reports();
    if (!lines) {
        Document document = read_text(text, 1);
        warn_about_reports(name, take_reports());
        each(document);
        return;
    }
    uint32_t line_number = 1;
    for (size_t start = 0; start < text.size(); ++line_number) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        if (is_blank_line(line))
            continue;
        Document document = read_text(line, line_number);
        warn_about_reports(name + ":" + std::to_string(line_number), take_reports());
        each(document);
    }
}

std::string unreadable(const std::string &name, const Document &document) {
    const std::optional<Diagnostic> &stop = document.scan.stop;
    if (!stop) // the library refused what the strict reading found no fault in
        return name + ":" + std::to_string(document.first_line) +
               ": not a readable JSON document (no reason found)";
    return name + ":" + to_string(stop->place) + ": not a readable JSON document: " + stop->reason;
}

void Findings::add(const Scan &scan) {
    for (const Diagnostic &diagnostic : scan.diagnostics) {
        ++(diagnostic.kind == Finding::changed ? changed : not_json);
        if (!first)
            first = diagnostic;
    }
}

std::string Findings::counts() const {
    std::string text;
    if (changed > 0)
        text = std::to_string(changed) + (changed == 1 ? " value changed" : " values changed");
    if (not_json > 0)
        text += (text.empty() ? "" : ", ") + std::to_string(not_json) +
                (not_json == 1 ? " place not JSON" : " places not JSON");
    return text;
}

void warn_about_findings(const std::string &name, const Findings &findings, bool strict) {
    if (findings.total() == 0)
        return;
    const std::string message = name + ": " + findings.counts() + ", the first at " +
                                to_string(findings.first->place) + ": " + findings.first->reason +
                                " (tqjson check lists them)";
    if (strict)
        fail(exit_not_as_asked, message);
    print_warning(message);
}

// The library writes numbers only inside documents: the double is held by a one-member object,
// whose minified text is then cut down to the number.
std::string written_double(double value) {
    const Tree holder{tqjson2_crea_nodo_objeto()};
    tqjson2_append_double_a_objeto(holder.get(), u"v", value);
    const Text written{tqjson2_genera_texto_utf8_minificado(holder.get())};
    constexpr std::string_view prefix = "{\"v\" : ";
    constexpr std::string_view suffix = "}";
    std::string_view text = written.get();
    if (text.starts_with(prefix) && text.ends_with(suffix))
        text = text.substr(prefix.size(), text.size() - prefix.size() - suffix.size());
    return std::string(text);
}

std::string document_text(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf) {
    if (conf.espacio_antes_dos_puntos == CIERTO)
        return Text{conf.indentado == CIERTO ? tqjson2_genera_texto_utf8(root)
                                             : tqjson2_genera_texto_utf8_minificado(root)}
            .get();
    // Text in memory always has " : ": without the space, the library writes only files.
    const TemporaryFile temporary;
    write_file(root, conf, temporary.name());
    return read_input(temporary.name());
}

void write_document(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                    const std::optional<std::string> &output) {
    if (output)
        write_file(root, conf, *output);
    else
        write_stdout(document_text(root, conf));
}

} // namespace tqjson
