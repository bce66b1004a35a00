// Texts the libraries hand over, as strings, freed here; the bytes of UTF-16 files; and a
// document of records to read.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tqbase/cadenas.h"

// Also checks that freeing nulls the pointer.
inline std::string take(char *texto) {
    std::string s(texto);
    marlstr_destruye(&texto);
    EXPECT_EQ(texto, nullptr);
    return s;
}
inline std::u16string take(char16_t *texto) {
    std::u16string s(texto);
    widestr_nousar_destruye(&texto, "test", __LINE__);
    EXPECT_EQ(texto, nullptr);
    return s;
}

// `texto` as a UTF-16 file in either byte order, with its byte order mark.
inline std::string utf16_file(const std::u16string &texto, bool big_endian) {
    std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t u : texto)
        bytes += big_endian ? std::string{char(u >> 8), char(u & 0xFF)}
                            : std::string{char(u & 0xFF), char(u >> 8)};
    return bytes;
}

// A document of `records` records of every kind, with escapes and non-ASCII text, different for
// each seed.
inline std::string records_document(int seed, int records = 300) {
    std::string texto = "{\"seed\": " + std::to_string(seed) + ", \"items\": [";
    for (int i = 0; i < records; ++i)
        texto += (i ? "," : "") + std::string("{\"id\": ") + std::to_string(i * seed) +
                 ", \"name\": \"n\\u00e9 \\\"" + std::to_string(i) +
                 "\\\"\", \"v\": [1.5, -0.25, true, false, null], \"o\": {}}";
    return texto + "]}";
}
