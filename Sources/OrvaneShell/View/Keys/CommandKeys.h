#pragma once

#include <vector>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Keys/KeySequence.h"
#include "OrvaneShell/View/ViewCommand.h"
#include "Platform/MainLoop.h"

namespace orvane {

class ViewContext;

/// Takes the keys of commands out of what is typed, and carries the commands out.
class CommandKeys {
 public:
    enum class Taken {
        no,      ///< it is for what has the keyboard: an overlay, or the program in the focused pane
        yes,     ///< it was of a command, or may be on the way to one
        passOn,  ///< the program in the focused pane gets the keys of `passed`
    };
    /// `key` goes down or repeats.
    Taken take(ViewContext& view, const KeyEvent& key);
    const std::vector<KeyEvent>& passed() const { return passed_; }

 private:
    Taken go(ViewContext& view, const KeySequence& typed, const KeyEvent& key);
    Taken begin(ViewContext& view, const KeyEvent& key);
    Taken run(ViewContext& view, const ViewCommand& command, const KeySequence& typed);
    Taken unlock(ViewContext& view, const KeyEvent& key);

    /// Behind these a command can be repeated by its last key.
    KeySequence repeated_;
    Instant repeatableUntil_;
    bool hasRun_ = false;  ///< a command behind the keys that are typed still
    /// Typed while the keys are locked, on the way to what unlocks them.
    std::vector<KeyEvent> held_;
    std::vector<KeyEvent> passed_;
};

}  // namespace orvane
