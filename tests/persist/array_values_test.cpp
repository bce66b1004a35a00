#include <functional>

#include "persist/persist_test_support.h"

// Every kind saved under a label, written to a file, read back and loaded: equal and in order;
// the caller's arrays are untouched.
TEST(ArrayValues, ArraysSavedWrittenAndReadBackLoadEqual) {
    const std::vector<std::u16string> textos = {u"", u"uno", u"t\"a\\b\tc", u"\u00e9\U0001F600"};
    arr_bool_t *b = arr_CreaBOOL(3);
    arr_SetBOOL(b, 1, CIERTO);
    const std::vector<uint32_t> enteros = {2147483647, 0, 7};
    arr_ulong_t *u = ulong_array(enteros);
    arr_cadena_t *c = arr_CreaCADENA(0);
    arr_AppendCADENA(c, "caf\xE9");
    arr_AppendCADENA(c, "");
    arr_cadena_u_t *w = wide_array(textos);
    arr_bool_t *vacio = arr_CreaBOOL(0);

    Tree r{obj({})};
    tqjson2_graba_arr_bool(u"b", b, r.raiz);
    tqjson2_graba_arr_ulong(u"u", u, r.raiz);
    tqjson2_graba_arr_cadenas(u"c", c, r.raiz);
    tqjson2_graba_arr_cadenas_unicode(u"w", w, r.raiz);
    tqjson2_graba_arr_bool(u"vacio", vacio, r.raiz);
    EXPECT_EQ(minified(r.raiz), "{\"b\" : [false,true,false],\"u\" : [2147483647,0,7],"
                                "\"c\" : [\"caf\xC3\xA9\",\"\"],\"w\" : [\"\",\"uno\","
                                "\"t\\\"a\\\\b\\tc\",\"\xC3\xA9\xF0\x9F\x98\x80\"],"
                                "\"vacio\" : []}");
    Tree l = through_file(r.raiz);
    EXPECT_EQ(bools(tqjson2_lee_arr_bool(u"b", l.raiz)), (Bools{FALSO, CIERTO, FALSO}));
    EXPECT_EQ(ulongs(tqjson2_lee_arr_ulong(u"u", l.raiz)), enteros);
    EXPECT_EQ(doubles(tqjson2_lee_arr_double(u"u", l.raiz)), (Doubles{2147483647, 0, 7}));
    EXPECT_EQ(ansi(tqjson2_lee_arr_cadenas(u"c", l.raiz)), (Texts{"caf\xE9", ""}));
    EXPECT_EQ(wide(tqjson2_lee_arr_cadenas_unicode(u"w", l.raiz)), textos);
    EXPECT_TRUE(bools(tqjson2_lee_arr_bool(u"vacio", l.raiz)).empty());
    // Missing, or present twice: empty, never null, and no report.
    tqjson2_graba_arr_ulong(u"u", u, r.raiz);
    EXPECT_TRUE(ulongs(tqjson2_lee_arr_ulong(u"u", r.raiz)).empty());
    EXPECT_TRUE(wide(tqjson2_lee_arr_cadenas_unicode(u"falta", l.raiz)).empty());
    EXPECT_TRUE(ansi(tqjson2_lee_arr_cadenas(u"falta", l.raiz)).empty());
    EXPECT_TRUE(doubles(tqjson2_lee_arr_double(u"falta", l.raiz)).empty());

    EXPECT_EQ(ulongs(u), enteros);
    EXPECT_EQ(wide(w), textos);
    arr_DestruyeBOOL(&b);
    arr_DestruyeCADENA(&c);
    arr_DestruyeBOOL(&vacio);
}

// The _en_array forms fill and read an array node the caller has, behind what it holds.
TEST(ArrayValues, InArrayFormsUseTheCallersNodeAndReportWrongKindsElementByElement) {
    Tree a{arr({integer(1), dbl(2.5), integer(-3)})};
    EXPECT_EQ(doubles(tqjson2_lee_arr_double_en_array(a.raiz)), (Doubles{1, 2.5, -3}));
    Tree b{arr({boolean(CIERTO), plain("FALSE"), plain("tRuE")})};
    EXPECT_EQ(bools(tqjson2_lee_arr_bool_en_array(b.raiz)), (Bools{CIERTO, FALSO, CIERTO}));
    arr_ulong_t *u = ulong_array({0, 9});
    tqjson2_graba_arr_ulong_en_array(u, a.raiz);
    arr_DestruyeULong(&u);
    EXPECT_EQ(minified(a.raiz), "[1,2.5,-3,0,9]");
    Tree s{arr({escaped(u"x\"y")})};
    arr_cadena_t *c = arr_CreaCADENA(1);
    arr_SetCADENA(c, 0, "\xE9");
    tqjson2_graba_arr_cadenas_en_array(c, s.raiz);
    arr_DestruyeCADENA(&c);
    EXPECT_EQ(ansi(tqjson2_lee_arr_cadenas_en_array(s.raiz)), (Texts{"x\"y", "\xE9"}));

    // An element of the wrong kind is reported and the loop goes on; a member or node that is
    // no array is reported by the element getter and gives an empty array.
    struct Row {
        std::function<size_t(const tqjson2_nodo_t *)> lee;
        Conditions reportes;
    } const kRows[] = {
        {[](auto *n) { return bools(tqjson2_lee_arr_bool_en_array(n)).size(); },
         Conditions(5, "es_valor_bool == CIERTO")},
        {[](auto *n) { return doubles(tqjson2_lee_arr_double_en_array(n)).size(); },
         Conditions(2, "es_valor_entero == CIERTO")},
        {[](auto *n) { return ulongs(tqjson2_lee_arr_ulong_en_array(n)).size(); },
         {"nodo->tipo == TQJSON_TIPO_ENTERO", "nodo->tipo == TQJSON_TIPO_ENTERO",
          "nodo->tipo == TQJSON_TIPO_ENTERO", "valor >= 0"}},
        {[](auto *n) { return ansi(tqjson2_lee_arr_cadenas_en_array(n)).size(); },
         Conditions(4, "nodo->tipo == TQJSON_TIPO_CADENA")},
        {[](auto *n) { return wide(tqjson2_lee_arr_cadenas_unicode_en_array(n)).size(); },
         Conditions(4, "nodo->tipo == TQJSON_TIPO_CADENA")},
    };
    Tree mezcla{arr({integer(1), null_node(), plain("no"), dbl(0.5), integer(-1)})};
    for (const Row &row : kRows) {
        SCOPED_TRACE(&row - kRows);
        RecordingHandler handler;
        EXPECT_EQ(row.lee(mezcla.raiz), 5u);
        EXPECT_EQ(handler.conditions(), row.reportes);
    }
    RecordingHandler handler;
    Tree o{obj({{u"i", integer(1)}})};
    EXPECT_TRUE(ulongs(tqjson2_lee_arr_ulong(u"i", o.raiz)).empty());
    EXPECT_TRUE(ulongs(tqjson2_lee_arr_ulong_en_array(nullptr)).empty());
    EXPECT_TRUE(doubles(tqjson2_lee_arr_double(u"i", mezcla.raiz)).empty());
    EXPECT_EQ(handler.conditions(), (Conditions{"nodo->tipo == TQJSON_TIPO_ARRAY", "(nodo) != NULL",
                                                "nodo_objeto->tipo == TQJSON_TIPO_OBJETO"}));
}
