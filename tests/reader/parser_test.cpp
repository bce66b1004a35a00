#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "companion/lexer.h"

#include "reader/reader_test_support.h"
#include "support/recording_handler.h"
#include "tree/tree_test_support.h"

namespace {
const ReadResult kNoTree = {FALSO, ""};
ReadResult yes(const std::string &minified) {
    return {CIERTO, minified};
}
} // namespace

// The grammar and its leniencies, on texts that cover each rule's edges. The outer array of
// "[[1,]]" ends at the inner one's bracket; a comma after a failed value is judged by the rule;
// a failed member fails its object, and so does a name without a colon; a raw line feed breaks
// the literal. A byte-order mark is skipped, a second one as text before the root; the writer
// shows the sign of infinities but not of zero. 1,024 levels read; one more refuses the whole
// read, lenient arrays or not.
TEST(Parser, ReadsTheLenientGrammar) {
    const auto nested = [](int levels, const char *inner) {
        return std::string(levels, '[') + inner + std::string(levels, ']');
    };
    // clang-format off
    const struct {
        std::string text;
        ReadResult expected;
    } rows[] = {
        {"{}", yes("{}")}, {"[]", yes("[]")}, {"skipped 1 \"s\" , [1] ] } trailing", yes("[1]")},
        {"", kNoTree}, {"42", kNoTree}, {"\"s\"", kNoTree}, {"true", kNoTree},
        {"[1 2]", yes("[1,2]")}, {"{\"a\":1 \"b\":2}", yes("{\"a\" : 1,\"b\" : 2}")},
        {"[1,]", kNoTree}, {"[,1]", kNoTree}, {"[1,,2]", kNoTree}, {"{\"a\":1,}", kNoTree},
        {"{,}", kNoTree}, {"[-]", yes("[]")}, {"[1 -]", yes("[1]")}, {"[[1,]]", yes("[]")},
        {"[1 -,2]", yes("[1,2]")}, {"[{\"a\":}]", kNoTree}, {"{\"a\" 1}", kNoTree},
        {"{\"a\":[1,]}", kNoTree}, {"{1:2}", kNoTree},
        {"{\"a\":1,\"a\":2}", yes("{\"a\" : 1,\"a\" : 2}")},
        {"[true,false,null]", yes("[true,false,null]")}, {"[-true]", kNoTree}, {"[True]", kNoTree},
        {"[2147483647,-2147483647,0,01]", yes("[2147483647,-2147483647,0,0,1]")},
        {"[1.5,-2.5e1,1E2,- 3.0]", yes("[1.5,-25.0,100.0,-3.0]")}, {"[1.,2]", kNoTree},
        {"[\"a\" \"\"]", yes("[\"a\",\"\"]")}, {"[\"a\nb\"]", kNoTree}, {"[\"a]", kNoTree},
        {"[@]", kNoTree}, {"\xEF\xBB\xBF[1]", yes("[1]")}, {"\xEF\xBB\xBF", kNoTree},
        {"\xEF\xBB", kNoTree}, {"\xEF\xBB\xBF\xEF\xBB\xBF[1]", yes("[1]")},
        {"[-0.0, 1e400, -1e400]", yes("[0.0,1E+999,-1E+999]")},
        {"[0.0,1E+999,-1E+999]", yes("[0.0,1E+999,-1E+999]")},
        {nested(1024, "7"), yes(nested(1024, "7"))}, {nested(1025, "7"), kNoTree},
        {"[" + nested(1024, "") + ",1]", kNoTree}, {std::string(1000000, '['), kNoTree},
        {std::string(100000, '{'), kNoTree}};
    // clang-format on
    for (const auto &row : rows)
        EXPECT_EQ(read_text(row.text), row.expected) << testing::PrintToString(row.text);
}

// Integers beyond 32 bits are the number converter's to report; the parser reports a negative
// one whose magnitude is out of range before converting it.
TEST(Parser, IntegersOutOfRangeAreReported) {
    const struct {
        const char *text, *minified;
        Conditions conditions;
    } rows[] = {{"[-2147483648]",
                 "[-2147483647]",
                 {"cambtipo_se_puede_double_a_long(cte_double) == CIERTO", "valor <= INT32_MAX"}},
                {"[2147483648]", "[2147483647]", {"valor <= INT32_MAX"}},
                {"[123456789012345678901234567890]", "[2147483647]", {"valor <= INT32_MAX"}}};
    for (const auto &row : rows) {
        RecordingHandler handler;
        EXPECT_EQ(read_text(row.text), yes(row.minified)) << row.text;
        EXPECT_EQ(handler.conditions(), row.conditions) << row.text;
    }
}

