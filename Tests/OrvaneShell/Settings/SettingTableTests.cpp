#include "OrvaneShell/Settings/SettingTable.h"

#include <gmock/gmock.h>

#include "OrvaneShell/ServicesFixture.h"
#include "OrvaneShell/View/Keys/KeySettings.h"

namespace orvane::testing {
namespace {

using ::testing::HasSubstr;

class SettingTableTest : public ServicesFixture {
 protected:
    std::string set(std::string_view key, std::string_view value) {
        const auto done = SettingTable::set(*SettingTable::named(key), value, {}, preferences);
        return done ? std::string() : done.error();
    }
    std::string value(std::string_view key) { return SettingTable::value(*SettingTable::named(key), preferences); }
};

TEST_F(SettingTableTest, ValuesAreTakenAsPeopleTypeThemAndDefaultsAreNotKept) {
    const struct {
        std::string_view key, typed, kept;
    } cases[] = {{"language", "ZHHANS", "zhHans"},         {"view.theme", "Light", "light"},
                 {"view.leader", "ctrl-a", "C-a"},         {"view.leader", "F12", "F12"},
                 {"view.screenReader", "yes", "on"},       {"restore.enabled", "FALSE", "off"},
                 {"terminal.scrollback", "0", "0"},        {"terminal.scrollback", "1000000", "1000000"},
                 {"view.linkOpener", "open -a", "open -a"}};
    for (const auto& each : cases) {
        EXPECT_EQ(set(each.key, each.typed), "") << each.key;
        EXPECT_EQ(value(each.key), each.kept) << each.key;
        EXPECT_TRUE(preferences.contains(each.key));
    }
    for (const Setting& setting : SettingTable::all()) {
        EXPECT_EQ(set(setting.key, setting.fallback), "") << setting.key;
        EXPECT_FALSE(preferences.contains(setting.key)) << setting.key;
        EXPECT_EQ(value(setting.key), setting.fallback) << setting.key;
        EXPECT_NE(setting.meaning({}), "settings." + std::string(setting.key)) << "it has a text";
    }
}

TEST_F(SettingTableTest, WhatIsNoValueIsRefusedWithWhatIsOneAndChangesNothing) {
    for (const auto& [key, typed] : {std::pair{"language", "klingon"},
                                     {"view.theme", ""},
                                     {"view.leader", "C-"},
                                     {"view.screenReader", "perhaps"},
                                     {"terminal.scrollback", "-1"},
                                     {"terminal.scrollback", "1000001"},
                                     {"terminal.scrollback", "many"},
                                     {"view.linkOpener", "a\nb"}}) {
        EXPECT_THAT(set(key, typed), HasSubstr(key));
        EXPECT_FALSE(preferences.contains(key));
    }
    // What somebody wrote there by hand counts as not chosen.
    preferences.setString("view.theme", "pink");
    preferences.setString("terminal.scrollback", "many");
    preferences.setInteger("language", 7);
    for (const char* key : {"view.theme", "terminal.scrollback", "language"})
        EXPECT_EQ(value(key), SettingTable::named(key)->fallback);
}

TEST_F(SettingTableTest, KeysDoNotGetInEachOthersWay) {
    EXPECT_THAT(set("view.leader", "a"), HasSubstr("Programs need a"));
    EXPECT_EQ(set("view.leader", "C-p"), "");
    EXPECT_THAT(set("view.keys.preset", "zellij"), HasSubstr("C-p"));
    EXPECT_EQ(set("view.leader", "auto"), "");
    KeyBindings bindings;
    ASSERT_TRUE(bindings.bind(KeySequence::parse("C-p").value(), *ViewCommand::named("zoom")));
    KeySettings::save(bindings, preferences);
    EXPECT_THAT(set("view.leader", "C-p"), HasSubstr("zoom"));
    EXPECT_EQ(set("view.leader", "C-x"), "");
    ASSERT_TRUE(bindings.bind(KeySequence::parse("C-a").value(), *ViewCommand::named("move")));
    KeySettings::save(bindings, preferences);
    EXPECT_THAT(set("view.leader", "auto"), HasSubstr("move")) << "it is C-a inside tmux";
    preferences.remove(KeySettings::leaderKey);
    EXPECT_THAT(set("view.keys.preset", "zellij"), HasSubstr("C-p"));
    EXPECT_EQ(value("view.keys.preset"), "tmux");
    preferences.remove(KeySettings::changesKey);
    EXPECT_EQ(set("view.keys.preset", "zellij"), "");
    EXPECT_EQ(KeySettings::load(preferences).preset(), KeyPreset::zellij);
}

}  // namespace
}  // namespace orvane::testing
