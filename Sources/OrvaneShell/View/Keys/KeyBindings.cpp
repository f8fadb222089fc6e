#include "OrvaneShell/View/Keys/KeyBindings.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

/// Of equal ones neither is a start of the other.
bool isLongerStart(const KeySequence& start, const KeySequence& whole) {
    return start != whole && start.isStartOf(whole);
}

}  // namespace

KeyBindings::KeyBindings(KeyPreset preset, const Changes& changes) : preset_(preset) {
    for (const auto& [keys, name] : presetKeys(preset)) {
        const auto parsed = KeySequence::parse(keys);
        const ViewCommand* command = ViewCommand::named(name);
        if (parsed && command != nullptr) put(*parsed, *command, false);
    }
    // What was removed first: it may have made room for what was set.
    for (const bool removes : {true, false}) {
        for (const auto& [text, name] : changes) {
            if (removes != name.empty()) continue;
            if (!take(text, name)) unusable_.emplace(text, name);
        }
    }
}

/// One change as it was kept.
bool KeyBindings::take(const std::string& text, const std::string& name) {
    const auto keys = KeySequence::parse(text);
    if (!keys) return false;
    if (!name.empty()) {
        const ViewCommand* command = ViewCommand::named(name);
        if (command == nullptr) return false;
        // They were the preset's before they were removed and set.
        std::erase_if(bindings_, [&](const Binding& other) { return !other.isOwn && other.keys == *keys; });
        return bind(*keys, *command).has_value();
    }
    // Another preset may have had them.
    unbind(*keys);
    changes_[text] = "";
    return true;
}

KeyBindings::Changes KeyBindings::changes() const {
    Changes all = changes_;
    all.insert(unusable_.begin(), unusable_.end());
    return all;
}

std::vector<KeyBindings::Binding> KeyBindings::all() const {
    std::vector<Binding> sorted = bindings_;
    // Commands stand in one array, in their order.
    std::ranges::stable_sort(sorted, {}, &Binding::command);
    return sorted;
}

std::vector<KeySequence> KeyBindings::keysOf(const ViewCommand& command) const {
    std::vector<KeySequence> keys;
    for (const Binding& binding : bindings_) {
        if (binding.command == &command) keys.push_back(binding.keys);
    }
    return keys;
}

const KeyBindings::Binding* KeyBindings::binding(const KeySequence& keys) const {
    const auto found = std::ranges::find(bindings_, keys, &Binding::keys);
    return found == bindings_.end() ? nullptr : &*found;
}

std::optional<KeyBindings::Conflict> KeyBindings::conflict(const KeySequence& keys, const ViewCommand& command) const {
    for (const Binding& other : bindings_) {
        if (other.keys == keys && other.command != &command) return Conflict{Conflict::Kind::taken, other};
        if (isLongerStart(keys, other.keys)) return Conflict{Conflict::Kind::isStart, other};
        if (isLongerStart(other.keys, keys)) return Conflict{Conflict::Kind::hasStart, other};
    }
    if (!keys.beginsWithLeader && typesText(keys.keys.front())) return Conflict{Conflict::Kind::typesText};
    return std::nullopt;
}

void KeyBindings::put(const KeySequence& keys, const ViewCommand& command, bool isOwn) {
    std::erase_if(bindings_, [&](const Binding& binding) { return binding.keys == keys; });
    // What the user chose is what they want to see.
    const auto place = isOwn ? bindings_.begin() : bindings_.end();
    bindings_.insert(place, {.keys = keys, .command = &command, .isOwn = isOwn});
}

std::expected<void, KeyBindings::Conflict> KeyBindings::bind(const KeySequence& keys, const ViewCommand& command,
                                                             const std::vector<KeyPattern>& leaders) {
    if (!keys.beginsWithLeader && std::ranges::find(leaders, keys.keys.front()) != leaders.end())
        return std::unexpected(Conflict{Conflict::Kind::isLeader});
    if (auto found = conflict(keys, command)) return std::unexpected(std::move(*found));
    put(keys, command, true);
    changes_[keys.text()] = command.name;
    return {};
}

bool KeyBindings::unbind(const KeySequence& keys) {
    const auto removed = std::erase_if(bindings_, [&](const Binding& binding) { return binding.keys == keys; });
    if (removed == 0) return false;
    const auto preset = presetKeys(preset_);
    const bool isPreset = std::ranges::any_of(
        preset, [&](const PresetKeys& row) { return KeySequence::parse(row.keys).value_or(KeySequence()) == keys; });
    if (isPreset) {
        changes_[keys.text()] = "";
    } else {
        changes_.erase(keys.text());
    }
    return true;
}

std::expected<bool, KeyBindings::Conflict> KeyBindings::reset(const KeySequence& keys) {
    Changes rest = changes();
    if (rest.erase(keys.text()) == 0) return false;
    KeyBindings without(preset_, rest);
    // Another change may have taken its place since.
    for (const auto& [text, name] : without.unusable_) {
        if (unusable_.contains(text)) continue;
        if (const Binding* own = binding(KeySequence::parse(text).value_or(KeySequence())))
            return std::unexpected(Conflict{Conflict::Kind::taken, *own});
    }
    *this = std::move(without);
    return true;
}

bool KeyBindings::typesText(const KeyPattern& key) {
    const bool isFunctionKey = key.name >= KeyName::f1 && key.name <= KeyName::f35;
    const bool isOnlyControl = key.modifiers == KeyModifiers{.control = true};
    // Tab, Enter and Escape.
    const bool isAnother = key.character == 'i' || key.character == 'm' || key.character == '[';
    if (isOnlyControl && key.name == KeyName::character && isAnother) return true;
    return !isFunctionKey && !key.modifiers.control && !key.modifiers.alt && !key.modifiers.super;
}

std::optional<KeyBindings::Binding> KeyBindings::beginningWith(const KeyPattern& key) const {
    const auto found = std::ranges::find_if(bindings_, [&](const Binding& binding) {
        return !binding.keys.beginsWithLeader && binding.keys.keys.front() == key;
    });
    return found == bindings_.end() ? std::nullopt : std::optional(*found);
}

KeyBindings::Step KeyBindings::step(const KeySequence& typed, const KeyEvent& key) const {
    for (const Binding& binding : bindings_) {
        if (!isLongerStart(typed, binding.keys)) continue;
        const std::size_t place = typed.keys.size();
        if (!binding.keys.keys[place].matches(key)) continue;
        if (binding.keys.keys.size() == place + 1) return {.command = binding.command};
        KeySequence further = typed;
        further.beginsWithLeader = binding.keys.beginsWithLeader;
        further.keys.push_back(binding.keys.keys[place]);
        return {.typed = std::move(further)};
    }
    return {};
}

}  // namespace orvane
