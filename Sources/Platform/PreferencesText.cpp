#include "Platform/PreferencesText.h"

#include <fmt/format.h>

#include <boost/json.hpp>
#include <charconv>
#include <cmath>

namespace orvane::PreferencesText {

namespace {

namespace json = boost::json;

/// Deeper nesting than anybody writes by hand, and far from exhausting the stack.
constexpr std::size_t depthLimit = 100;

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

/// Cuts the text of an object into its members. The text is valid JSON, which the library has made sure of.
class Cutter {
 public:
    explicit Cutter(std::string_view text) : rest_(text) {}

    Members members() {
        Members members;
        skipTo('{');
        while (nextIs('"')) {
            const std::string_view key = stringToken();
            skipTo(':');
            members.insert_or_assign(string(key).value_or(std::string()), value());
            if (rest_.front() == ',') rest_.remove_prefix(1);
        }
        return members;
    }

 private:
    bool nextIs(char byte) {
        while (isBlank(rest_.front()))
            rest_.remove_prefix(1);
        return rest_.front() == byte;
    }

    void skipTo(char byte) { rest_.remove_prefix(rest_.find(byte) + 1); }

    std::string_view take(std::size_t length) {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return taken;
    }

    std::string_view stringToken() {
        std::size_t end = 1;
        while (rest_[end] != '"')
            end += rest_[end] == '\\' ? 2 : 1;
        return take(end + 1);
    }

    /// Up to the comma or brace that ends the member, without the blanks between the tokens.
    std::string value() {
        std::string value;
        for (int depth = 0; depth > 0 || (rest_.front() != ',' && rest_.front() != '}');) {
            const char byte = rest_.front();
            if (byte == '"') {
                value += stringToken();
                continue;
            }
            if (byte == '{' || byte == '[') ++depth;
            if (byte == '}' || byte == ']') --depth;
            if (!isBlank(byte)) value += byte;
            rest_.remove_prefix(1);
        }
        return value;
    }

    std::string_view rest_;
};

std::optional<json::value> parsed(std::string_view text) {
    json::error_code error;
    json::value value = json::parse(text, error, {}, {.max_depth = depthLimit});
    if (error) return std::nullopt;
    return value;
}

/// The length of the well-formed UTF-8 sequence at the start of the text (Unicode, table 3-7); 0 when there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto at = [&](std::size_t index) {
        return static_cast<unsigned char>(index < text.size() ? text[index] : 0);
    };
    const unsigned char lead = at(0);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (at(1) < lowest || at(1) > highest) return 0;
    for (std::size_t index = 2; index < length; ++index) {
        if ((at(index) & 0xC0) != 0x80) return 0;
    }
    return length;
}

std::string wellFormed(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        result += length == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

template <typename Number>
std::optional<Number> whole(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// None when a member is of another type.
template <typename Object, typename Decode>
std::optional<Object> object(std::string_view value, Decode decode) {
    if (!value.starts_with('{')) return std::nullopt;
    Object object;
    for (const auto& [key, text] : Cutter(value).members()) {
        const auto member = decode(text);
        if (!member) return std::nullopt;
        object.emplace(key, *member);
    }
    return object;
}

template <typename Object, typename Encode>
std::string objectText(const Object& object, Encode encodeMember) {
    std::string text = "{";
    for (const auto& [key, member] : object) {
        if (text.size() > 1) text += ',';
        text += encode(std::string_view(key)) + ":" + encodeMember(member);
    }
    return text + "}";
}

}  // namespace

std::expected<Members, std::string> parse(std::string_view text) {
    if (std::ranges::all_of(text, isBlank)) return Members();
    json::error_code error;
    const json::value value = json::parse(text, error, {}, {.max_depth = depthLimit});
    if (error) return std::unexpected("not valid JSON (" + error.message() + ")");
    if (!value.is_object()) return std::unexpected("not a JSON object");
    return Cutter(text).members();
}

std::string print(const Members& members) {
    std::string text = "{";
    for (const auto& [key, value] : members) {
        text += text.size() == 1 ? "\n  " : ",\n  ";
        text += encode(key) + ": " + value;
    }
    text += members.empty() ? "}\n" : "\n}\n";
    return text;
}

std::optional<bool> boolean(std::string_view value) {
    if (value == "true") return true;
    if (value == "false") return false;
    return std::nullopt;
}

std::optional<std::int64_t> integer(std::string_view value) {
    if (const auto exact = whole<std::int64_t>(value)) return exact;
    const auto real = number(value);
    constexpr double limit = 9007199254740992.0;  // 2^53: up to here a double stands for one integer only
    if (!real || std::abs(*real) > limit || std::trunc(*real) != *real) return std::nullopt;
    return static_cast<std::int64_t>(*real);
}

std::optional<double> number(std::string_view value) {
    // from_chars also takes "inf" and "nan", which are no JSON and so cannot stand here.
    return whole<double>(value);
}

std::optional<std::string> string(std::string_view value) {
    if (!value.starts_with('"')) return std::nullopt;
    const auto text = parsed(value);
    if (!text || !text->is_string()) return std::nullopt;
    return std::string(text->as_string());
}

std::optional<Counts> counts(std::string_view value) {
    return object<Counts>(value, integer);
}

std::optional<Texts> texts(std::string_view value) {
    return object<Texts>(value, string);
}

std::string encode(std::string_view text) {
    return json::serialize(json::string_view(wellFormed(text)));
}

std::string encode(const Counts& counts) {
    return objectText(counts, [](std::int64_t count) { return fmt::format("{}", count); });
}

std::string encode(const Texts& texts) {
    return objectText(texts, [](const std::string& text) { return encode(std::string_view(text)); });
}

std::string encode(double value) {
    return fmt::format("{}", value);
}

}  // namespace orvane::PreferencesText
