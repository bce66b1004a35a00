// The arguments of one command: its flags, -o OUT where it writes a file, and its operands.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tqjson {

struct CommandLine {
    bool help = false;                 // -h or --help: print the usage and do nothing else
    std::vector<std::string> flags;    // the flags given, as spelled ("--minify")
    std::optional<std::string> output; // -o OUT; the last one counts
    std::vector<std::string> operands;
};

// Sorts the arguments of `command`: `known_flags`, and -o OUT when `takes_output`. "-" is an
// operand (standard input), and after "--" every argument is one. An unknown option is a
// usage failure.
CommandLine parse_command_line(std::string_view command, const std::vector<std::string> &args,
                               std::initializer_list<std::string_view> known_flags,
                               bool takes_output);

bool has_flag(const CommandLine &line, std::string_view flag);

// "<command>: <problem> (see tqjson <command> --help)" as a usage failure.
[[noreturn]] void fail_usage(std::string_view command, std::string_view problem);

} // namespace tqjson
