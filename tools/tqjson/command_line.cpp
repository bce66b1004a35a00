#include "command_line.h"

#include <algorithm>

#include "tool.h"

namespace tqjson {

namespace {

bool is_help(std::string_view arg) {
    return arg == "-h" || arg == "--help";
}

} // namespace

CommandLine parse_command_line(std::string_view command, const std::vector<std::string> &args,
                               std::initializer_list<std::string_view> known_flags,
                               bool takes_output) {
    CommandLine line;
    // Help wins over everything else on the line, mistakes included.
    const auto options_end = std::find(args.begin(), args.end(), "--");
    if (std::any_of(args.begin(), options_end, is_help)) {
        line.help = true;
        return line;
    }
    bool options_ended = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &arg = args[i];
        if (options_ended || arg == "-" || !arg.starts_with('-')) {
            line.operands.push_back(arg);
        } else if (arg == "--") {
            options_ended = true;
        } else if (takes_output && arg == "-o") {
            if (i + 1 == args.size())
                fail_usage(command, "option -o needs a file name");
            line.output = args[++i];
        } else if (std::find(known_flags.begin(), known_flags.end(), arg) != known_flags.end()) {
            line.flags.push_back(arg);
        } else {
            fail_usage(command, "unknown option '" + arg + "'");
        }
    }
    return line;
}

bool has_flag(const CommandLine &line, std::string_view flag) {
    return std::find(line.flags.begin(), line.flags.end(), flag) != line.flags.end();
}

void fail_usage(std::string_view command, std::string_view problem) {
    fail(exit_usage_or_file, std::string(command) + ": " + std::string(problem) + " (see tqjson " +
                                 std::string(command) + " --help)");
}

} // namespace tqjson
