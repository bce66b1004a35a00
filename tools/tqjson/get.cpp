#include <charconv>
#include <cstdint>

#include "command_line.h"
#include "commands.h"
#include "document.h"
#include "reports.h"
#include "utf.h"

namespace tqjson {

namespace {

constexpr std::string_view usage =
    R"(Usage: tqjson get [--ignore-case] [--lines] [--strict] FILE PATH|POINTER

Prints the value that PATH or POINTER names in the JSON document FILE (- for
standard input). A string is printed as its text with escape sequences decoded, a
number, true, false or null as written, an object or an array indented.

POINTER, an argument that is empty or begins with /, is a JSON Pointer (RFC 6901):
"" names the whole document, / the member named "", /a~1b/0 element 0 of the
member named a/b (~1 stands for /, ~0 for ~). Any other argument is a PATH of
member names and array indexes separated by /, as in store/items/3/name.
Member names match by what their escape sequences decode to: caf\u00e9 is café.

Options:
  --ignore-case  match member names regardless of letter case
  --lines        read each line as a document of its own (JSON Lines) and print
                 the value in each
  --strict       refuse, with exit status 1, a document that the library would
                 not give back as written or that is not JSON (tqjson check)
  -h, --help     print this help
)";

struct Segment {
    std::string text;      // as given, for messages
    std::u16string member; // the member name it stands for on an object
};

struct Path {
    bool pointer = false;
    std::vector<Segment> segments;
};

Segment make_segment(std::string text, std::string_view name) {
    std::optional<std::u16string> member = utf16_from_utf8(name);
    if (!member)
        fail_usage("get", "PATH is not UTF-8 text");
    return {std::move(text), std::move(*member)};
}

// A reference token of a JSON Pointer with ~1 and ~0 turned back into / and ~.
std::string unescape_pointer(std::string_view token) {
    std::string name;
    for (size_t i = 0; i < token.size(); ++i) {
        if (token[i] != '~') {
            name += token[i];
        } else if (i + 1 < token.size() && (token[i + 1] == '0' || token[i + 1] == '1')) {
            name += token[++i] == '0' ? '~' : '/';
        } else {
            fail_usage("get", "in a JSON Pointer ~ must be followed by 0 or 1");
        }
    }
    return name;
}

// An empty argument or one that begins with '/' is a pointer, whose every '/' begins a
// segment; in a path every '/' separates two, so an empty segment names a member whose name is
// empty.
Path parse_path(std::string_view argument) {
    Path path;
    path.pointer = argument.empty() || argument.starts_with('/');
    if (argument.empty())
        return path;
    if (path.pointer)
        argument.remove_prefix(1);
    for (size_t start = 0;;) {
        const size_t slash = argument.find('/', start);
        const std::string_view text = argument.substr(start, slash - start);
        path.segments.push_back(
            make_segment(std::string(text), path.pointer ? unescape_pointer(text) : text));
        if (slash == std::string_view::npos)
            return path;
        start = slash + 1;
    }
}

// A decimal index, or nothing when the text is not one: a pointer's index has no leading zero.
// Too many digits for any array give an index past every array's end.
std::optional<uint64_t> parse_index(std::string_view text, bool pointer) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos ||
        (pointer && text.size() > 1 && text[0] == '0'))
        return std::nullopt;
    uint64_t index = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), index).ec != std::errc{})
        return UINT64_MAX;
    return index;
}

// A member name as the library decodes a string value of the same text: the name is read as
// the one string of a small document.
std::u16string decoded_name(const char16_t *name) {
    std::string text = "[\"";
    for (const char c : utf8_from_utf16(name))
        text += c == '"' ? std::string("\\\"") : std::string(1, c);
    text += "\"]";
    tqjson2_nodo_t *read = nullptr;
    if (tqjson2_se_lee_texto_utf8(text.c_str(), &read) != CIERTO)
        return name;
    const Tree holder{read};
    const auto *string = static_cast<const tqjson2_nodo_t *>(
        arr_GetPunteroConTipo(tqjson2_get_valores_array(holder.get()), 0));
    const WideText decoded{tqjson2_get_valor_cadena_unicode(string)};
    return decoded.get();
}

// The object's members under their decoded names, their values borrowed from the tree, so that
// the library's lookups match names by what they decode to.
Tree with_decoded_names(const tqjson2_nodo_t *object) {
    Tree decoded{tqjson2_crea_nodo_objeto()};
    const arr_puntero_t *members = tqjson2_get_atributos_objeto(object);
    for (uint32_t i = 0; i < arr_NumElemsPuntero(members); ++i) {
        const auto *member =
            static_cast<const tqjson2_atributo_t *>(arr_GetPunteroConTipo(members, i));
        tqjson2_append_puntero_nodo_const_a_objeto(
            decoded.get(), decoded_name(tqjson2_get_nombre_atributo(member)).c_str(),
            tqjson2_get_valor_atributo(member));
    }
    return decoded;
}

size_t count_members_named(const tqjson2_nodo_t *object, const std::u16string &name) {
    const arr_puntero_t *members = tqjson2_get_atributos_objeto(object);
    size_t count = 0;
    for (uint32_t i = 0; i < arr_NumElemsPuntero(members); ++i) {
        const auto *member =
            static_cast<const tqjson2_atributo_t *>(arr_GetPunteroConTipo(members, i));
        count += tqjson2_get_nombre_atributo(member) == name;
    }
    return count;
}

