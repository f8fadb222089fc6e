#include <gtest/gtest.h>

#include <set>

#include "OrvaneCore/Support/IdPrefix.h"
#include "OrvaneCore/Support/Sha256.h"
#include "OrvaneCore/Support/Uuid.h"
#include "Support/Table.h"

namespace orvane {
namespace {

const std::string lower = "0123abcd-89ef-4a6b-8c7d-fedcba987654";

TEST(UuidTest, readsBothCasesAndNothingElse) {
    const std::string upper = "0123ABCD-89EF-4A6B-8C7D-FEDCBA987654";
    ASSERT_TRUE(Uuid::parse(lower));
    EXPECT_EQ(Uuid::parse(lower), Uuid::parse(upper));
    EXPECT_EQ(Uuid::parse(upper)->lowerText(), lower);
    EXPECT_EQ(Uuid::parse(lower)->upperText(), upper);
    EXPECT_EQ(Uuid::parse(lower)->bytes()[15], 0x54);
    for (const std::string& text : {std::string(), lower + " ", lower.substr(1), "{" + lower.substr(2) + "}"})
        EXPECT_FALSE(Uuid::parse(text)) << text;
    for (const auto& [text] : table<1>("0123abcd089ef-4a6b-8c7d-fedcba987654; 0123abcd-89ef-4a6b-8c7d-fedcba98765g;"
                                       "0123abc--89ef-4a6b-8c7d-fedcba987654; 0123abcd-89ef-4a6b-8c7d-fedcba98765\xC3"))
        EXPECT_FALSE(Uuid::parse(text)) << text;
}

TEST(UuidTest, randomIdsAreOfVersionFourAndDiffer) {
    std::set<Uuid> seen;
    for (int round = 0; round < 1000; ++round) {
        const Uuid id = Uuid::random();
        const std::string text = id.lowerText();
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
        EXPECT_EQ(Uuid::parse(text), id);
        EXPECT_TRUE(seen.insert(id).second) << text;
    }
}

const Uuid first = *Uuid::parse("0123abcd-0000-4000-8000-000000000001");
const Uuid second = *Uuid::parse("0123abcd-0000-4000-8000-000000000002");
const Uuid third = *Uuid::parse("0f23abcd-0000-4000-8000-000000000001");

TEST(IdPrefixTest, findsTheOneIdThatBeginsSo) {
    using enum IdPrefix::Error;
    const std::map<std::string, std::expected<Uuid, IdPrefix::Error>> outcomes = {{"1", first},
                                                                                  {"2", second},
                                                                                  {"3", third},
                                                                                  {"several", std::unexpected(several)},
                                                                                  {"none", std::unexpected(none)}};
    auto cases = table<2>(R"(
        0f | 3 ; 0F23ABCD- | 3 ; 0123abcd-0000-4000-8000-000000000001 | 1 ; 0123ABCD-0000-4000-8000-000000000002 | 2
        0 | several ; 0123abcd-0000-4000-8000-00000000000 | several ; | none ; 1 | none ; f23 | none
        0f23abcd-0000-4000-8000-0000000000010 | none)");
    cases.push_back({" 0f", "none"});
    for (const auto& [prefix, expected] : cases)
        EXPECT_EQ(IdPrefix::resolve(prefix, {first, second, third}), outcomes.at(expected)) << '"' << prefix << '"';
    EXPECT_EQ(IdPrefix::resolve("0", {third, third}), third) << "the same id twice is no doubt";
}

TEST(IdPrefixTest, theDistinguishingLengthTellsAllApart) {
    const std::vector<std::tuple<std::vector<Uuid>, std::size_t, std::size_t>> cases = {
        {{}, 8, 8}, {{first, third}, 8, 8}, {{first, third, first}, 1, 2}, {{third, first, second}, 8, 36}};
    for (const auto& [ids, minimum, expected] : cases) {
        const std::size_t length = IdPrefix::distinguishingLength(ids, minimum);
        EXPECT_EQ(length, expected) << ids.size() << " ids from " << minimum;
        for (const Uuid& id : ids)
            EXPECT_EQ(IdPrefix::resolve(id.lowerText().substr(0, length), ids), id);
    }
}

TEST(Sha256Test, givesTheKnownDigests) {
    // The empty message and the example of FIPS 180-4 whose padding takes a second block.
    EXPECT_EQ(sha256Hex({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

}  // namespace
}  // namespace orvane
