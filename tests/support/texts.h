// Texts the libraries hand over, as strings, freed here; and the bytes of UTF-16 files.
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
