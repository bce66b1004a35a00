// Documents read from files or standard input, by the library and by the tool's strict reading
// beside it, and written the way the library writes them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "strict_scan.h"
#include "tool.h"

namespace tqjson {

// One document as read.
struct Document {
    Tree root; // when the library read it
    Scan scan; // without a stop when the library read it
    uint32_t first_line = 1;
};

// Calls `each` with every document of the input `name` (a file, or standard input for "-"), in
// order: the whole input, or with `lines` every line that is not blank. The input is read as
// the library reads a file: UTF-8, a byte-order mark skipped, or UTF-16 behind its mark.
void for_each_document(const std::string &name, bool lines,
                       const std::function<void(Document &)> &each);

// "<name>:<line>:<column>: not a readable JSON document: <why>" for a document not read.
std::string unreadable(const std::string &name, const Document &document);

// How many findings the documents of one input hold, and the first of them.
struct Findings {
    size_t changed = 0;
    size_t not_json = 0;
    std::optional<Diagnostic> first;

    void add(const Scan &scan);
    size_t total() const { return changed + not_json; }
    // "3 values changed, 1 place not JSON"
    std::string counts() const;
};

// For commands that print a document or a value: one warning on standard error about what the
// input `name` holds, or under `strict` a failure when it holds anything.
void warn_about_findings(const std::string &name, const Findings &findings, bool strict);

// The text the library writes for the double `value` in a document.
std::string written_double(double value);

// The tree as the library writes it with `conf`: to the file `output`, or to standard output.
void write_document(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf,
                    const std::optional<std::string> &output);

// The tree's text as the library writes it with `conf`.
std::string document_text(const tqjson2_nodo_t *root, const tqjson2_conf_escritura_t &conf);

} // namespace tqjson
