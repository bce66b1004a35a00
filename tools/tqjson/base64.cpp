#include <array>
#include <cstring>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "files.h"
#include "platform.h"
#include "tool.h"

namespace tqjson {

namespace {

constexpr std::string_view usage = R"(Usage: tqjson base64 encode|decode [-o OUT] [FILE|-]

encode  writes the Base64 text of the bytes of FILE on one line, followed by a
        line feed
decode  writes the bytes that the Base64 text of FILE stands for; characters
        outside the Base64 alphabet, line feeds included, are skipped, and a
        group of four that holds '=' ends the text. Text that does not decode
        (no Base64 characters, a count of them that is not a multiple of four,
        a group with more than two '=') gives no output at all

FILE is read from standard input when it is - or missing. Both directions stream
the input in pieces, so files of any size take little memory; decoding reads FILE
twice, first to count its Base64 characters (standard input that is not a file is
kept in a temporary file for that).

Options:
  -o OUT      write to the file OUT instead of standard output
  -h, --help  print this help
)";

// The codec takes whole pieces: encoding pieces of a multiple of 3 bytes gives the text of the
// whole input, and decoding pieces of a multiple of 4 Base64 characters its bytes.
constexpr size_t encoding_piece = 3 << 18;
constexpr size_t decoding_piece = size_t{1} << 20;

void encode(const std::string &name, const std::optional<std::string> &output) {
    InputStream input(name);
    Output out(output);
    std::vector<char> piece(encoding_piece);
    for (;;) {
        const size_t got = input.read(piece.data(), piece.size());
        if (got == 0)
            break;
        uint32_t length = 0;
        const Buffer<char> text{
            tqjsonbase64_encode(piece.data(), static_cast<uint32_t>(got), &length)};
        if (!text)
            fail(exit_usage_or_file, "out of memory");
        out.write({text.get(), length});
        if (got < piece.size())
            break;
    }
    out.write("\n");
    out.finish();
}

constexpr std::array<uint8_t, 256> base64_characters() {
    std::array<uint8_t, 256> is{};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                         "0123456789+/="))
        is[static_cast<unsigned char>(c)] = 1;
    return is;
}
// 1 for the characters that the codec counts (the alphabet and '='), 0 for those it skips.
constexpr std::array<uint8_t, 256> is_base64 = base64_characters();

size_t count_base64(const char *bytes, size_t size) {
    size_t count = 0;
    for (size_t i = 0; i < size; ++i)
        count += is_base64[static_cast<unsigned char>(bytes[i])];
    return count;
}

// What decides, before anything is written, whether the whole input decodes: the count of
// Base64 characters, and the first group of four holding '=', where decoding ends.
struct Census {
    uint64_t characters = 0;
    uint64_t padded_group_end = 0; // characters up to the end of that group; 0: no '=' yet
    int padding = 0;               // the '=' of that group

    void add(const char *bytes, size_t size) {
        size_t i = 0;
        while (i < size) {
            if (characters < padded_group_end) { // the rest of the first group holding '='
                for (; i < size && characters < padded_group_end; ++i) {
                    characters += is_base64[static_cast<unsigned char>(bytes[i])];
                    padding += bytes[i] == '=';
                }
                continue;
            }
            if (padded_group_end != 0) {
                characters += count_base64(bytes + i, size - i);
                return;
            }
            const void *equals = std::memchr(bytes + i, '=', size - i);
            const size_t stop =
                equals ? static_cast<size_t>(static_cast<const char *>(equals) - bytes) : size;
            characters += count_base64(bytes + i, stop - i);
            i = stop;
            if (equals) {
                padded_group_end = (characters / 4 + 1) * 4;
                ++characters;
                ++padding;
                ++i;
            }
        }
    }

    // Why the text does not decode, or nothing when it does.
    std::optional<std::string> refusal() const {
        if (characters == 0)
            return "no Base64 characters";
        if (characters % 4 != 0)
            return std::to_string(characters) + " Base64 characters, not a multiple of four";
        if (padding > 2)
            return "a group of four holds " + std::to_string(padding) + " '='";
        return std::nullopt;
    }
};

// Counts the Base64 characters of `name`; standard input is kept in `spool`, when there is one,
// for the second reading.
Census take_census(const std::string &name, const std::optional<TemporaryFile> &spool) {
    InputStream input(name);
    std::optional<Output> kept;
    if (spool)
        kept.emplace(spool->name());
    Census census;
    std::vector<char> piece(decoding_piece);
    for (;;) {
        const size_t got = input.read(piece.data(), piece.size());
        census.add(piece.data(), got);
        if (kept)
            kept->write({piece.data(), got});
        if (got < piece.size())
            break;
    }
    if (kept)
        kept->finish();
    return census;
}

// Decodes the first `count` characters of `characters`, a multiple of four.
void write_decoded(Output &out, const char *characters, size_t count) {
    uint32_t length = 0;
    const Buffer<unsigned char> bytes{
        tqjsonbase64_decode(characters, static_cast<uint32_t>(count), &length)};
    if (!bytes)
        fail(exit_usage_or_file, "out of memory");
    out.write({reinterpret_cast<const char *>(bytes.get()), length});
}

// Hands the codec the Base64 characters of the input up to the end of the text that the census
// found, gathered without the bytes it skips, in pieces of a multiple of four: a group may
// begin in one piece of the input and end in the next.
void decode_counted(const std::string &source, uint64_t end, Output &out) {
    InputStream input(source);
    std::vector<char> raw(decoding_piece);
    std::vector<char> gathered(decoding_piece + 4); // a piece, after at most 3 held over
    size_t held = 0;
    uint64_t taken = 0;
    while (taken < end) {
        const size_t got = input.read(raw.data(), raw.size());
        // Every byte is stored and only the counted ones are kept: no branch per byte.
        for (size_t i = 0; i < got && taken + held < end; ++i) {
            gathered[held] = raw[i];
            held += is_base64[static_cast<unsigned char>(raw[i])];
        }
        const size_t whole = held & ~size_t{3};
        if (whole > 0)
            write_decoded(out, gathered.data(), whole);
        taken += whole;
        std::memmove(gathered.data(), gathered.data() + whole, held - whole);
        held -= whole;
        if (got < raw.size())
            break;
    }
}

void decode(const std::string &name, const std::optional<std::string> &output) {
    // Standard input is read twice where it stands when it is a file; a pipe is kept.
    const std::optional<int64_t> start =
        name == "-" ? standard_input_file_position() : std::optional<int64_t>{0};
    std::optional<TemporaryFile> spool;
    if (!start)
        spool.emplace();
    const Census census = take_census(name, spool);
    if (const std::optional<std::string> refusal = census.refusal())
        fail(exit_not_as_asked, name + ": not Base64 text: " + *refusal);
    if (name == "-" && !spool && !seek_standard_input(*start))
        fail_system(name, "cannot read again");
    Output out(output);
    decode_counted(spool ? spool->name() : name,
                   census.padded_group_end ? census.padded_group_end : census.characters, out);
    out.finish();
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
    if (mode == "encode")
        encode(name, line.output);
    else
        decode(name, line.output);
    return exit_success;
}

} // namespace tqjson
