#include <gtest/gtest.h>

#include <cstring>
#include <random>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "companion/unicode.h"
#include "support/recording_handler.h"
#include "support/texts.h"

namespace {
std::u16string to_wide(const std::string &utf8) {
    return take(unicode_convierte_UTF8_a_UNICODE(utf8.c_str()));
}
std::string to_utf8(const std::u16string &wide) {
    return take(unicode_convierte_UNICODE_a_UTF8(wide.c_str()));
}
} // namespace

// Each maximal ill-formed subpart of UTF-8 becomes one U+FFFD. Letters next to hexadecimal
// escapes are x, y, z, w, q, which cannot extend the escape. Unpaired surrogates are written as
// three bytes each and read back as they were.
TEST(Unicode, ConvertsBothWaysAndReplacesEachMaximalIllFormedSubpartOfUtf8) {
    const struct {
        const char *label, *utf8;
        std::u16string wide;
        bool both_ways = false;
    } rows[] = {
        {"empty", "", u"", true},
        {"ascii", "x~\x7F", u"x~\x7F", true},
        {"edges", "\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"\x80\x7FF\x800\xFFFF", true},
        {"edges after DEL", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF",
         u"\x7F\x80\x7FF\x800\xFFFF", true},
        {"pairs", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\xF0\x9F\x98\x80",
         u"\xD800\xDC00\xDBFF\xDFFF\xD83D\xDE00", true},
        {"high at end", "x\xED\xA0\x80", u"x\xD800", true},
        {"high then high", "\xED\xAF\xBF\xED\xA0\x80", u"\xDBFF\xD800", true},
        {"high then ascii", "\xED\xA0\x80q", u"\xD800q", true},
        {"lone low", "\xED\xB0\x80", u"\xDC00", true},
        {"low then high", "\xED\xBF\xBF\xED\xAF\xBF", u"\xDFFF\xDBFF", true},
        {"overlong", "\xC0\xAF\xC1\xBF\xE0\x80\xAF\xF0\x8F\xBF\xBF", std::u16string(11, 0xFFFD)},
        {"truncated at end", "x\xF0\x9F\x98", u"x\xFFFD"},
        {"truncated 2 at end", "\xC3", u"\xFFFD"},
        {"truncated in text", "\xE2\x82q\xF1\x80y", u"\xFFFDq\xFFFDy"},
        {"lone continuations", "\x80\xBFx", u"\xFFFD\xFFFDx"},
        {"F5 and up, above 10FFFF", "\xF5\x80\xF8\xFF\xF4\x90\x80\x80", std::u16string(8, 0xFFFD)},
        {"generalised surrogates", "\xED\xA0\x80\xED\xBF\xBF", u"\xD800\xDFFF"},
        {"truncated surrogate", "\xED\xA0x", u"\xFFFDx"},
        {"mixed", "x\xF1\x80\x80\xE1\x80\xC2y\x80z\x80\xBFw",
         u"x\xFFFD\xFFFD\xFFFDy\xFFFDz\xFFFD\xFFFDw"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(to_wide(row.utf8), row.wide);
        if (row.both_ways) {
            EXPECT_EQ(to_utf8(row.wide), row.utf8);
        }
    }
}

TEST(Unicode, EveryUnitAloneAndEverySurrogateCombinationRoundTrip) {
    for (unsigned u = 1; u <= 0xFFFF; ++u) {
        const std::u16string wide(1, char16_t(u));
        const std::string utf8 = to_utf8(wide);
        ASSERT_EQ(utf8.size(), u < 0x80 ? 1u : u < 0x800 ? 2u : 3u) << std::hex << u;
        ASSERT_EQ(to_wide(utf8), wide) << std::hex << u;
    }
    std::u16string pairs, unpaired;
    for (char16_t alto = 0xD800; alto <= 0xDBFF; ++alto)
        for (char16_t bajo = 0xDC00; bajo <= 0xDFFF; ++bajo)
            pairs += {alto, bajo};
    for (char16_t u = 0xDFFF; u >= 0xD800; --u) // lows first, then highs followed by highs
        unpaired += u;
    const std::string utf8_pairs = to_utf8(pairs), utf8_unpaired = to_utf8(unpaired);
    EXPECT_EQ(utf8_pairs.size(), 4u * 1024 * 1024);
    EXPECT_EQ(utf8_unpaired.size(), 3u * 2048);
    EXPECT_TRUE(to_wide(utf8_pairs) == pairs);
    EXPECT_TRUE(to_wide(utf8_unpaired) == unpaired);
}

// ANSI is Windows-1252: bytes 0x80 to 0xA0, where it differs from Latin-1 or leaves C1 controls
// as they are, then Latin-1 and ASCII; every byte comes back from UTF-8 as it was. What it
// cannot hold becomes one question mark per character.
TEST(Unicode, AnsiIsWindows1252) {
#if defined(_WIN32)
    // The ANSI code page is the system's: these cases hold where it is Windows-1252, as under
    // wine in the tests' locale.
    ASSERT_EQ(GetACP(), 1252u);
#endif
    std::string ansi, todos;
    for (int b = 1; b < 256; ++b)
        todos += char(b);
    for (int b = 0x80; b <= 0xA0; ++b)
        ansi += char(b);
    ansi += "\xE9\xFFx";
    const std::u16string wide = u"€\x81‚ƒ„…†‡ˆ‰Š‹Œ\x8DŽ\x8F\x90‘’“”•–—˜™š›œ\x9DžŸ\xA0éÿx";
    const char *utf8 =
        "€\xC2\x81‚ƒ„…†‡ˆ‰Š‹Œ\xC2\x8DŽ\xC2\x8F\xC2\x90‘’“”•–—˜™š›œ\xC2\x9DžŸ\xC2\xA0éÿx";
    EXPECT_EQ(take(unicode_convierte_ANSI_a_UTF8(ansi.c_str())), utf8);
    EXPECT_EQ(take(unicode_convierte_UTF8_a_ANSI(utf8)), ansi);
    EXPECT_EQ(take(unicode_UNICODE_a_ANSI(wide.c_str())), ansi);
    const std::string todos_utf8 = take(unicode_convierte_ANSI_a_UTF8(todos.c_str()));
    EXPECT_EQ(take(unicode_convierte_UTF8_a_ANSI(todos_utf8.c_str())), todos);
    const struct {
        const char *label, *utf8;
        std::u16string wide;
        const char *ansi;
    } rows[] = {{"C1 held by 1252 letters", "\xC2\x80\xC2\x9F", u"\x80\x9F", "??"},
                {"beyond Latin-1", "x\xC4\x80\xE4\xB8\xADy", u"x\x100\x4E2Dy", "x??y"},
                {"pair", "\xF0\x9F\x98\x80z", u"\xD83D\xDE00z", "?z"},
                {"unpaired surrogates", "\xED\xB0\x80\xED\xA0\x80", u"\xDC00\xD800", "??"},
                {"invalid UTF-8", "\xC0\xAF\xE2\x82q\xF4\x90\x80\x80",
                 u"\xFFFD\xFFFD\xFFFDq\xFFFD\xFFFD\xFFFD\xFFFD", "???q????"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(take(unicode_convierte_UTF8_a_ANSI(row.utf8)), row.ansi);
        EXPECT_EQ(take(unicode_UNICODE_a_ANSI(row.wide.c_str())), row.ansi);
    }
}

TEST(Unicode, NullInputIsReportedAndGivesAnEmptyString) {
    RecordingHandler handler;
    EXPECT_EQ(take(unicode_convierte_UTF8_a_UNICODE(nullptr)), u"");
    EXPECT_EQ(take(unicode_convierte_UNICODE_a_UTF8(nullptr)), "");
    EXPECT_EQ(take(unicode_convierte_ANSI_a_UTF8(nullptr)), "");
    EXPECT_EQ(take(unicode_convierte_UTF8_a_ANSI(nullptr)), "");
    EXPECT_EQ(take(unicode_UNICODE_a_ANSI(nullptr)), "");
    EXPECT_EQ(handler.conditions(),
              (Conditions{"(texto_utf8) != NULL", "(texto) != NULL", "(texto_ansi) != NULL",
                          "(texto_utf8) != NULL", "(texto) != NULL"}));
}

// The writer copies "stable" text as it is, so a stable text must read back to its own bytes.
TEST(Unicode, StableUtf8ReadsBackToItsOwnBytes) {
    const struct {
        const char *utf8;
        tqbool estable;
    } rows[] = {{"", CIERTO},
                {"plain ascii, long enough for a word at a time", CIERTO},
                {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF"
                 "\xBF",
                 CIERTO},
                {"\xED\xA0\x80", FALSO},             // a surrogate's generalised form
                {"\xED\xA0\xBD\xED\xB8\x80", FALSO}, // two that pair up when read
                {"abcdefgh\xC0\xAF", FALSO},         // overlong, after a whole word
                {"\xE2\x82", FALSO},                 // cut short
                {"\xF4\x90\x80\x80", FALSO}};        // above U+10FFFF
    for (const auto &row : rows) {
        SCOPED_TRACE(row.utf8);
        size_t longitud = 99;
        EXPECT_EQ(unicode_es_UTF8_estable(row.utf8, &longitud), row.estable);
        EXPECT_EQ(longitud, std::strlen(row.utf8));
    }
    // Stable exactly when the text reads back to its own bytes and holds no encoded surrogate
    // (one alone reads back to itself too). Random texts: whole characters of every length,
    // some with one byte changed, dropped or added, so that well-formed texts are common, run
    // over several sixteen-byte steps, and break at every place of one.
    const auto reference = [](const std::string &s) {
        for (size_t i = 0; i + 1 < s.size(); ++i)
            if (s[i] == '\xED' && static_cast<unsigned char>(s[i + 1]) >= 0xA0)
                return false;
        return to_utf8(to_wide(s)) == s;
    };
    const char *characters[] = {"a",
                                "\x7F",
                                "\xC2\x80",
                                "\xDF\xBF",
                                "\xE0\xA0\x80",
                                "\xE3\x81\x82",
                                "\xED\x9F\xBF",
                                "\xEF\xBF\xBF",
                                "\xF0\x90\x80\x80",
                                "\xF4\x8F\xBF\xBF"};
    std::mt19937 random(12345);
    int estables = 0;
    for (int caso = 0; caso < 60000; ++caso) {
        std::string s;
        for (size_t n = random() % 24; n > 0; --n)
            s += characters[random() % std::size(characters)];
        if (!s.empty() && random() % 2) {
            const size_t at = random() % s.size();
            const unsigned cambio = random() % 3;
            if (cambio == 0)
                s[at] = static_cast<char>(random() % 255 + 1);
            else if (cambio == 1)
                s.erase(at, 1);
            else
                s.insert(at, 1, static_cast<char>(0x80 + random() % 0x80));
        }
        SCOPED_TRACE(s);
        size_t longitud = 0;
        const tqbool estable = unicode_es_UTF8_estable(s.c_str(), &longitud);
        ASSERT_EQ(estable == CIERTO, reference(s));
        estables += estable == CIERTO;
    }
    EXPECT_GT(estables, 20000); // both answers are drawn often
}
