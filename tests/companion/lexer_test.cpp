#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <tuple>

#include "companion/directory.h"
#include "companion/lexer.h"
#include "companion/unicode.h"
#include "support/temp_file.h"
#include "support/texts.h"

namespace {
using Crea16 = anlex_t *(*)(const char16_t *, anlex_palabras_reservadas_t **, tqbool);

anlex_palabras_reservadas_t *json_words() {
    anlex_palabras_reservadas_t *palabras = anlex_crea_palabras_reservadas_vacio();
    anlex_append_palabra_reservada_ulong_u(palabras, 7, u"true");
    anlex_append_palabra_reservada_ulong_u(palabras, 8, u"false");
    anlex_append_palabra_reservada_ulong_u(palabras, 9, u"null");
    return palabras;
}

// The whole token sequence: punctuation as itself, I(value) and R(value) constants, L(text)
// literals, W<id> reserved words, N identifiers, X errors; with positions, each token gets
// @line:column and the end of the input E@line:column.
std::string describe(anlex_t *lex, bool positions) {
    static const std::map<uint32_t, std::string> names = {
        {ANLEX_MENOS, "-"},      {ANLEX_CORCH_ABR, "["}, {ANLEX_CORCH_CER, "]"},
        {ANLEX_COMA, ","},       {ANLEX_LLAVE_ABR, "{"}, {ANLEX_LLAVE_CER, "}"},
        {ANLEX_DOS_PUNTOS, ":"}, {ANLEX_ERROR, "X"},     {ANLEX_IDENTIFICADOR, "N"},
        {ANLEX_FIN, "E"}};
    std::string out;
    for (int n = 0; n < 100; ++n) {
        const uint32_t token = anlex_lee_token(lex);
        EXPECT_EQ(anlex_get_token(lex), token);
        char valor[40];
        std::string item = names.count(token) ? names.at(token) : "?" + std::to_string(token);
        if (token == ANLEX_CTE_ENTERA || token == ANLEX_CTE_REAL) {
            const bool real = token == ANLEX_CTE_REAL;
            std::snprintf(valor, sizeof valor, "%.17g",
                          real ? anlex_get_cte_real(lex) : anlex_get_cte_entera_double(lex));
            item = (real ? "R(" : "I(") + std::string(valor) + ")";
        } else if (token == ANLEX_LITERAL) {
            item = "L(" + take(unicode_convierte_UNICODE_a_UTF8(anlex_get_literal(lex))) + ")";
        } else if (token == ANLEX_PALABRA_RESERVADA) {
            item = "W" + std::to_string(anlex_get_id_palabra_reservada_ulong(lex));
        }
        if (positions) {
            int32_t linea = 0, columna = 0;
            anlex_linea_y_columna_actual(lex, &linea, &columna);
            item += "@" + std::to_string(linea) + ":" + std::to_string(columna);
        } else if (token == ANLEX_FIN) {
            return out;
        }
        out += (out.empty() ? "" : " ") + item;
        if (token == ANLEX_FIN)
            return out;
    }
    return out + " ...";
}

anlex_t *start(anlex_t *lex, bool json = true, uint32_t buffer = 0) {
    if (buffer != 0)
        anlex_set_longitud_buffer_lectura(lex, buffer);
    if (json)
        anlex_set_atributo_aplicar_criterio_json_para_analisis_literales(lex);
    anlex_inicia(lex);
    EXPECT_EQ(anlex_get_token(lex), uint32_t{ANLEX_FIN});
    return lex;
}
// Over UTF-8 text, with the JSON words taken over.
anlex_t *open(const char *texto, bool json = true) {
    anlex_palabras_reservadas_t *palabras = json_words();
    return start(anlex_crea_analizando_memoria_utf8(texto, &palabras, CIERTO), json);
}
// Describes a started lexer's tokens, checks that inicia starts it again, and destroys it.
std::string run(anlex_t *lex, bool positions) {
    const std::string first = describe(lex, positions);
    anlex_inicia(lex);
    EXPECT_EQ(describe(lex, positions), first);
    anlex_destruye(&lex);
    EXPECT_EQ(lex, nullptr);
    return first;
}
std::string lex(const char *texto, bool positions = false, bool json = true) {
    return run(open(texto, json), positions);
}
std::string lex(Crea16 crea, const std::u16string &texto, uint32_t buffer = 0) {
    anlex_palabras_reservadas_t *palabras = json_words();
    return run(start(crea(texto.c_str(), &palabras, CIERTO), true, buffer), true);
}

} // namespace

