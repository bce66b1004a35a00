#include <cfloat>
#include <cmath>

#include "persist/persist_test_support.h"

// A label of its own for each value of a run: u"da", u"db", ...
static std::u16string label(char16_t run, size_t i) {
    return {run, char16_t(u'a' + i)};
}

// A record saved field by field, written, read back and loaded. The writer keeps 15 significant
// digits (1/3 needs 17), drops the sign of zero, writes a double within 1e-15 of a 32-bit integer
// as that integer with ".0", and anything below 1e-15 in magnitude as 0.0; the reader takes a minus
// sign and a magnitude, and 2147483648 is beyond a 32-bit integer.
TEST(ScalarValues, ARecordSavedWrittenAndReadBackLoadsWhatTheWrittenFormCarries) {
    constexpr double kKept[] = {0.1,     -2.5,     1e300,          1e-15,
                                1.5e-7,  3.25e15,  123456789012.0, -0.3,
                                DBL_MAX, INFINITY, -INFINITY,      6.02214076e23};
    const std::pair<double, double> kChanged[] = {{1.0 / 3, 0.333333333333333},
                                                  {-0.0, 0.0},
                                                  {1 + DBL_EPSILON, 1.0},
                                                  {-1e-300, 0.0},
                                                  {5e-324, 0.0}};
    const char16_t *const kTexts[] = {u"", u"plain", u"q\"uote \\ back\tslash\n",
                                      u"\u00e9\u20ac\U0001F600", u"lone \xD800 surrogate"};
    RecordingHandler handler;
    Tree r{obj({})};
    tqjson2_graba_long(u"min", INT32_MIN, r.raiz);
    tqjson2_graba_long(u"min1", INT32_MIN + 1, r.raiz);
    tqjson2_graba_long(u"max", INT32_MAX, r.raiz);
    tqjson2_graba_ulong(u"u", 2147483647u, r.raiz);
    tqjson2_graba_version(u"v0", 0, r.raiz);
    tqjson2_graba_version(u"v255", 255, r.raiz);
    tqjson2_graba_tqbool(u"si", CIERTO, r.raiz);
    tqjson2_graba_tqbool(u"no", FALSO, r.raiz);
    tqjson2_graba_cadena_ansi(u"ansi", "caf\xE9 \x80 \"x\"", r.raiz);
    tqjson2_append_time64_t_a_objeto(r.raiz, u"t64", -8000000000LL);
    tqjson2_append_time_t_a_objeto(r.raiz, u"t", 1700000000);
    for (size_t i = 0; i < std::size(kKept); ++i)
        tqjson2_graba_double(label(u'd', i).c_str(), kKept[i], r.raiz);
    for (size_t i = 0; i < std::size(kChanged); ++i)
        tqjson2_graba_double(label(u'c', i).c_str(), kChanged[i].first, r.raiz);
    for (size_t i = 0; i < std::size(kTexts); ++i)
        tqjson2_graba_cadena_unicode(label(u's', i).c_str(), kTexts[i], r.raiz);

    Tree l = through_file(r.raiz);
    EXPECT_EQ(tqjson2_lee_long(u"min", 0, l.raiz), INT32_MIN + 1);
    EXPECT_EQ(tqjson2_lee_long(u"min1", 0, l.raiz), INT32_MIN + 1);
    EXPECT_EQ(tqjson2_lee_long(u"max", 0, l.raiz), INT32_MAX);
    EXPECT_EQ(tqjson2_lee_ulong(u"u", 0, l.raiz), 2147483647u);
    EXPECT_EQ(tqjson2_lee_version_opcional(u"v0", 9, l.raiz), 0);
    EXPECT_EQ(tqjson2_lee_version_opcional(u"v255", 9, l.raiz), 255);
    EXPECT_EQ(tqjson2_lee_tqbool(u"si", FALSO, l.raiz), CIERTO);
    EXPECT_EQ(tqjson2_lee_tqbool(u"no", CIERTO, l.raiz), FALSO);
    EXPECT_EQ(take(tqjson2_lee_cadena_ansi(u"ansi", "", l.raiz)), "caf\xE9 \x80 \"x\"");
    EXPECT_EQ(tqjson2_lee_time64_t(u"t64", 0, l.raiz), -8000000000LL);
    EXPECT_EQ(tqjson2_lee_time_t(u"t", 0, l.raiz), 1700000000);
    for (size_t i = 0; i < std::size(kKept); ++i)
        EXPECT_EQ(bits(tqjson2_lee_double(label(u'd', i).c_str(), 0, l.raiz)), bits(kKept[i]))
            << kKept[i];
    for (size_t i = 0; i < std::size(kChanged); ++i)
        EXPECT_EQ(bits(tqjson2_lee_double(label(u'c', i).c_str(), -1, l.raiz)),
                  bits(kChanged[i].second))
            << kChanged[i].first;
    for (size_t i = 0; i < std::size(kTexts); ++i)
        EXPECT_EQ(take(tqjson2_lee_cadena_unicode(label(u's', i).c_str(), u"?", l.raiz)),
                  kTexts[i]);
    EXPECT_EQ(handler.conditions(),
              (Conditions{"cambtipo_se_puede_double_a_long(cte_double) == CIERTO",
                          "valor <= INT32_MAX"}));
}