const tqjson2_nodo_t *member_of(const std::string &where, const tqjson2_nodo_t *object,
                                const Segment &segment, const std::string &at, bool ignore_case) {
    const Tree decoded = with_decoded_names(object);
    tqjson2_nodo_t *found = nullptr;
    const tqbool exists = ignore_case ? tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(
                                            decoded.get(), segment.member.c_str(), &found)
                                      : tqjson2_existe_atributo_con_nombre_en_objeto(
                                            decoded.get(), segment.member.c_str(), &found);
    if (exists == CIERTO)
        return found;
    // The exact lookup takes a name present twice for absent: say which it was.
    if (!ignore_case && count_members_named(decoded.get(), segment.member) > 1)
        fail(exit_not_as_asked,
             where + ": member \"" + segment.text + "\" appears more than once at " + at);
    fail(exit_not_as_asked, where + ": no member \"" + segment.text + "\" at " + at);
}

// The node that the path names, or a failure naming the path up to the segment that failed.
const tqjson2_nodo_t *walk(const std::string &where, const tqjson2_nodo_t *node, const Path &path,
                           bool ignore_case) {
    std::string walked;
    for (size_t i = 0; i < path.segments.size(); ++i) {
        const Segment &segment = path.segments[i];
        const std::string at = path.pointer ? walked + "/" + segment.text
                               : i == 0     ? segment.text
                                            : walked + "/" + segment.text;
        const int32_t kind = tqjson2_tipo_nodo(node);
        if (kind == TQJSON_TIPO_OBJETO) {
            node = member_of(where, node, segment, at, ignore_case);
        } else if (kind == TQJSON_TIPO_ARRAY) {
            const std::optional<uint64_t> index = parse_index(segment.text, path.pointer);
            if (!index)
                fail(exit_not_as_asked,
                     where + ": \"" + segment.text + "\" is not an array index at " + at);
            const arr_puntero_t *elements = tqjson2_get_valores_array(node);
            if (*index >= arr_NumElemsPuntero(elements))
                fail(exit_not_as_asked, where + ": no element " + segment.text + " at " + at);
            node = static_cast<tqjson2_nodo_t *>(
                arr_GetPunteroConTipo(elements, static_cast<uint32_t>(*index)));
        } else {
            fail(exit_not_as_asked, where + ": " + (walked.empty() ? "the document" : walked) +
                                        " is not an object or an array");
        }
        walked = at;
    }
    return node;
}

// Decoding reports each "\u00" sequence whose digits are not hexadecimal; it becomes '?'.
std::string string_text(const std::string &where, const tqjson2_nodo_t *node) {
    take_reports();
    const WideText decoded{tqjson2_get_valor_cadena_unicode(node)};
    if (const int bad = take_reports().others; bad > 0)
        print_warning(where + ": " + std::to_string(bad) +
                      (bad == 1 ? " \\u00 sequence with bad digits was"
                                : " \\u00 sequences with bad digits were") +
                      " printed as '?'");
    return decoded ? utf8_from_utf16(decoded.get()) : std::string();
}

// The value as it is printed, ending with a line feed.
std::string value_text(const std::string &where, const tqjson2_nodo_t *node) {
    switch (tqjson2_tipo_nodo(node)) {
        case TQJSON_TIPO_CADENA:
            return string_text(where, node) + "\n";
        case TQJSON_TIPO_ENTERO:
            return std::to_string(tqjson2_get_valor_entero(node)) + "\n";
        case TQJSON_TIPO_DOUBLE:
            return written_double(tqjson2_get_valor_double(node)) + "\n";
        case TQJSON_TIPO_BOOLEANO: {
            tqbool value = FALSO;
            tqjson2_es_valor_booleano(node, &value);
            return value == CIERTO ? "true\n" : "false\n";
        }
        case TQJSON_TIPO_NULL:
            return "null\n";
        default: // objects and arrays: the indented text ends with its own line feed
            return Text{tqjson2_genera_texto_utf8(node)}.get();
    }
}

} // namespace

int run_get(const std::vector<std::string> &args) {
    const CommandLine line =
        parse_command_line("get", args, {"--ignore-case", "--lines", "--strict"}, false);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.size() != 2)
        fail_usage("get", "needs a FILE and a PATH");
    const std::string &name = line.operands[0];
    const Path path = parse_path(line.operands[1]);
    const bool lines = has_flag(line, "--lines");
    const bool strict = has_flag(line, "--strict");
    Findings findings;
    bool any_missing = false;
    for_each_document(name, lines, [&](Document &document) {
        const std::string where = lines ? name + ":" + std::to_string(document.first_line) : name;
        if (!document.root)
            fail(exit_not_as_asked, unreadable(name, document));
        findings.add(document.scan);
        if (strict)
            warn_about_findings(name, findings, true);
        // With --lines a document without the value is told, and the others still answer.
        try {
            write_stdout(value_text(
                where, walk(where, document.root.get(), path, has_flag(line, "--ignore-case"))));
        } catch (const Failure &failure) {
            if (!lines)
                throw;
            print_error(failure.message);
            any_missing = true;
        }
    });
    warn_about_findings(name, findings, false);
    return any_missing ? exit_not_as_asked : exit_success;
}

} // namespace tqjson