// Rows whose tokens carry positions are read with them: where tokens begin, in lines and UTF-16
// columns. 2^82 + 2^29 (...616) lies halfway between the doubles 2^82 (...5167e+24) and
// 2^82 + 2^30 (...5178e+24): the tie goes to the even one, anything above up.
TEST(Lexer, TokensOfEveryKindNumbersWordsErrorsAndPositions) {
    const struct {
        const char *texto, *tokens;
    } rows[] = {{R"({"a": [1, -2.5, true, x]})", "{ L(a) : [ I(1) , - R(2.5) , W7 , N ] }"},
                {"0 01 1.5 1e5 1E+5 2.5e-1 -0.0",
                 "I(0) I(0) I(1) R(1.5) R(100000) R(100000) R(0.25) - R(0)"},
                {"1. 1e .5 0x1 -5", "I(1) X I(1) N X I(5) I(0) N - I(5)"},
                {"1e400 1e-400", "R(inf) R(0)"},
                // Ties, the largest and smallest doubles, and more digits than 64 bits hold.
                {"9007199254740993 123456789012345678901 2.2250738585072011e-308 "
                 "4.9406564584124654e-324 1.7976931348623157e308 1.7976931348623159e308 "
                 "0.30000000000000004 1e23 9007199254740993.0 7.3177701707893310e+15",
                 "I(9007199254740992) I(1.2345678901234568e+20) R(2.2250738585072009e-308) "
                 "R(4.9406564584124654e-324) R(1.7976931348623157e+308) R(inf) "
                 "R(0.30000000000000004) R(9.9999999999999992e+22) R(9007199254740992) "
                 "R(7317770170789331)"},
                {"4835703278458517235695616 4835703278458517235695617 "
                 "4835703278458517235695616.5 48357032784585172356956160e-1",
                 "I(4.8357032784585167e+24) I(4.8357032784585178e+24) R(4.8357032784585178e+24) "
                 "R(4.8357032784585167e+24)"},
                {"true false null truex True NULL _x a1_ tru e", "W7 W8 W9 N N N N N N N"},
                {"@ é \x80 😀 \x80x", "X X X X X N"},
                {"\"ab\ncd \"a\\\"", "X N X"},
                {"\"a\\", "X"},
                {" \t\r\n\v\f", ""},
                {"", "E@1:1"},
                {"  a\n\n  b\n", "N@1:3 N@3:3 E@4:1"},
                {"a\r\n\tb", "N@1:1 N@2:2 E@2:3"},
                {"[\n                    1, \n                         \t 2 ]",
                 "[@1:1 I(1)@2:21 ,@2:22 I(2)@3:28 ]@3:30 E@3:31"},
                {"\v\f[12.5e3,-7]", "[@1:3 R(12500)@1:4 ,@1:10 -@1:11 I(7)@1:12 ]@1:13 E@1:14"},
                {"\"😀\" \"€\" x", "L(😀)@1:1 L(€)@1:6 N@1:10 E@1:11"},
                {"@é\x80😀x", "X@1:1 X@1:2 X@1:3 X@1:4 N@1:6 E@1:7"}};
    for (const auto &row : rows)
        EXPECT_EQ(lex(row.texto, std::strchr(row.tokens, '@')), row.tokens) << row.texto;
    // Without the criterion a literal runs to the next quotation mark.
    EXPECT_EQ(lex("\"a\\\" \"b\nc\" x", true, false), "L(a\\)@1:1 L(b\nc)@1:6 N@2:4 E@2:5");
}

