#pragma once

#include <array>
#include <span>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// Whose keys people have in their fingers.
enum class KeyPreset { tmux, zellij };

template <>
struct RawValues<KeyPreset> {
    static constexpr std::array table = {
        rawValueOf(KeyPreset::tmux, "tmux"),
        rawValueOf(KeyPreset::zellij, "zellij"),
    };
};

/// Keys of a preset and the name of their command.
struct PresetKeys {
    std::string_view keys;
    std::string_view command;
};

/// Of several keys of one command the first is the one that is shown. Those of tmux stand behind the leader; zellij's
/// are typed without one, and tmux's are there as well, as in zellij itself.
std::span<const PresetKeys> presetKeys(KeyPreset preset);

}  // namespace orvane
