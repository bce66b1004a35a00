// Files for tests that write and read them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A file name of its own under the temporary directory, removed at the end of the scope. The
// name holds letters beyond ASCII, so every opener must convert it whole.
class TempFile {
  public:
    TempFile() {
        static int contador = 0;
        path_ = std::filesystem::path(testing::TempDir()) /
                ("tqjson2_test_" + std::to_string(getpid()) + "_" + std::to_string(contador++) +
                 "_\xC3\xA9\xF0\x9F\x98\x80.json");
        wide_ = path_.u16string();
    }
    explicit TempFile(const std::string &bytes) : TempFile() { fill(bytes); }
    ~TempFile() { std::filesystem::remove(path_); }
    const char16_t *wide() const { return wide_.c_str(); }
    bool exists() const { return std::filesystem::exists(path_); }
    std::string read() const {
        std::ostringstream contenido;
        contenido << std::ifstream(path_, std::ios::binary).rdbuf();
        return contenido.str();
    }
    void fill(const std::string &bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }

  private:
    std::filesystem::path path_;
    std::u16string wide_;
};
