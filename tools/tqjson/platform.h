// What the tool does differently on Windows, in one place: the command line arrives as UTF-16
// and is taken as UTF-8 here; standard streams carry bytes unchanged; files are opened by their
// UTF-16 names.
#pragma once

#include <cstdio>
#include <filesystem>
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

// The path named by UTF-8 text, and back.
std::filesystem::path path_from_utf8(const std::string &name);
std::string utf8_from_path(const std::filesystem::path &path);

} // namespace tqjson
