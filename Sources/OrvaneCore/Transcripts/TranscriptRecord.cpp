#include "OrvaneCore/Transcripts/TranscriptRecord.h"

#include <simdjson.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

using simdjson::dom::element;

template <typename Value>
std::optional<Value> taken(simdjson::simdjson_result<Value>&& result) {
    Value value;
    if (std::move(result).get(value) != simdjson::SUCCESS) return std::nullopt;
    return value;
}

/// The code unit of the escape "\uXXXX" that begins there.
std::optional<unsigned> codeUnit(std::string_view text, std::size_t at) {
    constexpr std::size_t length = 6;
    if (at + length > text.size() || text[at] != '\\' || text[at + 1] != 'u') return std::nullopt;
    unsigned unit = 0;
    const char* end = text.data() + at + length;
    const auto [read, error] = std::from_chars(text.data() + at + 2, end, unit, 16);
    return error == std::errc() && read == end ? std::optional(unit) : std::nullopt;
}

bool isHighHalf(unsigned unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowHalf(unsigned unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

/// With "\ufffd" in the place of every escape that is half of a pair.
std::string withWholePairs(std::string line) {
    for (std::size_t at = line.find('\\'); at != std::string::npos; at = line.find('\\', at + 2)) {
        const auto unit = codeUnit(line, at);
        if (!unit || (!isHighHalf(*unit) && !isLowHalf(*unit))) continue;
        const auto next = codeUnit(line, at + 6);
        if (isHighHalf(*unit) && next && isLowHalf(*next)) {
            at += 6;
        } else {
            line.replace(at, 6, "\\ufffd");
        }
    }
    return line;
}

}  // namespace

struct TranscriptRecord::Access {
    static std::optional<element> value(const TranscriptRecord& record) {
        if (record.place_.document == nullptr) return std::nullopt;
        return std::bit_cast<element>(record.place_);
    }
    static TranscriptRecord record(const element& value) {
        TranscriptRecord record;
        record.place_ = std::bit_cast<Place>(value);
        return record;
    }
};

bool TranscriptRecord::isObject() const {
    const auto value = Access::value(*this);
    return value && value->is_object();
}

bool TranscriptRecord::isArray() const {
    const auto value = Access::value(*this);
    return value && value->is_array();
}

TranscriptRecord TranscriptRecord::operator[](std::string_view key) const {
    if (!isObject()) return {};
    const auto member = taken<element>(Access::value(*this)->at_key(key));
    return member && !member->is_null() ? Access::record(*member) : TranscriptRecord();
}

std::optional<std::string_view> TranscriptRecord::string() const {
    const auto value = Access::value(*this);
    return value ? taken<std::string_view>(value->get_string()) : std::nullopt;
}

bool TranscriptRecord::isTrue(std::string_view key) const {
    const auto value = Access::value((*this)[key]);
    return value && taken<bool>(value->get_bool()).value_or(false);
}

std::optional<std::int64_t> TranscriptRecord::integer() const {
    const auto value = Access::value(*this);
    if (!value) return std::nullopt;
    if (const auto whole = taken<std::int64_t>(value->get_int64())) return whole;
    constexpr double limit = 9007199254740992.0;  // 2^53, up to where a double tells every whole number
    const auto number = taken<double>(value->get_double());
    if (!number || std::trunc(*number) != *number || std::abs(*number) > limit) return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

std::vector<TranscriptRecord> TranscriptRecord::elements() const {
    std::vector<TranscriptRecord> all;
    if (!isArray()) return all;
    const auto array = taken<simdjson::dom::array>(Access::value(*this)->get_array());
    all.reserve(array->size());
    for (const element each : *array)
        all.push_back(Access::record(each));
    return all;
}

std::string TranscriptRecord::json() const {
    const auto value = Access::value(*this);
    return value ? simdjson::minify(*value) : "null";
}

std::vector<TranscriptRecord::Member> TranscriptRecord::members() const {
    std::vector<Member> all;
    if (!isObject()) return all;
    const auto object = taken<simdjson::dom::object>(Access::value(*this)->get_object());
    all.reserve(object->size());
    for (const auto [key, value] : *object)
        all.push_back({.key = key, .value = Access::record(value)});
    return all;
}

struct TranscriptParser::Implementation {
    static constexpr std::size_t firstCapacity = 4096;  // bytes; it grows

    simdjson::dom::parser parser;
    const simdjson::error_code prepared = parser.allocate(firstCapacity, TranscriptParser::deepestNesting);
};

TranscriptParser::TranscriptParser() : implementation_(std::make_unique<Implementation>()) {}

TranscriptParser::~TranscriptParser() = default;

std::optional<TranscriptRecord> TranscriptParser::parse(std::string_view line) {
    if (implementation_->prepared != simdjson::SUCCESS) return std::nullopt;
    simdjson::dom::parser& parser = implementation_->parser;
    element value;
    auto error = parser.parse(line.data(), line.size()).get(value);
    if (error == simdjson::UTF8_ERROR || error == simdjson::STRING_ERROR)
        error = parser.parse(withWholePairs(Text::sanitizedUtf8(line))).get(value);
    if (error != simdjson::SUCCESS) return std::nullopt;
    return TranscriptRecord::Access::record(value);
}

}  // namespace orvane