// The written tree shows every value's kind and stored text; the flag shows how it was stored.
// A negative zero keeps its sign in the tree.
TEST(Parser, TheExampleGivesItsTreeWithAndWithoutDecoding) {
    for (const tqbool decodifica : {CIERTO, FALSO}) {
        Tree tree{nullptr};
        ASSERT_EQ(read_tree("{\"a\":[1,-2.5,\"x\\ty\",true,null,-0.0]}", tree, decodifica), CIERTO);
        const std::string cadena = decodifica == CIERTO ? "x\ty" : "x\\ty";
        EXPECT_EQ(minified(tree.raiz), "{\"a\" : [1,-2.5,\"" + cadena + "\",true,null,0.0]}");
        const tqjson2_nodo_t *valores = member_at(tree.raiz, 0)->valor;
        EXPECT_EQ(element_at(valores, 2)->texto_decodificado, decodifica);
        EXPECT_TRUE(std::signbit(element_at(valores, 5)->valor_double));
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
    };
    tqjson2_apila_desapila_ignorar_assert_se_decodifica(CIERTO); // "\u00zz" without a report
    for (const auto &row : rows) {
        EXPECT_EQ(read_text(row.text, CIERTO), yes(row.decoded)) << row.text;
        EXPECT_EQ(read_text(row.text, FALSO), yes(row.undecoded)) << row.text;
    }
    tqjson2_apila_desapila_ignorar_assert_se_decodifica(FALSO);
}

// Reals read as the correctly rounded double that std::from_chars gives (beyond the range: an
// infinity, or zero below it), through the reader's scan and through the lexer, whose text ends
// right after the number. The texts stress what the fast conversion decides itself: 1 to 25
// digits, every decimal exponent a double reaches and beyond, ties between two doubles, and
// digits in runs of eight and fewer.
TEST(Parser, RealsReadAsTheirCorrectlyRoundedDoubles) {
    std::mt19937_64 azar(2026);
    std::vector<std::string> textos = {"0.0",
                                       "9007199254740993.0",
                                       "4.9e-324",
                                       "2.2250738585072011e-308",
                                       "1.7976931348623157e308",
                                       "1.7976931348623159e308",
                                       "0.000000000000000000000000000001234567890123",
                                       "1e-400",
                                       "123456789012345678901234.5e-5"};
    for (int i = 0; i < 20000; ++i) {
        const int cifras = 1 + static_cast<int>(azar() % 25);
        std::string digitos;
        for (int d = 0; d < cifras; ++d)
            digitos += static_cast<char>('0' + azar() % 10);
        if (i % 4 == 0) { // a tie: an odd multiple of a power of two just past 2^53
            const int desplazamiento = 1 + static_cast<int>(azar() % 11);
            const uint64_t mantisa = (azar() >> 11) | uint64_t{1} << 52;
            digitos =
                std::to_string(mantisa << desplazamiento | uint64_t{1} << (desplazamiento - 1));
        }
        const size_t punto = azar() % digitos.size();
        std::string entero = punto == 0 ? "0" : digitos.substr(0, punto);
        if (entero.size() > 1 && entero[0] == '0') // JSON's integer part has no leading zero
            entero[0] = '1';
        const std::string fraccion = punto == 0 ? digitos : digitos.substr(punto);
        const int exponente = static_cast<int>(azar() % 700) - 360;
        textos.push_back(entero + "." + fraccion +
                         (i % 3 == 0 ? "" : "e" + std::to_string(exponente)));
    }
    std::string documento = "[";
    for (const std::string &texto : textos)
        documento += texto + ",";
    documento.back() = ']';
    Tree tree{nullptr};
    ASSERT_EQ(read_tree(documento, tree), CIERTO);
    const auto esperado = [](const std::string &texto) {
        double valor = 0.0;
        if (std::from_chars(texto.data(), texto.data() + texto.size(), valor).ec ==
            std::errc::result_out_of_range)
            valor = texto.find("e-") != std::string::npos ? 0.0 : HUGE_VAL;
        return valor;
    };
    for (size_t i = 0; i < textos.size(); ++i) {
        const double valor = esperado(textos[i]);
        ASSERT_EQ(bits(element_at(tree.raiz, static_cast<uint32_t>(i))->valor_double), bits(valor))
            << textos[i];
        if (i % 8 != 0)
            continue;
        anlex_palabras_reservadas_t *palabras = anlex_crea_palabras_reservadas_vacio();
        anlex_t *lex = anlex_crea_analizando_memoria_utf8(textos[i].c_str(), &palabras, CIERTO);
        anlex_inicia(lex);
        ASSERT_EQ(anlex_lee_token(lex), uint32_t{ANLEX_CTE_REAL}) << textos[i];
        const double del_lexer = anlex_get_cte_real(lex);
        anlex_destruye(&lex);
        ASSERT_EQ(bits(del_lexer), bits(valor)) << textos[i];
    }
}