// The wide text has bare quotation marks; the raw bytes and the backslash flag are as written.
TEST(Lexer, JsonLiteralsGiveWideTextWithBareQuotesAndTheirRawBytes) {
    const struct {
        const char *texto;
        std::u16string ancho;
        std::string crudo;
        tqbool con_barras;
    } rows[] = {{R"("")", u"", "", FALSO},
                {R"("ab")", u"ab", "ab", FALSO},
                {R"("a\"b")", uR"(a"b)", R"(a\"b)", CIERTO},
                {R"("\n\\\u0041\/")", uR"(\n\\\u0041\/)", R"(\n\\\u0041\/)", CIERTO},
                {R"("x\\")", uR"(x\\)", R"(x\\)", CIERTO},
                {"\"é€😀\"", u"é€😀", "é€😀", FALSO},
                {"\"a\xFF\xC3\"", u"a\xFFFD\xFFFD", "a\xFF\xC3", FALSO}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.texto);
        anlex_t *lex = open(row.texto);
        ASSERT_EQ(anlex_lee_token(lex), uint32_t{ANLEX_LITERAL});
        size_t longitud = 99;
        tqbool con_barras = 99;
        const char *crudo = anlex_get_literal_utf8(lex, &longitud, &con_barras);
        EXPECT_EQ(std::tuple(std::u16string(anlex_get_literal(lex)), std::string(crudo, longitud),
                             con_barras),
                  std::tuple(row.ancho, row.crudo, row.con_barras));
        EXPECT_EQ(anlex_lee_token(lex), uint32_t{ANLEX_FIN});
        anlex_destruye(&lex);
    }
}

// The literal's scan steps over many bytes at once: a quotation mark, a backslash, a line feed
// or the end must stop it at every offset, before and after a step's boundary.
TEST(Lexer, ALiteralStopsAtItsFirstSpecialByteWhereverItStands) {
    for (size_t n = 0; n < 40; ++n) {
        const std::string a(n, 'a'), b(40 - n, 'b');
        EXPECT_EQ(lex(("\"" + a + "\" " + b + "\"").c_str()), "L(" + a + ") N X") << n;
        EXPECT_EQ(lex(("\"" + a + "\\\"" + b + "\"").c_str()), "L(" + a + "\"" + b + ")") << n;
        EXPECT_EQ(lex(("\"" + a + "\n" + b).c_str()), "X N") << n;
        EXPECT_EQ(lex(("\"" + a).c_str()), "X") << n;
    }
}

TEST(Lexer, EveryInputGivesTheSameTokensAndPositions) {
    const struct {
        std::string utf8;
        std::u16string ancho;
        const char *tokens;
    } rows[] = {
        {"{\"k€😀\": [10, -2.5e1, true, \"a\\\"b\"],\r\n\t@ nul é}\n",
         u"{\"k€😀\": [10, -2.5e1, true, \"a\\\"b\"],\r\n\t@ nul é}\n",
         "{@1:1 L(k€😀)@1:2 :@1:8 [@1:10 I(10)@1:11 ,@1:13 -@1:15 R(25)@1:16 ,@1:21 "
         "W7@1:23 ,@1:27 L(a\"b)@1:29 ]@1:35 ,@1:36 X@2:2 N@2:4 X@2:8 }@2:9 E@3:1"},
        {std::string("[1]\0[2]", 7), std::u16string(u"[1]\0[2]", 7), "[@1:1 I(1)@1:2 ]@1:3 E@1:4"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.tokens);
        EXPECT_EQ(lex(row.utf8.c_str(), true), row.tokens);
        EXPECT_EQ(lex(anlex_crea_analizando_memoria, row.ancho), row.tokens);
        for (const std::string &bytes :
             {row.utf8, "\xEF\xBB\xBF" + row.utf8, utf16_file(row.ancho, false),
              utf16_file(row.ancho, true)}) {
            const TempFile file(bytes);
            for (const Crea16 crea :
                 {anlex_crea_analizando_fichero, anlex_crea_analizando_fichero_lectura_con_fread})
                for (const uint32_t buffer : {3u, 0u}) {
                    SCOPED_TRACE(testing::Message() << bytes.size() << " bytes, buffer " << buffer);
                    EXPECT_EQ(lex(crea, file.wide(), buffer), row.tokens);
                }
        }
    }
    const TempFile missing;
    EXPECT_EQ(lex(anlex_crea_analizando_fichero, missing.wide(), 3), "E@1:1");
    EXPECT_EQ(lex(anlex_crea_analizando_fichero_lectura_con_fread, missing.wide()), "E@1:1");
}

