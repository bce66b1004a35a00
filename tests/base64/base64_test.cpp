#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <random>

#include "support/recording_handler.h"
#include "tqjson2.h"

namespace {
constexpr uint32_t kUntouched = 0xDEADBEEF;

// A result of `n` bytes as a string, freed; nullopt for null, whose length must be untouched.
template <class Byte> std::optional<std::string> taken(Byte *buffer, uint32_t n) {
    if (!buffer) {
        EXPECT_EQ(n, kUntouched);
        return std::nullopt;
    }
    std::string s(reinterpret_cast<const char *>(buffer), n);
    marlspy_nousar_free_pp(&buffer, 1);
    EXPECT_EQ(buffer, nullptr);
    return s;
}
// The encoder's text must also end where its length says.
std::optional<std::string> encode(const std::string &bytes) {
    uint32_t n = kUntouched;
    char *texto = tqjsonbase64_encode(bytes.data(), static_cast<uint32_t>(bytes.size()), &n);
    if (texto) {
        EXPECT_EQ(std::strlen(texto), n);
    }
    return taken(texto, n);
}
std::optional<std::string> decode(const std::string &text) {
    uint32_t n = kUntouched;
    unsigned char *bytes = tqjsonbase64_decode(text.data(), static_cast<uint32_t>(text.size()), &n);
    return taken(bytes, n);
}
} // namespace

TEST(Base64, KnownVectorsTheLenientDecoderAndTheSizeRule) {
    // clang-format off
    const std::pair<std::string, std::string> kVectors[] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}, {std::string("\0\xFF\xFE", 3), "AP/+"}};
    // clang-format on
    for (const auto &[bytes, text] : kVectors) {
        EXPECT_EQ(encode(bytes), text);
        EXPECT_EQ(decode(text), bytes.empty() ? std::nullopt : std::optional(bytes));
    }
    // The character count is judged first: "YQ==!!!!garbage" has 11. An "=" inside a group
    // stands for the value 0.
    // clang-format off
    const std::pair<std::string, std::optional<std::string>> kDecode[] = {
        {"YW Jj", "abc"}, {"Y\nW\r\nJj\t", "abc"}, {std::string("Y\0W\x80J\xFFj", 7), "abc"},
        {"", std::nullopt}, {" \n\t", std::nullopt}, {"YWJjZA", std::nullopt}, {"YQ==YWJj", "a"},
        {"YQ==!!!!garbage", std::nullopt}, {"YQ==YWJ=", "a"}, {"YWJj====", std::nullopt},
        {"Y===", std::nullopt}, {"=WJj", "\x01\x62"}, {"Y=Jj", "`\x02"}};
    // clang-format on
    for (const auto &[text, bytes] : kDecode)
        EXPECT_EQ(decode(text), bytes) << text;
    // The size rule: 2^30 bytes and more are refused before the input is read.
    const char uno = 'a';
    for (uint32_t len : {1u << 30, (1u << 30) + 1, 3u << 30, 0xFFFFFFFFu}) {
        uint32_t n = kUntouched;
        EXPECT_EQ(tqjsonbase64_encode(&uno, len, &n), nullptr) << len;
        EXPECT_EQ(n, kUntouched);
    }
    char *texto = tqjsonbase64_encode(&uno, 1, nullptr); // out_len is optional
    EXPECT_STREQ(texto, "YQ==");
    marlspy_nousar_free_pp(&texto, 1);
}

// Every length from 0 to 3,100 random bytes: one line of 4 x ceil(n / 3) characters that
// decodes back, also with blanks and foreign bytes strewn in; the empty text is refused.
TEST(Base64, EveryLengthRoundTrips) {
    std::mt19937 azar(20261123);
    for (uint32_t n = 0; n <= 3100; ++n) { // texts past 255 x 16 characters too
        std::string bytes(n, '\0');
        for (char &b : bytes)
            b = static_cast<char>(azar());
        const std::optional<std::string> texto = encode(bytes);
        ASSERT_TRUE(texto);
        ASSERT_EQ(texto->size(), (n + 2) / 3 * 4);
        ASSERT_EQ(texto->find_first_not_of(
                      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
                  std::string::npos);
        ASSERT_EQ(decode(*texto), n ? std::optional(bytes) : std::nullopt) << n;
        if (n % 7 == 0 && n) {
            std::string sucio;
            for (const char c : *texto)
                sucio += azar() % 4 ? std::string(1, c) : std::string(1, c) + " \n\x01\xC3";
            ASSERT_EQ(decode(sucio), bytes) << n;
        }
    }
}
