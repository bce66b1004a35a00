// What the tool does differently on Windows, in one place: the command line arrives as UTF-16
// and is taken as UTF-8 here; standard streams carry bytes unchanged; files are opened by their
// UTF-16 names; positions in files are 64-bit.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tqjson {

// The arguments after the program's name, as UTF-8.
std::vector<std::string> utf8_arguments(int argc, char **argv);

// Standard input, output and error in binary: no line end or byte is changed on the way.
void use_binary_standard_streams();

// std::fopen of the file named by UTF-8 text; null when it cannot be opened or the name is not
// UTF-8 text.
std::FILE *open_file(const std::string &name, const char *mode);

// Where standard input stands when it is a regular file, which can then be read again from
// there; nothing for a pipe or a terminal.
std::optional<int64_t> standard_input_file_position();
// Takes standard input back to `position`, one that the function above gave.
bool seek_standard_input(int64_t position);

// The path named by UTF-8 text, and back.
std::filesystem::path path_from_utf8(const std::string &name);
std::string utf8_from_path(const std::filesystem::path &path);

} // namespace tqjson
