// The tool's own strict reading of a document, beside the library's: the library gives no
// reason and, for texts, no place for a failed read, and it reads leniently and stores some
// values otherwise than written. This reading follows the library's grammar step by step to
// find where its read stops and why, every value that it would not give back as written, and
// every place where it accepts what JSON does not. The library still decides what reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tqjson {

// A place in the input: line and column from 1, the column in UTF-16 code units.
struct Place {
    uint32_t line = 1;
    uint32_t column = 1;
};

std::string to_string(const Place &place);

enum class Finding {
    changed,  // a value the library would not give back as written
    not_json, // text the library accepts and JSON does not
};

struct Diagnostic {
    Place place;
    Finding kind;
    std::string reason;
};

struct Scan {
    std::vector<Diagnostic> diagnostics; // in the order they were found
    std::optional<Diagnostic> stop;      // where and why the library's read stops
};

// Scans `text`, UTF-8 without a byte-order mark, as the library reads it; its first line is
// line `first_line` of the input.
Scan strict_scan(std::string_view text, uint32_t first_line = 1);

} // namespace tqjson
