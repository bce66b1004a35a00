#include <gtest/gtest.h>
#include <pthread.h>

#include <csignal>
#include <iostream>
#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#include "support/recording_handler.h"
#include "support/temp_file.h"
#include "support/tree_builder.h"
#include "writer/writer.h"

namespace {

// What writing to a file gives; a null configuration is none at all.
std::string to_file(const tqjson2_nodo_t *raiz, const tqjson2_conf_escritura_t *conf) {
    TempFile fichero;
    tqjson2_escribe_fichero_ex(raiz, conf, fichero.wide());
    return fichero.read();
}
std::string to_file(const tqjson2_nodo_t *raiz, tqjson2_conf_escritura_t conf) {
    return to_file(raiz, &conf);
}

std::string colon_only(std::string texto) {
    for (size_t p = 0; (p = texto.find("\" : ", p)) != std::string::npos; ++p)
        texto.erase(p + 1, 1);
    return texto;
}

} // namespace

// Only 1 switches a field on; the text functions always use the default configuration.
TEST(Generation, TheExampleDocumentInEveryLayoutAndConfiguration) {
    Tree tree{obj({{u"nombre", plain("x\"y")},
                   {u"n", integer(42)},
                   {u"v", dbl(2.0)},
                   {u"r", dbl(0.1)},
                   {u"ok", boolean(CIERTO)},
                   {u"nada", null_node()},
                   {u"lista", arr({integer(1), plain("b")})},
                   {u"vacio", obj({})},
                   {u"e", arr({})}})};
    const std::string indentado = read_file(TQ_WRITER_DATA_DIR "/example_indented.json");
    const std::string minificado = R"({"nombre" : "x\"y","n" : 42,"v" : 2.0,"r" : 0.1,)"
                                   R"("ok" : true,"nada" : null,"lista" : [1,"b"],"vacio" : {},)"
                                   R"("e" : []})";
    TempFile plain_file;
    tqjson2_escribe_fichero(tree.raiz, plain_file.wide());
    const struct {
        const char *label;
        std::string got, expected;
    } rows[] = {
        {"text", indented(tree.raiz), indentado},
        {"text minified", minified(tree.raiz), minificado},
        {"file", plain_file.read(), in_text_mode(indentado)},
        {"file, no configuration", to_file(tree.raiz, nullptr), in_text_mode(indentado)},
        {"file {F,C}", to_file(tree.raiz, {FALSO, CIERTO}), in_text_mode(colon_only(indentado))},
        {"file {F,F}", to_file(tree.raiz, {FALSO, FALSO}), colon_only(minificado)},
        {"file {C,2}", to_file(tree.raiz, {CIERTO, 2}), minificado},
        {"file {2,C}", to_file(tree.raiz, {2, CIERTO}), in_text_mode(colon_only(indentado))}};
    for (const auto &row : rows)
        EXPECT_EQ(row.got, row.expected) << row.label;
}