// Readers accept only their kinds and answer anything else with the default, unreported; text
// readers return new texts and leave the default alone. Times read digits through a double (cut
// toward zero; beyond 64 bits the lowest value), integers widened.
TEST(ScalarValues, ReadersGiveTheirDefaultForAnyOtherKind) {
    const std::pair<const char *, int64_t> kTimes[] = {
        {"9007199254740993", 9007199254740992LL}, // 2^53 + 1: the nearest double
        {"-5", -5},
        {"  12.9xyz", 12},
        {"1e30", INT64_MIN},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775807", INT64_MIN}, // rounds up to 2^63
        {"yes", 0}};                        // no number in the text
    Tree o{obj({{u"i", integer(-1)},
                {u"d", dbl(-1.9)},
                {u"T", plain("TRUE")},
                {u"F", plain("False")},
                {u"b", boolean(CIERTO)},
                {u"n", null_node()},
                {u"o", obj({})},
                {u"e", escaped(u"a\\b\t\"")},
                {u"dos", integer(1)},
                {u"dos", integer(2)}})};
    for (size_t i = 0; i < std::size(kTimes); ++i)
        tqjson2_append_cadena_ansi_a_objeto(o.raiz, label(u't', i).c_str(), kTimes[i].first);
    EXPECT_EQ(tqjson2_lee_long(u"i", 7, o.raiz), -1);
    EXPECT_EQ(tqjson2_lee_ulong(u"i", 7, o.raiz), 4294967295u);
    EXPECT_EQ(tqjson2_lee_long(u"d", 7, o.raiz), 7);
    EXPECT_EQ(tqjson2_lee_ulong(u"d", 7, o.raiz), 7u);
    EXPECT_EQ(tqjson2_lee_double(u"i", 0.5, o.raiz), 0.5);
    EXPECT_EQ(tqjson2_lee_double(u"d", 0.5, o.raiz), -1.9);
    EXPECT_EQ(tqjson2_lee_tqbool(u"T", FALSO, o.raiz), CIERTO);
    EXPECT_EQ(tqjson2_lee_tqbool(u"F", CIERTO, o.raiz), FALSO);
    EXPECT_EQ(tqjson2_lee_tqbool(u"tg", 2, o.raiz), 2);
    EXPECT_EQ(tqjson2_lee_tqbool(u"i", 2, o.raiz), 2);
    EXPECT_EQ(tqjson2_lee_version_opcional(u"b", 3, o.raiz), 3);
    EXPECT_EQ(tqjson2_lee_long(u"dos", 7, o.raiz), 7); // a label twice counts as absent
    EXPECT_EQ(tqjson2_lee_long(u"I", 7, o.raiz), 7);   // letter case counts
    EXPECT_EQ(tqjson2_lee_cadena_ansi_opcional(u"i", o.raiz), nullptr);
    EXPECT_EQ(tqjson2_lee_cadena_unicode_opcional(u"o", o.raiz), nullptr);
    EXPECT_EQ(tqjson2_lee_cadena_unicode_opcional(u"falta", o.raiz), nullptr);
    EXPECT_EQ(take(tqjson2_lee_cadena_unicode_opcional(u"tg", o.raiz)), u"yes");
    EXPECT_EQ(take(tqjson2_lee_cadena_unicode(u"e", u"", o.raiz)), u"a\\b\t\"");
    EXPECT_EQ(take(tqjson2_lee_cadena_ansi(u"e", "", o.raiz)), "a\\b\t\"");
    const char16_t defecto[] = u"defecto";
    char16_t *copia = tqjson2_lee_cadena_unicode(u"falta", defecto, o.raiz);
    EXPECT_NE(copia, defecto);
    EXPECT_EQ(take(copia), u"defecto");
    const char defecto_ansi[] = "d";
    char *copia_ansi = tqjson2_lee_cadena_ansi(u"falta", defecto_ansi, o.raiz);
    EXPECT_NE(copia_ansi, defecto_ansi);
    EXPECT_EQ(take(copia_ansi), "d");
    EXPECT_EQ(tqjson2_lee_time64_t(u"i", 0, o.raiz), -1);
    EXPECT_EQ(tqjson2_lee_time64_t(u"d", 0, o.raiz), -1);
    EXPECT_EQ(tqjson2_lee_time_t(u"b", 42, o.raiz), 42);
    EXPECT_EQ(tqjson2_lee_time_t(u"n", 42, o.raiz), 42);
    EXPECT_EQ(tqjson2_lee_time_t(u"falta", 42, o.raiz), 42);
    EXPECT_EQ(tqjson2_lee_time_t(u"tg", 42, o.raiz), 0);
    for (size_t i = 0; i < std::size(kTimes); ++i)
        EXPECT_EQ(tqjson2_lee_time64_t(label(u't', i).c_str(), 1, o.raiz), kTimes[i].second)
            << kTimes[i].first;
    // Nodes that are not objects hold no member.
    for (tqjson2_nodo_t *no_objeto : {plain("x"), arr({integer(1)}), boolean(CIERTO)}) {
        Tree n{no_objeto};
        EXPECT_EQ(tqjson2_lee_long(u"i", 5, n.raiz), 5);
        EXPECT_EQ(tqjson2_lee_double(u"d", 5, n.raiz), 5);
        EXPECT_EQ(tqjson2_lee_time64_t(u"i", 5, n.raiz), 5);
        EXPECT_EQ(tqjson2_lee_cadena_ansi_opcional(u"s", n.raiz), nullptr);
        EXPECT_EQ(take(tqjson2_lee_cadena_ansi(u"s", "def", n.raiz)), "def");
    }
}

