// tqjson: reads, checks, queries and writes JSON documents, and converts Base64, through the
// tqjson2 library.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands.h"
#include "platform.h"
#include "reports.h"
#include "tool.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson COMMAND [ARGUMENTS]

Reads, checks, queries and writes JSON documents through the tqjson2 library, and
tells where the library reads them otherwise than JSON or would not give them back
as written; converts Base64.

Commands:
  format [FILE|-]                write a document as the library writes it
  check FILE...                  tell what the library makes of each file
  get FILE PATH|POINTER          print the value at a path or a JSON Pointer
  base64 encode|decode [FILE|-]  convert bytes to Base64 text and back

format, check and get take --lines (one document a line: JSON Lines) and --strict
(any finding of check is a failure).

Options:
  -h, --help   print this help; tqjson COMMAND --help prints a command's
  --version    print the version

Places in a document are LINE:COLUMN, both from 1; a column counts UTF-16 code
units, so a character beyond U+FFFF counts two.

Exit status: 0 on success, 1 when an input is not what was asked for (not a readable
document, a finding under --strict, a path not found, not Base64 text), 2 for usage
and file errors. Errors name the file, and for files the system's reason.
)";

struct Command {
    std::string_view name;
    int (*run)(const std::vector<std::string> &args);
};

constexpr Command commands[] = {
    {"format", run_format},
    {"check", run_check},
    {"get", run_get},
    {"base64", run_base64},
};

int run(const std::vector<std::string> &args) {
    if (args.empty())
        fail(exit_usage_or_file, "no command given (see tqjson --help)");
    const std::string &first = args[0];
    if (first == "-h" || first == "--help") {
        write_stdout(usage);
        return exit_success;
    }
    if (first == "--version") {
        write_stdout("tqjson " TQJSON_VERSION "\n");
        return exit_success;
    }
    for (const Command &command : commands)
        if (command.name == first)
            return command.run({args.begin() + 1, args.end()});
    if (first.starts_with('-'))
        fail(exit_usage_or_file, "unknown option '" + first + "' (see tqjson --help)");
    fail(exit_usage_or_file, "unknown command '" + first + "' (see tqjson --help)");
}

} // namespace

void print_error(std::string_view message) {
    std::fprintf(stderr, "tqjson: %.*s\n", static_cast<int>(message.size()), message.data());
}

void print_warning(std::string_view message) {
    std::fprintf(stderr, "tqjson: warning: %.*s\n", static_cast<int>(message.size()),
                 message.data());
}

void write_stdout(std::string_view bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

} // namespace tqjson

int main(int argc, char **argv) {
    using namespace tqjson;
    install_report_counter();
    use_binary_standard_streams();
    int status = exit_success;
    try {
        status = run(utf8_arguments(argc, argv));
    } catch (const Failure &failure) {
        print_error(failure.message);
        status = failure.status;
    } catch (const std::exception &error) {
        print_error(error.what());
        status = exit_usage_or_file;
    }
    // Output that never arrived is a failure too, whatever the command made of its input.
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        print_error("standard output: cannot write");
        status = exit_usage_or_file;
    }
    return status;
}
