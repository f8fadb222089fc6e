#include "OrvaneShell/View/ViewSettings.h"

#include "OrvaneCore/Support/Language.h"
#include "OrvaneShell/View/Keys/KeySettings.h"

namespace orvane {

ViewSettings ViewSettings::of(const PreferencesStore& preferences, const Client& client) {
    const auto chosen = fromRawValue<Language>(preferences.string("language", {}));
    return {
        .l10n = {chosen.value_or(client.language)},
        .leader = KeySettings::leader(preferences, client.isInsideTmux),
        .bindings = KeySettings::load(preferences),
        .theme = ViewTheme::choiceNamed(preferences.string("view.theme", {})).value_or(ViewTheme::Choice::automatic)};
}

}  // namespace orvane
