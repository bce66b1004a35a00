// Files for tests that write and read them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

inline std::string read_file(const std::filesystem::path &path) {
    std::ostringstream contenido;
    contenido << std::ifstream(path, std::ios::binary).rdbuf();
    return contenido.str();
}
inline void fill_file(const std::filesystem::path &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

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
    std::string read() const { return read_file(path_); }
    void fill(const std::string &bytes) const { fill_file(path_, bytes); }

  private:
    std::filesystem::path path_;
    std::u16string wide_;
};

// A new folder of the running test's own beside TempFile's files, removed with everything in it
// at the end of the scope, for cases that look at a whole folder. Its name holds letters beyond
// ASCII too.
class TempFolder {
  public:
    TempFolder() {
        const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
        const std::string prefix = std::string(test ? test->name() : "tqjson2") + "_\xC3\xA9_";
        const std::filesystem::path parent = std::filesystem::current_path() / "test_files";
        std::filesystem::create_directories(parent);
        // A folder that exists (made by another run of the test) is never taken.
        for (int n = 0; path_.empty(); ++n) {
            const std::string name = prefix + std::to_string(n);
            const std::filesystem::path candidate =
                parent / std::u8string(name.begin(), name.end());
            if (std::filesystem::create_directory(candidate))
                path_ = candidate;
        }
    }
    ~TempFolder() { std::filesystem::remove_all(path_); }
    TempFolder(const TempFolder &) = delete;
    TempFolder &operator=(const TempFolder &) = delete;

    std::filesystem::path operator/(const char *name) const {
        return path_ / std::u8string(name, name + std::char_traits<char>::length(name));
    }
    // The names of the folder's entries, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto &entry : std::filesystem::directory_iterator(path_)) {
            const std::u8string name = entry.path().filename().u8string();
            out.emplace_back(name.begin(), name.end());
        }
        std::sort(out.begin(), out.end());
        return out;
    }

  private:
    std::filesystem::path path_;
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
