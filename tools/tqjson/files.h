// Files and standard streams, all in binary: inputs read whole, outputs written as given.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tqjson {

// The name the library takes for the file `name` (UTF-8 on the command line); a name that is
// not UTF-8 text is a file failure.
std::u16string wide_file_name(const std::string &name);

// The whole content of the file `name`, or of standard input for "-"; nothing when it holds
// more than `limit` bytes. A file that cannot be read is a file failure.
std::optional<std::string> read_input(const std::string &name, size_t limit = SIZE_MAX);

// The bytes to the file `output`, or to standard output when there is none.
void write_output(const std::optional<std::string> &output, std::string_view bytes);

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