TEST(Generation, TreesGiveTheirExactBytes) {
    const struct {
        const char *label;
        Tree tree;
        const char *indented, *minified;
    } rows[] = {
        {"empty object", {obj({})}, "{\n}\n", "{}"},
        {"empty array", {arr({})}, "[\n]\n", "[]"},
        {"array of arrays", {arr({arr({integer(1)})})}, "[\n    [\n        1\n    ]\n]\n", "[[1]]"},
        {"integers and words",
         {arr({integer(INT32_MIN), integer(INT32_MAX), integer(0), boolean(CIERTO), boolean(2),
               boolean(FALSO), null_node()})},
         "[\n    -2147483648,\n    2147483647,\n    0,\n    true,\n    false,\n    false,\n"
         "    null\n]\n",
         "[-2147483648,2147483647,0,true,false,false,null]"},
        {"names: blank, unescaped, non-ASCII, surrogates",
         {obj({{u"", integer(1)},
               {u" \t", arr({})},
               {u"a\"b\\c", integer(3)},
               {u"\u00E9", plain("s")},
               {u"\xD83D\xDE00", integer(5)},
               {u"\xD800", integer(6)}})},
         "{\n    1,\n    [\n    ],\n    \"a\"b\\c\" : 3,\n    \"\xC3\xA9\" : \"s\",\n"
         "    \"\xF0\x9F\x98\x80\" : 5,\n    \"\xED\xA0\x80\" : 6\n}\n",
         "{1,[],\"a\"b\\c\" : 3,\"\xC3\xA9\" : \"s\",\"\xF0\x9F\x98\x80\" : 5,\"\xED\xA0\x80\" : "
         "6}"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(indented(row.tree.raiz), row.indented);
        EXPECT_EQ(minified(row.tree.raiz), row.minified);
    }
}

// A file is streamed in pieces: one far larger than a piece must still equal the text, and
// replace whatever the file held.
TEST(Generation, FilesHoldTheSameBytesAsTextsAndReplaceOldContent) {
    Tree tree{arr({})};
    for (int i = 0; i < 20000; ++i) {
        tqjson2_nodo_t *registro = obj({{u"i", integer(i)}, {u"s", plain("texto \"citado\"")}});
        tqjson2_append_elemento_a_array(tree.raiz, &registro);
    }
    const std::string text = indented(tree.raiz);
    ASSERT_GT(text.size(), 1000000u);
    TempFile fichero(std::string(3 * text.size(), 'x'));
    tqjson2_escribe_fichero(tree.raiz, fichero.wide());
    EXPECT_TRUE(fichero.read() == in_text_mode(text));
    EXPECT_TRUE(to_file(tree.raiz, {CIERTO, FALSO}) == minified(tree.raiz));
}

// Roots that are no container, and files that cannot be opened, are reported against the
// writer and write nothing; broken trees and destinations are reported too.
TEST(Generation, RefusedRootsFilesBrokenTreesAndDestinationsAreReported) {
    const std::string kind =
        "nodo_raiz->tipo == TQJSON_TIPO_OBJETO || nodo_raiz->tipo == TQJSON_TIPO_ARRAY";
    tqjson2_nodo_t *const roots[] = {nullptr,  integer(1),      plain("s"),
                                     dbl(1.5), boolean(CIERTO), null_node()};
    for (tqjson2_nodo_t *raiz : roots) {
        RecordingHandler handler;
        Tree tree{raiz};
        TempFile fichero;
        EXPECT_EQ(indented(raiz), "");
        EXPECT_EQ(minified(raiz), "");
        tqjson2_escribe_fichero(raiz, fichero.wide());
        EXPECT_FALSE(fichero.exists());
        EXPECT_EQ(handler.conditions(), Conditions(3, raiz ? kind : "(nodo_raiz) != NULL"));
    }
    RecordingHandler handler;
    Tree tree{arr({})};
    tqjson2_escribe_fichero(tree.raiz, u"/nonexistent-directory/x.json");
    tqjson2_escribe_fichero(tree.raiz, nullptr);
    EXPECT_EQ(handler.conditions(), (Conditions{"(abierto) != NULL", "(nombre) != NULL"}));
    for (const Report &report : handler.reports())
        EXPECT_EQ(report.modulo, "tqjson2: tqjson2");

    // Trees broken through the arrays the getters hand out, or holding an ancestor through a
    // borrowed value (the same one twice is no cycle): each fault reported, the walk goes on.
    handler.clear();
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
    Tree shared{arr({integer(1)})}, twice{obj({})};
    tqjson2_append_puntero_nodo_const_a_objeto(twice.raiz, u"x", shared.raiz);
    tqjson2_append_puntero_nodo_const_a_objeto(twice.raiz, u"y", shared.raiz);
    EXPECT_EQ(minified(twice.raiz), "{\"x\" : [1],\"y\" : [1]}");
    i_destino_gltf_t destino = i_crea_destino(7, nullptr, &i_conf_escritura_defecto);
    i_abre_linea(&destino, 2, CIERTO);
    i_anade_bytes(&destino.texto, "1", 1);
    i_emite_linea(&destino, CIERTO, CIERTO);
    EXPECT_EQ(destino.texto.longitud, 0u);
    i_libera_destino(&destino);
    Tree a{obj({{u"a", integer(1)}})};
    i_escribe_nodo(a.raiz, u"", 0, FALSO, CIERTO, nullptr);
    destino = i_crea_destino(i_DESTINO_LINEAS, nullptr, nullptr);
    i_escribe_nodo(a.raiz, u"", 0, FALSO, CIERTO, &destino);
    EXPECT_EQ(take(i_entrega_texto(&destino)), "{\n    \"a\" : 1\n}\n");
    EXPECT_EQ(handler.conditions(),
              (Conditions{"(nodo) != NULL", "(atributo) != NULL", "default", "no_es_ancestro",
                          "no_es_ancestro", "default", "(destino_gltf) != NULL",
                          "(destino_gltf->conf) != NULL"}));
}

#if !defined(_WIN32)
// Settings saved over the old ones by a process whose files may not grow beyond 8 KB, as on a
// full disk: the old file stays whole, no new file is left, and the failed write is reported
// once against the writer's open, whose position its open failure shows.
TEST(Generation, ASaveBeyondTheFileSizeLimitKeepsTheOldFileAndIsReported) {
    Tree tree{arr({})};
    for (int i = 0; i < 100000; ++i)
        tqjson2_append_long_a_array(tree.raiz, i);
    TempFolder folder;
    const std::filesystem::path settings = folder / "settings.json";
    const std::string old = R"({"theme" : "dark", "volume" : 7, "ok" : 1})";
    fill_file(settings, old);
    std::vector<Report> expected;
    {
        RecordingHandler handler;
        tqjson2_escribe_fichero(tree.raiz, (folder / "none" / "x.json").u16string().c_str());
        ASSERT_EQ(handler.conditions(), Conditions{"(abierto) != NULL"});
        expected = {handler.reports()[0]};
        expected[0].condicion = "(fallo_escritura) == 0";
    }
    const auto save_limited = [&] {
        const rlimit limit{8192, 8192};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        RecordingHandler handler;
        tqjson2_escribe_fichero(tree.raiz, settings.u16string().c_str());
        for (const Report &report : handler.reports())
            std::cerr << report << "\n";
        std::_Exit(handler.reports() == expected ? 0 : 1);
    };
    EXPECT_EXIT(save_limited(), testing::ExitedWithCode(0), "fallo_escritura");
    EXPECT_EQ(read_file(settings), old);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"settings.json"});
}
#endif

