#include "command_line.h"
#include "commands.h"
#include "document.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson check FILE...

Reads each FILE (- for standard input) as a JSON document and prints one line for
it: "FILE: ok", or "FILE:LINE:COLUMN: not a readable JSON document" with the place
where the read stopped (no place for standard input).

Exit status: 0 when every file was read, 1 when one was not a readable document,
2 when one could not be opened.
)";

} // namespace

int run_check(const std::vector<std::string> &args) {
    const CommandLine line = parse_command_line("check", args, {}, false);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.empty())
        fail_usage("check", "needs at least one FILE");
    bool any_unreadable = false;
    bool any_file_error = false;
    // A file error does not stop the check: the other files are still worth an answer.
    for (const std::string &name : line.operands) {
        const ReadResult result = read_document(name);
        if (!result.file_error.empty()) {
            print_error(name + ": " + result.file_error);
            any_file_error = true;
        } else if (result.root) {
            write_stdout(name + ": ok\n");
        } else {
            write_stdout(failure_place(name, result) + ": not a readable JSON document\n");
            any_unreadable = true;
        }
    }
    if (any_file_error)
        return exit_usage_or_file;
    return any_unreadable ? exit_not_as_asked : exit_success;
}

} // namespace tqjson
