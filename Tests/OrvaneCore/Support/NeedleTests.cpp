#include "OrvaneCore/Support/Needle.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace orvane {
namespace {

TEST(NeedleTest, FindsWhatAPlainSearchFinds) {
    std::mt19937 random(7);
    const auto text = [&](std::size_t size) {
        std::string letters;
        for (std::size_t at = 0; at < size; ++at)
            letters += "\"ab:"[random() % 4];
        return letters;
    };
    for (int round = 0; round < 20'000; ++round) {
        const std::string line = text(random() % 80);
        const std::string wanted = text(random() % 7);
        const std::size_t from = random() % (line.size() + 1);
        EXPECT_EQ(Needle(wanted).findIn(line, from), line.find(wanted, from)) << wanted << " in " << line;
    }
}

}  // namespace
}  // namespace orvane