// Deep chains are written without recursion: a million levels, objects and arrays in turn, in
// the minified layout (indented, its indentation alone would take about 4 TB), and 3,000 levels
// indented on a thread whose stack could not hold them in recursive calls.
TEST(Generation, DeepChainsAreWrittenWithoutRecursion) {
    constexpr int kLevels = 1000000;
    Tree chain{arr({})};
    std::string expected, closes;
    for (int level = 1; level < kLevels; ++level) {
        chain.raiz = level % 2 ? obj({{u"k", chain.raiz}}) : arr({chain.raiz});
        closes += level % 2 ? '}' : ']';
    }
    for (int level = kLevels - 1; level >= 1; --level)
        expected += level % 2 ? "{\"k\" : " : "[";
    expected += "[]" + closes;
    EXPECT_TRUE(minified(chain.raiz) == expected);
    EXPECT_TRUE(to_file(chain.raiz, {CIERTO, FALSO}) == expected);

    Tree arrays{arr({})};
    expected = "";
    for (int level = 0; level < 3000; ++level) {
        arrays.raiz = level ? arr({arrays.raiz}) : arrays.raiz;
        expected += std::string(4 * level, ' ') + "[\n";
    }
    for (int level = 3000 - 1; level >= 0; --level)
        expected += std::string(4 * level, ' ') + "]\n";
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, 256 * 1024);
    pthread_t thread;
    const auto walk = [](void *raiz) -> void * {
        return tqjson2_genera_texto_utf8(static_cast<const tqjson2_nodo_t *>(raiz));
    };
    ASSERT_EQ(pthread_create(&thread, &attr, walk, arrays.raiz), 0);
    void *texto = nullptr;
    pthread_join(thread, &texto);
    pthread_attr_destroy(&attr);
    EXPECT_TRUE(take(static_cast<char *>(texto)) == expected);
}
