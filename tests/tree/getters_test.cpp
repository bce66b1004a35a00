#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

TEST(Getters, StringsReadAsStoredOrDecoded) {
    RecordingHandler handler;
    char16_t *texto = wide(u"a\\b\nc\u00E9€");
    tqjson2_nodo_t *escapado = tqjson2_crea_nodo_texto_unicode_a_utf8(&texto);
    EXPECT_STREQ(tqjson2_get_valor_cadena_utf8(escapado), "a\\\\b\\nc\xC3\xA9\xE2\x82\xAC");
    char16_t *u = tqjson2_get_valor_cadena_u(escapado);
    EXPECT_EQ(std::u16string(u), u"a\\\\b\\nc\u00E9€");
    widestr_nousar_destruye(&u, "test", 0);
    EXPECT_EQ(text_of(escapado), u"a\\b\nc\u00E9€");
    char *ansi = tqjson2_get_valor_cadena_decodificada_ANSI(escapado);
    EXPECT_STREQ(ansi, "a\\b\nc\xE9\x80");
    marlstr_destruye(&ansi);

    char *plano_utf8 = bytes("x\\ny"); // plain text: its backslash is a backslash
    tqjson2_nodo_t *plano = tqjson2_crea_nodo_texto_utf8(&plano_utf8);
    EXPECT_EQ(text_of(plano), u"x\\ny");
    tqjson2_destruye_nodo(&escapado);
    tqjson2_destruye_nodo(&plano);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Getters, StructureAndScalarsOfTheRightKind) {
    RecordingHandler handler;
    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    tqjson2_append_long_a_objeto(o, u"n", -9);
    tqjson2_append_double_a_objeto(o, u"d", 2.5);
    arr_puntero_t *atributos = tqjson2_get_atributos_objeto(o);
    ASSERT_EQ(arr_NumElemsPuntero(atributos), 2u);
    auto *primero = static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, 0));
    auto *segundo = static_cast<tqjson2_atributo_t *>(arr_GetPunteroConTipo(atributos, 1));
    EXPECT_EQ(std::u16string(tqjson2_get_nombre_atributo(primero)), u"n");
    EXPECT_EQ(tqjson2_get_valor_entero(tqjson2_get_valor_atributo(primero)), -9);
    EXPECT_EQ(tqjson2_get_valor_double(tqjson2_get_valor_atributo(segundo)), 2.5);
    EXPECT_EQ(tqjson2_tipo_nodo(o), TQJSON_TIPO_OBJETO);
    tqjson2_nodo_t *a = tqjson2_crea_nodo_array();
    EXPECT_EQ(arr_NumElemsPuntero(tqjson2_get_valores_array(a)), 0u);
    EXPECT_EQ(tqjson2_get_valor_null(nullptr), CIERTO);
    tqjson2_nodo_t *nulo = tqjson2_crea_nodo_null();
    EXPECT_EQ(tqjson2_get_valor_null(nulo), FALSO); // a null node is still a node
    EXPECT_TRUE(handler.reports().empty());
    tqjson2_destruye_nodo(&o);
    tqjson2_destruye_nodo(&a);
    tqjson2_destruye_nodo(&nulo);
}

TEST(Getters, AWrongKindIsReportedNeverConverted) {
    RecordingHandler handler;
    tqjson2_nodo_t *d = tqjson2_crea_nodo_double(1.0);
    EXPECT_EQ(tqjson2_get_valor_entero(d), 2147483647);
    EXPECT_EQ(tqjson2_get_atributos_objeto(d), nullptr);
    EXPECT_EQ(tqjson2_get_valores_array(d), nullptr);
    EXPECT_EQ(tqjson2_get_valor_cadena_utf8(d), nullptr);
    char *ansi = tqjson2_get_valor_cadena_decodificada_ANSI(d);
    EXPECT_STREQ(ansi, ""); // a new empty string
    marlstr_destruye(&ansi);
    tqjson2_destruye_nodo(&d);
    tqjson2_nodo_t *e = tqjson2_crea_nodo_entero(1);
    EXPECT_EQ(tqjson2_get_valor_double(e), 1.7976931348623157e308);
    tqjson2_destruye_nodo(&e);
    EXPECT_EQ(tqjson2_tipo_nodo(nullptr), TQJSON_TIPO_NULL);
    EXPECT_EQ(tqjson2_get_nombre_atributo(nullptr), nullptr);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{
                  "nodo->tipo == TQJSON_TIPO_ENTERO", "nodo->tipo == TQJSON_TIPO_OBJETO",
                  "nodo->tipo == TQJSON_TIPO_ARRAY", "nodo->tipo == TQJSON_TIPO_CADENA",
                  "nodo->tipo == TQJSON_TIPO_CADENA", "nodo->tipo == TQJSON_TIPO_DOUBLE",
                  "(nodo) != NULL", "(atributo) != NULL"}));
}
