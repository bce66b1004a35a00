#include <gtest/gtest.h>

#include <cmath>

#include "reader/reader_test_support.h"
#include "support/recording_handler.h"
#include "tree/nodes.h"

namespace {
const ReadResult kNoTree = {FALSO, ""};
ReadResult yes(const std::string &minified) {
    return {CIERTO, minified};
}
} // namespace

// The grammar and its leniencies, on texts that cover each rule's edges.
TEST(Parser, ReadsTheLenientGrammar) {
    RecordingHandler handler;
    const struct {
        const char *text;
        ReadResult expected;
    } rows[] = {
        {"{}", yes("{}")},
        {"[]", yes("[]")},
        {"skipped 1 \"s\" , [1] ] } trailing", yes("[1]")},
        {"", kNoTree},
        {"42", kNoTree},
        {"\"s\"", kNoTree},
        {"true", kNoTree},
        {"[1 2]", yes("[1,2]")},
        {"{\"a\":1 \"b\":2}", yes("{\"a\" : 1,\"b\" : 2}")},
        {"[1,]", kNoTree},
        {"[,1]", kNoTree},
        {"[1,,2]", kNoTree},
        {"{\"a\":1,}", kNoTree},
        {"{,}", kNoTree},
        {"[-]", yes("[]")},
        {"[1 -]", yes("[1]")},
        {"[[1,]]", yes("[]")},     // the outer array ends at the inner one's bracket
        {"[1 -,2]", yes("[1,2]")}, // a comma after a failed value is judged by the rule
        {"[{\"a\":}]", kNoTree},   // a failed member fails its object...
        {"{\"a\" 1}", kNoTree},    // ...and so does a name without a colon
        {"{\"a\":[1,]}", kNoTree},
        {"{1:2}", kNoTree},
        {"{\"a\":1,\"a\":2}", yes("{\"a\" : 1,\"a\" : 2}")},
        {"[true,false,null]", yes("[true,false,null]")},
        {"[-true]", kNoTree},
        {"[True]", kNoTree},
        {"[2147483647,-2147483647,0,01]", yes("[2147483647,-2147483647,0,0,1]")},
        {"[1.5,-2.5e1,1E2,- 3.0]", yes("[1.5,-25.0,100.0,-3.0]")},
        {"[1.,2]", kNoTree},
        {"[\"a\" \"\"]", yes("[\"a\",\"\"]")},
        {"[\"a\nb\"]", kNoTree}, // a raw line feed breaks the literal
        {"[\"a]", kNoTree},
        {"[@]", kNoTree},
    };
    for (const auto &row : rows)
        EXPECT_EQ(read_text(row.text), row.expected) << testing::PrintToString(row.text);
    EXPECT_TRUE(handler.reports().empty());
}

// Integers beyond 32 bits are the number converter's to report; the parser reports a negative
// one whose magnitude is out of range before converting it.
TEST(Parser, IntegersOutOfRangeAreReported) {
    const struct {
        const char *text, *minified;
        std::vector<std::string> conditions;
    } rows[] = {
        {"[-2147483648]",
         "[-2147483647]",
         {"cambtipo_se_puede_double_a_long(cte_double) == CIERTO", "valor <= INT32_MAX"}},
        {"[2147483648]", "[2147483647]", {"valor <= INT32_MAX"}},
        {"[123456789012345678901234567890]", "[2147483647]", {"valor <= INT32_MAX"}},
    };
    for (const auto &row : rows) {
        RecordingHandler handler;
        EXPECT_EQ(read_text(row.text), yes(row.minified)) << row.text;
        EXPECT_EQ(handler.conditions(), row.conditions) << row.text;
    }
}

// An object of one member "a" whose array holds 1, -2.5, "x\ty", true and null.
TEST(Parser, TheExampleGivesItsTreeWithAndWithoutDecoding) {
    const char *text = "{\"a\":[1,-2.5,\"x\\ty\",true,null]}";
    for (const tqbool decodifica : {CIERTO, FALSO}) {
        tqjson2_nodo_t *raiz = nullptr;
        ASSERT_EQ(decodifica == CIERTO
                      ? tqjson2_se_lee_texto_utf8(text, &raiz)
                      : tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(text, &raiz),
                  CIERTO);
        ASSERT_EQ(arr_NumElemsPuntero(raiz->atributos_objeto), 1u);
        const auto *miembro = static_cast<const tqjson2_atributo_t *>(
            arr_GetPunteroConTipo(raiz->atributos_objeto, 0));
        EXPECT_EQ(std::u16string(miembro->nombre), u"a");
        const tqjson2_nodo_t *array = miembro->valor;
        ASSERT_EQ(arr_NumElemsPuntero(array->valores_array), 5u);
        const auto element = [&](uint32_t i) {
            return static_cast<const tqjson2_nodo_t *>(
                arr_GetPunteroConTipo(array->valores_array, i));
        };
        EXPECT_EQ(element(0)->tipo, TQJSON_TIPO_ENTERO);
        EXPECT_EQ(element(0)->entero, 1);
        EXPECT_EQ(element(1)->tipo, TQJSON_TIPO_DOUBLE);
        EXPECT_EQ(element(1)->valor_double, -2.5);
        EXPECT_EQ(element(2)->tipo, TQJSON_TIPO_CADENA);
        EXPECT_STREQ(element(2)->cadena_utf8, decodifica == CIERTO ? "x\ty" : "x\\ty");
        EXPECT_EQ(element(2)->texto_decodificado, decodifica);
        EXPECT_EQ(element(3)->tipo, TQJSON_TIPO_BOOLEANO);
        EXPECT_EQ(element(3)->booleano, CIERTO);
        EXPECT_EQ(element(4)->tipo, TQJSON_TIPO_NULL);
        tqjson2_destruye_nodo(&raiz);
    }
}

