#include <gtest/gtest.h>

#include <random>
#include <string>

#include "codec/codec.h"
#include "companion/unicode.h"
#include "companion/wide_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"
#include "tqjson2.h"

namespace {
std::u16string decoded(const std::u16string &texto) {
    return take(i_decodifica_secuencias_escape(texto.c_str()));
}
void tolerant(tqbool apila) {
    tqjson2_apila_desapila_ignorar_assert_se_decodifica(apila);
}
} // namespace

// Only a text that begins with the data prefix passes through.
TEST(EscapeDecoding, DecodesSingleCharacterAndU00EscapesAndLeavesTheRest) {
    const struct {
        std::u16string input, output;
    } rows[] = {
        {u"", u""},
        {u"plain ñ", u"plain ñ"},
        {u"\\\"\\\\\\b\\t\\n\\f\\r\\/", u"\"\\\b\t\n\f\r/"},
        {u"\\u0041\\u00e9x", u"A\u00E9x"},
        {u"\\u20AC \\x a\\", u"\\u20AC \\x a\\"},
        {u"a\\u0000b", u"a"},
        {u"data:application/octet-stream;\\n", u"data:application/octet-stream;\\n"},
        {u" data:application/octet-stream\\n", u" data:application/octet-stream\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.input.size() << " units");
        EXPECT_EQ(decoded(row.input), row.output);
    }
}

// Bad digits give a question mark, reported unless the tolerance counter (which nests) is up.
TEST(EscapeDecoding, BadU00DigitsAreReportedUnlessTolerated) {
    RecordingHandler handler;
    for (const std::u16string bad : {u"\\u00ZZ", u"\\u00", u"\\u004"}) {
        tolerant(CIERTO);
        tolerant(CIERTO);
        tolerant(FALSO);
        EXPECT_EQ(decoded(bad), u"?");
        tolerant(FALSO);
        EXPECT_TRUE(handler.reports().empty());
        EXPECT_EQ(decoded(bad), u"?");
        EXPECT_EQ(handler.conditions(), Conditions{"se_decodifica == CIERTO"});
        handler.clear();
    }
    char16_t buffer[2] = {u'x', u'x'};
    char16_t *cadena = buffer;
    uint32_t longitud = 1, pos = 1;
    i_append_caracter_cadena_decodificada(u'\0', &cadena, &longitud, &pos); // the terminator fits
    EXPECT_EQ(pos, 2u);
    i_append_caracter_cadena_decodificada(u'a', &cadena, &longitud, &pos); // beyond the capacity
    i_append_caracter_cadena_decodificada(u'a', nullptr, &longitud, &pos);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"*pos_cadena_decodificada <= *longitud_cadena_decodificada",
                          "(cadena_decodificada) != NULL"}));
}

// A literal the lexer accepts (every backslash escapes the next character, no bare quotation
// mark), as the reader stores it: directly in UTF-8, and by the wide route of read, bare the
// escaped quotation marks, decode, write back. Same text, same number of reports.
TEST(EscapeDecoding, LiteralsDecodeInUtf8ExactlyAsTheirWideForm) {
    // Hand-picked corners, then random joins of the pieces that make them.
    // clang-format off
    std::vector<std::string> literals = {
        "", "plain", "\\\"q\\\"", "\\\\\\\"", "\\u0041\\u00e9\\u00FF", "\\u0000after\\u00ZZ",
        "\\u00", "\\u004", "\\u00\\\"x", "\\u00a\\\\", "\\u00\xC3\xA9" "1z",
        "\\u00\xE2\x82\xAC" "abc", "\\u00\xF0\x9F\x98\x80z", "\\u00a\xF0\x9F\x98\x80z",
        "\\u00\xC3\xA9\xF0\x9F\x98\x80", "\\u00a\xF0\x9F\x98\x80",
        "data:application/octet-stream\\n\\u0041", "x\\u00\\u0041", "\\/\\b\\f\\n\\r\\t\\q"};
    const char *pieces[] = {"\\", "u", "0", "00", "\\u00", "A", "f", "Z", "\\\"", "n", "\\\\",
                            "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "x", "data:"};
    // clang-format on
    std::mt19937 azar(20261123);
    while (literals.size() < 20000) {
        std::string lit;
        for (size_t n = azar() % 12; n > 0; --n)
            lit += pieces[azar() % std::size(pieces)];
        size_t i = 0; // keep it only if the lexer would accept it
        while (i < lit.size() && lit[i] != '"')
            i += lit[i] == '\\' ? 2 : 1;
        if (i == lit.size())
            literals.push_back(lit);
    }
    RecordingHandler handler;
    for (const std::string &lit : literals) {
        SCOPED_TRACE(lit);
        std::u16string ancho = take(unicode_convierte_UTF8_a_UNICODE(lit.c_str())), bare;
        for (size_t i = 0; i < ancho.size(); ++i) {
            if (ancho[i] == u'\\' && ancho[i + 1] == u'"')
                ++i;
            else if (ancho[i] == u'\\')
                bare += ancho[i++];
            bare += ancho[i];
        }
        uint32_t malos = 0;
        char16_t *decodificado = i_decodifica_secuencias_escape(bare.c_str(), &malos);
        const std::string esperado = take(unicode_convierte_UNICODE_a_UTF8(decodificado));
        widestr_nousar_destruye(&decodificado, "test", 0);
        handler.clear();
        EXPECT_EQ(take(i_literal_json_utf8(lit.data(), lit.size(), CIERTO)), esperado);
        EXPECT_EQ(handler.reports().size(), malos);
        EXPECT_EQ(take(i_literal_json_utf8(lit.data(), lit.size(), FALSO)),
                  take(unicode_convierte_UNICODE_a_UTF8(bare.c_str())));
    }
}
