#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "reader/reader_test_support.h"
#include "support/random_bytes.h"
#include "support/recording_handler.h"
#include "support/temp_file.h"

namespace {

ReadResult read_file(const TempFile &fichero, tqbool decodifica, tqbool con_fread) {
    Tree tree{nullptr};
    const tqbool ok =
        tqjson2_se_lee_fichero_ex(fichero.wide(), decodifica, con_fread, &tree.raiz, nullptr);
    return {ok, tree.raiz ? minified(tree.raiz) : ""};
}

// Every way of reading the bytes of `texto` from a file gives what reading the text gives.
void expect_files_read_as_text(const std::string &texto) {
    const TempFile fichero(texto);
    for (const tqbool decodifica : {CIERTO, FALSO})
        for (const tqbool con_fread : {CIERTO, FALSO})
            ASSERT_EQ(read_file(fichero, decodifica, con_fread), read_text(texto, decodifica))
                << testing::PrintToString(texto);
}

// Written in both layouts, read without decoding and written again: the same text.
void expect_layouts_read_back(const tqjson2_nodo_t *raiz) {
    for (const auto write : {indented, minified}) {
        const std::string texto = write(raiz);
        Tree leido{nullptr};
        ASSERT_EQ(read_tree(texto, leido, FALSO), CIERTO);
        EXPECT_TRUE(write(leido.raiz) == texto); // no diff: some texts are megabytes
    }
}

// Up to five units of `alphabet`; a surrogate pair is taken whole, from its first unit.
std::u16string random_text(std::mt19937 &random, const std::u16string &alphabet) {
    std::u16string s;
    for (int i = random() % 6; i > 0; --i) {
        const size_t at = random() % alphabet.size();
        if (alphabet[at] != 0xDE00)
            s += alphabet.substr(at, alphabet[at] == 0xD83D ? 2 : 1);
    }
    return s;
}

// A value of every kind to depth 4, with texts that need escapes and names that hold no
// quotation mark, backslash or line feed and are never blank (names are written as stored, and
// a blank one not at all).
tqjson2_nodo_t *random_value(std::mt19937 &random, int depth) {
    static constexpr double kDoubles[] = {0.1, -2.5, 1e20, 3.0, 1.5e-7, 123456.789, -0.0};
    const int kind = depth < 4 ? random() % 8 : 2 + random() % 6;
    if (kind >= 2)
        return kind < 4 ? escaped(random_text(random, u"a\u00e9\"\\\n\t/\x01\xD83D\xDE00").c_str())
               : kind == 4 ? integer(static_cast<int32_t>(random()))
               : kind == 5 ? dbl(kDoubles[random() % std::size(kDoubles)])
               : kind == 6 ? boolean(static_cast<tqbool>(random() % 3))
                           : null_node();
    tqjson2_nodo_t *nodo = kind ? arr({}) : obj({});
    for (int i = random() % 4; i > 0; --i) {
        tqjson2_nodo_t *hijo = random_value(random, depth + 1);
        if (kind)
            tqjson2_append_elemento_a_array(nodo, &hijo);
        else
            tqjson2_append_nodo_a_objeto(
                nodo, (u"k" + random_text(random, u"a\u00e9\u65e5\t/ \xD83D\xDE00")).c_str(),
                &hijo);
    }
    return nodo;
}

} // namespace

// Files in UTF-8, with or without a byte-order mark, and in UTF-16 of either byte order.
TEST(Reading, FilesReadAsTheTextOfTheirBytes) {
    for (const char *texto : {"[1,2]", "{\"a\" : \"b\\n\", \"c\":[-0.5e3]}", "\xEF\xBB\xBF[1]",
                              " 42 ", "[\"\xFF\"]", "[[1,],2]", "x\n{\"a\":1,}"})
        expect_files_read_as_text(texto);
    const std::u16string wide = u"{\"\u00e9\":[\"\xD83D\xDE00\\n\",1]}";
    const std::string utf8 = "{\"\xC3\xA9\":[\"\xF0\x9F\x98\x80\\n\",1]}";
    for (const bool big_endian : {false, true}) {
        const TempFile fichero(utf16_file(wide, big_endian));
        for (const tqbool decodifica : {CIERTO, FALSO})
            EXPECT_EQ(read_file(fichero, decodifica, CIERTO), read_text(utf8, decodifica));
    }
}

