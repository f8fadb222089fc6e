#include "OrvaneCore/Support/Json.h"

#include <gtest/gtest.h>

#include <bit>
#include <boost/json.hpp>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "OrvaneCore/Support/JSONObject.h"
#include "Support/Table.h"

namespace orvane {

namespace {

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

enum class Axis { horizontal, vertical };

}  // namespace

template <>
struct RawValues<Axis> {
    static constexpr std::array table = {rawValueOf(Axis::horizontal, "horizontal"),
                                         rawValueOf(Axis::vertical, "vertical")};
};

TEST(JsonTest, writesWhatItReads) {
    for (const auto& [text, expected] : table<2>(R"(
        {"b": 1,"a":{"d":[],"c":{}},"Z":null} | {"Z":null,"a":{"c":{},"d":[]},"b":1}
        {"é":true,"z":false} | {"z":false,"é":true} ; ["\u00e9\/\ud83d\udc68"] | ["é/👨"] ; 5e-324 | 5e-324
        "\"\\\n\r\t\u0000\u001b\u007f" | "\"\\\n\r\t\u0000\u001b\u007f"
        [0.1,1e3,1.5e300,-2.50] | [0.1,1000,1.5e+300,-2.5]
        [9223372036854775807,18446744073709551615] | [9223372036854775807,18446744073709551615]
        [-9223372036854775808] | [-9223372036854775808]
        [1e400,-1e400,1e-400] | [1.7976931348623157e+308,-1.7976931348623157e+308,0])")) {
        const auto value = Json::parse(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(Json::write(*value), expected) << text;
        EXPECT_EQ(Json::write(*Json::parse(expected)), expected) << text;
    }
    EXPECT_EQ(Json::write(*Json::parse(R"({"b":[1,{"c":[]}],"a":{}})"), Json::Layout::indented),
              "{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"c\": []\n    }\n  ]\n}");
}

TEST(JsonTest, writesWhatJsonHasNoFormFor) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Json::write(JsonValue{infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}),
              "[null,null,null]");
    // A file name need not be UTF-8; the document that holds it must be, or nobody reads it again.
    const std::string text = Json::write(JsonValue{{"cut\xE2\x82", "name\xFF"}});
    EXPECT_EQ(text, "{\"cut\uFFFD\":\"name\uFFFD\"}");
    EXPECT_TRUE(Json::parse(text));
}

TEST(JsonTest, numbersReadBackEqual) {
    std::mt19937_64 random(3);
    for (int round = 0; round < 20000; ++round) {
        const double number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) continue;
        const std::string text = Json::write(number);
        ASSERT_EQ(Json::parse(text)->to_number<double>(), number) << text;
    }
}

TEST(JsonTest, refusesWhatIsMalformedOrTooDeep) {
    for (const char* text : {"", "{", "[1,]", "{\"a\":1,}", "{} {}", "{}x", "nul", "'a'", "01", "\"\n\"", "\"\\ud800\"",
                             "\"\xFF\"", "// c\n1", "NaN"})
        EXPECT_FALSE(Json::parse(text)) << text;
    EXPECT_FALSE(Json::parse(nested(Json::maximumDepth + 1)));
    const auto deepest = Json::parse(nested(Json::maximumDepth));
    ASSERT_TRUE(deepest);
    EXPECT_EQ(Json::write(*deepest), nested(Json::maximumDepth));
}

TEST(JSONObjectTest, takesDefaultsForWhatIsMissingOrOfAnotherType) {
    // One member of every type under its own name; every reader meets all of them, and a name that is missing.
    const JsonValue value = *Json::parse(R"({
        "null": null, "bool": true, "whole": 3, "wholeReal": 4.0, "real": 2.5, "huge": 1e300,
        "unsigned": 18446744073709551615, "text": "vertical", "id": "0123ABCD-89EF-4A6B-8C7D-FEDCBA987654",
        "date": "1970-01-01T00:01:00Z", "list": ["a", 1, null, "b"], "object": {"x": 1}})");
    const JSONObject object(value);
    // Which readers take it: string, raw value, id, boolean, whole number, number, date, array, object.
    for (const auto& [key, readers] : table<2>(R"(
        missing | ; null | ; bool | b ; whole | wnd ; wholeReal | wnd ; real | nd ; huge | nd ; unsigned | nd
        text | sr ; id | si ; date | sd ; list | a ; object | o)")) {
        const auto takes = [&readers](char reader) { return readers.contains(reader); };
        SCOPED_TRACE(key);
        EXPECT_EQ(object.string(key, "-") != "-", takes('s'));
        EXPECT_EQ(object.raw<Axis>(key), takes('r') ? std::optional(Axis::vertical) : std::nullopt);
        EXPECT_EQ(object.uuid(key).has_value(), takes('i'));
        EXPECT_EQ(object.boolean(key), takes('b'));
        EXPECT_EQ(object.integer(key, -1) != -1, takes('w'));
        EXPECT_EQ(object.number(key, -1) != -1, takes('n'));
        EXPECT_EQ(object.date(key).has_value(), takes('d'));
        EXPECT_EQ(object.array(key).size(), takes('a') ? 4U : 0U);
        EXPECT_EQ(object.strings(key).size(), takes('a') ? 2U : 0U);
        EXPECT_EQ(object.object(key).integer("x"), takes('o') ? 1 : 0);
        EXPECT_EQ(object.contains(key), key != "missing");
    }
    EXPECT_EQ(object.string("text"), "vertical");
    EXPECT_EQ(object.integer("wholeReal"), 4);
    EXPECT_EQ(object.number("unsigned"), 18446744073709551615.0);
    EXPECT_EQ(object.date("date"), Date{60});
    EXPECT_EQ(object.date("real"), Date{2.5});
    EXPECT_EQ(object.strings("list"), (std::vector<std::string>{"a", "b"}));
    for (const char* text : {"null", "[{\"text\":1}]", "\"text\"", "1"}) {
        EXPECT_FALSE(JSONObject(*Json::parse(text)).contains("text")) << text;
    }
}

TEST(JSONObjectTest, wholeNumbersKeepTheirRangeAndElementsTheirOrder) {
    const std::vector<std::pair<JsonValue, std::optional<std::int64_t>>> cases = {
        {std::uint64_t{5}, 5},  // so held when the value was built here and not read
        {std::uint64_t{1} << 63, {}},
        {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min()},
        {-9223372036854775808.0, std::numeric_limits<std::int64_t>::min()},
        {9223372036854775808.0, {}},
        {std::numeric_limits<double>::infinity(), {}},
        {std::numeric_limits<double>::quiet_NaN(), {}}};
    for (const auto& [number, expected] : cases)
        EXPECT_EQ(JSONObject(JsonValue{{"n", number}}).optionalInteger("n"), expected) << Json::write(number);
    const JsonValue value = *Json::parse(R"({"z": 1, "a": [{"n": 1}, {}, 7, {"n": 2}]})");
    std::string keys;
    JSONObject(value).forEach([&](std::string_view key, const JsonValue&) { keys += key; });
    EXPECT_EQ(keys, "za");
    const auto numbers =
        JSONObject(value).list("a", [](const JsonValue& element) { return JSONObject(element).optionalInteger("n"); });
    EXPECT_EQ(numbers, (std::vector<std::int64_t>{1, 2}));
}

}  // namespace orvane
