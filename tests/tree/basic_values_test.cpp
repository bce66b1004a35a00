#include "tree/tree_test_support.h"

TEST(BasicValues, ChangingAStringNodeFreesItsTextAndNonBasicKindsAreRefused) {
    Tree nodo{plain("uno")};
    i_set_valor_basico(nodo.raiz, TQJSON_TIPO_ENTERO, nullptr, 42, 1.7976931348623157e308, FALSO);
    EXPECT_EQ(i_cadena_de(nodo.raiz), nullptr);
    // texto_decodificado is left to the caller that stores a text.
    EXPECT_EQ(fields(nodo.raiz), Fields(3, false, false, 42, kFillBits, FALSO, CIERTO));
    char *nuevo = bytes("dos");
    const char *buffer = nuevo;
    i_set_valor_basico(nodo.raiz, TQJSON_TIPO_CADENA, &nuevo, kFill, 0.0, FALSO);
    EXPECT_EQ(nuevo, nullptr);
    EXPECT_EQ(nodo.raiz->cadena_utf8, buffer);
    // Frees "dos"; a double given with a boolean is not kept: the node reads as newly made.
    i_set_valor_basico(nodo.raiz, TQJSON_TIPO_BOOLEANO, nullptr, kFill, 3.0, CIERTO);
    EXPECT_EQ(fields(nodo.raiz), Fields(5, false, false, kFill, kFillBits, CIERTO, CIERTO));

    // Only strings, integers, doubles and booleans are basic; other kinds and targets are
    // refused with a report and leak nothing.
    RecordingHandler handler;
    const tqbool expected[] = {FALSO, FALSO, FALSO, CIERTO, CIERTO, CIERTO, CIERTO, FALSO, FALSO};
    for (int32_t tipo = -1; tipo <= 7; ++tipo)
        EXPECT_EQ(i_es_tipo_basico(tipo), expected[tipo + 1]) << tipo;
    Tree objeto{obj({})}, array{arr({})}, nulo{null_node()}, entero{integer(1)};
    for (tqjson2_nodo_t *otro : {objeto.raiz, array.raiz, nulo.raiz}) {
        const int32_t antes = otro->tipo;
        char *texto = bytes("t");
        i_set_valor_basico(otro, TQJSON_TIPO_CADENA, &texto, 1, 1.0, FALSO);
        EXPECT_EQ(texto, nullptr); // taken over and freed, though refused
        EXPECT_EQ(otro->tipo, antes);
    }
    i_set_valor_basico(entero.raiz, TQJSON_TIPO_NULL, nullptr, 0, 0.0, FALSO);
    i_set_valor_basico(entero.raiz, TQJSON_TIPO_OBJETO, nullptr, 0, 0.0, FALSO);
    EXPECT_EQ(std::pair(entero.raiz->tipo, entero.raiz->entero), std::pair(TQJSON_TIPO_ENTERO, 1));
    const std::string actual = "i_es_tipo_basico(nodo->tipo) == CIERTO";
    const std::string pedido = "i_es_tipo_basico(tipo) == CIERTO";
    EXPECT_EQ(handler.conditions(), // -1 and 7 are no kind
              (Conditions{"default", "default", actual, actual, actual, pedido, pedido}));
}