// Where a failed read stopped: the token at fault, or the end of the input; columns count
// UTF-16 units.
TEST(Reading, FailedReadsGiveTheirLineAndColumnOrLeaveThePointers) {
    const struct {
        std::string text;
        int32_t linea, columna;
    } rows[] = {{"{\n  \"a\": [1,,2]\n}", 2, 11},
                {"  42  \n", 2, 1},
                {"[\"\xC3\xA9\xF0\x9F\x98\x80\" @]", 1, 8},
                {"\n\n[1,]", 3, 4},
                {"{\"a\" 1}", 1, 6},
                {"{\"a\":1,}", 1, 8},
                {"{\"a\": -}", 1, 8},
                {"[- 7, - x]", 1, 9},
                {"[1.5e]", 1, 5},
                {"[123456789", 1, 11},
                {"[1 2,\t]", 1, 7},
                {std::string(1025, '['), 1, 1025}};
    for (const auto &row : rows) {
        const TempFile fichero(row.text);
        const Tree previo{integer(1)};
        tqjson2_nodo_t *nodo = previo.raiz;
        tqjson2_error_t *error = nullptr;
        EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), CIERTO, FALSO, &nodo, &error), FALSO);
        EXPECT_EQ(nodo, nullptr);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(std::pair(error->linea, error->columna), std::pair(row.linea, row.columna))
            << row.text;
        tqjson2_error_destruye(&error);
        EXPECT_EQ(error, nullptr);
    }

    // Missing files leave the pointers as they were; a good read nulls the error; a null text is
    // reported and nulls the root.
    RecordingHandler handler;
    TempFile fichero;
    Tree tree{integer(1)};
    tqjson2_nodo_t *nodo = tree.raiz;
    auto *error = reinterpret_cast<tqjson2_error_t *>(0x1);
    EXPECT_EQ(tqjson2_se_lee_fichero(fichero.wide(), &nodo), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), CIERTO, CIERTO, &nodo, &error), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(u"/", CIERTO, CIERTO, &nodo, &error), FALSO);
    EXPECT_EQ(nodo, tree.raiz);
    EXPECT_EQ(error, reinterpret_cast<tqjson2_error_t *>(0x1));
    EXPECT_EQ(tqjson2_se_lee_texto_utf8(nullptr, &nodo), FALSO);
    EXPECT_EQ(nodo, nullptr);
    EXPECT_EQ(handler.conditions(), Conditions{"(texto) != NULL"});
    fichero.fill("[true]");
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), FALSO, FALSO, &nodo, &error), CIERTO);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(minified(nodo), "[true]");
    tqjson2_destruye_nodo(&nodo);
}

// Generated documents, and the benchmark documents once read, write texts that read back to the
// same texts.
TEST(Reading, DocumentsReadWriteAndReadBack) {
    std::mt19937 random(2024);
    for (int caso = 0; caso < 300; ++caso) {
        const Tree original{
            arr({random_value(random, 1), random_value(random, 1), random_value(random, 1)})};
        SCOPED_TRACE(minified(original.raiz));
        expect_layouts_read_back(original.raiz);
    }
    RecordingHandler handler; // 64-bit ids are reported as out of range
    size_t documentos = 0;
    for (const auto &entrada : std::filesystem::directory_iterator(TQ_BENCH_DATA_DIR)) {
        if (entrada.path().extension() != ".json")
            continue;
        ++documentos;
        SCOPED_TRACE(entrada.path().filename().string());
        const std::string bytes = read_file(entrada.path());
        ASSERT_GT(bytes.size(), 100000u);
        Tree leido{nullptr};
        ASSERT_EQ(read_tree(bytes, leido, FALSO), CIERTO);
        expect_layouts_read_back(leido.raiz);
    }
    EXPECT_EQ(documentos, 7u); // the three public ones and those of bench/generate_data.py
    for (const std::string &condition : handler.conditions())
        EXPECT_EQ(condition, "valor <= INT32_MAX");
}

// Any bytes give a tree or none, the same from a file as from the text; the sanitizers watch
// for everything else.
TEST(Reading, HostileBytesReadAlikeFromTextAndFile) {
    const unsigned char alphabet[] = {'{', '}', '[', ']', ',', ':', '"', '\\', '-',  '0',  '1',
                                      '.', 'e', 't', 'r', 'u', 'n', 'l', ' ',  '\n', 0xC3, 0xFF};
    RandomBytes random(alphabet, 99);
    RecordingHandler handler; // out-of-range numbers and bad "\u00" escapes are reported
    for (int caso = 0; caso < 20000; ++caso) {
        const std::string texto = random.next(24);
        EXPECT_EQ(read_text(texto, CIERTO).ok, read_text(texto, FALSO).ok);
        if (caso % 40 == 0)
            expect_files_read_as_text(texto);
    }
}
