#include <gtest/gtest.h>

#include "companion/wide_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {
const char *const kModulo = "caller";
} // namespace

TEST(WideStrings, CopyLengthConcatenateAndReplace) {
    char16_t *texto = widestr_nousar_copia(u"año", kModulo, 1);
    EXPECT_EQ(widestr_nousar_longitud(texto, kModulo, 1), 3u);
    widestr_nousar_cad_concatena(&texto, u" 𝄞", kModulo, 1); // a surrogate pair counts two units
    EXPECT_EQ(widestr_nousar_longitud(texto, kModulo, 1), 6u);
    widestr_nousar_sustituye(&texto, texto, kModulo, 1); // replacing by itself is safe
    EXPECT_EQ(std::u16string(texto), u"año 𝄞");
    widestr_nousar_sustituye(&texto, u"", kModulo, 1);
    EXPECT_EQ(take(texto), u"");
    EXPECT_EQ(take(widestr_nousar_creacadena(10)), u"");
}

TEST(WideStrings, ComparisonsPrefixesBlanksAndSearch) {
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

TEST(WideStrings, EqualityIgnoringCaseFoldsLettersBeyondAscii) {
    const struct {
        const char16_t *a, *b;
        tqbool iguales;
    } rows[] = {{u"Ñandú", u"ñANDÚ", CIERTO},   {u"ΣΟΦΙΑ", u"σοφια", CIERTO},
                {u"Straße", u"STRAßE", CIERTO}, {u"ЖУК", u"жук", CIERTO},
                {u"id", u"ID", CIERTO},         {u"a", u"á", FALSO},
                {u"ab", u"a", FALSO},           {u"1", u"!", FALSO}};
    for (const auto &row : rows)
        EXPECT_EQ(widestr_nousar_cadenas_iguales_may_o_min(row.a, row.b, kModulo, 1), row.iguales);
}

TEST(WideStrings, ReportsCarryTheCallersModuleAndLine) {
    RecordingHandler handler;
    char16_t *nulo = nullptr;
    EXPECT_EQ(take(widestr_nousar_copia(nullptr, kModulo, 11)), u"");
    EXPECT_EQ(widestr_nousar_longitud(nullptr, kModulo, 12), 0u);
    widestr_nousar_destruye(&nulo, kModulo, 13);
    widestr_nousar_destruye_opcional(&nulo, kModulo, 14); // accepted: no report
    EXPECT_EQ(handler.reports(), (std::vector<Report>{{"(cadena) != NULL", kModulo, 11},
                                                      {"(cadena) != NULL", kModulo, 12},
                                                      {"(*cadena) != NULL", kModulo, 13}}));
}
