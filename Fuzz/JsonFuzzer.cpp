#include <algorithm>
#include <boost/json.hpp>

#include "Fuzzing.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Text.h"

namespace {

using namespace orvane;

/// Numbers are equal by value: 3.0 is written as 3.
bool isEqual(const JsonValue& a, const JsonValue& b) {
    if (a.is_number() && b.is_number() && (a.is_double() || b.is_double())) {
        return a.to_number<double>() == b.to_number<double>();
    }
    if (a.is_array() && b.is_array()) return std::ranges::equal(a.get_array(), b.get_array(), isEqual);
    if (!a.is_object() || !b.is_object()) return a == b;
    const auto& other = b.get_object();
    return a.get_object().size() == other.size() && std::ranges::all_of(a.get_object(), [&](const auto& member) {
               const JsonValue* found = other.if_contains(member.key());
               return found != nullptr && isEqual(member.value(), *found);
           });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto value = Json::parse(fuzzing::asText(data, size));
    if (!value) return 0;
    for (const Json::Layout layout : {Json::Layout::compact, Json::Layout::indented}) {
        const std::string text = Json::write(*value, layout);
        fuzzing::require(Text::isValidUtf8(text), "what is written is UTF-8");
        fuzzing::require(layout == Json::Layout::indented || !text.contains('\n'), "compact is one line");
        const auto again = Json::parse(text);
        fuzzing::require(again && isEqual(*value, *again), "what is written reads back equal");
    }
    return 0;
}
