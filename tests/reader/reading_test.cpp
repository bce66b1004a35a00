#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "reader/reader_test_support.h"
#include "support/random_bytes.h"
#include "support/recording_handler.h"
#include "support/temp_file.h"
#include "tree/nodes.h"

namespace {

ReadResult read_file(const TempFile &fichero, tqbool decodifica, tqbool con_fread) {
    tqjson2_nodo_t *nodo = nullptr;
    const tqbool ok =
        tqjson2_se_lee_fichero_ex(fichero.wide(), decodifica, con_fread, &nodo, nullptr);
    if (!nodo)
        return {ok, ""};
    ReadResult result{ok, take_text(tqjson2_genera_texto_utf8_minificado(nodo))};
    tqjson2_destruye_nodo(&nodo);
    return result;
}

// Every way of reading the bytes of `texto` from a file gives what reading the text gives.
void expect_files_read_as_text(const std::string &texto) {
    TempFile fichero;
    fichero.fill(texto);
    for (const tqbool decodifica : {CIERTO, FALSO})
        for (const tqbool con_fread : {CIERTO, FALSO})
            ASSERT_EQ(read_file(fichero, decodifica, con_fread), read_text(texto, decodifica))
                << testing::PrintToString(texto);
}

std::string utf16_file_bytes(const std::u16string &texto, bool big_endian) {
    std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unidad : texto) {
        const char alto = char(unidad >> 8), bajo = char(unidad & 0xFF);
        bytes += big_endian ? std::string{alto, bajo} : std::string{bajo, alto};
    }
    return bytes;
}

bool equal_trees(const tqjson2_nodo_t *a, const tqjson2_nodo_t *b) {
    if (a->tipo != b->tipo)
        return false;
    const auto child = [](const arr_puntero_t *hijos, uint32_t i) {
        return arr_GetPunteroConTipo(hijos, i);
    };
    switch (a->tipo) {
        case TQJSON_TIPO_OBJETO:
        case TQJSON_TIPO_ARRAY: {
            const bool objeto = a->tipo == TQJSON_TIPO_OBJETO;
            const arr_puntero_t *ha = objeto ? a->atributos_objeto : a->valores_array;
            const arr_puntero_t *hb = objeto ? b->atributos_objeto : b->valores_array;
            if (arr_NumElemsPuntero(ha) != arr_NumElemsPuntero(hb))
                return false;
            for (uint32_t i = 0; i < arr_NumElemsPuntero(ha); ++i) {
                if (!objeto) {
                    if (!equal_trees(static_cast<const tqjson2_nodo_t *>(child(ha, i)),
                                     static_cast<const tqjson2_nodo_t *>(child(hb, i))))
                        return false;
                    continue;
                }
                const auto *ma = static_cast<const tqjson2_atributo_t *>(child(ha, i));
                const auto *mb = static_cast<const tqjson2_atributo_t *>(child(hb, i));
                if (std::u16string(ma->nombre) != mb->nombre || !equal_trees(ma->valor, mb->valor))
                    return false;
            }
            return true;
        }
        case TQJSON_TIPO_CADENA:
            return std::strcmp(a->cadena_utf8, b->cadena_utf8) == 0 &&
                   a->texto_decodificado == b->texto_decodificado;
        default:
            return a->entero == b->entero &&
                   std::memcmp(&a->valor_double, &b->valor_double, sizeof(double)) == 0 &&
                   a->booleano == b->booleano;
    }
}

// A document of every kind to depth 4, with texts that need escapes and names that hold no
// quotation mark, backslash or line feed and are never blank (names are written as stored, and
// a blank one not at all).
class RandomDocument {
  public:
    explicit RandomDocument(uint32_t seed) : random_(seed) {}
    tqjson2_nodo_t *value(int depth) {
        switch (depth < 4 ? pick(8) : 2 + pick(6)) {
            case 0: {
                tqjson2_nodo_t *objeto = tqjson2_crea_nodo_objeto();
                for (int i = pick(4); i > 0; --i) {
                    tqjson2_nodo_t *miembro = value(depth + 1);
                    tqjson2_append_nodo_a_objeto(objeto, (u"k" + text(kNameUnits)).c_str(),
                                                 &miembro);
                }
                return objeto;
            }
            case 1: {
                tqjson2_nodo_t *array = tqjson2_crea_nodo_array();
                for (int i = pick(4); i > 0; --i) {
                    tqjson2_nodo_t *elemento = value(depth + 1);
                    tqjson2_append_elemento_a_array(array, &elemento);
                }
                return array;
            }
            case 2:
            case 3:
                return escaped(text(kValueUnits).c_str());
            case 4:
                return integer(static_cast<int32_t>(random_()));
            case 5:
                return dbl(kDoubles[pick(sizeof kDoubles / sizeof kDoubles[0])]);
            case 6:
                return boolean(static_cast<tqbool>(pick(3)));
            default:
                return null_node();
        }
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
    RecordingHandler handler;
    EXPECT_EQ(read_text("\xEF\xBB\xBF[1]"), read_text("[1]"));
    EXPECT_EQ(read_text("\xEF\xBB\xBF").ok, FALSO);
    EXPECT_EQ(read_text("\xEF\xBB").ok, FALSO);
    EXPECT_EQ(read_text("\xEF\xBB\xBF\xEF\xBB\xBF[1]").ok, CIERTO); // a second mark is skipped text
    EXPECT_TRUE(handler.reports().empty());
    tqjson2_nodo_t *nodo = integer(1);
    tqjson2_nodo_t *previo = nodo;
    EXPECT_EQ(tqjson2_se_lee_texto_utf8(nullptr, &nodo), FALSO);
    EXPECT_EQ(nodo, nullptr);
    EXPECT_EQ(handler.conditions(), std::vector<std::string>{"(texto) != NULL"});
    tqjson2_destruye_nodo(&previo);
}

TEST(Reading, FilesReadAsTheTextOfTheirBytes) {
    for (const char *texto : {"[1,2]", "{\"a\" : \"b\\n\", \"c\":[-0.5e3]}", "\xEF\xBB\xBF[1]",
                              " 42 ", "[\"\xFF\"]", "[[1,],2]", "x\n{\"a\":1,}"})
        expect_files_read_as_text(texto);
    const std::u16string wide = u"{\"\u00e9\":[\"\xD83D\xDE00\\n\",1]}";
    const std::string utf8 = "{\"\xC3\xA9\":[\"\xF0\x9F\x98\x80\\n\",1]}";
    for (const bool big_endian : {false, true}) {
        TempFile fichero;
        fichero.fill(utf16_file_bytes(wide, big_endian));
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
                {std::string(1025, '['), 1, 1025}};
    for (const auto &row : rows) {
        TempFile fichero;
        fichero.fill(row.text);
        tqjson2_nodo_t *nodo = integer(1);
        tqjson2_nodo_t *previo = nodo;
        tqjson2_error_t *error = nullptr;
        EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), CIERTO, FALSO, &nodo, &error), FALSO);
        EXPECT_EQ(nodo, nullptr);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->linea, row.linea) << row.text;
        EXPECT_EQ(error->columna, row.columna) << row.text;
        tqjson2_error_destruye(&error);
        EXPECT_EQ(error, nullptr);
        tqjson2_destruye_nodo(&previo);
    }
}

