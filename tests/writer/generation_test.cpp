#include <gtest/gtest.h>
#include <pthread.h>

#include <cfloat>
#include <functional>

#include "support/recording_handler.h"
#include "support/temp_file.h"
#include "support/tree_builder.h"
#include "writer/writer.h"

namespace {

const std::string kRootKind =
    "nodo_raiz->tipo == TQJSON_TIPO_OBJETO || nodo_raiz->tipo == TQJSON_TIPO_ARRAY";

struct Tree {
    tqjson2_nodo_t *raiz;
    ~Tree() {
        if (raiz)
            tqjson2_destruye_nodo(&raiz);
    }
};

std::string indented(const tqjson2_nodo_t *raiz) {
    return take_text(tqjson2_genera_texto_utf8(raiz));
}
std::string minified(const tqjson2_nodo_t *raiz) {
    return take_text(tqjson2_genera_texto_utf8_minificado(raiz));
}
std::string to_file(const tqjson2_nodo_t *raiz, const tqjson2_conf_escritura_t *conf) {
    TempFile fichero;
    tqjson2_escribe_fichero_ex(raiz, conf, fichero.wide());
    return fichero.read();
}

std::string colon_only(std::string texto) {
    for (size_t p = 0; (p = texto.find("\" : ", p)) != std::string::npos; ++p)
        texto.erase(p + 1, 1);
    return texto;
}

tqjson2_nodo_t *worked_example() {
    return obj({{u"nombre", plain("x\"y")},
                {u"n", integer(42)},
                {u"v", dbl(2.0)},
                {u"r", dbl(0.1)},
                {u"ok", boolean(CIERTO)},
                {u"nada", null_node()},
                {u"lista", arr({integer(1), plain("b")})},
                {u"vacio", obj({})},
                {u"e", arr({})}});
}

const std::string kExampleIndented = R"({
    "nombre" : "x\"y",
    "n" : 42,
    "v" : 2.0,
    "r" : 0.1,
    "ok" : true,
    "nada" : null,
    "lista" : [
        1,
        "b"
    ],
    "vacio" : {
    },
    "e" : [
    ]
}
)";
const std::string kExampleMinified =
    R"({"nombre" : "x\"y","n" : 42,"v" : 2.0,"r" : 0.1,"ok" : true,"nada" : null,)"
    R"("lista" : [1,"b"],"vacio" : {},"e" : []})";

} // namespace

