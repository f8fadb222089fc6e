#include "OrvaneCore/Support/IdPrefix.h"

#include <gtest/gtest.h>

#include <tuple>

namespace orvane {
namespace {

const Uuid first = *Uuid::parse("0123abcd-0000-4000-8000-000000000001");
const Uuid second = *Uuid::parse("0123abcd-0000-4000-8000-000000000002");
const Uuid third = *Uuid::parse("0f23abcd-0000-4000-8000-000000000001");

TEST(IdPrefixTest, findsTheOneIdThatBeginsSo) {
    using enum IdPrefix::Error;
    const std::tuple<std::string, std::expected<Uuid, IdPrefix::Error>> cases[] = {
        {"0f", third},
        {"0F23ABCD-", third},
        {first.lowerText(), first},
        {second.upperText(), second},
        {"0", std::unexpected(several)},
        {"0123abcd-0000-4000-8000-00000000000", std::unexpected(several)},
        {"", std::unexpected(none)},
        {"1", std::unexpected(none)},
        {"f23", std::unexpected(none)},
        {" 0f", std::unexpected(none)},
        {third.lowerText() + "0", std::unexpected(none)},
    };
    for (const auto& [prefix, expected] : cases)
        EXPECT_EQ(IdPrefix::resolve(prefix, {first, second, third}), expected) << '"' << prefix << '"';
    EXPECT_EQ(IdPrefix::resolve("0", {third, third}), third) << "the same id twice is no doubt";
    EXPECT_EQ(IdPrefix::resolve("0", {}), std::unexpected(none));
}

TEST(IdPrefixTest, theDistinguishingLengthTellsAllApart) {
    const std::tuple<std::vector<Uuid>, std::size_t, std::size_t> cases[] = {
        {{}, 8, 8},
        {{first}, 8, 8},
        {{first, third}, 8, 8},
        {{first, third}, 1, 2},
        {{third, first, second}, 8, 36},
        {{first, third, first}, 1, 2},
    };
    for (const auto& [ids, minimum, expected] : cases) {
        const std::size_t length = IdPrefix::distinguishingLength(ids, minimum);
        EXPECT_EQ(length, expected) << ids.size() << " ids from " << minimum;
        for (const Uuid& id : ids)
            EXPECT_EQ(IdPrefix::resolve(id.lowerText().substr(0, length), ids), id);
    }
}

}  // namespace
}  // namespace orvane
