#include <gtest/gtest.h>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Workspace/ProjectList.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"
#include "Support/Table.h"

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

TEST(ProjectListTest, addsEachPathOnceAndMovesToThePlaceOfAnother) {
    auto projects = listed({"/w/a", "/w/b", "/w/a", "/w/a/", "/"});
    EXPECT_EQ(names(projects), "aba/");
    EXPECT_EQ(projects[3].colorIndex, 3);
    const auto again = ProjectList::adding("/w/b", projects);
    EXPECT_EQ(again.projects, projects);
    EXPECT_EQ(again.id, projects[1].id);

    projects = listed({"/a", "/b", "/c", "/d"});
    const auto id = [&](const std::string& index) { return projects[std::stoul(index)].id; };
    for (const auto& [from, to, expected] : table<3>("0|2|bcad; 0|1|bacd; 3|1|adbc; 0|3|bcda; 2|2|abcd"))
        EXPECT_EQ(names(ProjectList::moving(id(from), id(to), projects)), expected) << from << " to " << to;
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

TEST(ProjectPaletteTest, readsHexColoursAndStartsOverBeyondItsEnds) {
    EXPECT_EQ(ProjectPalette::colorHex("#00ff7F"), "00FF7F");
    for (const char* text : {"", "#", "##12345", "12345g", "1234567", " 123456"})
        EXPECT_EQ(ProjectPalette::colorHex(text), std::nullopt) << text;
    const auto& colors = ProjectPalette::colors;
    EXPECT_EQ(ProjectPalette::color(12).hex, colors[0].hex);
    EXPECT_EQ(ProjectPalette::color(-1).hex, colors[11].hex);
    for (const ProjectColor& color : colors) {
        EXPECT_EQ(ProjectPalette::colorHex(color.hex), color.hex);
        EXPECT_NE(L10n{Language::ja}.text(color.nameKey), color.nameKey);
    }
    EXPECT_EQ(ProjectPalette::color(INT64_MIN).hex, colors[4].hex);  // -2^63 is 4 modulo 12
}

}  // namespace
}  // namespace orvane
