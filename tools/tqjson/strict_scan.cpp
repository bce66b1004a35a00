#include "strict_scan.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "document.h"

namespace tqjson {

namespace {

// The library nests no deeper than this.
constexpr size_t deepest = 1024;

enum class Kind : uint8_t {
    end,
    error, // a character that begins no token, or a broken string
    minus,
    open_array,
    close_array,
    open_object,
    close_object,
    comma,
    colon,
    word, // a word that is not true, false or null
    literal,
    integer,
    real,
    true_word,
    false_word,
    null_word,
};

struct Token {
    Kind kind = Kind::end;
    size_t begin = 0;
    size_t end = 0;
    const char *error = ""; // what is wrong, for an error token
};

// The token of a one-character punctuation mark; Kind::end for any other character.
Kind punctuation_kind(char c) {
    constexpr std::string_view marks = "{}[],:-";
    constexpr Kind kinds[] = {Kind::open_object, Kind::close_object, Kind::open_array,
                              Kind::close_array, Kind::comma,        Kind::colon,
                              Kind::minus};
    const size_t at = c == '\0' ? std::string_view::npos : marks.find(c);
    return at == std::string_view::npos ? Kind::end : kinds[at];
}

// The library's blanks; JSON's are the first four.
bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
bool is_word_start(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool is_hex(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Bytes of the UTF-8 sequence led by `lead`, as the library's scanner steps over a character;
// 1 for a byte that leads none.
size_t sequence_length(unsigned char lead) {
    return lead >= 0xF0 && lead <= 0xF7 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}

enum class Utf8 { valid, surrogate, invalid };

// Whether the sequence at `at` is well-formed UTF-8; `length` receives the bytes it takes, at
// least 1.
Utf8 check_utf8(std::string_view text, size_t at, size_t *length) {
    const auto lead = static_cast<unsigned char>(text[at]);
    *length = 1;
    if (lead < 0x80)
        return Utf8::valid;
    const size_t expected = sequence_length(lead);
    if (expected == 1 || lead > 0xF4 || lead == 0xC0 || lead == 0xC1)
        return Utf8::invalid;
    char32_t code_point = lead & (0x7F >> expected);
    for (size_t k = 1; k < expected; ++k) {
        if (at + k >= text.size() || (static_cast<unsigned char>(text[at + k]) & 0xC0) != 0x80)
            return Utf8::invalid;
        code_point = (code_point << 6) | (static_cast<unsigned char>(text[at + k]) & 0x3F);
    }
    *length = expected;
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code_point < least[expected] || code_point > 0x10FFFF)
        return Utf8::invalid;
    return code_point >= 0xD800 && code_point <= 0xDFFF ? Utf8::surrogate : Utf8::valid;
}

std::string hex4(unsigned value) {
    char text[8];
    std::snprintf(text, sizeof text, "%04X", value);
    return text;
}

// A short quotation of `text` for a message.
std::string quoted(std::string_view text) {
    constexpr size_t longest = 32;
    if (text.size() > longest)
        return std::string(text.substr(0, longest - 3)) + "...";
    return std::string(text);
}

// Finds the line and column of byte offsets, walking forward from the last one asked.
class Places {
  public:
    Places(std::string_view text, uint32_t first_line) : text_(text), first_line_(first_line) {}

    Place at(size_t offset) {
        if (offset < offset_)
            offset_ = 0, line_ = 0, column_ = 0;
        for (; offset_ < offset && offset_ < text_.size(); ++offset_) {
            const auto c = static_cast<unsigned char>(text_[offset_]);
            if (c == '\n') {
                ++line_;
                column_ = 0;
            } else if ((c & 0xC0) != 0x80) { // continuation bytes add no unit
                column_ += c >= 0xF0 ? 2 : 1;
            }
        }
        return {first_line_ + line_, column_ + 1};
    }

  private:
    std::string_view text_;
    uint32_t first_line_;
    size_t offset_ = 0;
    uint32_t line_ = 0;
    uint32_t column_ = 0;
};

class StrictReader {
  public:
    StrictReader(std::string_view text, uint32_t first_line, bool cut_at_zero)
        : text_(text), places_(text, first_line), cut_at_zero_(cut_at_zero) {}

    Scan read() {
        read_root();
        return std::move(scan_);
    }

  private:
    struct Container {
        bool object;
        size_t open; // where its opening token begins
        bool comma;  // a comma came last
        size_t children;
    };
    enum class Value { read, opened, failed };
    enum class Step { go_on, ends_well, ends_badly };
    struct Failure {
        size_t offset;
        std::string reason;
    };

    std::string_view text_;
    Places places_;
    bool cut_at_zero_;
    size_t pos_ = 0;
    Token current_;
    std::vector<Container> stack_;
    std::optional<Failure> failure_; // why the innermost value or container failed
    bool too_deep_ = false;
    bool in_root_ = false;   // between the root's first token and its last
    size_t value_begin_ = 0; // where the value that start_value read last begins
    Scan scan_;

    // ---- tokens, as the library's scanner makes them ----

    Token next() {
        for (; pos_ < text_.size() && is_blank(text_[pos_]); ++pos_)
            if (in_root_ && (text_[pos_] == '\v' || text_[pos_] == '\f'))
                note(pos_, Finding::not_json,
                     std::string(text_[pos_] == '\v' ? "vertical tab" : "form feed") +
                         ", which is not JSON white space");
        Token token;
        token.begin = pos_;
        if (pos_ == text_.size())
            return current_ = token;
        const char c = text_[pos_];
        if (const Kind mark = punctuation_kind(c); mark != Kind::end)
            return current_ = punctuation(mark);
        if (c == '"')
            return current_ = literal();
        if (is_digit(c))
            return current_ = number();
        if (is_word_start(c))
            return current_ = word();
        token.kind = Kind::error;
        pos_ += sequence_length(static_cast<unsigned char>(c));
        token.end = pos_ = std::min(pos_, text_.size());
        return current_ = token;
    }

    Token punctuation(Kind kind) {
        Token token{kind, pos_, pos_ + 1};
        ++pos_;
        return token;
    }

    // A backslash takes the next byte with it; a raw line feed or the end of the text before
    // the closing quotation mark breaks the string.
    Token literal() {
        Token token{Kind::literal, pos_, 0};
        for (size_t q = pos_ + 1;; ++q) {
            if (q == text_.size() || text_[q] == '\n' ||
                (text_[q] == '\\' && (q + 1 == text_.size() || text_[q + 1] == '\n'))) {
                token.kind = Kind::error;
                token.error = q == text_.size() || (text_[q] == '\\' && q + 1 == text_.size())
                                  ? "a string that the text ends in"
                                  : "a string that a line feed breaks";
                token.end = pos_ = text_[q] == '\\' ? q + 1 : q;
                return token;
            }
            if (text_[q] == '"') {
                token.end = pos_ = q + 1;
                return token;
            }
            if (text_[q] == '\\')
                ++q;
        }
    }

    // JSON's number without its sign: a fraction or an exponent counts only when digits follow.
    Token number() {
        Token token{Kind::integer, pos_, 0};
        size_t q = pos_ + 1;
        if (text_[pos_] != '0')
            while (q < text_.size() && is_digit(text_[q]))
                ++q;
        if (q + 1 < text_.size() && text_[q] == '.' && is_digit(text_[q + 1])) {
            token.kind = Kind::real;
            for (q += 2; q < text_.size() && is_digit(text_[q]);)
                ++q;
        }
        if (q < text_.size() && (text_[q] == 'e' || text_[q] == 'E')) {
            size_t r = q + 1;
            if (r < text_.size() && (text_[r] == '+' || text_[r] == '-'))
                ++r;
            if (r < text_.size() && is_digit(text_[r])) {
                token.kind = Kind::real;
                for (q = r + 1; q < text_.size() && is_digit(text_[q]);)
                    ++q;
            }
        }
        token.end = pos_ = q;
        return token;
    }

    Token word() {
        size_t q = pos_ + 1;
        while (q < text_.size() && (is_word_start(text_[q]) || is_digit(text_[q])))
            ++q;
        const std::string_view spelled = text_.substr(pos_, q - pos_);
        const Kind kind = spelled == "true"    ? Kind::true_word
                          : spelled == "false" ? Kind::false_word
                          : spelled == "null"  ? Kind::null_word
                                               : Kind::word;
        Token token{kind, pos_, q};
        pos_ = q;
        return token;
    }

    std::string_view spelling(const Token &token) const {
        return text_.substr(token.begin, token.end - token.begin);
    }

    std::string describe(const Token &token) const {
        switch (token.kind) {
            case Kind::end:
                return "the end of the text";
            case Kind::error:
                return *token.error ? token.error : "the character " + character(token.begin);
            case Kind::literal:
                return "a string";
            case Kind::integer:
            case Kind::real:
                return "the number " + quoted(spelling(token));
            case Kind::word:
                return "the word '" + quoted(spelling(token)) + "'";
            default:
                return "'" + std::string(spelling(token)) + "'";
        }
    }

    // ---- findings ----

    void note(size_t offset, Finding kind, std::string reason) {
        scan_.diagnostics.push_back({places_.at(offset), kind, std::move(reason)});
    }

    // The current container fails at the current token: `expected`, and what stood there.
    Step fail(std::string reason) {
        if (current_.kind == Kind::end && !stack_.empty()) {
            const Container &open = stack_.back();
            reason = std::string("the text ends") + (cut_at_zero_ ? " at a zero byte" : "") +
                     " before the " + (open.object ? "object" : "array") + " opened at " +
                     to_string(places_.at(open.open)) + " is closed";
        }
        failure_ = Failure{current_.begin, std::move(reason)};
        return Step::ends_badly;
    }

    // ---- values, as the library makes them ----

    // Integers are 32-bit; the reader takes a magnitude up to 2147483647 for either sign and
    // stores a larger one as that bound.
    void check_integer(const Token &token, bool negative, size_t begin) {
        const std::string_view digits = spelling(token);
        if (digits.size() < 10 || (digits.size() == 10 && digits <= "2147483647"))
            return;
        note(begin, Finding::changed,
             "integer " + std::string(negative ? "-" : "") + quoted(digits) +
                 " is beyond the range the reader takes (-2147483647 to 2147483647): read as " +
                 (negative ? "-2147483647" : "2147483647"));
    }

    // A double is stored as the nearest one to its text; what matters is whether the text the
    // writer makes of it gives the same double back.
    void check_real(const Token &token, bool negative, size_t begin) {
        const std::string_view digits = spelling(token);
        const std::string shown = (negative ? "-" : "") + quoted(digits);
        double value = 0.0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (parsed.ec == std::errc::result_out_of_range) {
            const size_t exponent = digits.find_first_of("eE");
            if (exponent != std::string_view::npos && digits[exponent + 1] == '-')
                note(begin, Finding::changed,
                     "number " + shown + " is below the smallest double: read as 0.0");
            else
                note(begin, Finding::changed,
                     "number " + shown + " is beyond the largest double: read as infinity, " +
                         "written " + written_double(negative ? -INFINITY : INFINITY));
            return;
        }
        if (negative)
            value = -value;
        // Up to 15 significant digits always come back, from 1e-15 up.
        if (significant_digits(digits) <= 15 && std::fabs(value) >= 1e-15)
            return;
        const std::string written = written_double(value);
        double back = 0.0;
        const auto reread = std::from_chars(written.data(), written.data() + written.size(), back);
        if (reread.ec == std::errc{} && back == value)
            return;
        note(begin, Finding::changed,
             "number " + shown + " is written as " + written + ", another value");
    }

    static size_t significant_digits(std::string_view number) {
        const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
        std::string digits;
        for (const char c : mantissa)
            if (c != '.')
                digits += c;
        const size_t first = digits.find_first_not_of('0');
        if (first == std::string::npos)
            return 0;
        return digits.find_last_not_of('0') - first + 1;
    }

    // What JSON refuses in a string, and what the library would not give back: each finding
    // once a string.
    void check_string(const Token &token, bool name) {
        const std::string_view content = text_.substr(token.begin + 1, token.end - token.begin - 2);
        const size_t base = token.begin + 1;
        bool control = false, escape = false, invalid = false, surrogate = false, quote = false;
        bool blank = true;
        bool after_backslash = false;
        for (size_t i = 0; i < content.size();) {
            const char c = content[i];
            blank = blank && is_blank(c);
            if (c == '\\' && !after_backslash) {
                const char escaped = content[i + 1];
                quote = quote || escaped == '"';
                const bool hex = escaped == 'u' && i + 5 < content.size() &&
                                 is_hex(content[i + 2]) && is_hex(content[i + 3]) &&
                                 is_hex(content[i + 4]) && is_hex(content[i + 5]);
                if (!escape && !hex && !std::strchr("\"\\/bfnrt", escaped)) {
                    escape = true;
                    note(base + i, Finding::not_json,
                         escaped == 'u' ? "\\u without four hexadecimal digits"
                                        : "\\" + shown_character(content, i + 1) +
                                              " is not a JSON escape sequence");
                }
                after_backslash = true; // the escaped character is checked as a character
                ++i;
                continue;
            }
            after_backslash = false;
            if (static_cast<unsigned char>(c) < 0x20 && !control) {
                control = true;
                note(base + i, Finding::not_json,
                     "control character U+" + hex4(static_cast<unsigned char>(c)) +
                         " written raw in a string");
            }
            size_t length = 1;
            const Utf8 form = check_utf8(content, i, &length);
            if (form == Utf8::invalid && !invalid) {
                invalid = true;
                note(base + i, Finding::changed, "bytes that are not UTF-8: read as U+FFFD");
            } else if (form == Utf8::surrogate && !surrogate) {
                surrogate = true;
                note(base + i, Finding::not_json,
                     "a surrogate encoded in UTF-8, which JSON has not");
            }
            i += length;
        }
        if (!name)
            return;
        if (blank)
            note(token.begin, Finding::changed,
                 "blank member name: the member is written without its name");
        if (quote)
            note(token.begin, Finding::changed,
                 "member name with \\\": the quotation mark is written unescaped");
    }

    // The character at `at` as a message shows it: itself when printable, else its number.
    static std::string shown_character(std::string_view text, size_t at) {
        size_t length = 1;
        const Utf8 form = check_utf8(text, at, &length);
        const auto c = static_cast<unsigned char>(text[at]);
        if (form != Utf8::valid)
            return "byte 0x" + hex4(c).substr(2);
        if (c < 0x20 || c == 0x7F)
            return "U+" + hex4(c);
        return std::string(text.substr(at, length));
    }

    std::string character(size_t at) const {
        const std::string shown = shown_character(text_, at);
        return shown.starts_with("byte") || shown.starts_with("U+") ? shown : "'" + shown + "'";
    }

    // Reads the next token as the start of a value.
    Value start_value() {
        const Token token = next();
        value_begin_ = token.begin;
        switch (token.kind) {
            case Kind::open_object:
            case Kind::open_array:
                if (stack_.size() == deepest) {
                    too_deep_ = true;
                    fail("nested deeper than " + std::to_string(deepest) + " levels");
                    return Value::failed;
                }
                stack_.push_back({token.kind == Kind::open_object, token.begin, false, 0});
                return Value::opened;
            case Kind::integer:
                check_integer(token, false, token.begin);
                return Value::read;
            case Kind::real:
                check_real(token, false, token.begin);
                return Value::read;
            case Kind::minus:
                return start_negative(token);
            case Kind::literal:
                check_string(token, false);
                return Value::read;
            case Kind::true_word:
            case Kind::false_word:
            case Kind::null_word:
                return Value::read;
            default:
                fail("expected a value, found " + describe(token));
                return Value::failed;
        }
    }

    Value start_negative(const Token &minus) {
        const Token number = next();
        if (number.kind != Kind::integer && number.kind != Kind::real) {
            fail("expected a number after '-', found " + describe(number));
            return Value::failed;
        }
        if (number.begin != minus.end)
            note(minus.begin, Finding::not_json, "blank between '-' and its number");
        if (number.kind == Kind::integer)
            check_integer(number, true, minus.begin);
        else
            check_real(number, true, minus.begin);
        return Value::read;
    }

    // ---- containers, as the library's parser steps through them ----

    // A value failed inside an array: the token it stopped at decides. A closing bracket ends
    // the array, an accepted comma lets it go on, and a value that had taken tokens before it
    // stopped there is dropped.
    Step judge_array(size_t value_begin) {
        Container &array = stack_.back();
        const bool dropped = current_.begin != value_begin;
        if (current_.kind == Kind::close_array && !array.comma) {
            note_dropped(value_begin, dropped);
            return Step::ends_well;
        }
        if (current_.kind == Kind::comma && !array.comma && array.children > 0) {
            note_dropped(value_begin, dropped);
            array.comma = true;
            return Step::go_on;
        }
        if (!dropped && current_.kind == Kind::comma)
            return fail(array.comma ? "two ',' in a row" : "',' before the first value");
        if (!dropped && current_.kind == Kind::close_array)
            return fail("',' before ']'");
        return Step::ends_badly;
    }

    void note_dropped(size_t value_begin, bool dropped) {
        if (!dropped)
            return;
        if (text_[value_begin] == '-') {
            note(value_begin, Finding::not_json, "'-' without a number is skipped");
            return;
        }
        note(value_begin, Finding::changed,
             std::string(text_[value_begin] == '{' ? "object" : "array") +
                 " left out: it fails at " + to_string(places_.at(failure_->offset)) + " (" +
                 failure_->reason + ") and its array goes on from there");
    }

    // The innermost container receives the value it was reading, or learns that it failed.
    Step receive(Value value, size_t value_begin) {
        Container &container = stack_.back();
        if (value == Value::opened)
            return Step::go_on;
        if (value == Value::failed)
            return container.object ? Step::ends_badly : judge_array(value_begin);
        ++container.children;
        container.comma = false;
        return Step::go_on;
    }

    Step object_step() {
        Container &object = stack_.back();
        const Token token = next();
        switch (token.kind) {
            case Kind::comma:
                if (object.comma)
                    return fail("two ',' in a row");
                if (object.children == 0)
                    return fail("',' before the first member");
                object.comma = true;
                return Step::go_on;
            case Kind::close_object:
                return object.comma ? fail("',' before '}'") : Step::ends_well;
            case Kind::literal: {
                if (object.children > 0 && !object.comma)
                    note(token.begin, Finding::not_json, "missing ',' between members");
                check_string(token, true);
                const Token colon = next();
                if (colon.kind != Kind::colon)
                    return fail("expected ':' after the member name, found " + describe(colon));
                const Value value = start_value();
                return receive(value, value_begin_);
            }
            default:
                return fail("expected a member name or '}', found " + describe(token));
        }
    }

    Step array_step() {
        const size_t children = stack_.back().children;
        const bool comma = stack_.back().comma;
        const Value value = start_value();
        if (value != Value::failed && children > 0 && !comma)
            note(value_begin_, Finding::not_json, "missing ',' between values");
        return receive(value, value_begin_);
    }

    void read_root() {
        Token token = next();
        const Token first = token;
        while (token.kind != Kind::end && token.kind != Kind::open_object &&
               token.kind != Kind::open_array)
            token = next();
        const bool anything = first.kind != Kind::end;
        if (token.kind == Kind::end) {
            std::string reason = anything ? "no object or array: the library reads only an "
                                            "object or an array as a document"
                                          : "no document: the text is empty or blank";
            if (cut_at_zero_)
                reason += " before its first zero byte";
            scan_.stop = Diagnostic{places_.at(token.begin), Finding::not_json, reason};
            return;
        }
        if (first.begin != token.begin)
            note(first.begin, Finding::not_json, "text before the root is skipped");
        stack_.push_back({token.kind == Kind::open_object, token.begin, false, 0});
        in_root_ = true;
        const bool read = read_containers();
        in_root_ = false;
        if (read)
            read_after_root();
        else
            scan_.stop =
                Diagnostic{places_.at(failure_->offset), Finding::not_json, failure_->reason};
    }

    bool read_containers() {
        for (;;) {
            Step step = stack_.back().object ? object_step() : array_step();
            if (too_deep_)
                return false;
            while (step != Step::go_on) {
                const Container finished = stack_.back();
                stack_.pop_back();
                if (stack_.empty())
                    return step == Step::ends_well;
                step =
                    receive(step == Step::ends_well ? Value::read : Value::failed, finished.open);
            }
        }
    }

    void read_after_root() {
        const Token after = next();
        if (after.kind != Kind::end)
            note(after.begin, Finding::not_json, "text after the root is not read");
        else if (cut_at_zero_)
            note(after.begin, Finding::not_json,
                 "a zero byte ends the text: what follows it "
                 "is not read");
    }
};

} // namespace

std::string to_string(const Place &place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

Scan strict_scan(std::string_view text, uint32_t first_line) {
    // The library's input ends at its first zero byte.
    const size_t zero = text.find('\0');
    const bool cut = zero != std::string_view::npos;
    return StrictReader(text.substr(0, cut ? zero : text.size()), first_line, cut).read();
}

} // namespace tqjson
