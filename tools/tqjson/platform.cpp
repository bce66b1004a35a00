#include "platform.h"

#include "utf.h"

#include <sys/stat.h>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>

// The C runtime's own split of the wide command line, by the rules it splits the narrow one:
// no other system library has to be loaded for it (msvcrt exports it; no header declares it).
struct i_inicio_crt {
    int nuevo_modo;
};
extern "C" int __wgetmainargs(int *argc, wchar_t ***argv, wchar_t ***entorno, int comodines,
                              i_inicio_crt *inicio);
#else
#include <unistd.h>
#endif

namespace tqjson {

std::vector<std::string> utf8_arguments(int argc, char **argv) {
#if defined(_WIN32)
    // The narrow arguments are in the ANSI code page, which cannot hold every name.
    (void)argc, (void)argv;
    int count = 0;
    wchar_t **wide = nullptr, **environment = nullptr;
    i_inicio_crt start{0};
    std::vector<std::string> arguments;
    if (__wgetmainargs(&count, &wide, &environment, 0, &start) != 0 || !wide)
        return arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(utf8_from_utf16(reinterpret_cast<const char16_t *>(wide[i])));
    return arguments;
#else
    return {argv + 1, argv + argc};
#endif
}

void use_binary_standard_streams() {
#if defined(_WIN32)
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
}

std::FILE *open_file(const std::string &name, const char *mode) {
#if defined(_WIN32)
    const std::optional<std::u16string> wide_name = utf16_from_utf8(name);
    if (!wide_name)
        return nullptr;
    std::wstring wide_mode(mode, mode + std::char_traits<char>::length(mode));
    return _wfopen(reinterpret_cast<const wchar_t *>(wide_name->c_str()), wide_mode.c_str());
#else
    return std::fopen(name.c_str(), mode);
#endif
}

std::optional<int64_t> standard_input_file_position() {
#if defined(_WIN32)
    struct _stat64 status;
    if (_fstat64(_fileno(stdin), &status) != 0 || (status.st_mode & _S_IFMT) != _S_IFREG)
        return std::nullopt;
    const int64_t position = _ftelli64(stdin);
#else
    struct stat status;
    if (fstat(fileno(stdin), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const int64_t position = ftello(stdin);
#endif
    if (position < 0)
        return std::nullopt;
    return position;
}

bool seek_standard_input(int64_t position) {
    std::clearerr(stdin);
#if defined(_WIN32)
    return _fseeki64(stdin, position, SEEK_SET) == 0;
#else
    return fseeko(stdin, position, SEEK_SET) == 0;
#endif
}

std::filesystem::path path_from_utf8(const std::string &name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string utf8_from_path(const std::filesystem::path &path) {
    const std::u8string utf8 = path.u8string();
    return std::string(utf8.begin(), utf8.end());
}

} // namespace tqjson
