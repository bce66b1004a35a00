// Files for tests that write and read them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A file name of its own in the folder of the running test (CTest runs each program in its own
// build folder, never in a shared one), removed at the end of the scope. The name holds letters
// beyond ASCII, so every opener must convert it whole.
class TempFile {
  public:
    TempFile() {
        static int contador = 0;
        const std::filesystem::path folder = std::filesystem::current_path() / "test_files";
        std::filesystem::create_directories(folder);
        const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
        const std::string name = std::string(test ? test->name() : "tqjson2") + "_" +
                                 std::to_string(contador++) + "_\xC3\xA9\xF0\x9F\x98\x80.json";
        path_ = folder / std::u8string(name.begin(), name.end());
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

// What a text written in text mode ("wt") holds in a file: the same bytes on POSIX; on Windows
// each line feed reaches the file as CR LF.
inline std::string in_text_mode(std::string texto) {
#if defined(_WIN32)
    for (size_t i = texto.find('\n'); i != std::string::npos; i = texto.find('\n', i + 2))
        texto.insert(i, 1, '\r');
#endif
    return texto;
}
