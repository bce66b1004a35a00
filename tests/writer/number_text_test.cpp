#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "support/recording_handler.h"
#include "writer/writer.h"

namespace {
std::string text_of_double(double numero) {
    char texto[i_TAM_TEXTO_DOUBLE];
    return std::string(texto, i_texto_double(numero, texto));
}
} // namespace

// Every branch: the fill value, the tolerance around zero, the 32-bit integral form and its
// edges, "%.*G" in plain and exponent form, and the ".0" that makes an integer text a double.
TEST(NumberText, DoublesTakeTheirExactTexts) {
    RecordingHandler handler;
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        double numero;
        const char *texto;
    } rows[] = {{2.0, "2.0"},
                {-7.0, "-7.0"},
                {3.0000000000000004, "3.0"},
                {0.1, "0.1"},
                {2.5, "2.5"},
                {-0.5, "-0.5"}, // rounds to -1, which is not within the tolerance
                {1.0 / 3, "0.333333333333333"},
                {0.30000000000000004, "0.3"},
                {1e-16, "0.0"},
                {0.0, "0.0"},
                {-0.0, "0.0"},
                {4.9406564584124654e-324, "0.0"},
                {1e-15, "1E-15"},
                {-1e-15, "-1E-15"},
                {0.0001, "0.0001"},
                {1e-05, "1E-05"},
                {3e-05, "3E-05"},
                {123456.7, "123456.7"},
                {2147483647.0, "2147483647.0"},
                {-2147483648.0, "-2147483648.0"},
                {2147483647.5, "2147483647.5"},
                {-2147483648.5, "-2147483648.5"},
                {2147483648.0, "2147483648.0"},
                {3e9, "3000000000.0"},
                {1e14, "100000000000000.0"},
                {1e15, "1E+15"},
                {1234567890123456.0, "1.23456789012346E+15"},
                {1e20, "1E+20"},
                {DBL_MAX, "1.7976931348623158e+308"},
                {-DBL_MAX, "-1.79769313486232E+308"},
                // Not JSON numbers: what the rules above make of them, kept stable.
                {inf, "INF.0"},
                {-inf, "-INF.0"},
                {std::numeric_limits<double>::quiet_NaN(), "NAN.0"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.texto);
        EXPECT_EQ(text_of_double(row.numero), row.texto);
    }
    EXPECT_TRUE(handler.reports().empty());
}