// A read tree's arrays are built at their exact size; they still grow when appended to.
TEST(Parser, ReadTreesGrowWhenAppendedTo) {
    Tree tree{nullptr};
    ASSERT_EQ(read_tree("{\"a\":[1,2],\"b\":[],\"c\":{}}", tree), CIERTO);
    for (int32_t i = 3; i <= 9; ++i)
        tqjson2_append_long_a_array(member_at(tree.raiz, 0)->valor, i);
    tqjson2_append_bool_a_array(member_at(tree.raiz, 1)->valor, CIERTO);
    tqjson2_append_null_a_objeto(member_at(tree.raiz, 2)->valor, u"x");
    tqjson2_append_long_a_objeto(tree.raiz, u"d", 4);
    EXPECT_EQ(minified(tree.raiz),
              "{\"a\" : [1,2,3,4,5,6,7,8,9],\"b\" : [true],\"c\" : {\"x\" : null},\"d\" : 4}");
    // A member made by the read (its name in its own block) is found and taken like any other.
    Tree extraido{nullptr};
    ASSERT_EQ(tqjson2_se_extrae_atributo_con_nombre_de_objeto(tree.raiz, u"b", &extraido.raiz),
              CIERTO);
    EXPECT_EQ(minified(extraido.raiz), "[true]");
    tqjson2_nodo_t *c = nullptr;
    EXPECT_EQ(tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(tree.raiz, u"C", &c), CIERTO);
    EXPECT_EQ(c, member_at(tree.raiz, 1)->valor);
}

// Names are widened sixteen ASCII bytes a step: every length around the steps, ASCII alone and
// with a character outside ASCII after or before it, reads back to the same name. (An empty
// name is written as no name.)
TEST(Parser, NamesOfEveryLengthReadBackWhole) {
    for (size_t n = 1; n <= 40; ++n) {
        std::string ascii;
        for (size_t i = 0; i < n; ++i)
            ascii += static_cast<char>('a' + i % 26);
        for (const std::string &name : {ascii, ascii + "\xC3\xA9z", "\xE2\x82\xAC" + ascii}) {
            SCOPED_TRACE(name);
            EXPECT_EQ(read_text("{\"" + name + "\":1}"), yes("{\"" + name + "\" : 1}"));
        }
    }
}

// Input at the limits: very large texts, very long strings, names and arrays, and every
// truncation and many corruptions of a valid document. Each gives a tree or FALSO, never a
// fault; the asan preset checks that a failed read leaves nothing behind.
namespace {
// Behind a byte-order mark, with escapes, non-ASCII text and every kind.
const std::string kSample = "\xEF\xBB\xBF"
                            R"({"name": "caf\u00e9 \"x\"", "n": -12, "d": 2.5e-3, "ok": true,
  "none": null, "list": [1, [2, {}], "t\tu", -0.0, false], "o": {"a": {"b": []}}, "é": "日本"})";
} // namespace

TEST(Limits, LargeTextsStringsNamesAndArraysReadAndWriteBack) {
    const std::string long_string(16 << 20, 'x'); // 16 MB of one string
    const std::string long_name(1 << 20, 'k');    // a 1 MB member name
    std::string long_array = "[0";                // 2,000,000 elements
    for (int i = 1; i < 2000000; ++i)
        long_array += ",0";
    long_array += "]";
    std::string many_records = "["; // some 30 MB of small objects
    for (int i = 0; i < 400000; ++i)
        many_records += (i ? "," : "") + std::string("{\"id\" : ") + std::to_string(i) +
                        ",\"tag\" : \"abcdefghij\",\"v\" : [true,null,1.5]}";
    many_records += "]";
    for (const std::string &texto :
         {"[\"" + long_string + "\"]", "{\"" + long_name + "\" : 1}", long_array, many_records}) {
        const ReadResult read = read_text(texto, FALSO);
        EXPECT_EQ(read.ok, CIERTO);
        EXPECT_TRUE(read.text == texto) << texto.size(); // each is already in minified form
    }
}

// Every prefix of a valid document is refused (its root never closes) and every single-byte
// corruption reads or is refused; both decodings agree on which.
TEST(Limits, TruncationsAndCorruptionsOfAValidDocument) {
    ASSERT_EQ(read_text(kSample).ok, CIERTO);
    for (size_t longitud = 0; longitud < kSample.size(); ++longitud)
        ASSERT_EQ(read_text(kSample.substr(0, longitud)).ok, FALSO) << longitud;
    RecordingHandler handler; // a corrupted "\u00" escape is reported
    for (size_t i = 0; i < kSample.size(); ++i)
        for (const char byte : {'\0', '"', '\\', '{', ']', ',', '\n', '\xFF'}) {
            std::string corrupto = kSample;
            corrupto[i] = byte;
            ASSERT_EQ(read_text(corrupto, CIERTO).ok, read_text(corrupto, FALSO).ok) << i;
        }
}