// Only 1 switches a field on; the text functions always use the default configuration.
TEST(Generation, TheExampleDocumentInEveryLayoutAndConfiguration) {
    RecordingHandler handler;
    Tree tree{worked_example()};
    const auto file_with = [&](tqbool espacio, tqbool indentado) {
        const tqjson2_conf_escritura_t conf = {espacio, indentado};
        return to_file(tree.raiz, &conf);
    };
    TempFile plain_file;
    tqjson2_escribe_fichero(tree.raiz, plain_file.wide());
    const struct {
        const char *label;
        std::string got, expected;
    } rows[] = {{"text", indented(tree.raiz), kExampleIndented},
                {"text minified", minified(tree.raiz), kExampleMinified},
                {"file", plain_file.read(), kExampleIndented},
                {"file, no configuration", to_file(tree.raiz, nullptr), kExampleIndented},
                {"file {F,C}", file_with(FALSO, CIERTO), colon_only(kExampleIndented)},
                {"file {F,F}", file_with(FALSO, FALSO), colon_only(kExampleMinified)},
                {"file {C,2}", file_with(CIERTO, 2), kExampleMinified},
                {"file {2,C}", file_with(2, CIERTO), colon_only(kExampleIndented)}};
    for (const auto &row : rows)
        EXPECT_EQ(row.got, row.expected) << row.label;
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Generation, TreesGiveTheirExactBytes) {
    RecordingHandler handler;
    const struct {
        const char *label;
        std::function<tqjson2_nodo_t *()> build;
        const char *indented, *minified; // indented null: not checked
    } rows[] = {
        {"empty object", [] { return obj({}); }, "{\n}\n", "{}"},
        {"empty array", [] { return arr({}); }, "[\n]\n", "[]"},
        {"array of arrays", [] { return arr({arr({integer(1)})}); },
         "[\n    [\n        1\n    ]\n]\n", "[[1]]"},
        {"comma after a closing bracket",
         [] {
             return obj({{u"a", arr({integer(1)})}, {u"b", obj({})}});
         },
         "{\n    \"a\" : [\n        1\n    ],\n    \"b\" : {\n    }\n}\n",
         "{\"a\" : [1],\"b\" : {}}"},
        {"integers and words",
         [] {
             return arr({integer(INT32_MIN), integer(INT32_MAX), integer(0), boolean(CIERTO),
                         boolean(2), boolean(FALSO), null_node()});
         },
         nullptr, "[-2147483648,2147483647,0,true,false,false,null]"},
        {"doubles",
         [] {
             return arr({dbl(2.0), dbl(-0.0), dbl(1e-16), dbl(DBL_MAX), dbl(-DBL_MAX),
                         dbl(1234567890123456.0), dbl(0.1)});
         },
         nullptr,
         "[2.0,0.0,0.0,1.7976931348623158e+308,-1.79769313486232E+308,1.23456789012346E+15,0.1]"},
        {"stored texts",
         [] {
             return arr({escaped(u"a\nb/\\\""), plain("a\nb"), plain("\"\""), plain(""),
                         plain("\xC3\xA9"), plain("x\xFFy")});
         },
         "[\n    \"a\\nb\\/\\\\\\\"\",\n    \"a\nb\",\n    \"\\\"\\\"\",\n    \"\",\n"
         "    \"\xC3\xA9\",\n    \"x\xEF\xBF\xBDy\"\n]\n",
         "[\"a\\nb\\/\\\\\\\"\",\"a\nb\",\"\\\"\\\"\",\"\",\"\xC3\xA9\",\"x\xEF\xBF\xBDy\"]"},
        {"names: blank, unescaped, non-ASCII, surrogates",
         [] {
             return obj({{u"", integer(1)},
                         {u" \t", arr({})},
                         {u"a\"b\\c", integer(3)},
                         {u"\u00E9", plain("s")},
                         {u"\xD83D\xDE00", integer(5)},
                         {u"\xD800", integer(6)}});
         },
         "{\n    1,\n    [\n    ],\n    \"a\"b\\c\" : 3,\n    \"\xC3\xA9\" : \"s\",\n"
         "    \"\xF0\x9F\x98\x80\" : 5,\n    \"\xED\xA0\x80\" : 6\n}\n",
         "{1,[],\"a\"b\\c\" : 3,\"\xC3\xA9\" : \"s\",\"\xF0\x9F\x98\x80\" : 5,\"\xED\xA0\x80\" : "
         "6}"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        Tree tree{row.build()};
        if (row.indented) {
            EXPECT_EQ(indented(tree.raiz), row.indented);
        }
        EXPECT_EQ(minified(tree.raiz), row.minified);
    }
    EXPECT_TRUE(handler.reports().empty());
}

// A file is streamed in pieces: one far larger than a piece must still equal the text, and
// replace whatever the file held.
TEST(Generation, FilesHoldTheSameBytesAsTextsAndReplaceOldContent) {
    RecordingHandler handler;
    Tree tree{arr({})};
    for (int i = 0; i < 20000; ++i) {
        tqjson2_nodo_t *registro = obj({{u"i", integer(i)}, {u"s", plain("texto \"citado\"")}});
        tqjson2_append_elemento_a_array(tree.raiz, &registro);
    }
    const std::string text = indented(tree.raiz);
    ASSERT_GT(text.size(), 1000000u);
    TempFile fichero;
    fichero.fill(std::string(3 * text.size(), 'x'));
    tqjson2_escribe_fichero(tree.raiz, fichero.wide());
    EXPECT_TRUE(fichero.read() == text);
    const tqjson2_conf_escritura_t minificado = {CIERTO, FALSO};
    EXPECT_TRUE(to_file(tree.raiz, &minificado) == minified(tree.raiz));
    EXPECT_TRUE(handler.reports().empty());
}

TEST(Generation, RefusedRootsAreReportedAndWriteNothing) {
    const std::function<tqjson2_nodo_t *()> roots[] = {
        [] { return nullptr; },  [] { return integer(1); },      [] { return plain("s"); },
        [] { return dbl(1.5); }, [] { return boolean(CIERTO); }, [] { return null_node(); }};
    for (const auto &build : roots) {
        RecordingHandler handler;
        Tree tree{build()};
        TempFile fichero;
        EXPECT_EQ(indented(tree.raiz), "");
        EXPECT_EQ(minified(tree.raiz), "");
        tqjson2_escribe_fichero(tree.raiz, fichero.wide());
        EXPECT_FALSE(fichero.exists());
        const std::string condition = tree.raiz ? kRootKind : "(nodo_raiz) != NULL";
        EXPECT_EQ(handler.conditions(), std::vector<std::string>(3, condition));
    }
}

TEST(Generation, AFileThatCannotBeOpenedIsReportedAgainstTheWriter) {
    RecordingHandler handler;
    Tree tree{worked_example()};
    tqjson2_escribe_fichero(tree.raiz, u"/nonexistent-directory/x.json");
    tqjson2_escribe_fichero(tree.raiz, nullptr);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"(abierto) != NULL", "(nombre) != NULL"}));
    for (const Report &report : handler.reports())
        EXPECT_EQ(report.modulo, "tqjson2: tqjson2");
}

