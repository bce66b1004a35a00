// What every command shares: exit statuses, the one-line messages on standard error, and
// owning handles for what the library hands out.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tqjson2.h"

namespace tqjson {

enum ExitStatus {
    exit_success = 0,
    exit_not_as_asked = 1, // not a readable document, a path not found, not Base64
    exit_usage_or_file = 2,
};

// An error that ends the command: `message` goes to standard error as one line after
// "tqjson: ", and the tool exits with `status`.
struct Failure {
    ExitStatus status;
    std::string message;
};

[[noreturn]] inline void fail(ExitStatus status, std::string message) {
    throw Failure{status, std::move(message)};
}

// "tqjson: <message>" as one line on standard error.
void print_error(std::string_view message);
// "tqjson: warning: <message>" as one line on standard error.
void print_warning(std::string_view message);
// Bytes to standard output as they are.
void write_stdout(std::string_view bytes);

struct TreeDeleter {
    void operator()(tqjson2_nodo_t *root) const { tqjson2_destruye_nodo(&root); }
};
struct TextDeleter {
    void operator()(char *text) const { marlstr_destruye(&text); }
};
struct WideTextDeleter {
    void operator()(char16_t *text) const { widestr_nousar_destruye(&text, "tqjson", __LINE__); }
};
struct BufferDeleter {
    void operator()(void *buffer) const { marlspy_nousar_free_pp(&buffer, 1); }
};

using Tree = std::unique_ptr<tqjson2_nodo_t, TreeDeleter>;
using Text = std::unique_ptr<char, TextDeleter>;
using WideText = std::unique_ptr<char16_t, WideTextDeleter>;
template <typename T> using Buffer = std::unique_ptr<T, BufferDeleter>;

} // namespace tqjson
