#include "utf.h"

#include <cstdint>

namespace tqjson {

namespace {

constexpr char32_t replacement_character = 0xFFFD;

bool is_high_surrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool is_low_surrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append_utf8(std::string &out, char32_t code_point) {
    if (code_point < 0x80) {
        out += static_cast<char>(code_point);
    } else if (code_point < 0x800) {
        out += static_cast<char>(0xC0 | (code_point >> 6));
        out += static_cast<char>(0x80 | (code_point & 0x3F));
    } else if (code_point < 0x10000) {
        out += static_cast<char>(0xE0 | (code_point >> 12));
        out += static_cast<char>(0x80 | ((code_point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code_point & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code_point >> 18));
        out += static_cast<char>(0x80 | ((code_point >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code_point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code_point & 0x3F));
    }
}

} // namespace

std::optional<std::u16string> utf16_from_utf8(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        char32_t code_point = 0;
        int continuations = 0;
        char32_t minimum = 0;
        if (lead < 0x80) {
            code_point = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            code_point = lead & 0x1F;
            continuations = 1;
            minimum = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            code_point = lead & 0x0F;
            continuations = 2;
            minimum = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            code_point = lead & 0x07;
            continuations = 3;
            minimum = 0x10000;
        } else {
            return std::nullopt;
        }
        for (int k = 0; k < continuations; ++k, ++i) {
            if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
                return std::nullopt;
            code_point = (code_point << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
        }
        if (code_point < minimum || code_point > 0x10FFFF || is_high_surrogate(code_point) ||
            is_low_surrogate(code_point))
            return std::nullopt;
        if (code_point < 0x10000) {
            out += static_cast<char16_t>(code_point);
        } else {
            code_point -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (code_point >> 10));
            out += static_cast<char16_t>(0xDC00 + (code_point & 0x3FF));
        }
    }
    return out;
}

std::string utf8_from_utf16(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t unit = text[i];
        if (is_high_surrogate(unit) && i + 1 < text.size() && is_low_surrogate(text[i + 1])) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (is_high_surrogate(unit) || is_low_surrogate(unit)) {
            unit = replacement_character;
        }
        append_utf8(out, unit);
    }
    return out;
}

} // namespace tqjson
