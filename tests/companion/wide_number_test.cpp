#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cstdlib>
#include <string>
#include <vector>

#include "companion/wide_strings.h"
#include "support/recording_handler.h"

namespace {
// Bit patterns, so that -0.0 and 0.0 differ.
uint64_t bits(double valor) {
    return std::bit_cast<uint64_t>(valor);
}

double atof_u(const std::u16string &texto) {
    return widestr_nousar_atof(texto.c_str(), "caller", 1);
}
} // namespace

TEST(WideNumber, ReadsWhatStrtodReadsInTheCLocale) {
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    // clang-format off
    std::vector<std::string> entradas = {
        "0", "-0", "+0", " \t\n\v\f\r42x", "+.5", "-.5", "5.", ".", "-", "+", "", "-x", "1e",
        "1e+", "1E-", "1e5", "1E+5x", "1e-5.5", "-3.25e-2", "1.2.3", "12abc", "1e400", "-1e400",
        "1e-400", "-1e-400", "4.9e-324", "2.4703282292062328e-324", "2.4703282292062327e-324",
        "1e-310", "1.7976931348623157e308", "1.7976931348623159e308", "0e99999999999999999999",
        "1e99999999999999999999", "1e-99999999999999999999", "00000000000000000000000000001.5",
        ".0000000000000000001e19", "123456789012345678901234567890", "9007199254740993"};
    // clang-format on
    // Long digit strings: rounding must see every digit, so nothing may be cut short.
    const std::string ceros(800, '0');
    for (const std::string &larga :
         {"9007199254740993" + ceros + "1", "0." + ceros + "1e801", "0." + ceros + "1e-5",
          "1" + ceros + "e-500", "0." + ceros + "1", "1" + ceros + ceros + ".5",
          "-0." + ceros + "1e400", std::string(5000, '3') + "e-4990"})
        entradas.push_back(larga);
    for (const std::string &entrada : entradas) {
        SCOPED_TRACE(entrada.substr(0, 80));
        const double esperado = std::strtod(entrada.c_str(), nullptr);
        EXPECT_EQ(bits(atof_u(std::u16string(entrada.begin(), entrada.end()))), bits(esperado));
    }
}

TEST(WideNumber, OnlyDecimalAsciiMakesANumber) {
    // No hexadecimal, infinity or NaN forms; no digit of another script; and no unit that
    // narrowing to its low byte would turn into a digit, sign, point or exponent.
    // clang-format off
    const struct {
        const char16_t *texto;
        double valor;
    } rows[] = {{u"0x10", 0.0}, {u"-0X1p3", -0.0}, {u"inf", 0.0}, {u"-Infinity", 0.0},
                {u"nan(1)", 0.0}, {u"\u0661", 0.0}, {u"\u0131", 0.0}, {u"\u012D5", 0.0},
                {u"\u00A05", 0.0}, {u"2\u012E5", 2.0}, {u"2\u01655", 2.0}, {u"7.5\uFF11", 7.5}};
    // clang-format on
    for (size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(bits(atof_u(rows[i].texto)), bits(rows[i].valor));
    }
}

TEST(WideNumber, NullStringIsReportedAgainstTheCaller) {
    RecordingHandler handler;
    EXPECT_EQ(widestr_nousar_atof(nullptr, "caller module", 77), 0.0);
    EXPECT_EQ(handler.reports(), (std::vector<Report>{{"(cadena) != NULL", "caller module", 77}}));
}
