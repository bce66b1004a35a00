// Documents read from files or standard input, and written the way the library writes them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool.h"

namespace tqjson {

struct ReadResult {
    Tree root;              // the document, when it was read
    std::string file_error; // why the file could not be read at all ("cannot open"); or empty
    int32_t line = 0;       // where a failed read of a file stopped; 0 when unknown
    int32_t column = 0;
};

// Reads the file `name`, or standard input for "-", keeping string values as they are written
// so that they can be written back as they were. Warns about the reports the read made.
ReadResult read_document(const std::string &name);

// "FILE:LINE:COLUMN" where a failed read stopped, or "FILE" when the position is unknown.
std::string failure_place(const std::string &name, const ReadResult &result);

// As read_document; a file error or a text that is not a document ends the command.
Tree read_document_or_fail(const std::string &name);

// The tree as the library writes it with `conf`: to the file `output`, or to standard output.
void write_document(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                    const std::optional<std::string> &output);

} // namespace tqjson
