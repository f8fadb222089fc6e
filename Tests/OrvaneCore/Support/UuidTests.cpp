#include "OrvaneCore/Support/Uuid.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace orvane {

TEST(UuidTest, readsBothCasesAndNothingElse) {
    const std::string lower = "0123abcd-89ef-4a6b-8c7d-fedcba987654";
    const std::string upper = "0123ABCD-89EF-4A6B-8C7D-FEDCBA987654";
    ASSERT_TRUE(Uuid::parse(lower));
    EXPECT_EQ(Uuid::parse(lower), Uuid::parse(upper));
    EXPECT_EQ(Uuid::parse(upper)->lowerText(), lower);
    EXPECT_EQ(Uuid::parse(lower)->upperText(), upper);
    EXPECT_EQ(Uuid::parse(lower)->bytes()[15], 0x54);

    const std::vector<std::string> malformed = {"",
                                                lower + " ",
                                                lower.substr(1),
                                                "{" + lower.substr(2) + "}",
                                                "0123abcd089ef-4a6b-8c7d-fedcba987654",
                                                "0123abcd-89ef-4a6b-8c7d-fedcba98765g",
                                                "0123abc--89ef-4a6b-8c7d-fedcba987654",
                                                "0123abcd-89ef-4a6b-8c7d-fedcba98765\xC3"};
    for (const std::string& text : malformed)
        EXPECT_FALSE(Uuid::parse(text)) << text;
}

TEST(UuidTest, randomIdsAreOfVersionFourAndDiffer) {
    std::unordered_set<Uuid> seen;
    for (int round = 0; round < 1000; ++round) {
        const Uuid id = Uuid::random();
        const std::string text = id.lowerText();
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
        EXPECT_EQ(Uuid::parse(text), id);
        EXPECT_TRUE(seen.insert(id).second) << text;
    }
}

}  // namespace orvane
