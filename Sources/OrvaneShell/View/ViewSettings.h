#pragma once

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/View/Keys/KeyBindings.h"
#include "OrvaneShell/View/ViewTheme.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// What the user has chosen for the view, in the preferences and by where they started it.
struct ViewSettings {
    L10n l10n;
    KeyPattern leader;
    KeyBindings bindings;
    ViewTheme::Choice theme = ViewTheme::Choice::automatic;

    /// What the client says of itself.
    struct Client {
        Language language = Language::en;  ///< of its environment
        bool isInsideTmux = false;
    };
    static ViewSettings of(const PreferencesStore& preferences, const Client& client);
};

}  // namespace orvane
