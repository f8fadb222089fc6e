#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Overlays/CopyCursor.h"

namespace orvane {

/// What keys of the copy mode do but to move its cursor.
enum class CopyAction : std::uint8_t {
    selectCharacters,
    selectRows,
    selectBlock,
    swapEnds,
    copy,  ///< and leave
    searchOlder,
    searchNewer,
    nextHit,
    previousHit,
    searchWordOlder,
    searchWordNewer,
    previousPrompt,
    nextPrompt,
    save,
    stepBack,  ///< ends the selection, or else the mode
    leave,
};

/// What a key means in the copy mode: those of vi and of its kin, and beside them the arrows; none for one without
/// meaning there.
std::optional<std::variant<CopyMotion, CopyAction>> copyKey(const KeyEvent& key);

}  // namespace orvane
