// Conversions between the UTF-8 of the command line and standard streams and the UTF-16 of the
// library's wide texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tqjson {

// The UTF-16 form of well-formed UTF-8 text; nothing for ill-formed bytes, overlong forms,
// encoded surrogates and values beyond U+10FFFF.
std::optional<std::u16string> utf16_from_utf8(std::string_view text);

// The UTF-8 form of UTF-16 text; a surrogate without its partner becomes U+FFFD.
std::string utf8_from_utf16(std::u16string_view text);

} // namespace tqjson