TEST(Lexer, TakenTablesGoWithTheLexerAndBorrowedOnesStayTheCallers) {
    anlex_palabras_reservadas_t *prestada = anlex_crea_palabras_reservadas_vacio();
    std::u16string palabra = u"clave"; // the table keeps a copy
    anlex_append_palabra_reservada_ulong_u(prestada, 5, palabra.c_str());
    palabra[0] = u'x';
    anlex_palabras_reservadas_t *const original = prestada;
    const TempFile file("clave");
    for (const Crea16 crea : {anlex_crea_analizando_memoria, anlex_crea_analizando_fichero,
                              anlex_crea_analizando_fichero_lectura_con_fread}) {
        const char16_t *entrada = crea == anlex_crea_analizando_memoria ? u"clave" : file.wide();
        anlex_t *presta = crea(entrada, &prestada, FALSO);
        anlex_palabras_reservadas_t *tomada = json_words();
        anlex_t *toma = crea(entrada, &tomada, CIERTO);
        EXPECT_EQ(prestada, original);
        EXPECT_EQ(tomada, nullptr);
        anlex_destruye(&toma); // with its table, never started
        EXPECT_EQ(toma, nullptr);
        EXPECT_EQ(run(start(presta), false), "W5");
    }
    anlex_destruye_palabras_reservadas(&prestada);
    EXPECT_EQ(prestada, nullptr);
}

TEST(Lexer, SaltaHastaToken2IgualStopsOnEitherKindAtTheEndOrAtTheBound) {
    anlex_t *lex = open(R"([1, {"a": 2}, x] y z)");
    EXPECT_EQ(anlex_salta_hasta_token2_igual(lex, ANLEX_LLAVE_CER, ANLEX_DOS_PUNTOS, 0), CIERTO);
    EXPECT_EQ(anlex_get_token(lex), uint32_t{ANLEX_DOS_PUNTOS});
    EXPECT_EQ(anlex_salta_hasta_token2_igual(lex, ANLEX_LLAVE_CER, ANLEX_CORCH_CER, 0), CIERTO);
    EXPECT_EQ(anlex_get_token(lex), uint32_t{ANLEX_LLAVE_CER});
    EXPECT_EQ(anlex_salta_hasta_token2_igual(lex, ANLEX_CORCH_CER, ANLEX_CORCH_CER, 2), FALSO);
    EXPECT_EQ(anlex_get_token(lex), uint32_t{ANLEX_IDENTIFICADOR}); // read ',' and 'x' only
    EXPECT_EQ(anlex_salta_hasta_token2_igual(lex, ANLEX_CORCH_CER, ANLEX_CORCH_CER, 1), CIERTO);
    EXPECT_EQ(anlex_salta_hasta_token2_igual(lex, ANLEX_LLAVE_ABR, ANLEX_COMA, 0), FALSO);
    EXPECT_EQ(anlex_get_token(lex), uint32_t{ANLEX_FIN});
    anlex_destruye(&lex);
}

TEST(Directory, ExisteFicheroIsTrueOnlyForAnExistingRegularFile) {
    const TempFile file("x");
    EXPECT_EQ(cdir_existe_fichero_UNICODE(file.wide()), CIERTO);
    EXPECT_EQ(cdir_existe_fichero_UNICODE((file.wide() + std::u16string(u"_no")).c_str()), FALSO);
    EXPECT_EQ(cdir_existe_fichero_UNICODE(u"/"), FALSO);
    EXPECT_EQ(cdir_existe_fichero_UNICODE(u""), FALSO);
}
