#include <gtest/gtest.h>

#include <cmath>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

TEST(Appends, ObjectAppendsMakeOneMemberEachInOrderDuplicatesIncluded) {
    RecordingHandler handler;
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(o, u"id", -3);
    tqjson2_append_ulong_a_objeto(o, u"id", 4000000000u); // saturates, with a report
    tqjson2_append_double_a_objeto(o, u"d", 0.5);
    tqjson2_append_tqbool_a_objeto(o, u"b", CIERTO);
    tqjson2_append_null_a_objeto(o, u"n");
    tqjson2_append_cadena_unicode_a_objeto(o, u"s", u"a/b");
    tqjson2_append_cadena_ansi_a_objeto(o, u"ansi", "\xE9\x80");
    tqjson2_append_time_t_a_objeto(o, u"t", -1);
    tqjson2_append_time64_t_a_objeto(o, u"t64", 0);
    char *utf8 = bytes("raw\\n");
    const char *buffer = utf8;
    tqjson2_append_cadena_utf8_a_objeto(o, u"u", &utf8);
    EXPECT_EQ(utf8, nullptr);
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"valor <= INT32_MAX"}));

    const struct {
        const char16_t *nombre;
        int32_t tipo;
        const char *texto; // stored text of strings
    } expected[] = {{u"id", 3, nullptr},
                    {u"id", 3, nullptr},
                    {u"d", 4, nullptr},
                    {u"b", 5, nullptr},
                    {u"n", 6, nullptr},
                    {u"s", 2, "a\\/b"},
                    {u"ansi", 2, "\xC3\xA9\xE2\x82\xAC"},
                    {u"t", 2, "-1"},
                    {u"t64", 2, "0"},
                    {u"u", 2, "raw\\n"}};
    ASSERT_EQ(arr_NumElemsPuntero(o->atributos_objeto), std::size(expected));
    for (uint32_t i = 0; i < std::size(expected); ++i) {
        SCOPED_TRACE(i);
        const tqjson2_atributo_t *m = member_at(o, i);
        EXPECT_EQ(std::u16string(m->nombre), expected[i].nombre);
        EXPECT_EQ(m->es_propietario, CIERTO);
        EXPECT_EQ(m->valor->tipo, expected[i].tipo);
        if (expected[i].texto) {
            EXPECT_STREQ(m->valor->cadena_utf8, expected[i].texto);
        }
    }
    EXPECT_EQ(member_at(o, 0)->valor->entero, -3);
    EXPECT_EQ(member_at(o, 1)->valor->entero, 2147483647);
    EXPECT_EQ(member_at(o, 5)->valor->texto_decodificado, FALSO);  // escaped wide text
    EXPECT_EQ(member_at(o, 6)->valor->texto_decodificado, CIERTO); // ANSI: plain
    EXPECT_EQ(member_at(o, 9)->valor->cadena_utf8, buffer);        // the very buffer
    tqjson2_destruye_nodo(&o);
}

