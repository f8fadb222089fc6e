#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/RawValue.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// Reads the members of a JSON object that somebody else wrote. A member that is missing or has another type than the
/// one asked for takes its default; nothing throws. It looks into the value it was made of and must not outlive it.
class JSONObject {
 public:
    /// An object without members.
    JSONObject() = default;
    /// A value that is no object reads as an object without members.
    explicit JSONObject(const JsonValue& value) : object_(value.if_object()) {}

    bool contains(std::string_view key) const { return find(key) != nullptr; }

    std::string string(std::string_view key, std::string_view fallback = {}) const;
    std::optional<std::string> optionalString(std::string_view key) const;
    bool boolean(std::string_view key, bool fallback = false) const;
    /// Whole numbers only, also when they are written as 3.0; out of the range of 64 bits is absent.
    std::int64_t integer(std::string_view key, std::int64_t fallback = 0) const;
    std::optional<std::int64_t> optionalInteger(std::string_view key) const;
    double number(std::string_view key, double fallback = 0) const;
    std::optional<Uuid> uuid(std::string_view key) const;
    /// ISO 8601 text, or a number of seconds since 1970.
    std::optional<Date> date(std::string_view key) const;

    /// Strings of an array; elements of another type are skipped.
    std::vector<std::string> strings(std::string_view key) const;
    /// An absent or wrong-typed member reads as an object without members.
    JSONObject object(std::string_view key) const;
    /// The elements of an array; none when it is missing or no array.
    const JsonArray& array(std::string_view key) const;
    /// The member as it stands, or null when it is missing.
    const JsonValue* find(std::string_view key) const;

    template <typename Enum>
    std::optional<Enum> raw(std::string_view key) const {
        const std::optional<std::string> text = optionalString(key);
        return text ? fromRawValue<Enum>(*text) : std::nullopt;
    }

    /// Decodes every element of an array with `decode(const JsonValue&)`, which gives an optional; what does not
    /// decode is skipped.
    template <typename Decode>
    auto list(std::string_view key, Decode decode) const {
        std::vector<typename decltype(decode(std::declval<const JsonValue&>()))::value_type> values;
        for (const JsonValue& element : array(key)) {
            if (auto value = decode(element)) values.push_back(std::move(*value));
        }
        return values;
    }

    /// Calls `visit(key, value)` for every member, in the order of the text.
    template <typename Visit>
    void forEach(Visit visit) const {
        if (object_ == nullptr) return;
        for (const auto& member : *object_)
            visit(std::string_view(member.key()), member.value());
    }

 private:
    const boost::json::object* object_ = nullptr;
};

}  // namespace orvane
