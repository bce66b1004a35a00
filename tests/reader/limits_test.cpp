// Input at the limits: very large texts, very long strings, names and arrays, and every
// truncation and many corruptions of a valid document. Each gives a tree or FALSO, never a
// fault; the asan preset checks that a failed read leaves nothing behind.
#include <gtest/gtest.h>

#include "reader/reader_test_support.h"
#include "support/recording_handler.h"

namespace {
// Behind a byte-order mark, with escapes, non-ASCII text and every kind.
const std::string kSample = "\xEF\xBB\xBF"
                            R"({"name": "caf\u00e9 \"x\"", "n": -12, "d": 2.5e-3, "ok": true,
  "none": null, "list": [1, [2, {}], "t\tu", -0.0, false], "o": {"a": {"b": []}}, "é": "日本"})";
} // namespace

TEST(Limits, LargeTextsStringsNamesAndArraysReadAndWriteBack) {
    const std::string long_string(16 << 20, 'x'); // 16 MB of one string
    const std::string long_name(1 << 20, 'k');    // a 1 MB member name
    std::string long_array = "[0";                // 2,000,000 elements
    for (int i = 1; i < 2000000; ++i)
        long_array += ",0";
    long_array += "]";
    std::string many_records = "["; // some 30 MB of small objects
    for (int i = 0; i < 400000; ++i)
        many_records += (i ? "," : "") + std::string("{\"id\" : ") + std::to_string(i) +
                        ",\"tag\" : \"abcdefghij\",\"v\" : [true,null,1.5]}";
    many_records += "]";
    for (const std::string &texto :
         {"[\"" + long_string + "\"]", "{\"" + long_name + "\" : 1}", long_array, many_records}) {
        const ReadResult read = read_text(texto, FALSO);
        EXPECT_EQ(read.ok, CIERTO);
        EXPECT_TRUE(read.text == texto) << texto.size(); // each is already in minified form
    }
}

// Every prefix of a valid document is refused (its root never closes) and every single-byte
// corruption reads or is refused; both decodings agree on which.
TEST(Limits, TruncationsAndCorruptionsOfAValidDocument) {
    ASSERT_EQ(read_text(kSample).ok, CIERTO);
    for (size_t longitud = 0; longitud < kSample.size(); ++longitud)
        ASSERT_EQ(read_text(kSample.substr(0, longitud)).ok, FALSO) << longitud;
    RecordingHandler handler; // a corrupted "\u00" escape is reported
    for (size_t i = 0; i < kSample.size(); ++i)
        for (const char byte : {'\0', '"', '\\', '{', ']', ',', '\n', '\xFF'}) {
            std::string corrupto = kSample;
            corrupto[i] = byte;
            ASSERT_EQ(read_text(corrupto, CIERTO).ok, read_text(corrupto, FALSO).ok) << i;
        }
}
