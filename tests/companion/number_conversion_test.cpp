#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "companion/number_conversion.h"
#include "support/recording_handler.h"

namespace {
const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
} // namespace

TEST(NumberConversion, BoundsConvertWithoutReport) {
    EXPECT_EQ(cambtipo_unsigned_long_a_long(2147483647u), 2147483647);
    EXPECT_EQ(cambtipo_long_a_unsigned_long(0), 0u);
    EXPECT_EQ(cambtipo_unsigned_long_a_unsigned_char(255u), 255u);
    EXPECT_EQ(cambtipo_size_t_a_unsigned_long(size_t{UINT32_MAX}), UINT32_MAX);
    EXPECT_EQ(cambtipo_double_a_long(-2147483648.0), INT32_MIN);
    EXPECT_EQ(cambtipo_double_a_long(2147483647.0), INT32_MAX);
    EXPECT_EQ(cambtipo_double_a_long(-1.9), -1); // truncated toward zero
}

TEST(NumberConversion, OutOfRangeValuesSaturateWithAReport) {
    const struct {
        std::function<int64_t()> llamada;
        int64_t esperado;
        const char *condicion;
    } rows[] = {
        {[] { return cambtipo_unsigned_long_a_long(2147483648u); }, INT32_MAX,
         "valor <= INT32_MAX"},
        {[] { return cambtipo_long_a_unsigned_long(-1); }, 0, "valor >= 0"},
        {[] { return cambtipo_unsigned_long_a_unsigned_char(256u); }, 255, "valor <= UINT8_MAX"},
        {[] { return cambtipo_size_t_a_unsigned_long(size_t{UINT32_MAX} + 1); }, UINT32_MAX,
         "valor <= UINT32_MAX"},
        {[] { return cambtipo_double_a_long(2147483647.5); }, INT32_MAX, "valor <= INT32_MAX"},
        {[] { return cambtipo_double_a_long(-kInf); }, INT32_MIN, "valor >= INT32_MIN"},
        {[] { return cambtipo_double_a_long(kNan); }, 0, "!std::isnan(valor)"}};
    for (const auto &row : rows) {
        RecordingHandler handler;
        EXPECT_EQ(row.llamada(), row.esperado) << row.condicion;
        ASSERT_EQ(handler.conditions(), std::vector<std::string>{row.condicion});
        EXPECT_EQ(handler.reports()[0].modulo, "tqbase: cambtipo");
    }
}

TEST(NumberConversion, DoubleFitsExactlyTheSigned32BitRangeAndRoundtolClampsSilently) {
    // clang-format off
    const struct {
        double valor;
        tqbool cabe;
        int32_t redondeado;
    } rows[] = {
        {2147483647.0, CIERTO, INT32_MAX}, {-2147483648.0, CIERTO, INT32_MIN}, {-0.0, CIERTO, 0},
        {0.5, CIERTO, 1}, {-2.5, CIERTO, -3}, {0.49999999999999994, CIERTO, 0},
        {2147483646.5, CIERTO, INT32_MAX}, {2147483647.5, FALSO, INT32_MAX},
        {2147483648.0, FALSO, INT32_MAX}, {-2147483648.4, FALSO, INT32_MIN},
        {-1e300, FALSO, INT32_MIN}, {kInf, FALSO, INT32_MAX}, {kNan, FALSO, 0}};
    // clang-format on
    for (const auto &row : rows) {
        SCOPED_TRACE(row.valor);
        EXPECT_EQ(cambtipo_se_puede_double_a_long(row.valor), row.cabe);
        EXPECT_EQ(roundtol(row.valor), row.redondeado);
    }
}
