#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "OrvaneCore/Support/RawValue.h"
#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneCore/Workspace/PaneGeometry.h"
#include "OrvaneCore/Workspace/SurfaceMeta.h"

namespace orvane {

/// The overlays that fill the whole window; at most one shows.
enum class Overlay {
    launcher,
    palette,
    welcome,
    discover,
    config,
    settings,
    quota,
    servers,
    mcp,
    shipped,
    history,
    cost
};

/// What the private tally calls the use of an overlay; empty for those it does not count.
constexpr std::string_view featureWord(Overlay overlay) {
    switch (overlay) {
        case Overlay::config:
            return "config";
        case Overlay::discover:
            return "radar";
        case Overlay::settings:
            return "settings";
        case Overlay::quota:
            return "quotas";
        case Overlay::servers:
            return "servers";
        case Overlay::shipped:
            return "shipped";
        case Overlay::history:
            return "history";
        case Overlay::cost:
            return "cost";
        case Overlay::launcher:
        case Overlay::palette:
        case Overlay::welcome:
        case Overlay::mcp:
            return {};
    }
    return {};
}

enum class PanelTab { changes, review, files };

template <>
struct RawValues<PanelTab> {
    static constexpr std::array table = {rawValueOf(PanelTab::changes, "changes"),
                                         rawValueOf(PanelTab::review, "review"), rawValueOf(PanelTab::files, "files")};
};

/// What only the interface remembers, and forgets with the process (the side rail and the panel aside, which live in
/// the preferences).
struct InterfaceState {
    struct ShellCollapse {
        bool railHidden = false;
        bool panelHidden = false;
        bool operator==(const ShellCollapse&) const = default;
    };

    std::optional<Overlay> overlay;
    /// The empty pane that the launcher was opened for: project and leaf.
    std::optional<std::pair<Uuid, Uuid>> pendingPane;
    std::optional<Uuid> draggingProjectID;
    std::optional<Uuid> searchingSessionID;
    std::optional<Uuid> sessionPendingClose;
    std::optional<SurfaceCloseRequest> surfacePendingClose;
    ShellCollapse shellCollapse;
    PanelTab panelTab = PanelTab::changes;
    double shellWindowWidth = 1440.0;
    /// The pane area as last measured, in points. Until a view has measured one it is that of 100 x 37 cells.
    PaneSize paneArea{800.0, 592.0};
    /// Raised to move the focus into the search for files.
    int fileSearchToken = 0;
    bool confirmingQuit = false;
    /// The quit waits for the answer of the dialog.
    bool quitReplyPending = false;
};

}  // namespace orvane
