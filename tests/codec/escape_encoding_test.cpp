#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "codec/codec.h"
#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

namespace {

// The stored UTF-8 text for `texto`, checking that the wide text was taken over.
std::string stored(const std::u16string &texto, tqbool codifica) {
    char16_t *propio = wide(texto.c_str());
    char *utf8 = i_convierte_texto_unicode_a_utf8(codifica, &propio);
    EXPECT_EQ(propio, nullptr);
    return take(utf8);
}

} // namespace

TEST(EscapeEncoding, StoresControlsSolidusAndBackslashAsEscapes) {
    const struct {
        const char *label;
        std::u16string input;
        std::string escaped, plain;
    } rows[] = {
        {"empty", u"", "", ""},
        {"solidus", u"a/b", "a\\/b", "a/b"},
        {"backslash", u"\\", "\\\\", "\\"},
        {"quotation mark stays bare", u"\"", "\"", "\""},
        {"named controls", u"\b\t\n\f\r", "\\b\\t\\n\\f\\r", "\b\t\n\f\r"},
        {"other controls", u"\x01\x10\x1F\x0B", "\\u0001\\u0010\\u001F\\u000B", "\x01\x10\x1F\x0B"},
        {"delete and beyond ASCII", u"\x7F\u00E9", "\x7F\xC3\xA9", "\x7F\xC3\xA9"},
        {"surrogate pair", u"\U0001D11E", "\xF0\x9D\x84\x9E", "\xF0\x9D\x84\x9E"},
        {"no data prefix survives", u"data:application/octet-stream",
         "data:application\\/octet-stream", "data:application/octet-stream"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(stored(row.input, CIERTO), row.escaped);
        EXPECT_EQ(stored(row.input, FALSO), row.plain);
    }
    const std::string thousand = stored(std::u16string(1000, u'\x01'), CIERTO);
    ASSERT_EQ(thousand.size(), 6000u);
    for (size_t i = 0; i < thousand.size(); i += 6)
        ASSERT_EQ(thousand.compare(i, 6, "\\u0001"), 0) << i;
}

TEST(EscapeEncoding, EveryUnitEscapesExactlyWhenItIsAControlSolidusOrBackslash) {
    char16_t secuencia[i_TAM_BUFFER_SECUENCIA_ESCAPE];
    for (uint32_t u = 1; u <= 0xFFFF; ++u) {
        std::u16string expected;
        if (u == 0x08 || u == 0x09 || u == 0x0A || u == 0x0C || u == 0x0D || u == 0x2F ||
            u == 0x5C) {
            const char letra[] = {'b', 't', 'n', 0, 'f', 'r'};
            expected = {u'\\', u == 0x2F || u == 0x5C ? char16_t(u) : char16_t(letra[u - 8])};
        } else if (u < 0x20) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\u%04X", unsigned(u));
            expected.assign(hex, hex + 6);
        }
        const tqbool escaped = i_secuencia_escape_caracter(char16_t(u), secuencia);
        ASSERT_EQ(escaped, expected.empty() ? FALSO : CIERTO) << u;
        ASSERT_EQ(std::u16string(secuencia), expected) << u;
    }
}

TEST(EscapeEncoding, BrokenPreconditionsAreReported) {
    RecordingHandler handler;
    char16_t secuencia[i_TAM_BUFFER_SECUENCIA_ESCAPE] = u"x";
    const std::u16string largo(63, u'a');
    i_copia_secuencia_escape(largo.c_str(), secuencia);
    EXPECT_EQ(std::u16string(secuencia), u"x"); // refused: the buffer is left alone
    i_copia_secuencia_escape(largo.substr(1).c_str(), secuencia);
    EXPECT_EQ(std::u16string(secuencia), largo.substr(1)); // 62 units and the terminator fit
    EXPECT_EQ(take(i_convierte_texto_unicode_a_utf8(CIERTO, nullptr)), "");
    i_codifica_secuencias_escape(nullptr);
    EXPECT_EQ(
        handler.conditions(),
        (std::vector<std::string>{"tam_secuencia < (size_t)(i_TAM_BUFFER_SECUENCIA_ESCAPE - 1)",
                                  "(texto_unicode) != NULL", "(texto_unicode) != NULL"}));
}
