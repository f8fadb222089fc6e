#include "OrvaneCore/Transcripts/TranscriptRecord.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

TEST(TranscriptRecordTest, WhatIsMissingOrOfAnotherTypeIsAbsent) {
    TranscriptParser parser;
    const auto line = parser.parse(
        R"({"text":"a\n\"b\"","n":3.0,"half":2.5,"big":18446744073709551615,"no":null,"yes":true,"list":[1,"x",{"k":"v"}]})");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->string("text"), "a\n\"b\"");
    EXPECT_EQ(line->integer("n"), 3);
    for (const char* key : {"half", "big", "no", "text", "gone"})
        EXPECT_EQ(line->integer(key), std::nullopt) << key;
    EXPECT_TRUE(line->isTrue("yes"));
    EXPECT_FALSE(line->isTrue("n"));
    EXPECT_FALSE(line->contains("no"));
    ASSERT_EQ(line->elements("list").size(), 3U);
    EXPECT_EQ(line->elements("list")[2].string("k"), "v");
    EXPECT_EQ((*line)["text"]["deeper"]["still"].string(), std::nullopt);
    EXPECT_TRUE(line->elements("text").empty());
    EXPECT_EQ(line->members().front().key, "text");
}

TEST(TranscriptRecordTest, ReadsWhatAgentsCutInTheMiddle) {
    const std::string replacement = "\xEF\xBF\xBD";
    const struct {
        std::string line;
        std::string expected;
    } cases[] = {
        {R"({"t":"cut \ud83d"})", "cut " + replacement},
        {R"({"t":"\ude00 cut \ud83d\ude00"})", replacement + " cut \xF0\x9F\x98\x80"},
        {R"({"t":"\\ud83d \ud83d\n"})", "\\ud83d " + replacement + "\n"},
        {R"({"t":"\ud83d\ud83d\ude00"})", replacement + "\xF0\x9F\x98\x80"},
        {"{\"t\":\"a\xF0\x9F\x98\"}", "a" + replacement},
    };
    TranscriptParser parser;
    for (const auto& each : cases) {
        const auto line = parser.parse(each.line);
        ASSERT_TRUE(line) << each.line;
        EXPECT_EQ(line->string("t"), each.expected) << each.line;
    }
    for (const std::string cut : {R"({"t":"a)", R"({"t":"a"} more)", "", "{", R"({"t":"\u12"})"})
        EXPECT_FALSE(parser.parse(cut)) << cut;
    EXPECT_FALSE(parser.parse(std::string(5000, '[') + std::string(5000, ']')));
}

}  // namespace
}  // namespace orvane
