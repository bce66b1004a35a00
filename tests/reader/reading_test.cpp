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

// A document of every kind to depth 4, with texts that need escapes and names that hold no
// quotation mark, backslash or line feed and are never blank (names are written as stored, and
// a blank one not at all).
class RandomDocument {
  public:
    explicit RandomDocument(uint32_t seed) : random_(seed) {}
    tqjson2_nodo_t *value(int depth) {
        const int kind = depth < 4 ? pick(8) : 2 + pick(6);
        if (kind >= 2)
            return kind < 4    ? escaped(text(kValueUnits).c_str())
                   : kind == 4 ? integer(static_cast<int32_t>(random_()))
                   : kind == 5 ? dbl(kDoubles[pick(std::size(kDoubles))])
                   : kind == 6 ? boolean(static_cast<tqbool>(pick(3)))
                               : null_node();
        tqjson2_nodo_t *nodo = kind ? arr({}) : obj({});
        for (int i = pick(4); i > 0; --i) {
            tqjson2_nodo_t *hijo = value(depth + 1);
            if (kind)
                tqjson2_append_elemento_a_array(nodo, &hijo);
            else
                tqjson2_append_nodo_a_objeto(nodo, (u"k" + text(kNameUnits)).c_str(), &hijo);
        }
        return nodo;
    }

  private:
    static constexpr const char16_t *kNameUnits = u"a\u00e9\u65e5\t/ \xD83D\xDE00";
    static constexpr const char16_t *kValueUnits = u"a\u00e9\"\\\n\t/\x01\xD83D\xDE00";
    static constexpr double kDoubles[] = {0.1, -2.5, 1e20, 3.0, 1.5e-7, 123456.789, -0.0};
    int pick(int n) { return static_cast<int>(random_() % static_cast<uint32_t>(n)); }
    std::u16string text(const char16_t *units) {
        std::u16string s;
        const std::u16string alphabet(units);
        for (int i = pick(6); i > 0; --i) {
            const size_t at = static_cast<size_t>(pick(static_cast<int>(alphabet.size())));
            if (alphabet[at] == 0xDE00) // pairs are taken whole, from their first unit
                continue;
            s += alphabet[at];
            if (alphabet[at] == 0xD83D)
                s += alphabet[at + 1];
        }
        return s;
    }
    std::mt19937 random_;
};

} // namespace

TEST(Reading, TextsWithAndWithoutAByteOrderMark) {
    EXPECT_EQ(read_text("\xEF\xBB\xBF[1]"), read_text("[1]"));
    EXPECT_EQ(read_text("\xEF\xBB\xBF").ok, FALSO);
    EXPECT_EQ(read_text("\xEF\xBB").ok, FALSO);
    EXPECT_EQ(read_text("\xEF\xBB\xBF\xEF\xBB\xBF[1]").ok, CIERTO); // a second mark is skipped text
    RecordingHandler handler;
    const Tree previo{integer(1)};
    tqjson2_nodo_t *nodo = previo.raiz;
    EXPECT_EQ(tqjson2_se_lee_texto_utf8(nullptr, &nodo), FALSO);
    EXPECT_EQ(nodo, nullptr);
    EXPECT_EQ(handler.conditions(), std::vector<std::string>{"(texto) != NULL"});
}

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
TEST(Reading, AFailedFileReadGivesItsLineAndColumn) {
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
}

TEST(Reading, MissingFilesLeaveThePointersAndGoodReadsNullTheError) {
    TempFile fichero;
    Tree tree{integer(1)};
    tqjson2_nodo_t *const previo = tree.raiz;
    auto *error = reinterpret_cast<tqjson2_error_t *>(0x1);
    EXPECT_EQ(tqjson2_se_lee_fichero(fichero.wide(), &tree.raiz), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), CIERTO, CIERTO, &tree.raiz, &error), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(u"/", CIERTO, CIERTO, &tree.raiz, &error), FALSO);
    EXPECT_EQ(tree.raiz, previo);
    EXPECT_EQ(error, reinterpret_cast<tqjson2_error_t *>(0x1));
    tqjson2_destruye_nodo(&tree.raiz);
    fichero.fill("[true]");
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), FALSO, FALSO, &tree.raiz, &error), CIERTO);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(minified(tree.raiz), "[true]");
}

TEST(Reading, GeneratedDocumentsRoundTrip) {
    RandomDocument documents(2024);
    for (int caso = 0; caso < 300; ++caso) {
        const Tree original{arr({documents.value(1), documents.value(1), documents.value(1)})};
        SCOPED_TRACE(minified(original.raiz));
        expect_layouts_read_back(original.raiz);
    }
}

// Once read, each document writes a text that reads back to the same text.
TEST(Reading, TheBenchmarkDocumentsReadWriteAndReadBack) {
    RecordingHandler handler; // 64-bit ids are reported as out of range
    size_t documentos = 0;
    for (const auto &entrada : std::filesystem::directory_iterator(TQ_BENCH_DATA_DIR)) {
        if (entrada.path().extension() != ".json")
            continue;
        ++documentos;
        SCOPED_TRACE(entrada.path().filename().string());
        std::ostringstream bytes;
        bytes << std::ifstream(entrada.path(), std::ios::binary).rdbuf();
        ASSERT_GT(bytes.str().size(), 100000u);
        Tree leido{nullptr};
        ASSERT_EQ(read_tree(bytes.str(), leido, FALSO), CIERTO);
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
