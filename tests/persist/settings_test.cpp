#include <cfloat>

#include "persist/persist_test_support.h"

namespace {
const char16_t *const kLetras[] = {u"X", u"Y", u"Z"};
std::vector<int32_t> g_preguntas; // the values func_es_correcto was asked about
tqbool es_correcto(int32_t v) {
    g_preguntas.push_back(v);
    return v >= 0 && v < 3 ? CIERTO : FALSO;
}
const char16_t *texto_de(int32_t v) {
    return kLetras[v];
}
} // namespace

// Readers with a default, and tests of whether a value can be read, which hand out the fill
// value when it cannot.
TEST(Settings, ReadersWithADefaultAndTestsOfWhetherAValueCanBeRead) {
    Tree o{obj({{u"i", integer(-1)},
                {u"d", dbl(2.5)},
                {u"tres", integer(3)},
                {u"b", plain("TRUE")},
                {u"f", boolean(FALSO)},
                {u"s", escaped(u"a\tb")},
                {u"u65534", integer(65534)},
                {u"u65535", integer(65535)},
                {u"u70000", integer(70000)}})};
    EXPECT_EQ(tqjsonlsn_leer_valor_long_con_valor_defecto(o.raiz, u"i", 7), -1);
    EXPECT_EQ(tqjsonlsn_leer_valor_ulong_con_valor_defecto(o.raiz, u"i", 7), 4294967295u);
    EXPECT_EQ(tqjsonlsn_leer_valor_ulong_con_valor_defecto(o.raiz, u"falta", 4294967295u),
              4294967295u);
    EXPECT_EQ(tqjsonlsn_leer_valor_double_con_valor_defecto(o.raiz, u"d", 0), 2.5);
    EXPECT_EQ(tqjsonlsn_leer_valor_double_con_valor_defecto(o.raiz, u"tres", 0.5), 0.5);
    EXPECT_EQ(tqjsonlsn_leer_valor_booleano_con_valor_defecto(o.raiz, u"b", FALSO), CIERTO);
    EXPECT_EQ(tqjsonlsn_leer_valor_booleano_con_valor_defecto(o.raiz, u"f", CIERTO), FALSO);
    EXPECT_EQ(tqjsonlsn_leer_valor_booleano_con_valor_defecto(o.raiz, u"d", 2), 2);
    EXPECT_EQ(tqjsonlsn_leer_valor_long_con_valor_defecto(nullptr, u"i", 9), 9);
    EXPECT_EQ(tqjsonlsn_leer_valor_ushort_con_valor_defecto(o.raiz, u"u65534", 0), 65534);
    EXPECT_EQ(tqjsonlsn_leer_valor_ushort_con_valor_defecto(o.raiz, u"i", 0), 65535);
    EXPECT_EQ(tqjsonlsn_leer_valor_ushort_con_valor_defecto(nullptr, u"i", 65534), 65534);
    double valor = 0;
    EXPECT_EQ(tqjsonlsn_es_posible_leer_double(u"d", o.raiz, &valor), CIERTO);
    EXPECT_EQ(valor, 2.5);
    EXPECT_EQ(tqjsonlsn_es_posible_leer_double(u"falta", o.raiz, &valor), FALSO);
    EXPECT_EQ(valor, DBL_MAX);
    valor = 0;
    EXPECT_EQ(tqjsonlsn_es_posible_leer_double(u"i", o.raiz, &valor), FALSO);
    EXPECT_EQ(valor, DBL_MAX);
    char16_t *cadena = reinterpret_cast<char16_t *>(0x1); // overwritten, never freed
    EXPECT_EQ(tqjsonlsn_es_posible_leer_cadena_unicode(u"i", o.raiz, &cadena), FALSO);
    EXPECT_EQ(cadena, nullptr);
    EXPECT_EQ(tqjsonlsn_es_posible_leer_cadena_unicode(u"s", o.raiz, &cadena), CIERTO);
    EXPECT_EQ(take(cadena), u"a\tb");

    RecordingHandler handler;
    tqjsonlsn_leer_valor_ushort_con_valor_defecto(o.raiz, u"u65535", 0);
    tqjsonlsn_leer_valor_ushort_con_valor_defecto(o.raiz, u"u70000", 0);
    tqjsonlsn_leer_valor_ushort_con_valor_defecto(o.raiz, u"falta", 65535);
    Tree s{plain("x")};
    EXPECT_EQ(tqjsonlsn_leer_valor_long_con_valor_defecto(s.raiz, u"i", 9), 9);
    EXPECT_EQ(tqjsonlsn_es_posible_leer_double(u"d", o.raiz, nullptr), FALSO);
    EXPECT_EQ(tqjsonlsn_es_posible_leer_cadena_unicode(u"s", o.raiz, nullptr), FALSO);
    EXPECT_EQ(tqjsonlsn_es_posible_leer_double(u"d", nullptr, &valor), FALSO);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"valor < USHRT_MAX", "valor < USHRT_MAX", "valor < USHRT_MAX",
                          "nodo_objeto->tipo == TQJSON_TIPO_OBJETO", "(valor) != NULL",
                          "(cadena) != NULL", "(nodo) != NULL"}));
    EXPECT_EQ(handler.reports()[0].modulo, "tqjson2: tqjsonlsn");
}

