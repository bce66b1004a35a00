#include "tree/tree_test_support.h"

// A scalar node changes kind and looks newly created. Null, object and array nodes keep their
// kind; the given text or nodes are taken over and destroyed all the same. The old elements
// include a chain too deep for recursive destruction.
TEST(ValueSetters, ScalarsChangeKindAndTheElementsAreReplacedOtherKindsRefused) {
    RecordingHandler handler;
    char16_t *texto = wide(u"línea\nnueva\\");
    Tree nodo{tqjson2_crea_nodo_texto_unicode_a_utf8(&texto)};
    tqjson2_set_nodo_entero(nodo.raiz, 5); // frees the text
    EXPECT_EQ(i_cadena_de(nodo.raiz), nullptr);
    EXPECT_EQ(fields(nodo.raiz), Fields(3, false, false, 5, kFillBits, FALSO, FALSO));
    tqjson2_set_nodo_double(nodo.raiz, 1.25);
    EXPECT_EQ(fields(nodo.raiz), Fields(4, false, false, kFill, bits(1.25), FALSO, FALSO));
    tqjson2_set_nodo_booleano(nodo.raiz, CIERTO);
    EXPECT_EQ(fields(nodo.raiz), Fields(5, false, false, kFill, kFillBits, CIERTO, FALSO));
    texto = wide(u"línea\nnueva\\");
    tqjson2_set_nodo_texto_unicode_a_utf8(nodo.raiz, &texto);
    EXPECT_EQ(texto, nullptr);
    EXPECT_EQ(fields(nodo.raiz), Fields(2, false, false, kFill, kFillBits, FALSO, FALSO));
    EXPECT_STREQ(nodo.raiz->cadena_utf8, "l\xC3\xADnea\\nnueva\\\\");
    EXPECT_EQ(text_of(nodo.raiz), u"línea\nnueva\\");

    Tree nulo{null_node()};
    tqjson2_set_nodo_booleano(nulo.raiz, CIERTO);
    texto = wide(u"t");
    tqjson2_set_nodo_texto_unicode_a_utf8(nulo.raiz, &texto);
    EXPECT_EQ(texto, nullptr);
    tqjson2_set_nodo_entero(nullptr, 1);
    tqjson2_set_nodo_double(nullptr, 1.0);
    tqjson2_set_nodo_booleano(nullptr, CIERTO);
    EXPECT_EQ(nulo.raiz->tipo, TQJSON_TIPO_NULL);

    tqjson2_nodo_t *profundo = null_node();
    for (int i = 0; i < 200000; ++i)
        profundo = arr({profundo});
    Tree a{arr({escaped(u"vieja"), profundo})}, o{obj({})};
    arr_puntero_t *nuevos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nuevos, integer(1));
    tqjson2_set_nodo_valores_array(a.raiz, &nuevos);
    EXPECT_EQ(nuevos, nullptr);
    EXPECT_EQ(minified(a.raiz), "[1]");
    nuevos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nuevos, integer(2));
    tqjson2_set_nodo_valores_array(o.raiz, &nuevos);
    arr_puntero_t *nada = nullptr;
    tqjson2_set_nodo_valores_array(a.raiz, &nada); // the old elements go before the refusal
    EXPECT_EQ(minified(a.raiz), "[]");
    tqjson2_set_nodo_valores_array(nullptr, &nada);
    const std::string basico = "i_es_tipo_basico(nodo->tipo) == CIERTO";
    EXPECT_EQ(handler.conditions(),
              (Conditions{basico, basico, "(nodo) != NULL", "(nodo) != NULL", "(nodo) != NULL",
                          "nodo->tipo == TQJSON_TIPO_ARRAY", "(valor) != NULL", "(nodo) != NULL",
                          "(valor) != NULL"}));
}
