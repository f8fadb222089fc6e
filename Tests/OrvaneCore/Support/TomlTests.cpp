#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "OrvaneCore/Support/Toml.h"
#include "Support/Table.h"

namespace orvane {
namespace {

std::string asJson(const std::string& toml) {
    return Json::write(Toml::read(toml).root);
}

using Lines = std::vector<std::size_t>;

TEST(TomlTest, readsValuesOfEveryKind) {
    for (const auto& [toml, json] : table<2>(R"toml(
        ""                         | ""
        "a\"\\\t\u00e9\U0001F600"  | "a\"\\\té😀"
        'C:\dir\"x"'               | "C:\\dir\\\"x\""
        """a"b""c"""               | "a\"b\"\"c"
        """a"""""                  | "a\"\""
        """\"""\""""               | "\"\"\"\""
        '''it's ''a\n'''           | "it's ''a\\n"
        +1_000                     | 1000
        -0                         | 0
        0xDEAD_beef                | 3735928559
        0o755                      | 493
        0b1101                     | 13
        9223372036854775807        | 9223372036854775807
        -9223372036854775808       | -9223372036854775808
        6.5e-1                     | 0.65
        1e6                        | 1000000
        -inf                       | null
        true                       | true
        1979-05-27T07:32:00.5-07:00| "1979-05-27T07:32:00.5-07:00"
        1979-05-27 07:32:00Z       | "1979-05-27 07:32:00Z"
        1979-05-27                 | "1979-05-27"
        07:32:00                   | "07:32:00"
        [1, "a", [ ], ]            | [1,"a",[]]
        {a.b = 1, 'c d' = [{}]}    | {"a":{"b":1},"c d":[{}]})toml")) {
        EXPECT_EQ(asJson("x=" + toml), R"({"x":)" + json + "}") << toml;
        EXPECT_EQ(asJson(" x\t= " + toml + " # y = 1\r\nz = 1"), R"({"x":)" + json + R"(,"z":1})") << toml;
    }
}

TEST(TomlTest, readsWhatSpansLines) {
    EXPECT_EQ(asJson("a = [ # one\n  1,\r\n\n  2 # two ]\n]\nb = {\n x = 1,\n}\n"), R"({"a":[1,2],"b":{"x":1}})");
    EXPECT_EQ(asJson("a = \"\"\"\nx\\\n   \n  y\nz = 1\"\"\"\nb = '''\r\nx\\\n'''"),
              R"({"a":"xy\nz = 1","b":"x\\\n"})");
}

TEST(TomlTest, readsTablesAndKeepsTheirOrder) {
    const std::string text = R"(
model = "gpt"
'a.b'."c" . d = 1
[mcp_servers.zed]
command = "npx"
[mcp_servers.zed.env]
KEY = "v"
[ mcp_servers . "a b" ]   # a quoted part
url = "http://x/#y"
[mcp_servers]
top = true
[[hooks]]
name = "one"
[hooks.on]
exit = 1
[[hooks]]
name = "two"
[hooks.on]
exit = 2
)";
    const Toml::Document document = Toml::read("\xEF\xBB\xBF" + text);
    EXPECT_EQ(document.skippedLines, Lines{});
    EXPECT_EQ(Json::write(document.root),
              R"({"a.b":{"c":{"d":1}},"hooks":[{"name":"one","on":{"exit":1}},{"name":"two","on":{"exit":2}}],)"
              R"("mcp_servers":{"a b":{"url":"http://x/#y"},"top":true,)"
              R"("zed":{"command":"npx","env":{"KEY":"v"}}},"model":"gpt"})");
    EXPECT_EQ(document.root.at("mcp_servers").as_object().begin()->key(), "zed");
}

TEST(TomlTest, skipsMalformedLinesAndReadsOn) {
    for (const auto& [line] : table<1>(R"toml(
        a; = 1; a =; a 1; a = b; a = 1 2; a = "x; a = 'x; a = "\q"; a = "\ud800"; a = "\u-123"; a = "\u12"
        a = 01; a = 1__0; a = _1; a = 1_; a = .5; a = 5.; a = 0x; a = 0xg; a = 9223372036854775808; a = 1e999; a = +-1
        a = [1 2]; a = [; a = [,]; a = {x = 1; a = {x = 1, x = 2}; a = {,}; a = """; a = '''; """a""" = 1; a..b = 1
        .a = 1; ok = 3; ok.x = 1; a = 1979-05-27T; a = true1)toml")) {
        const Toml::Document document = Toml::read("ok = 1\n" + line + "\nnext = 2");
        EXPECT_EQ(Json::write(document.root), R"({"next":2,"ok":1})") << line;
        EXPECT_EQ(document.skippedLines, Lines{2}) << line;
    }
    EXPECT_EQ(asJson("a = \"\xC3\""), "{\"a\":\"\uFFFD\"}");
}

TEST(TomlTest, whatBelongsToNoTableGoesToNone) {
    for (const char* header : {"[broken", "[]", "[[x]", "[a] b", "[v]", "[v.w]", "[[v]]", "[l.w]"}) {
        const Toml::Document document =
            Toml::read("v = 1\nl = [1]\n" + std::string(header) + "\nv = 2\nw = 3\n[t]\ny = 4");
        EXPECT_EQ(Json::write(document.root), R"({"l":[1],"t":{"y":4},"v":1})") << header;
        EXPECT_EQ(document.skippedLines, (Lines{3, 4, 5})) << header;
    }
    EXPECT_EQ(asJson("a = 1\na = '''\nb = 2\n'''"), R"({"a":1})") << "the text of a value that is refused is no line";
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index)
        text += piece;
    return text;
}

TEST(TomlTest, keepsItsLimits) {
    const auto skipped = [](const std::string& text) { return Toml::read(text).skippedLines.size(); };
    EXPECT_EQ(skipped("a = " + repeated("[", 64) + repeated("]", 64)), 0U);
    EXPECT_EQ(skipped("a = " + repeated("[", 65) + repeated("]", 65)), 1U);
    EXPECT_EQ(skipped("a = " + repeated("{a=", 64) + "1" + repeated("}", 64)), 1U);
    EXPECT_EQ(skipped("[a" + repeated(".a", 63) + "]"), 0U);
    EXPECT_EQ(skipped("[a" + repeated(".a", 64) + "]"), 1U);
    EXPECT_EQ(skipped(repeated("[", 500'000)), 1U);
    EXPECT_EQ(skipped(repeated("a\n", 200)), Toml::maximumSkippedLines);
    EXPECT_EQ(asJson(std::string(Toml::maximumSize - 3, '\n') + "a=1"), R"({"a":1})");
    EXPECT_EQ(Toml::read(std::string(Toml::maximumSize - 2, '\n') + "a=1").skippedLines, Lines{1});
    // Each second line begins a value that only ends with the text; the lines between are malformed by themselves.
    EXPECT_EQ(skipped(repeated("a=[\"\"#\"\"\"\n,\"\"\"\n", 5'000)), 2U * 32 + 1);
}

}  // namespace
}  // namespace orvane
