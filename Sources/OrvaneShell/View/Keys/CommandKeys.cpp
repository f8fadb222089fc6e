#include "OrvaneShell/View/Keys/CommandKeys.h"

#include <algorithm>
#include <utility>

#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

/// Behind the leader; as long as in tmux.
constexpr Duration repeatTime = std::chrono::milliseconds(500);

/// Whether it types something, so that a person who goes on typing may mean just that.
bool isText(const KeyEvent& key) {
    const bool isPlain = !key.modifiers.control && !key.modifiers.alt && !key.modifiers.super;
    return isPlain && (key.name == KeyName::character || key.name == KeyName::tab || key.name == KeyName::enter);
}

/// Shift alone, on its way to "%".
bool isNoKeyYet(const KeyEvent& key) {
    return key.name == KeyName::functional || key.name == KeyName::other;
}

}  // namespace

CommandKeys::Taken CommandKeys::take(ViewContext& view, const KeyEvent& key) {
    if (view.isLocked) return unlock(view, key);
    if (view.typed.isEmpty()) return begin(view, key);
    if (isNoKeyYet(key)) return Taken::yes;
    return go(view, std::exchange(view.typed, {}), key);
}

CommandKeys::Taken CommandKeys::begin(ViewContext& view, const KeyEvent& key) {
    const bool isRepeatable = !repeated_.isEmpty() && view.store.loop().now() < repeatableUntil_;
    const KeySequence repeated = std::exchange(repeated_, {});
    if (isRepeatable && view.overlay == nullptr && !isText(key)) {
        const auto again = view.bindings.step(repeated, key);
        if (again.command != nullptr && again.command->repeats) return run(view, *again.command, repeated);
    }
    hasRun_ = false;
    if (view.leader.matches(key)) {
        view.close();
        view.typed.beginsWithLeader = true;
        return Taken::yes;
    }
    // An overlay may have a use for any other key.
    if (view.overlay != nullptr) return Taken::no;
    const auto first = view.bindings.step({}, key);
    if (first.command != nullptr) return run(view, *first.command, {});
    if (!first.typed) return Taken::no;
    view.typed = *first.typed;
    return Taken::yes;
}

CommandKeys::Taken CommandKeys::go(ViewContext& view, const KeySequence& typed, const KeyEvent& key) {
    const auto next = view.bindings.step(typed, key);
    if (next.command != nullptr) return run(view, *next.command, typed);
    if (next.typed) {
        view.typed = *next.typed;
        return Taken::yes;
    }
    const KeyPattern& first = typed.beginsWithLeader ? view.leader : typed.keys.front();
    const bool isAlone = typed.keys.size() == (typed.beginsWithLeader ? 0U : 1U);
    const bool hasRun = std::exchange(hasRun_, false);
    if (isAlone && first.matches(key)) {
        passed_ = {key};
        return hasRun ? Taken::yes : Taken::passOn;
    }
    const bool isEnd = key.name == KeyName::escape || key.name == KeyName::enter;
    if (isEnd) return Taken::yes;
    // Typed after the last of several, it is the first of something else.
    if (hasRun) return begin(view, key);
    const std::string help = view.keysOf("help");
    view.say(help.empty() ? view.l10n.text("view.noCommandThere") : view.l10n.text("view.noCommand", help));
    return Taken::yes;
}

CommandKeys::Taken CommandKeys::run(ViewContext& view, const ViewCommand& command, const KeySequence& typed) {
    if (command.repeats && typed.beginsWithLeader) {
        repeated_ = typed;
        repeatableUntil_ = view.store.loop().now() + repeatTime;
    } else if (command.repeats) {
        view.typed = typed;
        hasRun_ = true;
    }
    command.run(view);
    return Taken::yes;
}

/// Locked, the view has no keys but those that unlock it; the leader when there are none.
CommandKeys::Taken CommandKeys::unlock(ViewContext& view, const KeyEvent& key) {
    if (isNoKeyYet(key) || view.overlay != nullptr) return Taken::no;
    const KeySequence typed = std::exchange(view.typed, {});
    const ViewCommand& lock = *ViewCommand::named("lock");
    const auto keys = view.bindings.keysOf(lock);
    const bool isLeader = typed.isEmpty() && view.leader.matches(key);
    const auto next =
        isLeader ? KeyBindings::Step{.typed = KeySequence{.beginsWithLeader = true}} : view.bindings.step(typed, key);
    const bool isUnlocking = next.command == &lock || (isLeader && keys.empty());
    const bool isOnTheWay = next.typed && std::ranges::any_of(keys, [&](const KeySequence& sequence) {
                                return next.typed->isStartOf(sequence);
                            });
    if (isUnlocking) {
        held_.clear();
        lock.run(view);
        return Taken::yes;
    }
    held_.push_back(key);
    if (isOnTheWay) {
        view.typed = *next.typed;
        return Taken::yes;
    }
    passed_ = std::exchange(held_, {});
    return Taken::passOn;
}

}  // namespace orvane
