#include "command_line.h"
#include "commands.h"
#include "document.h"
#include "files.h"

namespace tqjson {

namespace {

constexpr std::string_view usage =
    R"(Usage: tqjson format [--minify] [--no-space] [--lines] [--strict] [-o OUT] [FILE|-]

Reads a JSON document from FILE, or from standard input when FILE is - or missing,
and writes it as the library writes it: indented by four spaces, with " : "
between names and values. When the library would not give back every value as
written, or reads text that is not JSON, one warning says how many places and
where the first is (tqjson check lists them); text after the document is such a
place, never dropped in silence.

Options:
  --minify     write it on one line
  --no-space   write "name": value, without the space before the colon
  --lines      read each line as a document of its own (JSON Lines) and write
               each as it would be alone, one after another: minified, one a line
  --strict     refuse, with exit status 1, a document holding any such place
  -o OUT       write it to the file OUT instead of standard output
  -h, --help   print this help
)";

tqbool flag_value(bool on) {
    return on ? tqbool{CIERTO} : tqbool{FALSO};
}

} // namespace

int run_format(const std::vector<std::string> &args) {
    const CommandLine line =
        parse_command_line("format", args, {"--minify", "--no-space", "--lines", "--strict"}, true);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.size() > 1)
        fail_usage("format", "takes at most one FILE");
    const std::string name = line.operands.empty() ? "-" : line.operands[0];
    const bool strict = has_flag(line, "--strict");
    const bool minify = has_flag(line, "--minify");
    const tqjson2_conf_escritura_t conf{flag_value(!has_flag(line, "--no-space")),
                                        flag_value(!minify)};
    Findings findings;
    if (!has_flag(line, "--lines")) {
        for_each_document(name, false, [&](Document &document) {
            if (!document.root)
                fail(exit_not_as_asked, unreadable(name, document));
            findings.add(document.scan);
            warn_about_findings(name, findings, strict);
            write_document(document.root.get(), conf, line.output);
        });
        return exit_success;
    }
    // Each document is written as soon as it is read and judged.
    Output out(line.output);
    for_each_document(name, true, [&](Document &document) {
        if (!document.root)
            fail(exit_not_as_asked, unreadable(name, document));
        findings.add(document.scan);
        if (strict)
            warn_about_findings(name, findings, true);
        out.write(document_text(document.root.get(), conf) + (minify ? "\n" : ""));
    });
    out.finish();
    warn_about_findings(name, findings, false);
    return exit_success;
}

} // namespace tqjson
