#include "OrvaneShell/View/Keys/KeyBindings.h"

#include <gmock/gmock.h>

#include "OrvaneShell/View/Keys/KeySettings.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using Kind = KeyBindings::Conflict::Kind;

KeySequence keys(std::string_view text) {
    return KeySequence::parse(text).value();
}

const ViewCommand& command(std::string_view name) {
    return *ViewCommand::named(name);
}

std::optional<Kind> conflictOf(KeyBindings& bindings, std::string_view text, std::string_view name) {
    const auto done = bindings.bind(keys(text), command(name), {KeyText::parse("C-b").value()});
    return done ? std::nullopt : std::optional(done.error().kind);
}

TEST(KeySequence, IsReadAndWrittenAsPeopleDo) {
    for (const auto& [typed, written] : {std::pair{"leader %", "Leader %"},
                                         {"LEADER  ctrl-left", "Leader C-Left"},
                                         {" M-x ", "M-x"},
                                         {"C-p C-p n", "C-p C-p n"}}) {
        EXPECT_EQ(keys(typed).text(), written);
        EXPECT_EQ(keys(written), keys(typed));
    }
    EXPECT_EQ(KeySequence::parse("").error(), "");
    EXPECT_EQ(KeySequence::parse("Leader").error(), "Leader");
    EXPECT_EQ(KeySequence::parse("C-b Foo").error(), "Foo");
    EXPECT_EQ(KeySequence::parse("a b c d e").error(), "a b c d e");
    EXPECT_EQ(keys("Leader %").shown(KeyText::parse("C-a").value()), "C-a %");
    EXPECT_EQ(KeySettings::withLeader(keys("C-b v"), KeySettings::defaultLeaders()), keys("Leader v"));
}

/// A preset with a mistake would quietly lose a key.
TEST(KeyBindings, PresetsAreWithoutConflictsAndGiveEveryCommandAKey) {
    for (const KeyPreset preset : {KeyPreset::tmux, KeyPreset::zellij}) {
        KeyBindings own(preset);
        EXPECT_EQ(own.all().size(), presetKeys(preset).size());
        for (const PresetKeys& row : presetKeys(preset)) {
            const ViewCommand* named = ViewCommand::named(row.command);
            ASSERT_NE(named, nullptr) << row.command;
            EXPECT_EQ(keys(row.keys).text(), row.keys);
            EXPECT_EQ(conflictOf(own, row.keys, row.command), std::nullopt) << row.keys;
        }
        for (const ViewCommand& each : ViewCommand::all())
            EXPECT_TRUE(each.name == "new-pane" || !KeyBindings(preset).keysOf(each).empty()) << each.name;
    }
}

TEST(KeyBindings, ConflictsAreToldAndChangeNothing) {
    KeyBindings bindings(KeyPreset::zellij);
    const auto before = bindings.all().size();
    EXPECT_EQ(conflictOf(bindings, "Leader x", "zoom"), Kind::taken);
    EXPECT_EQ(conflictOf(bindings, "C-p", "zoom"), Kind::isStart);
    EXPECT_EQ(conflictOf(bindings, "C-q a", "zoom"), Kind::hasStart);
    EXPECT_EQ(conflictOf(bindings, "v", "zoom"), Kind::typesText);
    EXPECT_EQ(conflictOf(bindings, "S-Left", "zoom"), Kind::typesText);
    EXPECT_EQ(conflictOf(bindings, "C-i", "zoom"), Kind::typesText) << "which is Tab";
    EXPECT_EQ(conflictOf(bindings, "C-b v", "zoom"), Kind::isLeader);
    EXPECT_EQ(bindings.all().size(), before);
    EXPECT_TRUE(bindings.changes().empty());
    EXPECT_EQ(conflictOf(bindings, "F5", "zoom"), std::nullopt);
    EXPECT_EQ(bindings.beginningWith(KeyText::parse("C-p").value())->command->name, "new-pane");
    EXPECT_FALSE(bindings.beginningWith(KeyText::parse("C-a").value()));
}

TEST(KeyBindings, ChangesAreKeptAppliedAndTakenBack) {
    KeyBindings bindings;
    ASSERT_TRUE(bindings.bind(keys("Leader v"), command("split-right")));
    EXPECT_EQ(bindings.keysOf(command("split-right")).front(), keys("Leader v")) << "the user's own is shown";
    ASSERT_TRUE(bindings.unbind(keys("Leader x")));
    EXPECT_FALSE(bindings.unbind(keys("Leader x")));
    ASSERT_TRUE(bindings.bind(keys("Leader x"), command("zoom")));
    EXPECT_THAT(bindings.changes(), ElementsAre(Pair("Leader v", "split-right"), Pair("Leader x", "zoom")));

    KeyBindings again(KeyPreset::tmux, bindings.changes());
    EXPECT_EQ(again.binding(keys("Leader v"))->command->name, "split-right");
    // What another version knows is left alone and comes back with what is saved.
    const KeyBindings::Changes foreign{{"Leader v", "make-coffee"}, {"Leader ~~", "zoom"}, {"Leader y", "zoom"}};
    const KeyBindings odd(KeyPreset::tmux, foreign);
    EXPECT_THAT(odd.unusable(), ElementsAre(Pair("Leader v", "make-coffee"), Pair("Leader ~~", "zoom")));
    EXPECT_EQ(odd.changes(), foreign);

    EXPECT_TRUE(bindings.reset(keys("Leader v")).value());
    EXPECT_FALSE(bindings.reset(keys("Leader v")).value());
    EXPECT_EQ(bindings.binding(keys("Leader v")), nullptr);
    EXPECT_TRUE(bindings.reset(keys("Leader x")).value());
    EXPECT_EQ(bindings.binding(keys("Leader x"))->command->name, "close-pane");
}

/// Keys of the preset that were set anew by the user are those that a restart has to find again.
TEST(KeyBindings, AKeyOfThePresetCanDoSomethingElseAfterARestart) {
    KeyBindings bindings;
    ASSERT_TRUE(bindings.unbind(keys("Leader x")));
    ASSERT_TRUE(bindings.bind(keys("Leader x"), command("zoom")));
    const KeyBindings again(KeyPreset::tmux, bindings.changes());
    EXPECT_TRUE(again.unusable().empty());
    EXPECT_EQ(again.binding(keys("Leader x"))->command->name, "zoom");
}

TEST(KeyBindings, StepsLeadToACommandKeyByKey) {
    const KeyBindings bindings(KeyPreset::zellij);
    const KeyEvent controlP{.character = 'p', .modifiers = {.control = true}};
    const auto first = bindings.step({}, controlP);
    ASSERT_TRUE(first.typed);
    EXPECT_EQ(first.typed->text(), "C-p");
    EXPECT_EQ(bindings.step(*first.typed, {.character = 'x'}).command->name, "close-pane");
    const auto nothing = bindings.step(*first.typed, {.character = 'q'});
    EXPECT_TRUE(nothing.command == nullptr && !nothing.typed);
    EXPECT_EQ(bindings.step({.beginsWithLeader = true}, {.character = '%'}).command->name, "split-right");
    EXPECT_FALSE(bindings.step({}, {.character = '%'}).typed) << "only behind the leader";
}

}  // namespace
}  // namespace orvane
