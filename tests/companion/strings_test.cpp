#include <gtest/gtest.h>

#include <cctype>
#include <tuple>

#include "companion/byte_strings.h"
#include "companion/hex_digits.h"
#include "companion/letter_case.h"
#include "companion/wide_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {
const char *const kModulo = "caller";
} // namespace

// Equality ignoring case folds ASCII letters only (é and É differ); null arguments are
// reported, and freeing a null string is no error.
TEST(ByteStrings, CopyConcatenateRepeatCompareAndReportNulls) {
    char *texto = cad_copia_cadena("");
    cad_concatena(&texto, "ab");
    cad_concatena(&texto, "");
    cad_concatena(&texto, "c\xC3\xA9");
    EXPECT_EQ(take(texto), "abc\xC3\xA9");
    EXPECT_EQ(take(creacadena_con_caracter(8, ' ')), "        ");
    EXPECT_EQ(take(creacadena_con_caracter(0, ' ')), "");
    EXPECT_EQ(take(creacadena(4)), "");
    const struct {
        const char *a, *b;
        tqbool iguales;
    } rows[] = {{"true", "TRUE", CIERTO}, {"False", "fALSE", CIERTO},     {"", "", CIERTO},
                {"true", "true ", FALSO}, {"true", "tru", FALSO},         {"@", "`", FALSO},
                {"[", "{", FALSO},        {"\xC3\xA9", "\xC3\x89", FALSO}};
    for (const auto &row : rows)
        EXPECT_EQ(cad_cadenas_iguales_may_o_min(row.a, row.b), row.iguales)
            << row.a << " / " << row.b;
    RecordingHandler handler;
    char *copia = cad_copia_cadena(nullptr);
    cad_concatena(&copia, nullptr);
    EXPECT_EQ(cad_cadenas_iguales_may_o_min(nullptr, "a"), FALSO);
    EXPECT_STREQ(copia, "");
    marlstr_destruye(&copia);
    marlstr_destruye(&copia);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"(cadena) != NULL", "(sufijo) != NULL", "(cadena_1) != NULL"}));
}

