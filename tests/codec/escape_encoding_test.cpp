#include <gtest/gtest.h>

#include <cstdio>

#include "codec/codec.h"
#include "companion/wide_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {

char16_t *wide(const std::u16string &texto) {
    return widestr_nousar_copia(texto.c_str(), "test", 0);
}
// The stored UTF-8 text for `texto`, checking that the wide text was taken over.
std::string stored(const std::u16string &texto, tqbool codifica) {
    char16_t *propio = wide(texto);
    char *utf8 = i_convierte_texto_unicode_a_utf8(codifica, &propio);
    EXPECT_EQ(propio, nullptr);
    return take(utf8);
}

} // namespace

// The quotation mark stays bare; the data prefix gets no exemption.
TEST(EscapeEncoding, StoresControlsSolidusAndBackslashAsEscapes) {
    const struct {
        std::u16string input;
        std::string escaped, plain;
    } rows[] = {
        {u"", "", ""},
        {u"a/b\\\"\b\t\n\f\r\x01\x10\x1F\x0B\x7F\u00E9\U0001D11E",
         "a\\/b\\\\\"\\b\\t\\n\\f\\r\\u0001\\u0010\\u001F\\u000B\x7F\xC3\xA9\xF0\x9D\x84\x9E",
         "a/b\\\"\b\t\n\f\r\x01\x10\x1F\x0B\x7F\xC3\xA9\xF0\x9D\x84\x9E"},
        {u"data:application/octet-stream", "data:application\\/octet-stream",
         "data:application/octet-stream"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.plain);
        EXPECT_EQ(stored(row.input, CIERTO), row.escaped);
        EXPECT_EQ(stored(row.input, FALSO), row.plain);
    }
    std::string thousand; // every unit escaped: the longest text for its length
    for (int i = 0; i < 1000; ++i)
        thousand += "\\u0001";
    EXPECT_EQ(stored(std::u16string(1000, u'\x01'), CIERTO), thousand);
}

// Each unit escapes exactly when it is a control, the solidus or the backslash; a text of all
// 65,535 non-zero units, surrogates included, escapes to their sequences joined and decodes back,
// and so does a text of backslashes that look like escapes.
TEST(EscapeEncoding, EveryUnitEscapesAsItsOwnSequenceAndRoundTrips) {
    char16_t secuencia[i_TAM_BUFFER_SECUENCIA_ESCAPE];
    std::u16string todos, escapados;
    const std::u16string named = u"\b\t\n\f\r/\\";
    for (uint32_t u = 1; u <= 0xFFFF; ++u) {
        std::u16string expected;
        if (const size_t k = named.find(char16_t(u)); k != named.npos) {
            expected = {u'\\', u"btnfr/\\"[k]};
        } else if (u < 0x20) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\u%04X", unsigned(u));
            expected.assign(hex, hex + 6);
        }
        const tqbool escaped = i_secuencia_escape_caracter(char16_t(u), secuencia);
        ASSERT_EQ(escaped, expected.empty() ? FALSO : CIERTO) << u;
        ASSERT_EQ(std::u16string(secuencia), expected) << u;
        todos.push_back(char16_t(u));
        escapados += expected.empty() ? std::u16string(1, char16_t(u)) : expected;
    }
    const std::pair<std::u16string, std::u16string> texts[] = {
        {todos, escapados}, {u"\\\\u0041\x01/\\", u"\\\\\\\\u0041\\u0001\\/\\\\"}};
    for (const auto &[original, escapado] : texts) {
        char16_t *texto = wide(original);
        i_codifica_secuencias_escape(&texto);
        EXPECT_TRUE(texto == escapado);
        EXPECT_TRUE(take(i_decodifica_secuencias_escape(take(texto).c_str())) == original);
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
    EXPECT_EQ(handler.conditions(),
              (Conditions{"tam_secuencia < (size_t)(i_TAM_BUFFER_SECUENCIA_ESCAPE - 1)",
                          "(texto_unicode) != NULL", "(texto_unicode) != NULL"}));
}