TEST(Reading, MissingFilesLeaveThePointersAndGoodReadsNullTheError) {
    TempFile fichero;
    tqjson2_nodo_t *nodo = integer(1);
    tqjson2_nodo_t *const previo = nodo;
    auto *error = reinterpret_cast<tqjson2_error_t *>(0x1);
    EXPECT_EQ(tqjson2_se_lee_fichero(fichero.wide(), &nodo), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), CIERTO, CIERTO, &nodo, &error), FALSO);
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(u"/", CIERTO, CIERTO, &nodo, &error), FALSO);
    EXPECT_EQ(nodo, previo);
    EXPECT_EQ(error, reinterpret_cast<tqjson2_error_t *>(0x1));
    tqjson2_destruye_nodo(&nodo);
    fichero.fill("[true]");
    EXPECT_EQ(tqjson2_se_lee_fichero_ex(fichero.wide(), FALSO, FALSO, &nodo, &error), CIERTO);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(take_text(tqjson2_genera_texto_utf8_minificado(nodo)), "[true]");
    tqjson2_destruye_nodo(&nodo);
}

// Read without decoding, written, and read back without decoding: the same tree, and the same
// text written again, in both layouts.
TEST(Reading, GeneratedDocumentsRoundTrip) {
    RandomDocument documents(2024);
    for (int caso = 0; caso < 300; ++caso) {
        tqjson2_nodo_t *original = tqjson2_crea_nodo_array();
        for (int i = 0; i < 3; ++i) {
            tqjson2_nodo_t *elemento = documents.value(1);
            tqjson2_append_elemento_a_array(original, &elemento);
        }
        for (const auto write : {tqjson2_genera_texto_utf8, tqjson2_genera_texto_utf8_minificado}) {
            const std::string texto = take_text(write(original));
            tqjson2_nodo_t *a = nullptr, *b = nullptr;
            ASSERT_EQ(tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), &a),
                      CIERTO)
                << texto;
            const std::string texto_a = take_text(write(a));
            ASSERT_EQ(
                tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto_a.c_str(), &b),
                CIERTO);
            EXPECT_TRUE(equal_trees(a, b)) << texto;
            EXPECT_EQ(take_text(write(b)), texto_a);
            EXPECT_EQ(texto_a, texto);
            tqjson2_destruye_nodo(&a);
            tqjson2_destruye_nodo(&b);
        }
        tqjson2_destruye_nodo(&original);
    }
}

TEST(Reading, TheBenchmarkDocumentsReadWriteAndReadBack) {
    RecordingHandler handler; // 64-bit ids are reported as out of range
    for (const char *name : {"canada.json", "citm_catalog.json", "twitter.json"}) {
        TempFile unused;
        std::ifstream in(std::string(TQ_BENCH_DATA_DIR) + "/" + name, std::ios::binary);
        std::ostringstream bytes;
        bytes << in.rdbuf();
        ASSERT_GT(bytes.str().size(), 100000u) << name;
        for (const auto write : {tqjson2_genera_texto_utf8, tqjson2_genera_texto_utf8_minificado}) {
            tqjson2_nodo_t *a = nullptr, *b = nullptr;
            ASSERT_EQ(
                tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(bytes.str().c_str(), &a),
                CIERTO);
            const std::string texto = take_text(write(a));
            ASSERT_EQ(tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto.c_str(), &b),
                      CIERTO);
            EXPECT_TRUE(take_text(write(b)) == texto) << name;
            tqjson2_destruye_nodo(&a);
            tqjson2_destruye_nodo(&b);
        }
    }
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
        const ReadResult decoded = read_text(texto, CIERTO);
        const ReadResult undecoded = read_text(texto, FALSO);
        EXPECT_EQ(decoded.ok, undecoded.ok);
        if (caso % 40 == 0)
            expect_files_read_as_text(texto);
    }
}
