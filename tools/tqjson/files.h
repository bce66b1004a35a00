// Files and standard streams, all in binary: inputs read in pieces or whole, outputs written as
// given. A file that cannot be opened, read or written ends the command with the system's reason.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tqbase.h"

namespace tqjson {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// "<name>: <what>: <the system's reason for the last failed call>" as a file failure.
[[noreturn]] void fail_system(const std::string &name, std::string_view what);

// The name the library takes for the file `name` (UTF-8 on the command line); a name that is
// not UTF-8 text is a file failure.
std::u16string wide_file_name(const std::string &name);

// The file `name`, or standard input for "-", read from its start.
class InputStream {
  public:
    explicit InputStream(const std::string &name);
    // Fills `buffer` as far as the input goes: fewer than `size` bytes only at its end.
    size_t read(char *buffer, size_t size);

  private:
    std::string name_;
    File opened_;
    std::FILE *stream_;
};

// The whole content of the file `name`, or of standard input for "-".
std::string read_input(const std::string &name);

// A save of the file component: given up, unless finished, when it goes.
struct SaveDiscarder {
    void operator()(lc_fichero_t *file) const { lc_fdescarta(file); }
};
using Save = std::unique_ptr<lc_fichero_t, SaveDiscarder>;

// Where the tool writes bytes of its own: the file `output`, which they replace only when
// finish() has put every one of them on the device (a command that fails first leaves the file
// as it was), or standard output when there is none. Every file the tool writes itself goes
// through here.

class Output {
  public:
    explicit Output(const std::optional<std::string> &output);
    void write(std::string_view bytes);
    // Everything written reaches the file, or the command fails.
    void finish();

  private:
    std::optional<std::string> name_;
    Save file_;
};

// A new empty file of the tool's own in the temporary directory, removed when this ends.
class TemporaryFile {
  public:
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    const std::string &name() const { return name_; }

  private:
    std::string name_;
};

} // namespace tqjson
