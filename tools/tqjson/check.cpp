#include "command_line.h"
#include "commands.h"
#include "document.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson check [--strict] [--lines] FILE...

Reads each FILE (- for standard input) as the library reads it and tells the truth
about it, one line a finding:
  FILE:LINE:COLUMN: changed: WHY     a value the library would not give back as
                                     written (integers beyond 32 bits, doubles
                                     beyond 15 significant digits, member names it
                                     leaves out or writes unescaped, ...)
  FILE:LINE:COLUMN: not JSON: WHY    what the library accepts and JSON does not
                                     (text before or after the root, missing
                                     commas, raw control characters, \x, ...)
then "FILE: ok", or "FILE: readable; COUNTS", or for a document the library does
not read "FILE:LINE:COLUMN: not a readable JSON document: WHY".

LINE and COLUMN count from 1; a column counts UTF-16 code units, so a character
beyond U+FFFF counts two.

Options:
  --strict    count every finding as a failure
  --lines     read each line as a document of its own (JSON Lines)
  -h, --help  print this help

Exit status: 0 when every file was read (under --strict: with nothing found), 1
when one was not, 2 when one could not be opened.
)";

struct Verdict {
    size_t documents = 0;
    size_t unreadable = 0;
    Findings findings;
};

void print_finding(const std::string &name, const Diagnostic &diagnostic) {
    write_stdout(name + ":" + to_string(diagnostic.place) +
                 (diagnostic.kind == Finding::changed ? ": changed: " : ": not JSON: ") +
                 diagnostic.reason + "\n");
}

void print_summary(const std::string &name, const Verdict &verdict, bool lines, bool strict) {
    std::string counts = verdict.findings.counts();
    if (lines) {
        std::string documents = std::to_string(verdict.documents) +
                                (verdict.documents == 1 ? " document" : " documents");
        if (verdict.unreadable > 0)
            documents += ", " + std::to_string(verdict.unreadable) + " not readable";
        counts = documents + (counts.empty() ? "" : "; " + counts);
    } else if (verdict.unreadable > 0) {
        return; // the document's one line said it
    }
    if (verdict.findings.total() == 0 && verdict.unreadable == 0)
        write_stdout(name + ": ok" + (lines ? ", " + counts : "") + "\n");
    else if (strict && verdict.unreadable == 0)
        write_stdout(name + ": refused under --strict: " + counts + "\n");
    else
        write_stdout(name + ": " + (verdict.unreadable > 0 || lines ? "" : "readable; ") + counts +
                     "\n");
}

// Prints what one file holds; true when it passes.
bool check_file(const std::string &name, bool lines, bool strict) {
    Verdict verdict;
    for_each_document(name, lines, [&](Document &document) {
        ++verdict.documents;
        for (const Diagnostic &diagnostic : document.scan.diagnostics)
            print_finding(name, diagnostic);
        verdict.findings.add(document.scan);
        if (!document.root) {
            ++verdict.unreadable;
            write_stdout(unreadable(name, document) + "\n");
        }
    });
    print_summary(name, verdict, lines, strict);
    return verdict.unreadable == 0 && !(strict && verdict.findings.total() > 0);
}

} // namespace

int run_check(const std::vector<std::string> &args) {
    const CommandLine line = parse_command_line("check", args, {"--strict", "--lines"}, false);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.empty())
        fail_usage("check", "needs at least one FILE");
    bool any_failed = false;
    bool any_file_error = false;
    // A file error does not stop the check: the other files are still worth an answer.
    for (const std::string &name : line.operands) {
        try {
            any_failed |= !check_file(name, has_flag(line, "--lines"), has_flag(line, "--strict"));
        } catch (const Failure &failure) {
            if (failure.status != exit_usage_or_file)
                throw;
            print_error(failure.message);
            any_file_error = true;
        }
    }
    if (any_file_error)
        return exit_usage_or_file;
    return any_failed ? exit_not_as_asked : exit_success;
}

} // namespace tqjson
