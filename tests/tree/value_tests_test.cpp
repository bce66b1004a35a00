#include <gtest/gtest.h>

#include <array>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

TEST(ValueTests, NumbersAreHandedOutBeforeTheKindIsTested) {
    RecordingHandler handler;
    tqjson2_nodo_t *d = tqjson2_crea_nodo_double(0.5), *e = tqjson2_crea_nodo_entero(-2);
    int32_t entero = 0;
    double doble = 0;
    EXPECT_EQ(tqjson2_es_valor_entero(d, &entero), FALSO);
    EXPECT_EQ(entero, 2147483647);
    EXPECT_EQ(tqjson2_es_valor_double(e, &doble), FALSO);
    EXPECT_EQ(doble, 1.7976931348623157e308);
    EXPECT_EQ(tqjson2_es_valor_entero(e, &entero), CIERTO);
    EXPECT_EQ(entero, -2);
    EXPECT_EQ(tqjson2_es_valor_double(d, &doble), CIERTO);
    EXPECT_EQ(doble, 0.5);
    EXPECT_EQ(tqjson2_es_valor_entero(e, nullptr), FALSO);
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"(valor) != NULL"}));
    tqjson2_destruye_nodo(&d);
    tqjson2_destruye_nodo(&e);
}

TEST(ValueTests, BooleansComeFromBooleanNodesAndFromTrueOrFalseTexts) {
    RecordingHandler handler;
    const struct {
        const char *label;
        tqjson2_nodo_t *nodo;
        tqbool resultado, valor; // valor 7: left untouched
    } rows[] = {
        {"boolean", tqjson2_crea_nodo_booleano(CIERTO), CIERTO, CIERTO},
        {"TRUE", tqjson2_crea_nodo_texto_unicode_a_utf8(std::array{wide(u"TRUE")}.data()), CIERTO,
         CIERTO},
        {"False", tqjson2_crea_nodo_texto_unicode_a_utf8(std::array{wide(u"False")}.data()), CIERTO,
         FALSO},
        {"yes", tqjson2_crea_nodo_texto_unicode_a_utf8(std::array{wide(u"yes")}.data()), FALSO,
         FALSO},
        {" true", tqjson2_crea_nodo_texto_unicode_a_utf8(std::array{wide(u" true")}.data()), FALSO,
         FALSO},
        {"integer", tqjson2_crea_nodo_entero(1), FALSO, 7},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.label);
        tqbool valor = 7;
        EXPECT_EQ(tqjson2_es_valor_booleano(row.nodo, &valor), row.resultado);
        EXPECT_EQ(valor, row.valor);
        tqjson2_destruye_nodo(&row.nodo);
    }
    EXPECT_TRUE(handler.reports().empty());
}

TEST(ValueTests, StringTestsHandOutNewUndecodedTextsOrNull) {
    char16_t *texto = wide(u"é\t");
    tqjson2_nodo_t *s = tqjson2_crea_nodo_texto_unicode_a_utf8(&texto);
    tqjson2_nodo_t *e = tqjson2_crea_nodo_entero(1);
    char *utf8 = nullptr, *ansi = nullptr;
    char16_t *ancho = nullptr;
    EXPECT_EQ(tqjson2_es_valor_cadena_utf8(s, &utf8), CIERTO);
    EXPECT_EQ(tqjson2_es_valor_cadena_unicode(s, &ancho), CIERTO);
    EXPECT_EQ(tqjson2_es_valor_cadena_ansi(s, &ansi), CIERTO);
    EXPECT_STREQ(utf8, "\xC3\xA9\\t");
    EXPECT_NE(utf8, s->cadena_utf8); // a copy
    EXPECT_EQ(std::u16string(ancho), u"é\\t");
    EXPECT_STREQ(ansi, "\xE9\\t");
    marlstr_destruye(&utf8);
    marlstr_destruye(&ansi);
    widestr_nousar_destruye(&ancho, "test", 0);
    EXPECT_EQ(tqjson2_es_valor_cadena_unicode(e, &ancho), FALSO);
    EXPECT_EQ(ancho, nullptr);
    tqjson2_destruye_nodo(&s);
    tqjson2_destruye_nodo(&e);
}
