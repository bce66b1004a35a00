#include <gtest/gtest.h>

#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

TEST(ValueSetters, AScalarNodeChangesKindAndLooksNewlyCreated) {
    RecordingHandler handler;
    char16_t *texto = wide(u"línea\nnueva\\");
    tqjson2_nodo_t *nodo = tqjson2_crea_nodo_texto_unicode_a_utf8(&texto);
    tqjson2_set_nodo_entero(nodo, 5); // frees the text
    EXPECT_EQ(nodo->tipo, TQJSON_TIPO_ENTERO);
    EXPECT_EQ(nodo->cadena_utf8, nullptr);
    EXPECT_EQ(nodo->entero, 5);
    EXPECT_EQ(bits(nodo->valor_double), 0x7FEFFFFFFFFFFFFFull);
    tqjson2_set_nodo_double(nodo, 1.25);
    EXPECT_EQ(nodo->entero, 2147483647);
    EXPECT_EQ(nodo->valor_double, 1.25);
    tqjson2_set_nodo_booleano(nodo, CIERTO);
    EXPECT_EQ(nodo->booleano, CIERTO);
    EXPECT_EQ(bits(nodo->valor_double), 0x7FEFFFFFFFFFFFFFull);
    texto = wide(u"línea\nnueva\\");
    tqjson2_set_nodo_texto_unicode_a_utf8(nodo, &texto);
    EXPECT_EQ(texto, nullptr);
    EXPECT_EQ(nodo->tipo, TQJSON_TIPO_CADENA);
    EXPECT_EQ(nodo->booleano, FALSO);
    EXPECT_EQ(nodo->texto_decodificado, FALSO);
    EXPECT_STREQ(nodo->cadena_utf8, "l\xC3\xADnea\\nnueva\\\\");
    EXPECT_EQ(text_of(nodo), u"línea\nnueva\\");
    tqjson2_destruye_nodo(&nodo);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(ValueSetters, NullObjectAndArrayNodesKeepTheirKind) {
    RecordingHandler handler;
    tqjson2_nodo_t *nulo = tqjson2_crea_nodo_null();
    tqjson2_set_nodo_booleano(nulo, CIERTO);
    char16_t *texto = wide(u"t");
    tqjson2_set_nodo_texto_unicode_a_utf8(nulo, &texto);
    EXPECT_EQ(texto, nullptr); // taken over and freed all the same
    tqjson2_set_nodo_entero(nullptr, 1);
    EXPECT_EQ(nulo->tipo, TQJSON_TIPO_NULL);
    EXPECT_EQ(
        handler.conditions(),
        (std::vector<std::string>{"i_es_tipo_basico(nodo->tipo) == CIERTO",
                                  "i_es_tipo_basico(nodo->tipo) == CIERTO", "(nodo) != NULL"}));
    tqjson2_destruye_nodo(&nulo);
}

TEST(ValueSetters, ReplacingTheElementsDestroysTheOldOnesFirst) {
    RecordingHandler handler;
    tqjson2_nodo_t *a = tqjson2_crea_nodo_array();
    tqjson2_append_cadena_unicode_a_array(a, u"vieja");
    tqjson2_nodo_t *profundo = tqjson2_crea_nodo_null();
    for (int i = 0; i < 200000; ++i)
        profundo = array_of(profundo);
    tqjson2_append_elemento_a_array(a, &profundo);
    arr_puntero_t *nuevos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nuevos, tqjson2_crea_nodo_entero(1));
    tqjson2_set_nodo_valores_array(a, &nuevos);
    EXPECT_EQ(nuevos, nullptr);
    ASSERT_EQ(arr_NumElemsPuntero(a->valores_array), 1u);
    EXPECT_EQ(element_at(a, 0)->entero, 1);

    tqjson2_nodo_t *o = tqjson2_crea_nodo_objeto();
    nuevos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nuevos, tqjson2_crea_nodo_entero(2));
    tqjson2_set_nodo_valores_array(o, &nuevos); // refused; the given nodes are destroyed
    arr_puntero_t *nada = nullptr;
    tqjson2_set_nodo_valores_array(a, &nada);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"nodo->tipo == TQJSON_TIPO_ARRAY", "(valor) != NULL"}));
    tqjson2_destruye_nodo(&a);
    tqjson2_destruye_nodo(&o);
}
