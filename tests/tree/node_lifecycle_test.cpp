#include "tree/tree_test_support.h"

TEST(NodeLifecycle, CreatorsFillTheFieldsTheirKindDoesNotUseAndTakeTheirTextOver) {
    char *utf8 = bytes("a\\b\"");
    const char *const buffer = utf8;
    char16_t *texto = wide(u"a/b\t\u00E9\"");
    const std::pair<tqjson2_nodo_t *, Fields> rows[] = {
        {tqjson2_crea_nodo_objeto(), {0, true, false, kFill, kFillBits, FALSO, FALSO}},
        {tqjson2_crea_nodo_array(), {1, false, true, kFill, kFillBits, FALSO, FALSO}},
        {tqjson2_crea_nodo_entero(-5), {3, false, false, -5, kFillBits, FALSO, FALSO}},
        {tqjson2_crea_nodo_double(2.5), {4, false, false, kFill, bits(2.5), FALSO, FALSO}},
        {tqjson2_crea_nodo_booleano(CIERTO), {5, false, false, kFill, kFillBits, CIERTO, FALSO}},
        {tqjson2_crea_nodo_null(), {6, false, false, kFill, kFillBits, FALSO, FALSO}},
        {tqjson2_crea_nodo_texto_utf8(&utf8), {2, false, false, kFill, kFillBits, FALSO, CIERTO}},
        {tqjson2_crea_nodo_texto_unicode_a_utf8(&texto),
         {2, false, false, kFill, kFillBits, FALSO, FALSO}},
    };
    EXPECT_EQ(utf8, nullptr);
    EXPECT_EQ(texto, nullptr);
    EXPECT_EQ(rows[6].first->cadena_utf8, buffer); // the very buffer: no copy, no escaping
    EXPECT_STREQ(rows[7].first->cadena_utf8, "a\\/b\\t\xC3\xA9\"");
    for (auto [nodo, expected] : rows) {
        SCOPED_TRACE(std::get<0>(expected)); // the kind
        EXPECT_EQ(fields(nodo), expected);
        EXPECT_EQ(i_cadena_de(nodo) != nullptr, nodo->tipo == TQJSON_TIPO_CADENA);
        for (const arr_puntero_t *hijos : {i_atributos_de(nodo), i_valores_de(nodo)})
            EXPECT_TRUE(!hijos || arr_NumElemsPuntero(hijos) == 0);
        tqjson2_destruye_nodo(&nodo);
        EXPECT_EQ(nodo, nullptr);
    }
}

// Destroying an object destroys the values it owns and leaves the borrowed ones alive. Broken
// preconditions are reported and leak nothing.
TEST(NodeLifecycle, MembersCopyTheirNameAndOwnOrBorrowTheirValue) {
    RecordingHandler handler;
    char16_t nombre[] = u"clave";
    tqjson2_nodo_t *valor = integer(1);
    tqjson2_nodo_t *const valor_dado = valor;
    tqjson2_atributo_t *propio = tqjson2_crea_atributo(nombre, &valor);
    EXPECT_EQ(valor, nullptr);
    nombre[0] = u'C'; // the member holds its own copy
    EXPECT_EQ(std::u16string(propio->nombre), u"clave");
    EXPECT_EQ(propio->es_propietario, CIERTO);
    EXPECT_EQ(propio->valor, valor_dado);

    Tree prestado{dbl(0.5)};
    tqjson2_nodo_t *objeto = obj({});
    add_member(objeto, propio);
    add_member(objeto, i_crea_atributo_const(u"prestado", prestado.raiz));
    tqjson2_append_puntero_nodo_const_a_objeto(objeto, u"otra vez", prestado.raiz);
    EXPECT_EQ(member_at(objeto, 2)->es_propietario, FALSO);
    tqjson2_destruye_nodo(&objeto);
    EXPECT_EQ(objeto, nullptr);
    EXPECT_EQ(fields(prestado.raiz), Fields(4, false, false, kFill, bits(0.5), FALSO, FALSO));
    EXPECT_TRUE(handler.reports().empty());

    tqjson2_nodo_t *nulo = nullptr;
    tqjson2_atributo_t *sin_atributo = nullptr;
    tqjson2_destruye_nodo(nullptr);
    tqjson2_destruye_nodo(&nulo);
    i_destruye_atributo(nullptr);
    i_destruye_atributo(&sin_atributo);
    tqjson2_nodo_t *raro = null_node();
    raro->tipo = 9; // a kind no branch covers: reported, and the record freed all the same
    tqjson2_destruye_nodo(&raro);
    EXPECT_EQ(raro, nullptr);
    tqjson2_nodo_t *hijo = null_node();
    tqjson2_atributo_t *sin_nombre = tqjson2_crea_atributo(nullptr, &hijo);
    EXPECT_EQ(std::u16string(sin_nombre->nombre), u""); // a member's name is never null
    i_destruye_atributo(&sin_nombre);
    EXPECT_EQ(sin_nombre, nullptr);
    // Null slots among a tree's members and elements are reported, the rest destroyed.
    tqjson2_nodo_t *con_huecos = obj({{u"a", integer(1)}});
    arr_AppendPunteroConTipo(con_huecos->atributos_objeto, nullptr);
    tqjson2_nodo_t *array = arr({integer(2)});
    arr_AppendPunteroConTipo(array->valores_array, nullptr);
    tqjson2_append_nodo_a_objeto(con_huecos, u"b", &array);
    tqjson2_destruye_nodo(&con_huecos);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"(nodo) != NULL", "(*nodo) != NULL", "(atributo) != NULL",
                          "(*atributo) != NULL", "default", "(cadena) != NULL",
                          "(*atributo) != NULL", "(*nodo) != NULL"}));
    EXPECT_EQ(handler.reports()[0].modulo, "tqjson2: tqjson2");
}
