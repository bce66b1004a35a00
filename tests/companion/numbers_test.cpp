#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "companion/formatter.h"
#include "companion/number_conversion.h"
#include "companion/wide_strings.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {
const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// Bit patterns, so that -0.0 and 0.0 differ.
uint64_t bits(double valor) {
    return std::bit_cast<uint64_t>(valor);
}
double atof_u(const std::u16string &texto) {
    return widestr_nousar_atof(texto.c_str(), "caller", 1);
}
// C's own "%.*G", widened to UTF-16. A NaN keeps its sign, as glibc writes it and the formatter
// does on every platform; the Windows C runtime drops it.
std::u16string printf_g(int precision, double valor) {
    if (std::isnan(valor))
        return std::signbit(valor) ? u"-NAN" : u"NAN";
    char texto[1024];
    const int longitud = std::snprintf(texto, sizeof texto, "%.*G", precision, valor);
    return std::u16string(texto, texto + longitud);
}
} // namespace

// Bounds convert without report; values beyond them saturate, with a report.
TEST(NumberConversion, BoundsConvertAndOutOfRangeValuesSaturateWithAReport) {
    EXPECT_EQ(cambtipo_unsigned_long_a_long(2147483647u), 2147483647);
    EXPECT_EQ(cambtipo_long_a_unsigned_long(0), 0u);
    EXPECT_EQ(cambtipo_unsigned_long_a_unsigned_char(255u), 255u);
    EXPECT_EQ(cambtipo_size_t_a_unsigned_long(size_t{UINT32_MAX}), UINT32_MAX);
    EXPECT_EQ(cambtipo_double_a_long(-2147483648.0), INT32_MIN);
    EXPECT_EQ(cambtipo_double_a_long(2147483647.0), INT32_MAX);
    EXPECT_EQ(cambtipo_double_a_long(-1.9), -1); // truncated toward zero
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
        ASSERT_EQ(handler.conditions(), Conditions{row.condicion});
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
        {-0.49999999999999994, CIERTO, 0}, {4503599627370495.5, FALSO, INT32_MAX},
        {-1073741823.5, CIERTO, -1073741824}, {1073741824.4999998, CIERTO, 1073741824},
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

// What strtod reads in the C locale, and nothing else: only decimal ASCII makes a number.
TEST(WideNumber, ReadsWhatStrtodReadsInTheCLocaleFromDecimalAsciiOnly) {
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
        // Where strtod finds no number the answer is +0.0, as glibc gives; the Windows C runtime
        // keeps the sign it saw ("-x" gives -0.0).
        char *fin = nullptr;
        double esperado = std::strtod(entrada.c_str(), &fin);
        if (fin == entrada.c_str())
            esperado = 0.0;
        EXPECT_EQ(bits(atof_u(std::u16string(entrada.begin(), entrada.end()))), bits(esperado));
    }
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
    for (const auto &row : rows)
        EXPECT_EQ(bits(atof_u(row.texto)), bits(row.valor)) << "row " << &row - rows;
}

// As printf's %G at every precision, specials included. The fast paths must agree with printf
// everywhere they answer, ties included (2.5 at one digit, 0.125 at two), over random bit
// patterns, short decimals of every magnitude, and values a hair from a midpoint of 15 digits.
TEST(Formatter, DoublesAreWrittenAsPrintfG) {
    // clang-format off
    const double valores[] = {
        0.0, -0.0, 0.1, 1.0 / 3, 1e-5, 1e-4, 1e14, 1e15, 1e20, 1e-15, 2147483647.5,
        1234567890123456.0, DBL_MAX, -DBL_MAX, std::numeric_limits<double>::denorm_min(),
        std::nextafter(DBL_MIN, 0.0), kNan, std::copysign(kNan, -1.0), kInf, -kInf, 999999.5,
        0.00009999995};
    // clang-format on
    for (double valor : valores) {
        for (int precision : {-1, 0, 1, 2, 6, 15, 16, 17, 40, 800}) {
            SCOPED_TRACE(testing::Message() << valor << " at precision " << precision);
            EXPECT_EQ(take(copiaforu_nousar_formatea(u"%.*G", precision, valor)),
                      printf_g(precision, valor));
        }
    }
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
            ASSERT_EQ(std::u16string(texto, texto + longitud), printf_g(precision, valor))
                << valor << " at " << precision;
        }
    }
}

// Broken calls are reported and format the rest; arguments after an unknown conversion cannot
// be located, so they are left unread.
TEST(Formatter, IntegersAtTheirLimitsTextAndNumbersMixAndBrokenCallsFormatTheRest) {
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
    RecordingHandler handler;
    const char16_t *nulo = nullptr;
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"[%s]%i", nulo, 3)), u"[]3");
    EXPECT_EQ(take(copiaforu_nousar_formatea(nullptr)), u"");
    EXPECT_EQ(handler.conditions(), (Conditions{"(cadena) != NULL", "(formato) != NULL"}));
    handler.clear();
    EXPECT_EQ(take(copiaforu_nousar_formatea(u"a%-08.3fb%ic%%d%", 1.5, 2)), u"abc%d");
    EXPECT_EQ(handler.conditions(), (Conditions{"default", "default"}));
    EXPECT_EQ(handler.reports()[0].modulo, "tqbase: copiaforu");
}
