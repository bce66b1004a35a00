// Files for tests that write and read them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

// A file name of its own under the temporary directory, removed at the end of the scope.
class TempFile {
  public:
    TempFile() {
        static int contador = 0;
        path_ = testing::TempDir() + "tqjson2_test_" + std::to_string(getpid()) + "_" +
                std::to_string(contador++) + ".json";
        wide_.assign(path_.begin(), path_.end());
    }
    ~TempFile() { std::remove(path_.c_str()); }
    const char16_t *wide() const { return wide_.c_str(); }
    bool exists() const { return std::ifstream(path_).good(); }
    std::string read() const {
        std::ostringstream contenido;
        contenido << std::ifstream(path_, std::ios::binary).rdbuf();
        return contenido.str();
    }
    void fill(const std::string &bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }

  private:
    std::string path_;
    std::u16string wide_;
};
