#include "files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <random>

#include "platform.h"
#include "tool.h"
#include "utf.h"

namespace tqjson {

void fail_system(const std::string &name, std::string_view what) {
    const int error = errno;
    fail(exit_usage_or_file, name + ": " + std::string(what) + ": " + std::strerror(error));
}

std::u16string wide_file_name(const std::string &name) {
    std::optional<std::u16string> wide = utf16_from_utf8(name);
    if (!wide)
        fail(exit_usage_or_file, name + ": file name is not UTF-8 text");
    return std::move(*wide);
}

InputStream::InputStream(const std::string &name) : name_(name), stream_(stdin) {
    if (name == "-")
        return;
    errno = 0;
    opened_.reset(open_file(name, "rb"));
    if (!opened_)
        fail_system(name, "cannot open");
    stream_ = opened_.get();
}

size_t InputStream::read(char *buffer, size_t size) {
    size_t filled = 0;
    // A pipe hands over what it holds: reading goes on until the buffer is full or the input
    // ends.
    while (filled < size) {
        const size_t got = std::fread(buffer + filled, 1, size - filled, stream_);
        if (got == 0)
            break;
        filled += got;
    }
    if (std::ferror(stream_))
        fail_system(name_, "cannot read");
    return filled;
}

std::string read_input(const std::string &name) {
    InputStream input(name);
    std::string content;
    constexpr size_t piece = size_t{1} << 16;
    for (;;) {
        const size_t used = content.size();
        content.resize(used + piece);
        const size_t got = input.read(content.data() + used, piece);
        content.resize(used + got);
        if (got < piece)
            return content;
    }
}

// The tool's own files are saved as the library saves its own: into a new file beside the
// target, which takes the target's place only once every byte is on the device.
Output::Output(const std::optional<std::string> &output) : name_(output) {
    if (!name_)
        return;
    const std::u16string wide = wide_file_name(*name_);
    errno = 0;
    file_.reset(f_lc_fopen_u(wide.c_str(), u"wb", "tqjson", __LINE__));
    if (!file_)
        fail_system(*name_, "cannot write");
}

void Output::write(std::string_view bytes) {
    if (!file_) {
        write_stdout(bytes);
        return;
    }
    if (lc_fwrite(file_.get(), bytes.data(), bytes.size()) != CIERTO) {
        const int error = errno;
        file_.reset(); // the save is given up: the target keeps what it held
        errno = error;
        fail_system(*name_, "cannot write");
    }
}

void Output::finish() {
    if (!file_)
        return;
    if (const int error = lc_fclose(file_.release()); error != 0) {
        errno = error;
        fail_system(*name_, "cannot write");
    }
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
