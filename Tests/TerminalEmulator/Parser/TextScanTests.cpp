#include "TerminalEmulator/Parser/TextScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace orvane {

TEST(TextScanTest, findsTheFirstByteThatEndsTheRunAtAnyPlace) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        // The vector ends with the bytes, so that a read behind them is seen by the sanitizer.
        std::vector<std::uint8_t> bytes(random() % 70);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(0x20 + random() % (0x7F - 0x20));
        for (auto others = random() % 3; others > 0 && !bytes.empty(); --others)
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        const auto lengthUntil = [&](auto ends) {
            return static_cast<std::size_t>(std::ranges::find_if(bytes, ends) - bytes.begin());
        };
        const std::size_t text = lengthUntil([](std::uint8_t byte) { return byte < 0x20; });
        const std::size_t plain = lengthUntil([](std::uint8_t byte) { return byte < 0x20 || byte >= 0x7F; });
        ASSERT_EQ(TextScan::textLength(bytes.data(), bytes.size()), text) << testing::PrintToString(bytes);
        ASSERT_EQ(TextScan::Words::textLength(bytes.data(), bytes.size()), text) << testing::PrintToString(bytes);
        ASSERT_EQ(TextScan::plainLength(bytes.data(), bytes.size()), plain) << testing::PrintToString(bytes);
        ASSERT_EQ(TextScan::Words::plainLength(bytes.data(), bytes.size()), plain) << testing::PrintToString(bytes);
    }
}

}  // namespace orvane
