#pragma once

#include <expected>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OrvaneShell/View/Keys/KeyPreset.h"
#include "OrvaneShell/View/Keys/KeySequence.h"
#include "OrvaneShell/View/ViewCommand.h"

namespace orvane {

/// Which keys carry out which command: those of a preset, and over them what the user has set and removed.
class KeyBindings {
 public:
    struct Binding {
        KeySequence keys;
        const ViewCommand* command = nullptr;  ///< never null
        bool isOwn = false;                    ///< set by the user
    };

    /// Why keys cannot be bound.
    struct Conflict {
        enum class Kind {
            taken,      ///< they do something else already
            isStart,    ///< they begin a longer sequence, which could not be typed any more
            hasStart,   ///< a shorter one does something before they are all typed
            typesText,  ///< the first is one that programs need: a letter, Enter, an arrow without Control or Alt
            isLeader,   ///< the first is the leader, which would not be one any more
        };
        Kind kind = Kind::taken;
        /// With which binding; of the last two kinds none.
        std::optional<Binding> with = {};
    };

    /// What the user changed, as it is kept: a command's name by its keys, an empty one for keys of the preset that
    /// shall do nothing.
    using Changes = std::map<std::string, std::string>;

    /// Changes that mean nothing, or that conflict with another, are left out and stand in `unusable`.
    explicit KeyBindings(KeyPreset preset = KeyPreset::tmux, const Changes& changes = {});

    KeyPreset preset() const { return preset_; }
    /// To be kept; with those that are unusable, which may be good in another version.
    Changes changes() const;
    const Changes& unusable() const { return unusable_; }

    /// In the order of the commands; each command's first one is the one to show.
    std::vector<Binding> all() const;
    std::vector<KeySequence> keysOf(const ViewCommand& command) const;
    /// Null when they carry out nothing by themselves.
    const Binding* binding(const KeySequence& keys) const;

    /// Without an effect when there is a conflict. `leaders` are keys that begin no sequence by themselves.
    std::expected<void, Conflict> bind(const KeySequence& keys, const ViewCommand& command,
                                       const std::vector<KeyPattern>& leaders = {});
    /// Whether the keys did something.
    bool unbind(const KeySequence& keys);
    /// Gives the keys back what the preset makes of them. Whether they were changed; fails when what they were is in
    /// conflict with another change.
    std::expected<bool, Conflict> reset(const KeySequence& keys);
    /// Whether a key can be the leader; else the binding that begins with it.
    std::optional<Binding> beginningWith(const KeyPattern& key) const;

    /// Whether programs would miss the key: it is typed into them without Control, Alt or Super, or comes from ordinary
    /// terminals as one that is, as C-i does.
    static bool typesText(const KeyPattern& key);

    /// What a further key does: carries out a command, or is on the way to one. Neither when it means nothing.
    struct Step {
        const ViewCommand* command = nullptr;
        std::optional<KeySequence> typed;
    };
    Step step(const KeySequence& typed, const KeyEvent& key) const;

 private:
    bool take(const std::string& text, const std::string& name);
    std::optional<Conflict> conflict(const KeySequence& keys, const ViewCommand& command) const;
    void put(const KeySequence& keys, const ViewCommand& command, bool isOwn);

    KeyPreset preset_;
    Changes changes_;
    Changes unusable_;
    std::vector<Binding> bindings_;
};

}  // namespace orvane
