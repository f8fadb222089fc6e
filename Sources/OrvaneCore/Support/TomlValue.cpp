#include "OrvaneCore/Support/TomlValue.h"

#include <boost/json.hpp>
#include <charconv>
#include <limits>
#include <span>
#include <utility>

#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Toml.h"
#include "OrvaneCore/Support/TomlText.h"

namespace orvane {

namespace {

using Value = std::optional<JsonValue>;

Regex compiled(const char* pattern) {
    return *Regex::compile(pattern);
}

bool isScalarByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= ':') ||
           byte == '_' || byte == '+' || byte == '-' || byte == '.';
}

template <typename Number, typename... Base>
Value number(std::string_view digits, Base... base) {
    Number result{};
    if (digits.starts_with('+')) digits.remove_prefix(1);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), result, base...);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return JsonValue(result);
}

/// A whole number written with the prefix 0x, 0o or 0b.
Value prefixedInteger(std::string_view digits) {
    const int base = digits[1] == 'x' ? 16 : digits[1] == 'o' ? 8 : 2;
    return number<std::int64_t>(digits.substr(2), base);
}

Value readNumber(std::string token) {
    static const Regex integer = compiled(R"(^[+-]?(?:0|[1-9](?:_?[0-9])*)\z)");
    static const Regex prefixed =
        compiled(R"(^0(?:x[0-9A-Fa-f](?:_?[0-9A-Fa-f])*|o[0-7](?:_?[0-7])*|b[01](?:_?[01])*)\z)");
    static const Regex real = compiled(
        R"(^[+-]?(?:inf|nan|(?:0|[1-9](?:_?[0-9])*)(?:\.[0-9](?:_?[0-9])*)?(?:[eE][+-]?[0-9](?:_?[0-9])*)?)\z)");
    const bool isInteger = integer.matches(token);
    const bool isPrefixed = prefixed.matches(token);
    if (!isInteger && !isPrefixed && !real.matches(token)) return std::nullopt;
    std::erase(token, '_');
    if (isInteger) return number<std::int64_t>(token);
    return isPrefixed ? prefixedInteger(token) : number<double>(token);
}

/// Dates and times have no kind of their own in JSON and stay the text they are.
bool isDateOrTime(std::string_view token) {
    static const Regex pattern =
        compiled(R"(^(?:[0-9]{4}-[0-9]{2}-[0-9]{2}(?:[Tt ]|\z))?)"
                 R"((?:[0-9]{2}:[0-9]{2}:[0-9]{2}(?:\.[0-9]+)?(?:[Zz]|[+-][0-9]{2}:[0-9]{2})?)?(?<=[0-9Zz])\z)");
    return pattern.matches(token);
}

std::string takeScalar(TomlCursor& cursor) {
    std::string token(cursor.takeWhile(isScalarByte));
    TomlCursor ahead = cursor;
    // A blank may part a date from its time.
    if (token.size() != 10 || token[4] != '-' || !ahead.take(" ")) return token;
    const std::string_view time = ahead.takeWhile(isScalarByte);
    if (time.empty()) return token;
    cursor = ahead;
    return token.append(" ").append(time);
}

Value readScalar(TomlCursor& cursor) {
    std::string token = takeScalar(cursor);
    if (token == "true" || token == "false") return JsonValue(token == "true");
    if (isDateOrTime(token)) return JsonValue(token);
    return readNumber(std::move(token));
}

/// The elements of an array or an inline table, up to and with the closing bracket. A comma may stand behind the last.
template <typename ReadElement>
bool readElements(TomlCursor& cursor, std::string_view closing, ReadElement readElement) {
    for (bool mayFollow = true;;) {
        cursor.skipFiller();
        if (cursor.take(closing)) return true;
        if (!mayFollow || !readElement()) return false;
        cursor.skipFiller();
        mayFollow = cursor.take(",");
    }
}

Value readValue(TomlCursor& cursor, std::size_t depth);

Value readArray(TomlCursor& cursor, std::size_t depth) {
    JsonArray array;
    const bool isWhole = readElements(cursor, "]", [&] {
        Value element = readValue(cursor, depth + 1);
        if (!element) return false;
        array.push_back(*std::move(element));
        return true;
    });
    return isWhole ? Value(std::move(array)) : std::nullopt;
}

Value readInlineTable(TomlCursor& cursor, std::size_t depth) {
    boost::json::object table;
    const bool isWhole = readElements(cursor, "}", [&] {
        std::optional<TomlMember> member = TomlMember::read(cursor, depth);
        return member && std::move(*member).insert(table);
    });
    return isWhole ? Value(std::move(table)) : std::nullopt;
}

Value readValue(TomlCursor& cursor, std::size_t depth) {
    if (depth > Toml::maximumDepth) return std::nullopt;
    if (cursor.take("[")) return readArray(cursor, depth);
    if (cursor.take("{")) return readInlineTable(cursor, depth);
    if (!cursor.isAt("\"") && !cursor.isAt("'")) return readScalar(cursor);
    const std::optional<std::string> text = readTomlString(cursor);
    return text ? Value(*text) : std::nullopt;
}

}  // namespace

std::optional<TomlMember> TomlMember::read(TomlCursor& cursor, std::size_t depth) {
    auto key = readTomlKey(cursor);
    if (!key || !cursor.take("=")) return std::nullopt;
    cursor.skipBlanks();
    Value value = readValue(cursor, depth + key->size());
    if (!value) return std::nullopt;
    return TomlMember{.key = *std::move(key), .value = *std::move(value)};
}

bool TomlMember::insert(boost::json::object& table) && {
    boost::json::object* target = &table;
    for (const std::string& part : std::span(key).first(key.size() - 1)) {
        target = tomlSubtable(*target, part);
        if (target == nullptr) return false;
    }
    return target->emplace(key.back(), std::move(value)).second;
}

boost::json::object* tomlSubtable(boost::json::object& table, const std::string& key) {
    return table.emplace(key, boost::json::object()).first->value().if_object();
}

}  // namespace orvane
