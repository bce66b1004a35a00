#include <charconv>
#include <cstdint>

#include "command_line.h"
#include "commands.h"
#include "document.h"
#include "reports.h"
#include "utf.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson get [--ignore-case] FILE PATH

Prints the value that PATH names in the JSON document FILE (- for standard input).
PATH is member names and array indexes separated by /, as in store/items/3/name;
an empty PATH or / alone names the whole document. A string is printed as its text
with escape sequences decoded, a number, true, false or null as written, an object
or an array indented.

Options:
  --ignore-case  match member names regardless of letter case
  -h, --help     print this help
)";

struct Segment {
    std::string text;      // as given, for messages
    std::u16string member; // the member name it stands for on an object
};

// One leading '/' is optional; after it, every '/' separates two segments, so an empty
// segment names a member whose name is empty.
std::vector<Segment> split_path(std::string_view path) {
    if (path.starts_with('/'))
        path.remove_prefix(1);
    std::vector<Segment> segments;
    if (path.empty())
        return segments;
    for (size_t start = 0;;) {
        const size_t slash = path.find('/', start);
        const std::string_view text = path.substr(start, slash - start);
        std::optional<std::u16string> member = utf16_from_utf8(text);
        if (!member)
            fail_usage("get", "PATH is not UTF-8 text");
        segments.push_back({std::string(text), std::move(*member)});
        if (slash == std::string_view::npos)
            return segments;
        start = slash + 1;
    }
}

// A decimal index, or nothing when the text is not one. Too many digits for any array give
// an index past every array's end.
std::optional<uint64_t> parse_index(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    uint64_t index = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), index).ec != std::errc{})
        return UINT64_MAX;
    return index;
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

// The node that the path names, or a failure naming the path up to the segment that failed.
const tqjson2_nodo_t *walk(const std::string &name, const tqjson2_nodo_t *node,
                           const std::vector<Segment> &segments, bool ignore_case) {
    std::string walked;
    for (size_t i = 0; i < segments.size(); ++i) {
        const Segment &segment = segments[i];
        const std::string at = i == 0 ? segment.text : walked + "/" + segment.text;
        const int32_t kind = tqjson2_tipo_nodo(node);
        tqjson2_nodo_t *next = nullptr;
        if (kind == TQJSON_TIPO_OBJETO) {
            const tqbool found = ignore_case
                                     ? tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(
                                           node, segment.member.c_str(), &next)
                                     : tqjson2_existe_atributo_con_nombre_en_objeto(
                                           node, segment.member.c_str(), &next);
            if (found != CIERTO) {
                // The exact lookup takes a name present twice for absent: say which it was.
                if (!ignore_case && count_members_named(node, segment.member) > 1)
                    fail(exit_not_as_asked, name + ": member \"" + segment.text +
                                                "\" appears more than once at " + at);
                fail(exit_not_as_asked, name + ": no member \"" + segment.text + "\" at " + at);
            }
        } else if (kind == TQJSON_TIPO_ARRAY) {
            const std::optional<uint64_t> index = parse_index(segment.text);
            if (!index)
                fail(exit_not_as_asked,
                     name + ": \"" + segment.text + "\" is not an array index at " + at);
            const arr_puntero_t *elements = tqjson2_get_valores_array(node);
            if (*index >= arr_NumElemsPuntero(elements))
                fail(exit_not_as_asked, name + ": no element " + segment.text + " at " + at);
            next = static_cast<tqjson2_nodo_t *>(
                arr_GetPunteroConTipo(elements, static_cast<uint32_t>(*index)));
        } else {
            fail(exit_not_as_asked, name + ": " + walked + " is not an object or an array");
        }
        node = next;
        walked = at;
    }
    return node;
}

// The library writes numbers only inside documents: the double is borrowed by a one-member
// object, whose minified text is then cut down to the number.
std::string double_text(const tqjson2_nodo_t *node) {
    const Tree holder{tqjson2_crea_nodo_objeto()};
    tqjson2_append_puntero_nodo_const_a_objeto(holder.get(), u"v", node);
    const Text written{tqjson2_genera_texto_utf8_minificado(holder.get())};
    constexpr std::string_view prefix = "{\"v\" : ";
    constexpr std::string_view suffix = "}";
    std::string_view text = written.get();
    if (text.starts_with(prefix) && text.ends_with(suffix))
        text = text.substr(prefix.size(), text.size() - prefix.size() - suffix.size());
    return std::string(text);
}

// Decoding reports each "\u00" sequence whose digits are not hexadecimal; it becomes '?'.
std::string string_text(const std::string &name, const tqjson2_nodo_t *node) {
    take_reports();
    const WideText decoded{tqjson2_get_valor_cadena_unicode(node)};
    if (const int bad = take_reports().others; bad > 0)
        print_warning(name + ": " + std::to_string(bad) +
                      (bad == 1 ? " \\u00 sequence with bad digits was"
                                : " \\u00 sequences with bad digits were") +
                      " printed as '?'");
    return decoded ? utf8_from_utf16(decoded.get()) : std::string();
}

// The value as it is printed, ending with a line feed.
std::string value_text(const std::string &name, const tqjson2_nodo_t *node) {
    switch (tqjson2_tipo_nodo(node)) {
        case TQJSON_TIPO_CADENA:
            return string_text(name, node) + "\n";
        case TQJSON_TIPO_ENTERO:
            return std::to_string(tqjson2_get_valor_entero(node)) + "\n";
        case TQJSON_TIPO_DOUBLE:
            return double_text(node) + "\n";
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
    const CommandLine line = parse_command_line("get", args, {"--ignore-case"}, false);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.size() != 2)
        fail_usage("get", "needs a FILE and a PATH");
    const std::string &name = line.operands[0];
    const std::vector<Segment> segments = split_path(line.operands[1]);
    const Tree root = read_document_or_fail(name);
    const tqjson2_nodo_t *node = walk(name, root.get(), segments, has_flag(line, "--ignore-case"));
    write_stdout(value_text(name, node));
    return exit_success;
}

} // namespace tqjson
