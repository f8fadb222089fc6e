#include "OrvaneShell/Settings/SettingTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "OrvaneCore/Support/Language.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Keys/KeySettings.h"

namespace orvane::SettingTable {

namespace {

using Kind = Setting::Kind;

constexpr std::string_view automatic = "auto";
constexpr std::string_view on = "on";
constexpr std::string_view off = "off";

template <typename Enum>
std::vector<std::string_view> namesOf(std::vector<std::string_view> first) {
    for (const auto& [value, name] : RawValues<Enum>::table)
        first.push_back(name);
    return first;
}

const std::vector<Setting>& table() {
    static const std::vector<Setting> settings = {
        {.key = "language", .kind = Kind::choice, .fallback = automatic, .choices = namesOf<Language>({automatic})},
        {.key = "view.theme",
         .kind = Kind::choice,
         .fallback = automatic,
         .choices = {automatic, "dark", "light", "none"}},
        {.key = KeySettings::presetKey, .kind = Kind::choice, .fallback = "tmux", .choices = namesOf<KeyPreset>({})},
        {.key = KeySettings::leaderKey, .kind = Kind::key, .fallback = automatic},
        {.key = "view.screenReader", .kind = Kind::flag, .fallback = off},
        {.key = "view.linkOpener", .kind = Kind::text, .fallback = automatic},
        {.key = "terminal.scrollback", .kind = Kind::number, .fallback = "5000", .most = 1'000'000},
        {.key = "shell.rail.hidden", .kind = Kind::flag, .fallback = off},
        {.key = "restore.enabled", .kind = Kind::flag, .fallback = on},
    };
    return settings;
}

std::optional<bool> flagOf(std::string_view text) {
    constexpr std::array<std::string_view, 4> yes{"on", "true", "yes", "1"};
    constexpr std::array<std::string_view, 4> no{"off", "false", "no", "0"};
    const std::string folded = Text::caseFolded(text);
    if (std::ranges::find(yes, folded) != yes.end()) return true;
    if (std::ranges::find(no, folded) != no.end()) return false;
    return std::nullopt;
}

/// As it is written in the table, however it was typed.
std::optional<std::string_view> choiceOf(const Setting& setting, std::string_view text) {
    const auto found = std::ranges::find_if(
        setting.choices, [&](std::string_view choice) { return Text::caseFolded(choice) == Text::caseFolded(text); });
    return found == setting.choices.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::int64_t> numberOf(std::string_view text, std::int64_t most) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && number >= 0 && number <= most ? std::optional(number) : std::nullopt;
}

/// The value as it is kept; none when it is no value of the setting's.
std::optional<std::string> stored(const Setting& setting, std::string_view text) {
    switch (setting.kind) {
        case Kind::flag:
            if (const auto flag = flagOf(text)) return std::string(*flag ? on : off);
            return std::nullopt;
        case Kind::choice:
            if (const auto choice = choiceOf(setting, text)) return std::string(*choice);
            return std::nullopt;
        case Kind::key:
            if (Text::caseFolded(text) == automatic) return std::string(automatic);
            if (const auto key = KeyText::parse(text)) return KeyText::write(*key);
            return std::nullopt;
        case Kind::number:
            if (const auto number = numberOf(text, setting.most)) return std::to_string(*number);
            return std::nullopt;
        case Kind::text:
            if (text.empty() || Text::oneLine(text) != text) return std::nullopt;
            return std::string(text);
    }
    return std::nullopt;
}

std::string join(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts)
        list += (list.empty() ? "" : ", ") + text;
    return list;
}

std::string taken(const L10n& l10n, const KeyBindings::Binding& other) {
    return l10n.text("error.keyTaken", other.keys.text(), other.command->name);
}

std::string leaderConflict(const std::string& value, const L10n& l10n, const PreferencesStore& preferences) {
    std::vector<KeyPattern> leaders = KeySettings::defaultLeaders();
    if (value != automatic) leaders = {*KeyText::parse(value)};
    const KeyBindings bindings = KeySettings::load(preferences);
    for (const KeyPattern& leader : leaders) {
        if (KeyBindings::typesText(leader)) return l10n.text("error.keyTypesText", value);
        if (const auto other = bindings.beginningWith(leader)) return taken(l10n, *other);
    }
    return {};
}

std::string presetConflict(const std::string& value, const L10n& l10n, const PreferencesStore& preferences) {
    const KeyBindings before = KeySettings::load(preferences);
    const KeyBindings after(*fromRawValue<KeyPreset>(value), before.changes());
    std::vector<std::string> lost;
    for (const auto& [keys, command] : after.unusable()) {
        if (!before.unusable().contains(keys)) lost.push_back(keys);
    }
    if (!lost.empty()) return l10n.text("error.presetConflict", value, join(lost));
    for (const KeyPattern& leader : KeySettings::leaders(preferences)) {
        if (const auto other = after.beginningWith(leader)) return taken(l10n, *other);
    }
    return {};
}

/// Why the keys of the view do not go with the value; empty when they do.
std::string keyConflict(const Setting& setting, const std::string& value, const L10n& l10n,
                        const PreferencesStore& preferences) {
    if (setting.key == KeySettings::leaderKey) return leaderConflict(value, l10n, preferences);
    if (setting.key == KeySettings::presetKey) return presetConflict(value, l10n, preferences);
    return {};
}

}  // namespace

std::span<const Setting> all() {
    return table();
}

const Setting* named(std::string_view key) {
    const auto found = std::ranges::find(table(), key, &Setting::key);
    return found == table().end() ? nullptr : &*found;
}

std::string value(const Setting& setting, const PreferencesStore& preferences) {
    std::string kept;
    switch (setting.kind) {
        case Kind::flag:
            return std::string(preferences.boolean(setting.key, setting.fallback == on) ? on : off);
        case Kind::number:
            kept = std::to_string(preferences.integer(setting.key, -1));
            break;
        default:
            kept = preferences.string(setting.key, setting.fallback);
    }
    return stored(setting, kept).value_or(std::string(setting.fallback));
}

std::expected<void, std::string> set(const Setting& setting, std::string_view text, const L10n& l10n,
                                     PreferencesStore& preferences) {
    const auto value = stored(setting, text);
    if (!value) {
        return std::unexpected(
            l10n.text("error.settingValue", Text::oneLine(text), setting.key, valuesText(setting, l10n)));
    }
    if (std::string reason = keyConflict(setting, *value, l10n, preferences); !reason.empty())
        return std::unexpected(std::move(reason));
    if (*value == setting.fallback) {
        reset(setting, preferences);
    } else if (setting.kind == Kind::flag) {
        preferences.setBoolean(setting.key, *value == on);
    } else if (setting.kind == Kind::number) {
        preferences.setInteger(setting.key, *numberOf(*value, setting.most));
    } else {
        preferences.setString(setting.key, *value);
    }
    return {};
}

void reset(const Setting& setting, PreferencesStore& preferences) {
    preferences.remove(setting.key);
}

std::string valuesText(const Setting& setting, const L10n& l10n) {
    switch (setting.kind) {
        case Kind::flag:
            return "on, off";
        case Kind::choice:
            return join({setting.choices.begin(), setting.choices.end()});
        case Kind::key:
            return l10n.text("settings.values.key");
        case Kind::number:
            return "0 - " + std::to_string(setting.most);
        case Kind::text:
            return l10n.text("settings.values.text");
    }
    return {};
}

}  // namespace orvane::SettingTable
