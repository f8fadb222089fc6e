#include "OrvaneShell/View/Keys/KeySettings.h"

#include <algorithm>

namespace orvane::KeySettings {

namespace {

constexpr std::string_view defaultLeader = "C-b";
/// Inside tmux, whose own leader is the default one.
constexpr std::string_view nestedLeader = "C-a";

}  // namespace

KeyBindings load(const PreferencesStore& preferences) {
    const auto preset = fromRawValue<KeyPreset>(preferences.string(presetKey, {}));
    return KeyBindings(preset.value_or(KeyPreset::tmux), preferences.texts(changesKey));
}

void save(const KeyBindings& bindings, PreferencesStore& preferences) {
    const auto changes = bindings.changes();
    if (changes.empty()) return preferences.remove(changesKey);
    preferences.setTexts(changesKey, changes);
}

KeyPattern leader(const PreferencesStore& preferences, bool isInsideTmux) {
    const auto chosen = KeyText::parse(preferences.string(leaderKey, {}));
    return chosen ? *chosen : *KeyText::parse(isInsideTmux ? nestedLeader : defaultLeader);
}

std::vector<KeyPattern> defaultLeaders() {
    return {*KeyText::parse(defaultLeader), *KeyText::parse(nestedLeader)};
}

std::vector<KeyPattern> leaders(const PreferencesStore& preferences) {
    return {leader(preferences, false), leader(preferences, true)};
}

KeySequence withLeader(KeySequence keys, const std::vector<KeyPattern>& leaders) {
    if (keys.beginsWithLeader || keys.keys.size() < 2 || std::ranges::find(leaders, keys.keys.front()) == leaders.end())
        return keys;
    keys.beginsWithLeader = true;
    keys.keys.erase(keys.keys.begin());
    return keys;
}

}  // namespace orvane::KeySettings
