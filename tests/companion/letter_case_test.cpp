#include <gtest/gtest.h>

#include <cctype>

#include "companion/letter_case.h"

// Look-alikes are written as escapes: the Ohm and Kelvin signs, long s, Cherokee.
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
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "U+" << std::hex << int(row.unidad));
        EXPECT_EQ(int(i_pliega_may_o_min(row.unidad)), int(row.plegada));
    }
}

TEST(LetterCase, AsciiFoldsAsTheCLocaleLowerCaseAndFoldingIsIdempotentOverTheWholeBmp) {
    for (int c = 0; c < 0x80; ++c)
        EXPECT_EQ(int(i_pliega_may_o_min(char16_t(c))), std::tolower(c)) << c;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const char16_t plegada = i_pliega_may_o_min(char16_t(u));
        ASSERT_EQ(int(i_pliega_may_o_min(plegada)), int(plegada)) << std::hex << u;
    }
}