TEST(Appends, ArrayAppendsTakeOverOrCopyAsTheirNamesSay) {
    RecordingHandler handler;
    tqjson2_nodo_t *a = tqjson2_crea_nodo_array();
    const char16_t propio[] = u"tab\t";
    tqjson2_append_cadena_unicode_a_array(a, propio);
    EXPECT_EQ(std::u16string(propio), u"tab\t"); // the caller keeps its string
    char16_t *tomado = wide(u"pp");
    tqjson2_append_cadena_unicode_a_array_pp(a, &tomado);
    EXPECT_EQ(tomado, nullptr);
    char *utf8 = bytes("x");
    tqjson2_append_cadena_utf8_a_array(a, &utf8);
    EXPECT_EQ(utf8, nullptr);
    tqjson2_append_cadena_ansi_a_array(a, "\xFC");
    tqjson2_append_long_a_array(a, 7);
    tqjson2_append_ulong_a_array(a, 8);
    tqjson2_append_double_a_array(a, -0.0);
    tqjson2_append_bool_a_array(a, FALSO);
    ASSERT_EQ(arr_NumElemsPuntero(a->valores_array), 8u);
    EXPECT_STREQ(element_at(a, 0)->cadena_utf8, "tab\\t");
    EXPECT_EQ(text_of(element_at(a, 0)), u"tab\t");
    EXPECT_EQ(text_of(element_at(a, 1)), u"pp");
    EXPECT_EQ(text_of(element_at(a, 3)), u"ü");
    EXPECT_EQ(element_at(a, 5)->entero, 8);
    EXPECT_TRUE(std::signbit(element_at(a, 6)->valor_double));
    EXPECT_EQ(element_at(a, 7)->tipo, TQJSON_TIPO_BOOLEANO);
    tqjson2_destruye_nodo(&a);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Appends, ABorrowedNodeOutlivesEveryObjectThatSharesIt) {
    tqjson2_nodo_t *compartido = tqjson2_crea_nodo_entero(99);
    tqjson2_nodo_t *uno = tqjson2_crea_nodo_objeto(), *dos = tqjson2_crea_nodo_objeto();
    tqjson2_append_puntero_nodo_const_a_objeto(uno, u"c", compartido);
    tqjson2_append_puntero_nodo_const_a_objeto(dos, u"c", compartido);
    EXPECT_EQ(member_at(uno, 0)->es_propietario, FALSO);
    tqjson2_destruye_nodo(&uno);
    tqjson2_destruye_nodo(&dos);
    EXPECT_EQ(compartido->tipo, TQJSON_TIPO_ENTERO);
    EXPECT_EQ(compartido->entero, 99);
    tqjson2_destruye_nodo(&compartido);
}

TEST(Appends, RefusedAppendsReportAndLeakNothing) {
    RecordingHandler handler;
    tqjson2_nodo_t *arr = tqjson2_crea_nodo_array();
    tqjson2_nodo_t *obj = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(arr, u"x", 1); // an array is no object
    tqjson2_append_long_a_array(obj, 1);        // an object is no array
    tqjson2_append_long_a_objeto(nullptr, u"x", 1);
    tqjson2_append_bool_a_array(nullptr, CIERTO);
    tqjson2_nodo_t *nulo = nullptr;
    tqjson2_append_elemento_a_array(arr, &nulo);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"objeto->tipo == TQJSON_TIPO_OBJETO",
                                        "nodo_array->tipo == TQJSON_TIPO_ARRAY", "(objeto) != NULL",
                                        "(nodo_array) != NULL", "(valor) != NULL"}));
    EXPECT_EQ(arr_NumElemsPuntero(arr->valores_array), 0u);
    EXPECT_EQ(arr_NumElemsPuntero(obj->atributos_objeto), 0u);
    tqjson2_destruye_nodo(&arr);
    tqjson2_destruye_nodo(&obj);
}

TEST(Appends, TheGuardedAppendStoresThePlaceholderAndTheProcessGoesOn) {
    RecordingHandler handler;
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_cadena_unicode_a_objeto_seguro(o, u"bien", u"texto");
    tqjson2_append_cadena_unicode_a_objeto_seguro(o, u"mal",
                                                  reinterpret_cast<const char16_t *>(0x10));
    EXPECT_TRUE(handler.reports().empty());
    tqjson2_append_cadena_unicode_a_objeto_seguro(o, u"nulo", nullptr); // a report, caught alike
    ASSERT_EQ(arr_NumElemsPuntero(o->atributos_objeto), 3u);
    EXPECT_EQ(text_of(member_at(o, 0)->valor), u"texto");
    EXPECT_EQ(text_of(member_at(o, 1)->valor), u"<Writted uninitialized variable>");
    EXPECT_EQ(std::u16string(member_at(o, 2)->nombre), u"nulo");
    EXPECT_EQ(text_of(member_at(o, 2)->valor), u"<Writted uninitialized variable>");
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"(cadena) != NULL"}));
    tqjson2_destruye_nodo(&o);
}
