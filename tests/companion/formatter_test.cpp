#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "companion/formatter.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {
// C's own "%.*G", widened to UTF-16.
std::u16string printf_g(int precision, double valor) {
    char texto[1024];
    const int longitud = std::snprintf(texto, sizeof texto, "%.*G", precision, valor);
    return std::u16string(texto, texto + longitud);
}
} // namespace

TEST(Formatter, DoublesAreWrittenAsPrintfG) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    // clang-format off
    const double valores[] = {
        0.0, -0.0, 0.1, 1.0 / 3, 1e-5, 1e-4, 1e14, 1e15, 1e20, 1e-15, 2147483647.5,
        1234567890123456.0, DBL_MAX, -DBL_MAX, std::numeric_limits<double>::denorm_min(),
        std::nextafter(DBL_MIN, 0.0), nan, std::copysign(nan, -1.0), inf, -inf, 999999.5,
        0.00009999995};
    // clang-format on
    for (double valor : valores) {
        for (int precision : {-1, 0, 1, 2, 6, 15, 16, 17, 40, 800}) {
            SCOPED_TRACE(testing::Message() << valor << " at precision " << precision);
            EXPECT_EQ(take(copiaforu_nousar_formatea(u"%.*G", precision, valor)),
                      printf_g(precision, valor));
        }
    }
}

// The fast paths must agree with printf everywhere they answer, ties included (2.5 at one digit,
// 0.125 at two), over random bit patterns, short decimals of every magnitude, and values a hair
// from a midpoint of 15 digits.
TEST(Formatter, GeneralFormatAgreesWithPrintfOverRandomDoubles) {
    uint64_t estado = 88172645463325252u;
    const auto siguiente = [&] { // xorshift64
        estado ^= estado << 13, estado ^= estado >> 7, estado ^= estado << 17;
        return estado;
    };
    char texto[64];
    for (int caso = 0; caso < 60000; ++caso) {
        double valor;
        const uint64_t bits = siguiente();
        if (caso % 3 == 1) {
            std::memcpy(&valor, &bits, sizeof valor);
        } else if (caso % 3 == 2) { // a hair from a midpoint of 15 digits, either side
            std::snprintf(texto, sizeof texto, "%llu5e%d",
                          (unsigned long long)(bits % 1000000000000000u),
                          int(bits >> 40) % 40 - 30);
            valor = std::nextafter(std::strtod(texto, nullptr), (bits >> 63) ? 0.0 : 1e300);
        } else {
            std::snprintf(texto, sizeof texto, "%llue%d", (unsigned long long)(bits % 100000),
                          int(bits >> 40) % 40 - 22);
            valor = std::strtod(texto, nullptr) / (caso % 4 ? 1 : 8);
        }
        for (int precision : {1, 2, 7, 15}) {
            const size_t longitud = copiaforu_nousar_texto_G(valor, precision, texto, sizeof texto);
            char esperado[64];
            std::snprintf(esperado, sizeof esperado, "%.*G", precision, valor);
            ASSERT_EQ(std::string(texto, longitud), esperado) << valor << " at " << precision;
        }
    }
}

TEST(Formatter, IntegersAtTheirLimitsTextAndNumbersMix) {
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"%i %i %i", INT32_MIN, INT32_MAX, 0)),
              u"-2147483648 2147483647 0");
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"%ld.0|%ld.0", INT32_MIN, INT32_MAX)),
              u"-2147483648.0|2147483647.0");
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"%lld %Id", INT64_MIN, INT64_MAX)),
              u"-9223372036854775808 9223372036854775807");
    const char16_t *clave = u"año";
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"\"%s\" : %i, %.*G%%", clave, -7, 17, 0.5)),
              u"\"año\" : -7, 0.5%");
    // Past the stack buffer, then grown again by a long %G.
    const std::u16string largo(1000, u'x');
    const double subnormal = std::nextafter(DBL_MIN, 0.0);
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"<%s>%i %.*G", largo.c_str(), 12, 800, subnormal)),
              u"<" + largo + u">12 " + printf_g(800, subnormal));
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"")), u"");
}

TEST(Formatter, BrokenCallsAreReportedAndFormatTheRest) {
    RecordingHandler handler;
    const char16_t *nulo = nullptr;
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"[%s]%i", nulo, 3)), u"[]3");
    EXPECT_EQ(take(copiaforu_nousar_formatea(nullptr)), u"");
    EXPECT_EQ(handler.conditions(),
              (std::vector<std::string>{"(cadena) != NULL", "(formato) != NULL"}));
    handler.clear();
    // Arguments after an unknown conversion cannot be located, so they are left unread.
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"a%-08.3fb%ic%%d%", 1.5, 2)), u"abc%d");
    EXPECT_EQ(handler.conditions(), (std::vector<std::string>{"default", "default"}));
    EXPECT_EQ(handler.reports()[0].modulo, "tqbase: copiaforu");
}
