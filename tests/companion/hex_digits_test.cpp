#include <gtest/gtest.h>

#include <tuple>

#include "companion/hex_digits.h"
#include "support/recording_handler.h"

TEST(HexDigits, EncodesTheLowByteInUpperCaseHighDigitFirst) {
    const struct {
        char16_t unidad, alto, bajo;
    } rows[] = {{0x00, u'0', u'0'},
                {0x01, u'0', u'1'},
                {0x1F, u'1', u'F'},
                {0xAB, u'A', u'B'},
                {0x12FE, u'F', u'E'}};
    for (const auto &row : rows) {
        char16_t alto = 0, bajo = 0;
        const tqbool hecho = marlstrhex_codifica_caracter_u(row.unidad, &alto, &bajo);
        EXPECT_EQ(std::tuple(hecho, alto, bajo), std::tuple(CIERTO, row.alto, row.bajo))
            << int(row.unidad);
    }
}

// An Arabic-Indic digit is no hexadecimal digit; null outputs are reported.
TEST(HexDigits, DecodesEitherCaseAndRefusesOtherCharacters) {
    const struct {
        char16_t alto, bajo;
        tqbool resultado;
        char16_t unidad;
    } rows[] = {{u'4', u'1', CIERTO, 0x41},  {u'e', u'9', CIERTO, 0xE9},
                {u'F', u'f', CIERTO, 0xFF},  {u'0', u'0', CIERTO, 0x00},
                {u'G', u'0', FALSO, 0x7777}, {u'0', u'g', FALSO, 0x7777},
                {u'/', u'0', FALSO, 0x7777}, {u':', u'0', FALSO, 0x7777},
                {u'@', u'0', FALSO, 0x7777}, {0x0660, u'0', FALSO, 0x7777}};
    for (const auto &row : rows) {
        char16_t unidad = 0x7777;
        EXPECT_EQ(marlstrhex_decodifica_caracter_u(row.alto, row.bajo, &unidad), row.resultado);
        EXPECT_EQ(unidad, row.unidad) << int(row.alto) << "," << int(row.bajo);
    }
    RecordingHandler handler;
    char16_t d = 0;
    EXPECT_EQ(marlstrhex_codifica_caracter_u(1, nullptr, &d), FALSO);
    EXPECT_EQ(marlstrhex_decodifica_caracter_u(u'4', u'1', nullptr), FALSO);
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"(digito_1) != NULL", "(caracter) != NULL"}));
}
