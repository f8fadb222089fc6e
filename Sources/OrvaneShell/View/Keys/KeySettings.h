#pragma once

#include "OrvaneShell/View/Keys/KeyBindings.h"
#include "Platform/PreferencesStore.h"

/// The keys of the view as the preferences hold them.
namespace orvane::KeySettings {

inline constexpr std::string_view leaderKey = "view.leader";
inline constexpr std::string_view presetKey = "view.keys.preset";
inline constexpr std::string_view changesKey = "view.keys";

KeyBindings load(const PreferencesStore& preferences);
void save(const KeyBindings& bindings, PreferencesStore& preferences);

/// Inside tmux the default one is another than tmux's own.
KeyPattern leader(const PreferencesStore& preferences, bool isInsideTmux);

/// What they are when none was chosen.
std::vector<KeyPattern> defaultLeaders();
/// All keys that are the leader somewhere: in a terminal and inside tmux.
std::vector<KeyPattern> leaders(const PreferencesStore& preferences);

/// Keys that begin with the leader's own name do so by being the leader: "C-b v" is "Leader v".
KeySequence withLeader(KeySequence keys, const std::vector<KeyPattern>& leaders);

}  // namespace orvane::KeySettings
