#include "tree/tree_test_support.h"

// Strings read as stored or decoded; a wrong kind is reported, never converted.
TEST(Getters, StringsAsStoredOrDecodedStructureAndScalarsOfTheRightKindOnly) {
    RecordingHandler handler;
    Tree escapado{escaped(u"a\\b\nc\u00E9€")};
    EXPECT_STREQ(tqjson2_get_valor_cadena_utf8(escapado.raiz), "a\\\\b\\nc\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(take(tqjson2_get_valor_cadena_u(escapado.raiz)), u"a\\\\b\\nc\u00E9€");
    EXPECT_EQ(text_of(escapado.raiz), u"a\\b\nc\u00E9€");
    EXPECT_EQ(take(tqjson2_get_valor_cadena_decodificada_ANSI(escapado.raiz)), "a\\b\nc\xE9\x80");
    Tree plano{plain("x\\ny")}; // plain text: its backslash is a backslash
    EXPECT_EQ(text_of(plano.raiz), u"x\\ny");

    Tree o{obj({{u"n", integer(-9)}, {u"d", dbl(2.5)}})}, a{arr({})}, nulo{null_node()},
        d{dbl(1.0)};
    arr_puntero_t *atributos = tqjson2_get_atributos_objeto(o.raiz);
    ASSERT_EQ(arr_NumElemsPuntero(atributos), 2u);
    auto *primero = static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, 0));
    auto *segundo = static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, 1));
    EXPECT_EQ(std::u16string(tqjson2_get_nombre_atributo(primero)), u"n");
    EXPECT_EQ(tqjson2_get_valor_entero(tqjson2_get_valor_atributo(primero)), -9);
    EXPECT_EQ(tqjson2_get_valor_double(tqjson2_get_valor_atributo(segundo)), 2.5);
    EXPECT_EQ(tqjson2_tipo_nodo(o.raiz), TQJSON_TIPO_OBJETO);
    EXPECT_EQ(arr_NumElemsPuntero(tqjson2_get_valores_array(a.raiz)), 0u);
    EXPECT_EQ(tqjson2_get_valor_null(nullptr), CIERTO);
    EXPECT_EQ(tqjson2_get_valor_null(nulo.raiz), FALSO); // a null node is still a node
    EXPECT_EQ(tqjson2_get_valor_entero(d.raiz), kFill);
    EXPECT_EQ(tqjson2_get_atributos_objeto(d.raiz), nullptr);
    EXPECT_EQ(tqjson2_get_valores_array(d.raiz), nullptr);
    EXPECT_EQ(tqjson2_get_valor_cadena_utf8(d.raiz), nullptr);
    EXPECT_EQ(take(tqjson2_get_valor_cadena_decodificada_ANSI(d.raiz)), ""); // a new empty string
    EXPECT_EQ(bits(tqjson2_get_valor_double(tqjson2_get_valor_atributo(primero))), kFillBits);
    EXPECT_EQ(tqjson2_tipo_nodo(nullptr), TQJSON_TIPO_NULL);
    EXPECT_EQ(tqjson2_get_nombre_atributo(nullptr), nullptr);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"nodo->tipo == TQJSON_TIPO_ENTERO", "nodo->tipo == TQJSON_TIPO_OBJETO",
                          "nodo->tipo == TQJSON_TIPO_ARRAY", "nodo->tipo == TQJSON_TIPO_CADENA",
                          "nodo->tipo == TQJSON_TIPO_CADENA", "nodo->tipo == TQJSON_TIPO_DOUBLE",
                          "(nodo) != NULL", "(atributo) != NULL"}));
}
