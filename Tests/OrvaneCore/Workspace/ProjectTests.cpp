#include <gtest/gtest.h>

#include <cmath>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Workspace/ProjectList.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane {
namespace {

std::vector<Project> listed(std::initializer_list<const char*> paths) {
    std::vector<Project> projects;
    for (const char* path : paths)
        projects = ProjectList::adding(path, projects).projects;
    return projects;
}

std::string names(const std::vector<Project>& projects) {
    std::string result;
    for (const Project& project : projects)
        result += project.name;
    return result;
}

TEST(ProjectListTest, addsEachPathOnce) {
    const auto projects = listed({"/w/a", "/w/b", "/w/a", "/w/a/", "/"});
    EXPECT_EQ(names(projects), "aba/");
    EXPECT_EQ(projects[3].colorIndex, 3);
    const auto again = ProjectList::adding("/w/b", projects);
    EXPECT_EQ(again.projects, projects);
    EXPECT_EQ(again.id, projects[1].id);
}

TEST(ProjectListTest, movesToThePlaceOfAnother) {
    const auto projects = listed({"/a", "/b", "/c", "/d"});
    const std::tuple<int, int, const char*> cases[] = {
        {0, 2, "bcad"}, {0, 1, "bacd"}, {3, 1, "adbc"}, {0, 3, "bcda"}, {2, 2, "abcd"}};
    for (const auto& [from, to, expected] : cases) {
        const auto id = [&](int index) { return projects[static_cast<std::size_t>(index)].id; };
        EXPECT_EQ(names(ProjectList::moving(id(from), id(to), projects)), expected) << from << " to " << to;
    }
    EXPECT_EQ(ProjectList::moving(Uuid::random(), projects[0].id, projects), projects);
    EXPECT_EQ(ProjectList::moving(projects[0].id, Uuid::random(), projects), projects);
}

TEST(ProjectListTest, renamesAndColours) {
    const auto projects = listed({"/a", "/b"});
    const Uuid id = projects[1].id;
    EXPECT_EQ(ProjectList::renaming(id, " \n ", projects), projects);
    EXPECT_EQ(names(ProjectList::renaming(id, " x y\n", projects)), "ax y");

    EXPECT_EQ(ProjectList::coloringCustom(id, "12345", projects), projects);
    const auto custom = ProjectList::coloringCustom(id, "#ab12eF", projects);
    EXPECT_EQ(custom[1].colorHex(), "AB12EF");
    const auto back = ProjectList::coloring(id, 1, custom);
    EXPECT_EQ(back, projects) << "a palette colour takes the custom one away";
    EXPECT_EQ(names(ProjectList::removing(id, projects)), "a");
}

TEST(ProjectPaletteTest, readsHexColours) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"#00ff7F", "00FF7F"},     {"ABCDEF", "ABCDEF"},     {"", std::nullopt},        {"#", std::nullopt},
        {"##12345", std::nullopt}, {"12345g", std::nullopt}, {"1234567", std::nullopt}, {" 123456", std::nullopt},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ProjectPalette::colorHex(text), expected) << text;
}

TEST(ProjectPaletteTest, startsOverBeyondItsEnds) {
    const auto& colors = ProjectPalette::colors;
    EXPECT_EQ(ProjectPalette::color(12).hex, colors[0].hex);
    EXPECT_EQ(ProjectPalette::color(-1).hex, colors[11].hex);
    EXPECT_EQ(ProjectPalette::color(INT64_MIN).hex, colors[4].hex);  // -2^63 is 4 modulo 12
}

/// Red, green and blue from 0 to 255.
std::array<int, 3> channels(std::string_view hex) {
    const int value = std::stoi(std::string(hex), nullptr, 16);
    return {value >> 16, value >> 8 & 0xFF, value & 0xFF};
}

/// WCAG 2.2, "relative luminance".
double luminance(std::string_view hex) {
    const auto linear = [](int channel) { return std::pow((channel / 255.0 + 0.055) / 1.055, 2.4); };
    const auto [red, green, blue] = channels(hex);
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

TEST(ProjectPaletteTest, readsOnLightAndDarkAndHasNoTwoAlike) {
    for (const ProjectColor& color : ProjectPalette::colors) {
        EXPECT_EQ(ProjectPalette::colorHex(color.hex), color.hex);
        EXPECT_NE(L10n{Language::ja}.text(color.nameKey), color.nameKey);
        EXPECT_GE(1.05 / (luminance(color.hex) + 0.05), 3) << color.nameKey;
        EXPECT_GE((luminance(color.hex) + 0.05) / (luminance("1E1E1E") + 0.05), 3) << color.nameKey;
        for (const ProjectColor& other : ProjectPalette::colors) {
            const auto [red, green, blue] = channels(color.hex);
            const auto [otherRed, otherGreen, otherBlue] = channels(other.hex);
            const double distance = std::hypot(red - otherRed, green - otherGreen, blue - otherBlue);
            EXPECT_TRUE(&other == &color || distance > 45) << color.nameKey << " and " << other.nameKey;
        }
    }
}

}  // namespace
}  // namespace orvane
