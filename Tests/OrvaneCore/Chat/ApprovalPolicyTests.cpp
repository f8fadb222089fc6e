#include "OrvaneCore/Chat/ApprovalPolicy.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Support/Text.h"

namespace orvane::ApprovalPolicy {
namespace {

TEST(ApprovalPolicyTest, typesAnswers) {
    EXPECT_EQ(keystrokes(Decision::approve), "\r");
    EXPECT_EQ(keystrokes(Response{Response::Deny{}}), "\x1b");
    EXPECT_EQ(keystrokes(Response{Response::Option{0}}), "1");
    EXPECT_EQ(keystrokes(Response{Response::Option{8}}), "9");
    EXPECT_EQ(keystrokes(Response{Response::Text{" two words\n"}}), "two words\r");
    for (const Response& none :
         {Response{Response::Option{9}}, Response{Response::Option{-1}}, Response{Response::Text{" \n"}}})
        EXPECT_EQ(keystrokes(none), std::nullopt);
}

TEST(ApprovalPolicyTest, takesAnswersForAQuarterOfAnHour) {
    const Date asked{1000};
    for (const double age : {0.0, 900.0})
        EXPECT_TRUE(canAct(asked, asked + Seconds(age), true, false)) << age;
    for (const double age : {-0.001, 900.001})
        EXPECT_FALSE(canAct(asked, asked + Seconds(age), true, false)) << age;
    EXPECT_FALSE(canAct(asked, asked, false, false));
    EXPECT_FALSE(canAct(asked, asked, true, true));
}

TEST(ApprovalPolicyTest, cutsAtWords) {
    EXPECT_EQ(clean(" a\n\tb  c ", 80), "a b c");
    EXPECT_EQ(clean("12345 7890", 10), "12345 7890");
    EXPECT_EQ(clean("12345 78901", 10), "12345…");
    EXPECT_EQ(clean("1234 678901", 10), "1234 6789…");
    EXPECT_EQ(clean("abc", 2), "a…");
    EXPECT_EQ(clean("abc", 1), "abc");
    std::string words;
    for (int word = 0; word < 100; ++word)
        words += "mots été ";
    const Request request = summarize(words, words);
    EXPECT_TRUE(request.detail.ends_with("…"));
    EXPECT_LE(Text::characterCount(request.detail), detailLimit);
    EXPECT_LE(Text::characterCount(request.toolName), actionLabelLimit);
}

}  // namespace
}  // namespace orvane::ApprovalPolicy