// Reports: a label already present (appended all the same), a node that is no object, numbers
// out of the conversions' ranges, and a null node, which only the time readers let pass.
TEST(ScalarValues, WritersReportALabelPresentAndNumbersOutOfRange) {
    RecordingHandler handler;
    Tree o{obj({})};
    tqjson2_graba_double(u"x", 1.5, o.raiz);
    tqjson2_graba_double(u"x", 2.5, o.raiz);
    EXPECT_EQ(handler.conditions(), (Conditions{"existe == FALSO", "nodo_dato == NULL"}));
    EXPECT_EQ(minified(o.raiz), "{\"x\" : 1.5,\"x\" : 2.5}");
    EXPECT_EQ(tqjson2_lee_double(u"x", 0, o.raiz), 0);
    handler.clear();

    tqjson2_graba_ulong(u"u", 4294967295u, o.raiz);
    tqjson2_graba_long(u"big", 256, o.raiz);
    tqjson2_graba_long(u"neg", -1, o.raiz);
    EXPECT_EQ(tqjson2_lee_long(u"u", 0, o.raiz), INT32_MAX);
    EXPECT_EQ(tqjson2_lee_version_opcional(u"big", 0, o.raiz), 255);
    EXPECT_EQ(tqjson2_lee_version_opcional(u"neg", 9, o.raiz), 0);
    Tree a{arr({})};
    tqjson2_graba_tqbool(u"b", CIERTO, a.raiz);
    EXPECT_EQ(minified(a.raiz), "[]");
    EXPECT_EQ(tqjson2_lee_long(u"i", 3, nullptr), 3);
    EXPECT_EQ(tqjson2_lee_cadena_unicode_opcional(u"i", nullptr), nullptr);
    EXPECT_EQ(tqjson2_lee_time_t(u"i", 3, nullptr), 3);
    EXPECT_EQ(tqjson2_lee_time64_t(u"i", 3, nullptr), 3);
    EXPECT_EQ(
        handler.conditions(),
        (Conditions{"valor <= INT32_MAX", "valor <= UINT8_MAX", "valor >= 0",
                    "nodo_objeto->tipo == TQJSON_TIPO_OBJETO", "objeto->tipo == TQJSON_TIPO_OBJETO",
                    "(nodo) != NULL", "(nodo) != NULL"}));
}

// The guarded reader: a fault or a report while reading gives the placeholder, and the
// process goes on; the report itself still reaches the handler.
TEST(ScalarValues, TheGuardedReaderGivesThePlaceholderOnAFault) {
    const auto seguro = tqjson2_lee_cadena_unicode_seguro;
    const std::u16string marca = u"<Readed uninitialized variable>";
    RecordingHandler handler;
    Tree o{obj({{u"s", escaped(u"texto")}})};
    const auto *basura = reinterpret_cast<const char16_t *>(0x10);
    EXPECT_EQ(take(seguro(u"s", u"d", o.raiz)), u"texto");
    EXPECT_EQ(take(seguro(u"falta", u"d", o.raiz)), u"d");
    EXPECT_EQ(take(seguro(u"falta", basura, o.raiz)), marca);
    EXPECT_EQ(take(seguro(basura, u"d", o.raiz)), marca);
    EXPECT_TRUE(handler.reports().empty());
    EXPECT_EQ(take(seguro(u"s", u"d", nullptr)), marca);
    // A bad "\u00" is reported with no text in hand, so the caught report leaks nothing (ASan).
    Tree e{nullptr};
    const char texto[] = "{\"s\":\"\\u00zz\\u00\"}";
    ASSERT_EQ(tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(texto, &e.raiz), CIERTO);
    EXPECT_EQ(take(seguro(u"s", u"d", e.raiz)), marca);
    EXPECT_EQ(handler.conditions(), (Conditions{"(nodo) != NULL", "se_decodifica == CIERTO"}));
    EXPECT_EQ(minified(o.raiz), "{\"s\" : \"texto\"}");
}
