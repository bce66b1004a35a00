#include <gtest/gtest.h>

#include <random>
#include <string>

#include "codec/codec.h"
#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

namespace {

std::u16string decoded(const std::u16string &texto) {
    return take(i_decodifica_secuencias_escape(texto.c_str()));
}

// Pushes the tolerance counter for the life of the object.
struct Tolerant {
    Tolerant() { tqjson2_apila_desapila_ignorar_assert_se_decodifica(CIERTO); }
    ~Tolerant() { tqjson2_apila_desapila_ignorar_assert_se_decodifica(FALSO); }
};

} // namespace

TEST(EscapeDecoding, DecodesSingleCharacterAndU00EscapesAndLeavesTheRest) {
    const struct {
        const char *label;
        std::u16string input, output;
    } rows[] = {
        {"empty", u"", u""},
        {"no backslash", u"plain ñ", u"plain ñ"},
        {"table", u"\\\"\\\\\\b\\t\\n\\f\\r\\/", u"\"\\\b\t\n\f\r/"},
        {"u00 upper", u"\\u0041", u"A"},
        {"u00 lower", u"\\u00e9x", u"\u00E9x"},
        {"not u00", u"\\u20AC", u"\\u20AC"},
        {"unknown escape", u"\\x", u"\\x"},
        {"backslash last", u"a\\", u"a\\"},
        {"u0000 ends the text", u"a\\u0000b", u"a"},
        {"data prefix passes through", u"data:application/octet-stream;\\n",
         u"data:application/octet-stream;\\n"},
        {"prefix elsewhere decodes", u" data:application/octet-stream\\n",
         u" data:application/octet-stream\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(decoded(row.input), row.output);
    }
}

TEST(EscapeDecoding, BadU00DigitsGiveAQuestionMarkWhenTolerantAndAReportOtherwise) {
    RecordingHandler handler;
    const std::u16string bad[] = {u"\\u00ZZ", u"\\u00", u"\\u004"};
    {
        Tolerant tolerant;
        {
            Tolerant nested; // pushes nest
        }
        for (const auto &b : bad)
            EXPECT_EQ(decoded(b), u"?");
    }
    EXPECT_TRUE(handler.reports().empty());
    for (const auto &b : bad)
        decoded(b); // counter back at 0 after the pops
    EXPECT_EQ(handler.conditions(), std::vector<std::string>(3, "se_decodifica == CIERTO"));
}

TEST(EscapeDecoding, EveryUnitRoundTripsThroughTheEscapedForm) {
    // All 65,535 non-zero units in one text, surrogates included, then a text of controls.
    std::u16string todos;
    for (uint32_t u = 1; u <= 0xFFFF; ++u)
        todos.push_back(char16_t(u));
    for (const std::u16string &original : {todos, std::u16string(u"\\\\u0041\x01/\\")}) {
        char16_t *texto = wide(original.c_str());
        i_codifica_secuencias_escape(&texto);
        EXPECT_EQ(decoded(take(texto)), original);
    }
}

TEST(EscapeDecoding, TheAppenderRefusesToWriteBeyondTheCapacity) {
    RecordingHandler handler;
    char16_t buffer[2] = {u'x', u'x'};
    char16_t *cadena = buffer;
    uint32_t longitud = 1, pos = 1;
    i_append_caracter_cadena_decodificada(u'\0', &cadena, &longitud, &pos); // the terminator fits
    EXPECT_EQ(pos, 2u);
    i_append_caracter_cadena_decodificada(u'a', &cadena, &longitud, &pos);
    i_append_caracter_cadena_decodificada(u'a', nullptr, &longitud, &pos);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"*pos_cadena_decodificada <= *longitud_cadena_decodificada",
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