// Names are never decoded; values are, on request. A literal's escaped quotation mark stands
// bare in the tree (and the writer escapes it again); bytes that do not read back as
// themselves are stored as what they read as.
TEST(Parser, StringsAndNames) {
    const struct {
        const char *text;
        const char *decoded, *undecoded; // minified
    } rows[] = {
        {"{\"a\\nb\":\"c\\nd\"}", "{\"a\\nb\" : \"c\nd\"}", "{\"a\\nb\" : \"c\\nd\"}"},
        {"[\"x\\\"y\",\"\\\\\"]", "[\"x\\\"y\",\"\\\"]", "[\"x\\\"y\",\"\\\\\"]"},
        {"[\"\\u0041\\u00zz\\/\"]", "[\"A?/\"]", "[\"\\u0041\\u00zz\\/\"]"},
        {"[\"\xC3\xA9\xFF\xED\xA0\xBD\xED\xB8\x80\"]", "[\"\xC3\xA9\xEF\xBF\xBD\xF0\x9F\x98\x80\"]",
         "[\"\xC3\xA9\xEF\xBF\xBD\xF0\x9F\x98\x80\"]"},
        {"[\"data:application/octet-stream;base64,\\n\"]",
         "[\"data:application/octet-stream;base64,\\n\"]",
         "[\"data:application/octet-stream;base64,\\n\"]"},
    };
    RecordingHandler handler;
    tqjson2_apila_desapila_ignorar_assert_se_decodifica(CIERTO); // "\u00zz" without a report
    for (const auto &row : rows) {
        EXPECT_EQ(read_text(row.text, CIERTO), yes(row.decoded)) << row.text;
        EXPECT_EQ(read_text(row.text, FALSO), yes(row.undecoded)) << row.text;
    }
    tqjson2_apila_desapila_ignorar_assert_se_decodifica(FALSO);
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Parser, NegativeZeroAndHugeRealsKeepTheirSign) {
    tqjson2_nodo_t *raiz = nullptr;
    ASSERT_EQ(tqjson2_se_lee_texto_utf8("[-0.0, 1e400, -1e400, 1e-400]", &raiz), CIERTO);
    const auto value = [&](uint32_t i) {
        return static_cast<const tqjson2_nodo_t *>(arr_GetPunteroConTipo(raiz->valores_array, i))
            ->valor_double;
    };
    EXPECT_TRUE(value(0) == 0.0 && std::signbit(value(0)));
    EXPECT_EQ(value(1), INFINITY);
    EXPECT_EQ(value(2), -INFINITY);
    EXPECT_EQ(value(3), 0.0);
    tqjson2_destruye_nodo(&raiz);
}

// 1,024 levels read; one more refuses the whole read, lenient arrays or not.
TEST(Parser, NestingIsLimitedTo1024Levels) {
    const auto nested = [](int levels, const char *inner) {
        return std::string(levels, '[') + inner + std::string(levels, ']');
    };
    EXPECT_EQ(read_text(nested(1024, "7")).ok, CIERTO);
    EXPECT_EQ(read_text(nested(1025, "7")), kNoTree);
    EXPECT_EQ(read_text("[" + nested(1024, "") + ",1]"), kNoTree);
    EXPECT_EQ(read_text(std::string(1000000, '[')), kNoTree);
    EXPECT_EQ(read_text(std::string(100000, '{')), kNoTree);
}

// A read tree's arrays are built at their exact size; they still grow when appended to.
TEST(Parser, ReadTreesGrowWhenAppendedTo) {
    tqjson2_nodo_t *raiz = nullptr;
    ASSERT_EQ(tqjson2_se_lee_texto_utf8("{\"a\":[1,2],\"b\":[],\"c\":{}}", &raiz), CIERTO);
    tqjson2_nodo_t *a = nullptr, *b = nullptr, *c = nullptr;
    ASSERT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(raiz, u"a", &a), CIERTO);
    ASSERT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(raiz, u"b", &b), CIERTO);
    ASSERT_EQ(tqjson2_existe_atributo_con_nombre_en_objeto(raiz, u"c", &c), CIERTO);
    for (int32_t i = 3; i <= 9; ++i)
        tqjson2_append_long_a_array(a, i);
    tqjson2_append_null_a_objeto(c, u"x");
    tqjson2_append_bool_a_array(b, CIERTO);
    tqjson2_append_long_a_objeto(raiz, u"d", 4);
    EXPECT_EQ(take_text(tqjson2_genera_texto_utf8_minificado(raiz)),
              "{\"a\" : [1,2,3,4,5,6,7,8,9],\"b\" : [true],\"c\" : {\"x\" : null},\"d\" : 4}");
    // A member made by the read (its name in its own block) is taken out like any other.
    tqjson2_nodo_t *extraido = nullptr;
    ASSERT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(raiz, u"b", &extraido), CIERTO);
    EXPECT_EQ(take_text(tqjson2_genera_texto_utf8_minificado(extraido)), "[true]");
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(raiz, u"C", &c), CIERTO);
    tqjson2_destruye_nodo(&extraido);
    tqjson2_destruye_nodo(&raiz);
}
