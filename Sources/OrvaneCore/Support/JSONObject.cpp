#include "OrvaneCore/Support/JSONObject.h"

#include <boost/json.hpp>
#include <cmath>
#include <utility>

namespace orvane {

namespace {

std::optional<std::int64_t> wholeNumber(const JsonValue& value) {
    if (const auto* number = value.if_int64()) return *number;
    if (const auto* number = value.if_uint64(); number != nullptr && std::in_range<std::int64_t>(*number)) {
        return static_cast<std::int64_t>(*number);
    }
    const auto* number = value.if_double();
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (number == nullptr || *number < -limit || *number >= limit || *number != std::trunc(*number)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*number);
}

std::optional<double> anyNumber(const JsonValue& value) {
    switch (value.kind()) {
        case boost::json::kind::int64:
            return static_cast<double>(value.get_int64());
        case boost::json::kind::uint64:
            return static_cast<double>(value.get_uint64());
        case boost::json::kind::double_:
            return value.get_double();
        default:
            return std::nullopt;
    }
}

}  // namespace

const JsonValue* JSONObject::find(std::string_view key) const {
    return object_ == nullptr ? nullptr : object_->if_contains(key);
}

std::optional<std::string> JSONObject::optionalString(std::string_view key) const {
    const JsonValue* value = find(key);
    if (value == nullptr || !value->is_string()) return std::nullopt;
    return std::string(std::string_view(value->get_string()));
}

std::string JSONObject::string(std::string_view key, std::string_view fallback) const {
    return optionalString(key).value_or(std::string(fallback));
}

bool JSONObject::boolean(std::string_view key, bool fallback) const {
    const JsonValue* value = find(key);
    return value != nullptr && value->is_bool() ? value->get_bool() : fallback;
}

std::optional<std::int64_t> JSONObject::optionalInteger(std::string_view key) const {
    const JsonValue* value = find(key);
    return value == nullptr ? std::nullopt : wholeNumber(*value);
}

std::int64_t JSONObject::integer(std::string_view key, std::int64_t fallback) const {
    return optionalInteger(key).value_or(fallback);
}

double JSONObject::number(std::string_view key, double fallback) const {
    const JsonValue* value = find(key);
    return value == nullptr ? fallback : anyNumber(*value).value_or(fallback);
}

std::optional<Uuid> JSONObject::uuid(std::string_view key) const {
    const JsonValue* value = find(key);
    return value != nullptr && value->is_string() ? Uuid::parse(value->get_string()) : std::nullopt;
}

std::optional<Date> JSONObject::date(std::string_view key) const {
    const JsonValue* value = find(key);
    if (value == nullptr) return std::nullopt;
    if (value->is_string()) return Date::parseIso8601(value->get_string());
    const std::optional<double> seconds = anyNumber(*value);
    return seconds ? std::optional(Date{*seconds}) : std::nullopt;
}

std::vector<std::string> JSONObject::strings(std::string_view key) const {
    return list(key, [](const JsonValue& element) -> std::optional<std::string> {
        if (!element.is_string()) return std::nullopt;
        return std::string(std::string_view(element.get_string()));
    });
}

JSONObject JSONObject::object(std::string_view key) const {
    const JsonValue* value = find(key);
    return value == nullptr ? JSONObject() : JSONObject(*value);
}

const JsonArray& JSONObject::array(std::string_view key) const {
    static const JsonArray none;
    const JsonValue* value = find(key);
    return value != nullptr && value->is_array() ? value->get_array() : none;
}

}  // namespace orvane
