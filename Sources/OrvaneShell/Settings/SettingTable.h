#pragma once

#include <cstdint>
#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/L10n.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// A preference that people change, as they read and type it.
struct Setting {
    enum class Kind {
        flag,    ///< "on" or "off"
        choice,  ///< one of `choices`
        key,     ///< a key of `KeyText`, or "auto"
        number,  ///< whole, from 0 to `most`
        text,
    };
    /// In the preferences: "view.theme". The key of the text that tells what it means is "settings.view.theme".
    std::string_view key;
    Kind kind = Kind::flag;
    /// What holds when nothing was chosen.
    std::string_view fallback;
    std::vector<std::string_view> choices = {};
    std::int64_t most = 0;

    std::string meaning(const L10n& l10n) const { return l10n.text("settings." + std::string(key)); }
};

/// All preferences of that kind, read and changed by their text. Main thread only.
namespace SettingTable {

/// In the order in which they are listed.
std::span<const Setting> all();
/// Null when there is none.
const Setting* named(std::string_view key);

/// What holds now. A value that is none of the setting's own counts as not chosen.
std::string value(const Setting& setting, const PreferencesStore& preferences);

/// In force at once. The error is a line for a person, and then nothing has changed.
std::expected<void, std::string> set(const Setting& setting, std::string_view text, const L10n& l10n,
                                     PreferencesStore& preferences);
void reset(const Setting& setting, PreferencesStore& preferences);

/// "on, off", "auto, dark, light"; what a text may be is told in words.
std::string valuesText(const Setting& setting, const L10n& l10n);

}  // namespace SettingTable

}  // namespace orvane
