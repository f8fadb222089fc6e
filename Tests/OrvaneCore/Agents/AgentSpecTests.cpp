#include <gtest/gtest.h>

#include <set>

#include "OrvaneCore/Agents/AgentSpecCatalog.h"

namespace orvane {
namespace {

using enum AgentSpec::ValidationError;

AgentSpec spec(const std::string& name, const std::string& command) {
    return {.id = Uuid::random(),
            .name = name,
            .command = command,
            .symbol = "bolt",
            .colorHex = "6FCF97",
            .busyPatterns = {"esc to (stop|cancel)", "\\d+%"},
            .waitingPatterns = {"\\[y/n\\]"}};
}

TEST(AgentSpecTest, validatesNameThenCommandThenUniqueness) {
    const std::vector existing = {spec("Élan", "elan"), spec("Straße", "s")};
    const std::vector<std::tuple<std::string, std::string, std::optional<AgentSpec::ValidationError>>> cases = {
        {" \t", "", emptyName},          {"élan", "\t ", emptyCommand}, {"\t éLAN ", "x", duplicateName},
        {"STRASSE", "x", duplicateName}, {"Elan", "x", std::nullopt},   {"\n", "x", std::nullopt},
    };
    for (const auto& [name, command, error] : cases)
        EXPECT_EQ(AgentSpec::validate(name, command, existing), error) << name << ", " << command;
}

TEST(AgentSpecCatalogTest, offersPresetsThatCanBeAdded) {
    std::vector<AgentSpec> added;
    std::set<Uuid> ids;
    for (const AgentSpec& preset : AgentSpecCatalog::presets()) {
        EXPECT_EQ(AgentSpec::validate(preset.name, preset.command, added), std::nullopt) << preset.name;
        EXPECT_TRUE(ids.insert(preset.id).second);
        added.push_back(preset);
    }
    ASSERT_EQ(added.size(), 6U);
    EXPECT_EQ(added[5].command, "goose session");
    EXPECT_NE(added[0].id, AgentSpecCatalog::presets()[0].id);
    EXPECT_EQ(AgentSpecCatalog::decode(AgentSpecCatalog::encode(added)), added);
}

TEST(AgentSpecCatalogTest, findsPresetsByNameAndProgramAndKnowsWhichAreMissing) {
    for (const auto& [typed, found] :
         {std::pair("cURSOR cli", "Cursor CLI"), {"cursor-agent", "Cursor CLI"}, {"GOOSE", "Goose"}}) {
        const auto preset = AgentSpecCatalog::preset(typed);
        ASSERT_TRUE(preset) << typed;
        EXPECT_EQ(preset->name, found);
    }
    for (const char* typed : {"", "goose session", "session", "cursor"})
        EXPECT_FALSE(AgentSpecCatalog::preset(typed)) << typed;
    const auto missing = AgentSpecCatalog::presetsMissing({spec("aIDER", "x"), spec("mine", "goose session")});
    ASSERT_EQ(missing.size(), 4U);
    EXPECT_EQ(missing.back().name, "Amp");
}

TEST(AgentSpecCatalogTest, readsBackWhatItWroteAndSkipsBadEntriesOnly) {
    const std::vector specs = {spec("A", "a --x 'y'"), spec("B", "b")};
    EXPECT_EQ(AgentSpecCatalog::decode(*Json::parse(Json::write(AgentSpecCatalog::encode(specs)))), specs);

    const auto read = AgentSpecCatalog::decode(*Json::parse(R"([7, {}, {"name": "x"}, {"name": " ", "command": "x"},
        {"id": "0123ABCD-89EF-4A6B-8C7D-FEDCBA987654", "name": "one", "command": "1"},
        {"id": "0123abcd-89ef-4a6b-8c7d-fedcba987654", "name": "two", "command": "2", "colorHex": "#a1b2c3"},
        {"id": 3, "name": "three", "command": "3", "colorHex": "red", "busyPatterns": ["b", 1], "symbol": null}])"));
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0].id.lowerText(), "0123abcd-89ef-4a6b-8c7d-fedcba987654");
    EXPECT_NE(read[1].id, read[0].id) << "an id names one agent";
    EXPECT_EQ(read[1].colorHex, "A1B2C3");
    EXPECT_EQ(read[2].colorHex, "");
    EXPECT_EQ(read[2].busyPatterns, std::vector<std::string>{"b"});
    for (const char* other : {"{}", "null", R"({"name": "x", "command": "x"})"})
        EXPECT_TRUE(AgentSpecCatalog::decode(*Json::parse(other)).empty()) << other;
}

}  // namespace
}  // namespace orvane
