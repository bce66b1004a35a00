#include <gtest/gtest.h>

#include <cfloat>
#include <limits>
#include <string>
#include <vector>

#include "companion/decimal_digits.h"
#include "writer/writer.h"

// Every branch: the fill value, the tolerance around zero (-0.5 rounds to -1, which is not
// within it), the 32-bit integral form and its edges, "%.*G" in plain and exponent form, and the
// ".0" that makes an integer text a double. Infinities and NaN are not JSON numbers: an infinity
// takes a number beyond the largest double, a NaN of either sign null.
TEST(NumberText, DoublesTakeTheirExactTexts) {
    const double inf = std::numeric_limits<double>::infinity();
    // clang-format off
    const struct {
        double numero;
        const char *texto;
    } rows[] = {
        {2.0, "2.0"}, {-7.0, "-7.0"}, {3.0000000000000004, "3.0"}, {0.1, "0.1"}, {2.5, "2.5"},
        {-0.5, "-0.5"}, {1.0 / 3, "0.333333333333333"}, {0.30000000000000004, "0.3"},
        {1e-16, "0.0"}, {0.0, "0.0"}, {-0.0, "0.0"}, {5e-324, "0.0"}, {1e-15, "1E-15"},
        {-1e-15, "-1E-15"}, {0.0001, "0.0001"}, {1e-05, "1E-05"}, {3e-05, "3E-05"},
        {123456.7, "123456.7"}, {2147483647.0, "2147483647.0"}, {-2147483648.0, "-2147483648.0"},
        {2147483647.5, "2147483647.5"}, {-2147483648.5, "-2147483648.5"},
        {2147483648.0, "2147483648.0"}, {3e9, "3000000000.0"}, {1e14, "100000000000000.0"},
        {1e15, "1E+15"}, {1234567890123456.0, "1.23456789012346E+15"}, {1e20, "1E+20"},
        {DBL_MAX, "1.7976931348623158e+308"}, {-DBL_MAX, "-1.79769313486232E+308"}, {inf, "1E+999"},
        {-inf, "-1E+999"}, {std::numeric_limits<double>::quiet_NaN(), "null"},
        {-std::numeric_limits<double>::quiet_NaN(), "null"}};
    // clang-format on
    for (const auto &row : rows) {
        char texto[i_TAM_TEXTO_DOUBLE];
        EXPECT_EQ(std::string(texto, i_texto_double(row.numero, texto)), row.texto);
    }
}

// Integers on each side of every change in digit count, both signs, and the ends of the range.
TEST(NumberText, IntegersTakeTheirDecimalTexts) {
    std::vector<int32_t> values = {0, INT32_MIN, INT32_MAX, INT32_MIN + 1};
    for (int64_t potencia = 1; potencia <= 1000000000; potencia *= 10)
        for (int64_t v : {potencia - 1, potencia, potencia + 1})
            values.insert(values.end(), {int32_t(v), int32_t(-v)});
    for (const int32_t v : values) {
        char texto[16];
        EXPECT_EQ(std::string(texto, i_escribe_decimal(texto, v)), std::to_string(v));
    }
}
