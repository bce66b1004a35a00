#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

namespace {
tqjson2_nodo_t *const kUntouched = reinterpret_cast<tqjson2_nodo_t *>(0x1);
}

TEST(Lookups, TheExactLookupNeedsOneMemberOfThatVeryName) {
    RecordingHandler handler;
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(o, u"id", 1);
    tqjson2_append_long_a_objeto(o, u"Id", 2);
    tqjson2_append_long_a_objeto(o, u"dos", 3);
    tqjson2_append_long_a_objeto(o, u"dos", 4);
    tqjson2_nodo_t *valor = kUntouched;
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(o, u"Id", &valor), CIERTO);
    EXPECT_EQ(valor->entero, 2);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto2(o, u"id", &valor), CIERTO);
    EXPECT_EQ(valor->entero, 1);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(o, u"dos", &valor), FALSO);
    EXPECT_EQ(valor, nullptr);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(o, u"ID", nullptr), FALSO);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(o, u"id", nullptr), CIERTO);
    EXPECT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(o, u"dos", &valor), FALSO);
    EXPECT_EQ(valor, nullptr);
    EXPECT_EQ(arr_NumElemsPuntero(o->atributos_objeto), 4u);
    EXPECT_TRUE(handler.reports().empty());
    tqjson2_destruye_nodo(&o);
}

TEST(Lookups, IgnoringCaseTheFirstMemberWithAValueWinsOverNulls) {
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_null_a_objeto(o, u"Ñu");
    tqjson2_append_long_a_objeto(o, u"ñU", 5);
    tqjson2_append_long_a_objeto(o, u"ÑU", 6);
    tqjson2_append_null_a_objeto(o, u"solo");
    tqjson2_append_null_a_objeto(o, u"SOLO");
    tqjson2_nodo_t *valor = kUntouched;
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(o, u"ñu", &valor), CIERTO);
    EXPECT_EQ(valor->entero, 5);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(o, u"Solo", &valor), CIERTO);
    EXPECT_EQ(valor, member_at(o, 4)->valor); // every match null: the last one's
    valor = kUntouched;
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(o, u"nu", &valor), FALSO);
    EXPECT_EQ(valor, kUntouched);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(o, u"SOLO", nullptr), CIERTO);
    tqjson2_destruye_nodo(&o);
}

TEST(Lookups, ExtractionHandsTheValueOverAndKeepsTheOtherMembersInOrder) {
    RecordingHandler handler;
    tqjson2_nodo_t *prestado = tqjson2_crea_nodo_entero(42);
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(o, u"a", 1);
    tqjson2_append_cadena_unicode_a_objeto(o, u"b", u"bee");
    tqjson2_append_puntero_nodo_const_a_objeto(o, u"p", prestado);
    tqjson2_append_long_a_objeto(o, u"c", 3);
    tqjson2_nodo_t *valor = nullptr;
    EXPECT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(o, u"b", &valor), CIERTO);
    EXPECT_EQ(text_of(valor), u"bee");
    tqjson2_destruye_nodo(&valor); // the caller owns it now
    EXPECT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(o, u"p", &valor), CIERTO);
    EXPECT_EQ(valor, prestado); // a borrowed value comes back to its owner
    ASSERT_EQ(arr_NumElemsPuntero(o->atributos_objeto), 2u);
    EXPECT_EQ(std::u16string(member_at(o, 0)->nombre), u"a");
    EXPECT_EQ(std::u16string(member_at(o, 1)->nombre), u"c");
    tqjson2_destruye_nodo(&o);
    tqjson2_destruye_nodo(&prestado);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Lookups, ANonObjectOrNullObjectIsReported) {
    RecordingHandler handler;
    tqjson2_nodo_t *a = tqjson2_crea_nodo_array();
    tqjson2_nodo_t *valor = kUntouched;
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(a, u"x", &valor), FALSO);
    EXPECT_EQ(valor, nullptr);
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(nullptr, u"x", &valor), FALSO);
    EXPECT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(a, u"x", &valor), FALSO);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"nodo_objeto->tipo == TQJSON_TIPO_OBJETO",
                                        "(nodo_objeto) != NULL",
                                        "nodo_objeto->tipo == TQJSON_TIPO_OBJETO"}));
    tqjson2_destruye_nodo(&a);
}
