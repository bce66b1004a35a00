#include "command_line.h"
#include "commands.h"
#include "document.h"

namespace tqjson {

namespace {

constexpr std::string_view usage =
    R"(Usage: tqjson format [--minify] [--no-space] [-o OUT] [FILE|-]

Reads a JSON document from FILE, or from standard input when FILE is - or missing,
and writes it indented by four spaces, with " : " between names and values.

Options:
  --minify     write it on one line
  --no-space   write "name": value, without the space before the colon
  -o OUT       write it to the file OUT instead of standard output
  -h, --help   print this help
)";

tqbool flag_value(bool on) {
    return on ? tqbool{CIERTO} : tqbool{FALSO};
}

} // namespace

int run_format(const std::vector<std::string> &args) {
    const CommandLine line = parse_command_line("format", args, {"--minify", "--no-space"}, true);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.size() > 1)
        fail_usage("format", "takes at most one FILE");
    const Tree root = read_document_or_fail(line.operands.empty() ? "-" : line.operands[0]);
    const tqjson2_conf_escritura_t conf{flag_value(!has_flag(line, "--no-space")),
                                        flag_value(!has_flag(line, "--minify"))};
    write_document(root.get(), conf, line.output);
    return exit_success;
}

} // namespace tqjson