// A surrogate pair counts two units; replacing a text by itself is safe.
TEST(WideStrings, CopyConcatenateReplaceCompareAndSearch) {
    char16_t *texto = widestr_nousar_copia(u"año", kModulo, 1);
    EXPECT_EQ(widestr_nousar_longitud(texto, kModulo, 1), 3u);
    widestr_nousar_cad_concatena(&texto, u" 𝄞", kModulo, 1);
    EXPECT_EQ(widestr_nousar_longitud(texto, kModulo, 1), 6u);
    widestr_nousar_sustituye(&texto, texto, kModulo, 1);
    EXPECT_EQ(std::u16string(texto), u"año 𝄞");
    widestr_nousar_sustituye(&texto, u"", kModulo, 1);
    EXPECT_EQ(take(texto), u"");
    EXPECT_EQ(take(widestr_nousar_creacadena(10)), u"");

    const char16_t *s = u"data:application/octet-stream;base64";
    EXPECT_EQ(widestr_nousar_cadenas_iguales(u"id", u"id", kModulo, 1), CIERTO);
    EXPECT_EQ(widestr_nousar_cadenas_iguales(u"id", u"Id", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_cadenas_iguales(u"id", u"id2", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_es_subcadena_inicial(s, u"data:application/octet-stream", kModulo, 1),
              CIERTO);
    EXPECT_EQ(widestr_nousar_es_subcadena_inicial(s, u"", kModulo, 1), CIERTO);
    EXPECT_EQ(widestr_nousar_es_subcadena_inicial(u"data", u"data:", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_es_subcadena_inicial(s, u"Data", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_es_cadena_en_blanco(u"", kModulo, 1), CIERTO);
    EXPECT_EQ(widestr_nousar_es_cadena_en_blanco(u" \t\n\r\v\f", kModulo, 1), CIERTO);
    EXPECT_EQ(widestr_nousar_es_cadena_en_blanco(u" \u00A0", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_es_cadena_en_blanco(u" x ", kModulo, 1), FALSO);
    EXPECT_EQ(widestr_nousar_strchr(u"1.5E3", u'E', kModulo, 1) - u"1.5E3", 0 + 3);
    EXPECT_EQ(widestr_nousar_strchr(u"15", u'.', kModulo, 1), nullptr);
}

// Texts equal ignoring case hash alike under the folded hash; the exact hash tells case apart.
TEST(WideStrings, EqualityIgnoringCaseFoldsLettersBeyondAsciiAndHashesAlike) {
    const struct {
        const char16_t *a, *b;
        tqbool iguales;
    } rows[] = {{u"Ñandú", u"ñANDÚ", CIERTO},   {u"ΣΟΦΙΑ", u"σοφια", CIERTO},
                {u"Straße", u"STRAßE", CIERTO}, {u"ЖУК", u"жук", CIERTO},
                {u"id", u"ID", CIERTO},         {u"a", u"á", FALSO},
                {u"ab", u"a", FALSO},           {u"1", u"!", FALSO}};
    const uint64_t clave[2] = {0x0706050403020100, 0x0F0E0D0C0B0A0908};
    const uint64_t otra_clave[2] = {clave[0], clave[1] + 1};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << std::u16string_view(row.a).size());
        EXPECT_EQ(widestr_nousar_cadenas_iguales_may_o_min(row.a, row.b, kModulo, 1), row.iguales);
        EXPECT_EQ(widestr_nousar_resumen_may_o_min(row.a, clave) ==
                      widestr_nousar_resumen_may_o_min(row.b, clave),
                  row.iguales == CIERTO);
        EXPECT_NE(widestr_nousar_resumen(row.a, clave), widestr_nousar_resumen(row.b, clave));
        EXPECT_NE(widestr_nousar_resumen(row.a, clave), widestr_nousar_resumen(row.a, otra_clave));
    }
}

TEST(WideStrings, ReportsCarryTheCallersModuleAndLine) {
    RecordingHandler handler;
    char16_t *nulo = nullptr;
    EXPECT_EQ(take(widestr_nousar_copia(nullptr, kModulo, 11)), u"");
    EXPECT_EQ(widestr_nousar_longitud(nullptr, kModulo, 12), 0u);
    widestr_nousar_destruye(&nulo, kModulo, 13);
    widestr_nousar_destruye_opcional(&nulo, kModulo, 14); // accepted: no report
    EXPECT_EQ(widestr_nousar_atof(nullptr, "caller module", 77), 0.0);
    // A null second text is refused: the string stays as it was, and a test answers FALSO.
    char16_t *texto = widestr_nousar_copia(u"a", kModulo, 15);
    widestr_nousar_cad_concatena(&texto, nullptr, kModulo, 16);
    widestr_nousar_sustituye(&texto, nullptr, kModulo, 17);
    EXPECT_EQ(take(texto), u"a");
    for (const auto prueba :
         {widestr_nousar_cadenas_iguales, widestr_nousar_cadenas_iguales_may_o_min,
          widestr_nousar_es_subcadena_inicial})
        EXPECT_EQ(prueba(u"", nullptr, kModulo, 18), FALSO);
    EXPECT_EQ(widestr_nousar_es_cadena_en_blanco(nullptr, kModulo, 19), FALSO);
    EXPECT_EQ(handler.reports(), (std::vector<Report>{{"(cadena) != NULL", kModulo, 11},
                                                      {"(cadena) != NULL", kModulo, 12},
                                                      {"(*cadena) != NULL", kModulo, 13},
                                                      {"(cadena) != NULL", "caller module", 77},
                                                      {"(sufijo) != NULL", kModulo, 16},
                                                      {"(nueva) != NULL", kModulo, 17},
                                                      {"(cadena_2) != NULL", kModulo, 18},
                                                      {"(cadena_2) != NULL", kModulo, 18},
                                                      {"(prefijo) != NULL", kModulo, 18},
                                                      {"(cadena) != NULL", kModulo, 19}}));
}

// Each case pair folds to one representative; look-alikes are written as escapes: the Ohm and
// Kelvin signs, long s, Cherokee. ASCII folds as the C locale's lower case, and folding is
// idempotent over the whole BMP.
TEST(LetterCase, FoldsEachCasePairToOneRepresentative) {
    const struct {
        char16_t unidad, plegada;
    } rows[] = {{u'É', u'é'}, {u'é', u'é'},     {u'Ÿ', u'ÿ'},           {u'µ', u'μ'},
                {u'Ω', u'ω'}, {u'ω', u'ω'},     {u'\u2126', u'ω'},      {u'Σ', u'σ'},
                {u'ς', u'σ'}, {u'σ', u'σ'},     {u'\u017F', u's'},      {u'\u212A', u'k'},
                {u'Д', u'д'}, {u'д', u'д'},     {u'Ё', u'ё'},           {u'Ա', u'ա'},
                {u'Ⴀ', u'ⴀ'}, {u'Ⱥ', u'ⱥ'},     {u'ǅ', u'ǆ'},           {u'Ǆ', u'ǆ'},
                {u'ẞ', u'ß'}, {u'ß', u'ß'},     {u'\u13A0', u'\u13A0'}, {u'\uAB70', u'\u13A0'},
                {u'İ', u'İ'}, {u'ı', u'ı'},     {u'Ａ', u'ａ'},         {u'中', u'中'},
                {u'٣', u'٣'}, {0xD800, 0xD800}, {0xFFFF, 0xFFFF}};
    for (const auto &row : rows)
        EXPECT_EQ(int(i_pliega_may_o_min(row.unidad)), int(row.plegada)) << int(row.unidad);
    for (int c = 0; c < 0x80; ++c)
        EXPECT_EQ(int(i_pliega_may_o_min(char16_t(c))), std::tolower(c)) << c;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const char16_t plegada = i_pliega_may_o_min(char16_t(u));
        ASSERT_EQ(int(i_pliega_may_o_min(plegada)), int(plegada)) << std::hex << u;
    }
}

// Encoding takes the low byte, in upper case, high digit first; decoding takes either case and
// refuses other characters, an Arabic-Indic digit too, leaving the output alone; null outputs
// are reported.
TEST(HexDigits, EncodeAndDecode) {
    const struct {
        char16_t unidad, alto, bajo;
    } encoded[] = {{0x00, u'0', u'0'},
                   {0x01, u'0', u'1'},
                   {0x1F, u'1', u'F'},
                   {0xAB, u'A', u'B'},
                   {0x12FE, u'F', u'E'}};
    for (const auto &row : encoded) {
        char16_t alto = 0, bajo = 0;
        const tqbool hecho = marlstrhex_codifica_caracter_u(row.unidad, &alto, &bajo);
        EXPECT_EQ(std::tuple(hecho, alto, bajo), std::tuple(CIERTO, row.alto, row.bajo))
            << int(row.unidad);
    }
    const struct {
        char16_t alto, bajo;
        tqbool resultado;
        char16_t unidad;
    } decoded[] = {{u'4', u'1', CIERTO, 0x41},  {u'e', u'9', CIERTO, 0xE9},
                   {u'F', u'f', CIERTO, 0xFF},  {u'0', u'0', CIERTO, 0x00},
                   {u'G', u'0', FALSO, 0x7777}, {u'0', u'g', FALSO, 0x7777},
                   {u'/', u'0', FALSO, 0x7777}, {u':', u'0', FALSO, 0x7777},
                   {u'@', u'0', FALSO, 0x7777}, {0x0660, u'0', FALSO, 0x7777}};
    for (const auto &row : decoded) {
        char16_t unidad = 0x7777;
        EXPECT_EQ(marlstrhex_decodifica_caracter_u(row.alto, row.bajo, &unidad), row.resultado);
        EXPECT_EQ(unidad, row.unidad) << int(row.alto) << "," << int(row.bajo);
    }
    RecordingHandler handler;
    char16_t d = 0;
    EXPECT_EQ(marlstrhex_codifica_caracter_u(1, nullptr, &d), FALSO);
    EXPECT_EQ(marlstrhex_decodifica_caracter_u(u'4', u'1', nullptr), FALSO);
    EXPECT_EQ(handler.conditions(), (Conditions{"(digito_1) != NULL", "(caracter) != NULL"}));
}
