#include "OrvaneCore/Support/Date.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "Support/Table.h"

namespace orvane {

TEST(DateTest, readsAndWritesIso8601) {
    auto cases = table<2>(R"(
        1970-01-01T00:00:00Z | 0 ; 1970-01-01 00:00:01 | 1 ; 2026-11-21T09:30:00.250Z | 1795253400.25
        2026-11-21T09:30:00,25z | 1795253400.25 ; 2026-11-21T11:30:00+02:00 | 1795253400
        2026-11-21T04:00:00-0530 | 1795253400 ; 1969-12-31T23:59:59.5Z | -0.5 ; 1970-01-01T00:00:00.600Z | 0.6
        2024-02-29T00:00:00Z | 1709164800 ; 2016-12-31T23:59:60Z | 1483228800 ; 0000-01-01T00:00:00Z | -62167219200
        | - ; 2026-11-21 | - ; 2026-11-21T09:30Z | - ; 2023-02-29T00:00:00Z | - ; 2026-13-01T00:00:00Z | -
        2026-11-21T24:00:00Z | - ; 2026-11-21T09:60:00Z | - ; 2026-11-21T09:30:61Z | - ; 2026-11-21T09:30:00.Z | -
        2026-11-21T09:30:00+02 | - ; 2026-11-21T09:30:00+24:00 | - ; 2026-11-21T09:30:00Zulu | -
        2026-11-21T09:30:00 Z | - ; -026-11-21T09:30:00Z | - ; 2026-11-21T+9:30:00Z | -)");
    cases.push_back({"1970-01-01T00:00:00.3" + std::string(400, '0') + "Z", "0.3"});
    for (const auto& [text, seconds] : cases) {
        const auto expected = seconds == "-" ? std::nullopt : std::optional(Date{std::stod(seconds)});
        EXPECT_EQ(Date::parseIso8601(text), expected) << text;
    }
    for (const auto& [seconds, text] : table<2>(R"(
        1795253399.9996 | 2026-11-21T09:30:00.000Z ; -0.001 | 1969-12-31T23:59:59.999Z
        -62167219200.5 | 0000-01-01T00:00:00.000Z ; inf | 9999-12-31T23:59:59.000Z
        -inf | 0000-01-01T00:00:00.000Z ; nan | 1970-01-01T00:00:00.000Z)"))
        EXPECT_EQ(Date{std::stod(seconds)}.iso8601(), text) << seconds;
}

TEST(DateTest, whatIsWrittenReadsBackToTheMillisecond) {
    std::mt19937_64 random(11);
    std::uniform_int_distribution<std::int64_t> milliseconds(-62167219200'000, 253402300799'000);
    for (int round = 0; round < 2000; ++round) {
        const Date date{static_cast<double>(milliseconds(random)) / 1000};
        const auto read = Date::parseIso8601(date.iso8601());
        ASSERT_TRUE(read) << date.iso8601();
        EXPECT_NEAR(read->secondsSince1970, date.secondsSince1970, 1e-4) << date.iso8601();
        EXPECT_EQ(read->iso8601(), date.iso8601());
    }
}

}  // namespace orvane