TEST(Settings, AnEnumerationIsMatchedByItsTexts) {
    const auto lee_enum = tqjsonlsn_nousar_es_posible_leer_enum;
    Tree o{obj({{u"Y", plain("Y")}, {u"y", plain("y")}, {u"i", integer(1)}})};
    struct Row {
        const char16_t *etiqueta;
        tqbool resultado;
        int32_t valor;
        std::vector<int32_t> preguntas;
    } const kRows[] = {
        {u"Y", CIERTO, 1, {0, 1}},
        {u"y", FALSO, -1, {0, 1, 2, 3}},
        {u"falta", FALSO, -1, {}},
    };
    for (const Row &row : kRows) {
        SCOPED_TRACE(&row - kRows);
        g_preguntas.clear();
        int32_t valor = 42;
        EXPECT_EQ(lee_enum(row.etiqueta, es_correcto, texto_de, o.raiz, &valor), row.resultado);
        EXPECT_EQ(valor, row.valor);
        EXPECT_EQ(g_preguntas, row.preguntas);
    }
    RecordingHandler handler;
    int32_t valor = 42;
    EXPECT_EQ(lee_enum(u"falta", nullptr, nullptr, o.raiz, &valor), FALSO);
    EXPECT_EQ(lee_enum(u"Y", nullptr, nullptr, o.raiz, &valor), FALSO);
    EXPECT_EQ(valor, -1);
    EXPECT_EQ(lee_enum(u"i", es_correcto, texto_de, o.raiz, &valor), FALSO);
    EXPECT_EQ(lee_enum(u"Y", es_correcto, texto_de, o.raiz, nullptr), FALSO);
    EXPECT_EQ(
        handler.conditions(),
        (Conditions{"(func_es_correcto_valor_enum) != NULL", "(func_get_texto_valor_enum) != NULL",
                    "nodo->tipo == TQJSON_TIPO_CADENA", "(valor_enum) != NULL"}));
}

// Present members change in place (same node, same position), missing ones are appended.
TEST(Settings, SettersChangePresentMembersInPlaceAndAppendMissingOnes) {
    RecordingHandler handler;
    Tree o{obj({{u"s", plain("texto")}, {u"n", integer(1)}, {u"a", arr({integer(1)})}})};
    tqjson2_nodo_t *antes = nullptr, *despues = nullptr;
    tqjson2_existe_atributo_con_nombre_en_objeto(o.raiz, u"s", &antes);
    tqjsonlsn_set_valor_long(o.raiz, u"s", 5);
    tqjson2_existe_atributo_con_nombre_en_objeto(o.raiz, u"s", &despues);
    EXPECT_EQ(antes, despues);
    const char16_t texto[] = u"q\"t";
    tqjsonlsn_set_valor_cadena_unicode(o.raiz, u"n", texto);
    tqjsonlsn_set_valor_ulong(o.raiz, u"u", 4294967295u);
    tqjsonlsn_set_valor_ushort(o.raiz, u"h", 65535);
    tqjsonlsn_set_valor_double(o.raiz, u"d", 0.5);
    tqjsonlsn_set_valor_booleano(o.raiz, u"b", CIERTO);
    tqjsonlsn_set_valor_cadena_unicode(o.raiz, u"c", texto);
    EXPECT_EQ(tqjsonlsn_leer_valor_ulong_con_valor_defecto(o.raiz, u"u", 0), 4294967295u);
    EXPECT_EQ(std::u16string(texto), u"q\"t");
    arr_puntero_t *nodos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nodos, integer(7));
    arr_AppendPunteroConTipo(nodos, plain("x"));
    tqjsonlsn_set_nodos_array(o.raiz, u"a", &nodos);
    EXPECT_EQ(nodos, nullptr);
    nodos = arr_CreaPunteroConTipo(0);
    arr_AppendPunteroConTipo(nodos, boolean(FALSO));
    tqjsonlsn_set_nodos_array(o.raiz, u"nueva", &nodos);
    EXPECT_EQ(nodos, nullptr);
    EXPECT_TRUE(handler.reports().empty());

    tqjsonlsn_set_valor_long(o.raiz, u"a", 1);
    nodos = arr_CreaPunteroConTipo(0);
    tqjsonlsn_set_nodos_array(o.raiz, u"s", &nodos); // refused: taken over and destroyed
    tqjsonlsn_set_nodos_array(o.raiz, u"x", nullptr);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"i_es_tipo_basico(nodo->tipo) == CIERTO",
                          "nodo->tipo == TQJSON_TIPO_ARRAY", "(puntero) != NULL"}));
    EXPECT_EQ(minified(o.raiz), "{\"s\" : 5,\"n\" : \"q\\\"t\",\"a\" : [7,\"x\"],\"u\" : -1,"
                                "\"h\" : 65535,\"d\" : 0.5,\"b\" : true,\"c\" : \"q\\\"t\","
                                "\"nueva\" : [false],\"x\" : []}");
}