// Trees that callers broke through the arrays the getters hand out, or that hold one of their
// own ancestors through a borrowed value: each fault is reported and the walk goes on.
TEST(Generation, BrokenTreesAreReportedAndTheWalkGoesOn) {
    RecordingHandler handler;
    Tree with_null_element{arr({integer(1)})};
    arr_AppendPunteroConTipo(tqjson2_get_valores_array(with_null_element.raiz), nullptr);
    tqjson2_append_long_a_array(with_null_element.raiz, 2);
    EXPECT_EQ(minified(with_null_element.raiz), "[1,2]");

    Tree with_null_member{obj({{u"a", integer(1)}})};
    arr_AppendPunteroConTipo(tqjson2_get_atributos_objeto(with_null_member.raiz), nullptr);
    EXPECT_EQ(minified(with_null_member.raiz), "{\"a\" : 1,}");

    tqjson2_nodo_t *unknown = integer(7);
    Tree with_unknown_kind{arr({integer(1), unknown})};
    unknown->tipo = 9;
    EXPECT_EQ(minified(with_unknown_kind.raiz), "[1,]");
    unknown->tipo = TQJSON_TIPO_ENTERO;

    tqjson2_nodo_t *inner = obj({});
    Tree cycle{obj({{u"c", inner}})};
    tqjson2_append_puntero_nodo_const_a_objeto(inner, u"up", cycle.raiz);
    tqjson2_append_puntero_nodo_const_a_objeto(cycle.raiz, u"self", cycle.raiz);
    EXPECT_EQ(minified(cycle.raiz), "{\"c\" : {},}");
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"(nodo) != NULL", "(atributo) != NULL", "default",
                                        "no_es_ancestro", "no_es_ancestro"}));

    // The same borrowed value twice is no cycle.
    handler.clear();
    Tree shared{arr({integer(1)})};
    Tree twice{obj({})};
    tqjson2_append_puntero_nodo_const_a_objeto(twice.raiz, u"x", shared.raiz);
    tqjson2_append_puntero_nodo_const_a_objeto(twice.raiz, u"y", shared.raiz);
    EXPECT_EQ(minified(twice.raiz), "{\"x\" : [1],\"y\" : [1]}");
    EXPECT_TRUE(handler.reports().empty());
}

// A chain of a million levels, objects and arrays in turn, is written in the minified layout
// and destroyed. (Indented, its indentation alone would take about 4 TB.)
TEST(Generation, AMillionLevelsAreWrittenWithoutRecursion) {
    constexpr int kLevels = 1000000;
    Tree chain{arr({})};
    std::string opens, closes = "[]";
    for (int level = 1; level < kLevels; ++level) {
        tqjson2_nodo_t *outer = level % 2 ? obj({}) : arr({});
        if (level % 2)
            tqjson2_append_nodo_a_objeto(outer, u"k", &chain.raiz);
        else
            tqjson2_append_elemento_a_array(outer, &chain.raiz);
        chain.raiz = outer;
    }
    for (int level = kLevels - 1; level >= 1; --level) {
        opens += level % 2 ? "{\"k\" : " : "[";
        closes += level % 2 ? '}' : ']';
    }
    const std::string expected = opens + "[]" + std::string(closes.rbegin(), closes.rend() - 2);
    EXPECT_TRUE(minified(chain.raiz) == expected);
    const tqjson2_conf_escritura_t conf = {CIERTO, FALSO};
    EXPECT_TRUE(to_file(chain.raiz, &conf) == expected);
}

// The indented walk of a chain far deeper than a small stack could hold in recursive calls.
TEST(Generation, TheIndentedWalkRunsInASmallStack) {
    constexpr int kLevels = 3000;
    Tree chain{arr({})};
    for (int level = 1; level < kLevels; ++level) {
        tqjson2_nodo_t *outer = arr({});
        tqjson2_append_elemento_a_array(outer, &chain.raiz);
        chain.raiz = outer;
    }
    struct Job {
        const tqjson2_nodo_t *raiz;
        char *texto;
    } job = {chain.raiz, nullptr};
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, 256 * 1024);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, &attr,
                  [](void *p) -> void * {
                      auto *j = static_cast<Job *>(p);
                      j->texto = tqjson2_genera_texto_utf8(j->raiz);
                      return nullptr;
                  },
                  &job),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attr);
    std::string expected;
    for (int level = 0; level < kLevels; ++level)
        expected += std::string(4 * level, ' ') + "[\n";
    for (int level = kLevels - 1; level >= 0; --level)
        expected += std::string(4 * level, ' ') + "]\n";
    EXPECT_TRUE(take_text(job.texto) == expected);
}

TEST(Destination, LinesWithNowhereToGoAndMissingRecordsAreReported) {
    RecordingHandler handler;
    i_destino_gltf_t destino = i_crea_destino(7, nullptr, &i_conf_escritura_defecto);
    i_abre_linea(&destino, 2, CIERTO);
    i_anade_bytes(&destino.texto, "1", 1);
    i_emite_linea(&destino, CIERTO, CIERTO);
    EXPECT_EQ(destino.texto.longitud, 0u);
    i_libera_destino(&destino);

    Tree tree{obj({{u"a", integer(1)}})};
    i_escribe_nodo(tree.raiz, u"", 0, FALSO, CIERTO, nullptr);
    destino = i_crea_destino(i_DESTINO_LINEAS, nullptr, nullptr);
    i_escribe_nodo(tree.raiz, u"", 0, FALSO, CIERTO, &destino);
    EXPECT_EQ(take_text(i_entrega_texto(&destino)), "{\n    \"a\" : 1\n}\n");
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"default", "(destino_gltf) != NULL",
                                                              "(destino_gltf->conf) != NULL"}));
}
