#include "command_line.h"
#include "commands.h"
#include "files.h"
#include "tool.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson base64 encode|decode [-o OUT] [FILE|-]

encode  writes the Base64 text of the bytes of FILE, followed by a line feed
decode  writes the bytes that the Base64 text of FILE stands for; characters
        outside the Base64 alphabet, line feeds included, are skipped

FILE is read from standard input when it is - or missing.

Options:
  -o OUT      write to the file OUT instead of standard output
  -h, --help  print this help
)";

// The library measures its inputs in 32 bits.
constexpr size_t largest_input = UINT32_MAX;

std::string encode(const std::string &name, const std::string &bytes) {
    uint32_t length = 0;
    const Buffer<char> text{
        tqjsonbase64_encode(bytes.data(), static_cast<uint32_t>(bytes.size()), &length)};
    if (!text)
        fail(exit_not_as_asked, name + ": too large to encode (1 GiB or more)");
    return std::string(text.get(), length) + "\n";
}

std::string decode(const std::string &name, const std::string &text) {
    uint32_t length = 0;
    const Buffer<unsigned char> bytes{
        tqjsonbase64_decode(text.data(), static_cast<uint32_t>(text.size()), &length)};
    if (!bytes)
        fail(exit_not_as_asked, name + ": not Base64 text");
    return std::string(reinterpret_cast<const char *>(bytes.get()), length);
}

} // namespace

int run_base64(const std::vector<std::string> &args) {
    const CommandLine line = parse_command_line("base64", args, {}, true);
    if (line.help) {
        write_stdout(usage);
        return exit_success;
    }
    if (line.operands.empty())
        fail_usage("base64", "needs encode or decode");
    const std::string &mode = line.operands[0];
    if (mode != "encode" && mode != "decode")
        fail_usage("base64", "unknown mode '" + mode + "', expected encode or decode");
    if (line.operands.size() > 2)
        fail_usage("base64", "takes at most one FILE");
    const std::string name = line.operands.size() == 2 ? line.operands[1] : "-";
    const std::optional<std::string> input = read_input(name, largest_input);
    if (!input)
        fail(exit_not_as_asked, name + ": too large (4 GiB or more)");
    write_output(line.output, mode == "encode" ? encode(name, *input) : decode(name, *input));
    return exit_success;
}

} // namespace tqjson
