#include <cmath>

#include "tree/tree_test_support.h"

// One member or element each, in order, duplicates included. Strings keep their stored form in
// the written text: wide text escaped, ANSI and time texts plain, UTF-8 as given; each append
// takes over or copies its text as its name says.
TEST(Appends, ObjectAndArrayAppendsMakeOneEntryEachInOrder) {
    RecordingHandler handler;
    Tree o{obj({})};
    tqjson2_append_long_a_objeto(o.raiz, u"id", -3);
    tqjson2_append_ulong_a_objeto(o.raiz, u"id", 4000000000u); // saturates, with a report
    tqjson2_append_double_a_objeto(o.raiz, u"d", 0.5);
    tqjson2_append_tqbool_a_objeto(o.raiz, u"b", CIERTO);
    tqjson2_append_null_a_objeto(o.raiz, u"n");
    tqjson2_append_cadena_unicode_a_objeto(o.raiz, u"s", u"a/b");
    tqjson2_append_cadena_ansi_a_objeto(o.raiz, u"ansi", "\xE9\x80");
    tqjson2_append_time_t_a_objeto(o.raiz, u"t", -1);
    tqjson2_append_time64_t_a_objeto(o.raiz, u"t64", 0);
    char *utf8 = bytes("raw\\n");
    const char *buffer = utf8;
    tqjson2_append_cadena_utf8_a_objeto(o.raiz, u"u", &utf8);
    EXPECT_EQ(utf8, nullptr);
    EXPECT_EQ(handler.conditions(), (Conditions{"valor <= INT32_MAX"}));
    EXPECT_EQ(minified(o.raiz),
              "{\"id\" : -3,\"id\" : 2147483647,\"d\" : 0.5,\"b\" : true,"
              "\"n\" : null,\"s\" : \"a\\/b\",\"ansi\" : \"\xC3\xA9\xE2\x82\xAC\","
              "\"t\" : \"-1\",\"t64\" : \"0\",\"u\" : \"raw\\n\"}");
    for (uint32_t i = 0; i < 10; ++i)
        EXPECT_EQ(member_at(o.raiz, i)->es_propietario, CIERTO) << i;
    EXPECT_EQ(member_at(o.raiz, 5)->valor->texto_decodificado, FALSO);
    EXPECT_EQ(member_at(o.raiz, 6)->valor->texto_decodificado, CIERTO);
    EXPECT_EQ(member_at(o.raiz, 9)->valor->cadena_utf8, buffer); // the very buffer

    Tree a{arr({})};
    const char16_t propio[] = u"tab\t";
    tqjson2_append_cadena_unicode_a_array(a.raiz, propio);
    EXPECT_EQ(std::u16string(propio), u"tab\t"); // the caller keeps its string
    char16_t *tomado = wide(u"pp");
    tqjson2_append_cadena_unicode_a_array_pp(a.raiz, &tomado);
    EXPECT_EQ(tomado, nullptr);
    utf8 = bytes("x");
    tqjson2_append_cadena_utf8_a_array(a.raiz, &utf8);
    EXPECT_EQ(utf8, nullptr);
    tqjson2_append_cadena_ansi_a_array(a.raiz, "\xFC");
    tqjson2_append_long_a_array(a.raiz, 7);
    tqjson2_append_ulong_a_array(a.raiz, 8);
    tqjson2_append_double_a_array(a.raiz, -0.0);
    tqjson2_append_bool_a_array(a.raiz, FALSO);
    EXPECT_EQ(minified(a.raiz), "[\"tab\\t\",\"pp\",\"x\",\"\xC3\xBC\",7,8,0.0,false]");
    EXPECT_TRUE(std::signbit(element_at(a.raiz, 6)->valor_double));
}

// Refused appends report and leak nothing. The guarded append catches a bad address without a
// report and a null one after its report, stores the placeholder, and the process goes on; a
// refused object is reported outside the guard, so nothing is left half-built (ASan).
TEST(Appends, RefusedAndGuardedAppendsReportAndLeakNothing) {
    RecordingHandler handler;
    Tree array{arr({})}, objeto{obj({})};
    tqjson2_append_long_a_objeto(array.raiz, u"x", 1); // an array is no object
    tqjson2_append_long_a_array(objeto.raiz, 1);       // an object is no array
    tqjson2_append_long_a_objeto(nullptr, u"x", 1);
    tqjson2_append_bool_a_array(nullptr, CIERTO);
    tqjson2_nodo_t *nulo = nullptr;
    tqjson2_append_elemento_a_array(array.raiz, &nulo);
    // The container is judged before what is handed over.
    tqjson2_append_elemento_a_array(objeto.raiz, &nulo);
    tqjson2_atributo_t *sin_atributo = nullptr;
    tqjson2_append_atributo_a_objeto(nullptr, &sin_atributo);
    EXPECT_EQ(
        handler.conditions(),
        (Conditions{"objeto->tipo == TQJSON_TIPO_OBJETO", "nodo_array->tipo == TQJSON_TIPO_ARRAY",
                    "(objeto) != NULL", "(nodo_array) != NULL", "(valor) != NULL",
                    "nodo_array->tipo == TQJSON_TIPO_ARRAY", "(valor) != NULL", "(objeto) != NULL",
                    "(valor) != NULL"}));
    EXPECT_EQ(minified(array.raiz) + minified(objeto.raiz), "[]{}");

    handler.clear();
    tqjson2_append_cadena_unicode_a_objeto_seguro(objeto.raiz, u"bien", u"texto");
    tqjson2_append_cadena_unicode_a_objeto_seguro(objeto.raiz, u"mal",
                                                  reinterpret_cast<const char16_t *>(0x10));
    EXPECT_TRUE(handler.reports().empty());
    tqjson2_append_cadena_unicode_a_objeto_seguro(objeto.raiz, u"nulo", nullptr);
    tqjson2_append_cadena_unicode_a_objeto_seguro(nullptr, u"x", u"texto");
    tqjson2_append_cadena_unicode_a_objeto_seguro(array.raiz, u"x", u"texto");
    EXPECT_EQ(minified(objeto.raiz) + minified(array.raiz),
              "{\"bien\" : \"texto\",\"mal\" : \"<Writted uninitialized variable>\",\"nulo\" : "
              "\"<Writted uninitialized variable>\"}[]");
    EXPECT_EQ(handler.conditions(), (Conditions{"(cadena) != NULL", "(objeto) != NULL",
                                                "objeto->tipo == TQJSON_TIPO_OBJETO"}));
}
