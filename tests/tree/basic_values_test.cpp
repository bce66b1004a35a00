#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

TEST(BasicValues, OnlyStringIntegerDoubleAndBooleanAreBasic) {
    RecordingHandler handler;
    const tqbool expected[] = {FALSO, FALSO, CIERTO, CIERTO, CIERTO, CIERTO, FALSO};
    for (int32_t tipo = 0; tipo <= 6; ++tipo)
        EXPECT_EQ(i_es_tipo_basico(tipo), expected[tipo]) << tipo;
    EXPECT_TRUE(handler.reports().empty());
    EXPECT_EQ(i_es_tipo_basico(7), FALSO);
    EXPECT_EQ(i_es_tipo_basico(-1), FALSO);
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"default", "default"}));
}

TEST(BasicValues, ChangingAStringNodeFreesItsTextAndTakesTheNewOne) {
    RecordingHandler handler;
    char *texto = bytes("uno");
    tqjson2_nodo_t *nodo = tqjson2_crea_nodo_texto_utf8(&texto);
    i_set_valor_basico(nodo, TQJSON_TIPO_ENTERO, nullptr, 42, 1.7976931348623157e308, FALSO);
    EXPECT_EQ(nodo->tipo, TQJSON_TIPO_ENTERO);
    EXPECT_EQ(nodo->cadena_utf8, nullptr);
    EXPECT_EQ(nodo->entero, 42);
    EXPECT_EQ(nodo->texto_decodificado, CIERTO); // left to the caller that stores a text

    char *nuevo = bytes("dos");
    const char *buffer = nuevo;
    i_set_valor_basico(nodo, TQJSON_TIPO_CADENA, &nuevo, 2147483647, 0.0, FALSO);
    EXPECT_EQ(nuevo, nullptr);
    EXPECT_EQ(nodo->cadena_utf8, buffer);
    i_set_valor_basico(nodo, TQJSON_TIPO_BOOLEANO, nullptr, 2147483647, 3.0, CIERTO); // frees "dos"
    EXPECT_EQ(nodo->booleano, CIERTO);
    EXPECT_EQ(nodo->valor_double, 3.0);
    tqjson2_destruye_nodo(&nodo);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(BasicValues, ContainersNullAndNonBasicTargetsAreRefusedWithoutLeaking) {
    RecordingHandler handler;
    tqjson2_nodo_t *nodos[] = {tqjson2_crea_nodo_objeto(), tqjson2_crea_nodo_array(),
                               tqjson2_crea_nodo_null()};
    for (tqjson2_nodo_t *&nodo : nodos) {
        const int32_t antes = nodo->tipo;
        char *texto = bytes("t");
        i_set_valor_basico(nodo, TQJSON_TIPO_CADENA, &texto, 1, 1.0, FALSO);
        EXPECT_EQ(texto, nullptr); // taken over and freed, though refused
        EXPECT_EQ(nodo->tipo, antes);
        tqjson2_destruye_nodo(&nodo);
    }
    tqjson2_nodo_t *entero = tqjson2_crea_nodo_entero(1);
    i_set_valor_basico(entero, TQJSON_TIPO_NULL, nullptr, 0, 0.0, FALSO);
    i_set_valor_basico(entero, TQJSON_TIPO_OBJETO, nullptr, 0, 0.0, FALSO);
    EXPECT_EQ(entero->tipo, TQJSON_TIPO_ENTERO);
    EXPECT_EQ(entero->entero, 1);
    tqjson2_destruye_nodo(&entero);
    const std::string actual = "i_es_tipo_basico(nodo->tipo) == CIERTO";
    const std::string nuevo = "i_es_tipo_basico(tipo) == CIERTO";
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{actual, actual, actual, nuevo, nuevo}));
}
