#include "files.h"

#include <cstdio>
#include <filesystem>
#include <random>

#include "platform.h"
#include "tool.h"
#include "utf.h"

namespace tqjson {

namespace {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

} // namespace

std::u16string wide_file_name(const std::string &name) {
    std::optional<std::u16string> wide = utf16_from_utf8(name);
    if (!wide)
        fail(exit_usage_or_file, name + ": file name is not UTF-8 text");
    return std::move(*wide);
}

std::optional<std::string> read_input(const std::string &name, size_t limit) {
    File opened;
    std::FILE *in = stdin;
    if (name != "-") {
        opened.reset(open_file(name, "rb"));
        if (!opened)
            fail(exit_usage_or_file, name + ": cannot open");
        in = opened.get();
    }
    std::string content;
    char chunk[1 << 16];
    size_t got = 0;
    while ((got = std::fread(chunk, 1, sizeof chunk, in)) > 0) {
        if (got > limit - content.size())
            return std::nullopt;
        content.append(chunk, got);
    }
    if (std::ferror(in))
        fail(exit_usage_or_file, name + ": cannot read");
    return content;
}

void write_output(const std::optional<std::string> &output, std::string_view bytes) {
    if (!output) {
        write_stdout(bytes);
        return;
    }
    File out{open_file(*output, "wb")};
    const bool written =
        out && std::fwrite(bytes.data(), 1, bytes.size(), out.get()) == bytes.size();
    // Closing flushes what is still buffered, so it decides too.
    if (!written || std::fclose(out.release()) != 0)
        fail(exit_usage_or_file, *output + ": cannot write");
}

TemporaryFile::TemporaryFile() {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    if (error)
        fail(exit_usage_or_file, "no temporary directory: " + error.message());
    std::random_device device;
    std::mt19937_64 random{(uint64_t{device()} << 32) | device()};
    // Exclusive creation: a name that another process took is tried again with another one.
    for (int attempt = 0; attempt < 100; ++attempt) {
        char unique[17];
        std::snprintf(unique, sizeof unique, "%016llx", static_cast<unsigned long long>(random()));
        const std::string candidate = utf8_from_path(directory / ("tqjson-" + std::string(unique)));
        if (File created{open_file(candidate, "wbx")}) {
            name_ = candidate;
            return;
        }
    }
    fail(exit_usage_or_file, utf8_from_path(directory) + ": cannot create a temporary file");
}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_from_utf8(name_), ignored);
}

} // namespace tqjson
