#include "tree/tree_test_support.h"

// Numbers are handed out before the kind is tested; texts are new undecoded copies, or null.
TEST(ValueTests, NumbersStringsAndBooleansAreHandedOutAsTheTestsSay) {
    RecordingHandler handler;
    Tree d{dbl(0.5)}, e{integer(-2)}, s{escaped(u"é\t")};
    int32_t entero = 0;
    double doble = 0;
    EXPECT_EQ(tqjson2_es_valor_entero(d.raiz, &entero), FALSO);
    EXPECT_EQ(entero, kFill);
    EXPECT_EQ(tqjson2_es_valor_double(e.raiz, &doble), FALSO);
    EXPECT_EQ(bits(doble), kFillBits);
    EXPECT_EQ(tqjson2_es_valor_entero(e.raiz, &entero), CIERTO);
    EXPECT_EQ(entero, -2);
    EXPECT_EQ(tqjson2_es_valor_double(d.raiz, &doble), CIERTO);
    EXPECT_EQ(doble, 0.5);
    EXPECT_EQ(tqjson2_es_valor_entero(e.raiz, nullptr), FALSO);
    EXPECT_EQ(handler.conditions(), Conditions{"(valor) != NULL"});
    char *sin_texto = nullptr; // a null node is an answer of FALSO, not a report
    EXPECT_EQ(tqjson2_es_valor_double(nullptr, &doble), FALSO);
    EXPECT_EQ(tqjson2_es_valor_cadena_utf8(nullptr, &sin_texto), FALSO);
    EXPECT_EQ(handler.reports().size(), 1u);

    char *utf8 = nullptr, *ansi = nullptr;
    char16_t *ancho = nullptr;
    EXPECT_EQ(tqjson2_es_valor_cadena_utf8(s.raiz, &utf8), CIERTO);
    EXPECT_EQ(tqjson2_es_valor_cadena_unicode(s.raiz, &ancho), CIERTO);
    EXPECT_EQ(tqjson2_es_valor_cadena_ansi(s.raiz, &ansi), CIERTO);
    EXPECT_NE(utf8, s.raiz->cadena_utf8); // a copy
    EXPECT_EQ(take(utf8), "\xC3\xA9\\t");
    EXPECT_EQ(take(ancho), u"é\\t");
    EXPECT_EQ(take(ansi), "\xE9\\t");
    EXPECT_EQ(tqjson2_es_valor_cadena_unicode(e.raiz, &ancho), FALSO);
    EXPECT_EQ(ancho, nullptr);

    // Booleans come from boolean nodes and from true or false texts.
    const struct {
        Tree nodo;
        tqbool resultado, valor; // valor 7: left untouched
    } rows[] = {
        {{boolean(CIERTO)}, CIERTO, CIERTO},  {{escaped(u"TRUE")}, CIERTO, CIERTO},
        {{escaped(u"False")}, CIERTO, FALSO}, {{escaped(u"yes")}, FALSO, FALSO},
        {{escaped(u" true")}, FALSO, FALSO},  {{integer(1)}, FALSO, 7},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows); // the row
        tqbool valor = 7;
        EXPECT_EQ(tqjson2_es_valor_booleano(row.nodo.raiz, &valor), row.resultado);
        EXPECT_EQ(valor, row.valor);
    }
}
