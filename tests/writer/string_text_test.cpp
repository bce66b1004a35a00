#include <gtest/gtest.h>

#include "support/random_bytes.h"
#include "support/texts.h"
#include "writer/writer.h"

namespace {
std::string written(const char *stored) {
    i_salida_t salida = {nullptr, 0, 0};
    i_escribe_texto_cadena_json(&salida, stored);
    std::string s(salida.datos ? salida.datos : "", salida.longitud);
    marlspy_nousar_free_pp(&salida.datos, 1);
    return s;
}
} // namespace

TEST(StringText, QuotesGetABackslashAndTextIsWrittenAsItReads) {
    const struct {
        const char *stored, *written;
    } rows[] = {{"", ""},
                {"x\"y", "x\\\"y"},
                {"\"\"", "\\\"\\\""},
                {"a\\nb\\/", "a\\nb\\/"}, // escapes of the stored form pass through
                {"a\nb", "a\nb"},         // a plain text's line feed stays bare
                {"\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80", "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80"},
                {"x\xFFy\"", "x\xEF\xBF\xBDy\\\""},
                {"\xED\xA0\xBD\xED\xB8\x80", "\xF0\x9F\x98\x80"}, // encoded pair: one character
                {"\xED\xA0\x80\"", "\xED\xA0\x80\\\""}};          // unpaired surrogate kept
    for (const auto &row : rows)
        EXPECT_EQ(written(row.stored), row.written) << testing::PrintToString(row.stored);
    EXPECT_EQ(written(nullptr), "");
}

// The copy that skips the trip through UTF-16 must give what the trip gives on any bytes: the
// stored text read into UTF-16, a backslash put before each quotation mark, written as UTF-8.
TEST(StringText, TheDirectCopyAgreesWithTheTripThroughUtf16) {
    const unsigned char alphabet[] = {'a',  '"',  '\\', 0x7F, 0x80, 0xA0, 0xBF, 0xC2,
                                      0xDF, 0xE0, 0xED, 0xF0, 0xF4, 0xF5, 0x8F, 0x9F};
    RandomBytes random(alphabet, 777);
    for (int caso = 0; caso < 40000; ++caso) {
        const std::string s = random.next(10);
        std::u16string con_barras;
        for (const char16_t u : take(unicode_convierte_UTF8_a_UNICODE(s.c_str())))
            con_barras += u == u'"' ? u"\\\"" : std::u16string(1, u);
        ASSERT_EQ(written(s.c_str()), take(unicode_convierte_UNICODE_a_UTF8(con_barras.c_str())))
            << testing::PrintToString(s);
    }
}
