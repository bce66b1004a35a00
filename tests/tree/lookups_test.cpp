#include "tree/tree_test_support.h"

namespace {
const auto exacta = tqjson2_existe_atributo_con_nombre_en_objeto;
const auto exacta2 = tqjson2_existe_atributo_con_nombre_en_objeto2;
const auto may_o_min = tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto;
const auto extrae = tqjson2_se_extrae_atributo_con_nombre_de_objeto;

// A lookup's result and the value it wrote.
using Found = std::pair<tqbool, tqjson2_nodo_t *>;
template <class F> Found look(F lookup, tqjson2_nodo_t *objeto, const char16_t *nombre) {
    tqjson2_nodo_t *valor = kUntouched;
    const tqbool hay = lookup(objeto, nombre, &valor);
    return {hay, valor};
}
} // namespace

// The exact lookup needs one member of that very name; ignoring case, the first member with a
// value wins over nulls, and when every match is null the last one's is given.
TEST(Lookups, ExactlyOneMemberOfTheNameOrTheFirstWithAValueIgnoringCase) {
    Tree o{obj(
        {{u"id", integer(1)}, {u"Id", integer(2)}, {u"dos", integer(3)}, {u"dos", integer(4)}})};
    EXPECT_EQ(look(exacta, o.raiz, u"Id"), Found(CIERTO, member_at(o.raiz, 1)->valor));
    EXPECT_EQ(look(exacta2, o.raiz, u"id"), Found(CIERTO, member_at(o.raiz, 0)->valor));
    EXPECT_EQ(look(exacta, o.raiz, u"dos"), Found(FALSO, nullptr));
    EXPECT_EQ(look(extrae, o.raiz, u"dos"), Found(FALSO, nullptr));
    EXPECT_EQ(exacta(o.raiz, u"ID", nullptr), FALSO);
    EXPECT_EQ(exacta(o.raiz, u"id", nullptr), CIERTO);
    EXPECT_EQ(arr_NumElemsPuntero(o.raiz->atributos_objeto), 4u);

    Tree n{obj({{u"Ñu", null_node()},
                {u"ñU", integer(5)},
                {u"ÑU", integer(6)},
                {u"solo", null_node()},
                {u"SOLO", null_node()}})};
    EXPECT_EQ(look(may_o_min, n.raiz, u"ñu"), Found(CIERTO, member_at(n.raiz, 1)->valor));
    EXPECT_EQ(look(may_o_min, n.raiz, u"Solo"), Found(CIERTO, member_at(n.raiz, 4)->valor));
    EXPECT_EQ(look(may_o_min, n.raiz, u"nu"), Found(FALSO, kUntouched));
    EXPECT_EQ(may_o_min(n.raiz, u"SOLO", nullptr), CIERTO);
}

// The caller owns an extracted value; a borrowed one comes back to its owner.
TEST(Lookups, ExtractionHandsTheValueOverAndKeepsTheOtherMembersInOrder) {
    Tree prestado{integer(42)};
    Tree o{obj({{u"a", integer(1)}, {u"b", escaped(u"bee")}})};
    tqjson2_append_puntero_nodo_const_a_objeto(o.raiz, u"p", prestado.raiz);
    tqjson2_append_long_a_objeto(o.raiz, u"c", 3);
    Tree valor{nullptr};
    EXPECT_EQ(extrae(o.raiz, u"b", &valor.raiz), CIERTO);
    EXPECT_EQ(text_of(valor.raiz), u"bee");
    EXPECT_EQ(look(extrae, o.raiz, u"p"), Found(CIERTO, prestado.raiz));
    EXPECT_EQ(minified(o.raiz), "{\"a\" : 1,\"c\" : 3}");
}

// A non-object or null object is reported. Creating a member hands its node over as it is, so a
// null node gives a member holding nothing: kept, reported by the lookup ignoring case and by the
// writer, and freed whole.
TEST(Lookups, ANonObjectAndAMemberMadeFromANullNodeAreReportedWhereMet) {
    RecordingHandler handler;
    Tree a{arr({})};
    EXPECT_EQ(look(exacta, a.raiz, u"x"), Found(FALSO, nullptr));
    EXPECT_EQ(look(may_o_min, nullptr, u"x").first, FALSO);
    EXPECT_EQ(look(extrae, a.raiz, u"x").first, FALSO);
    Tree o{obj({})};
    tqjson2_nodo_t *ninguno = nullptr;
    tqjson2_append_nodo_a_objeto(o.raiz, u"a", &ninguno);
    tqjson2_append_long_a_objeto(o.raiz, u"A", 7);
    EXPECT_EQ(arr_NumElemsPuntero(o.raiz->atributos_objeto), 2u);
    EXPECT_EQ(look(exacta, o.raiz, u"a"), Found(CIERTO, nullptr));
    EXPECT_EQ(look(may_o_min, o.raiz, u"A").first, FALSO);
    EXPECT_EQ(minified(o.raiz), "{\"A\" : 7}");
    const std::string objeto = "nodo_objeto->tipo == TQJSON_TIPO_OBJETO";
    EXPECT_EQ(handler.conditions(),
              (Conditions{objeto, "(nodo_objeto) != NULL", objeto,
                          "(atributo_en_pos->valor) != NULL", "(nodo) != NULL"}));
}
