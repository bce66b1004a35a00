#include <gtest/gtest.h>

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
