#include "OrvaneShell/View/ViewHints.h"

namespace orvane::ViewHints {

std::string normal(const ViewContext& view) {
    return view.l10n.text("view.hint.normal", KeyText::write(view.leader), view.keysOf("new-session"),
                          view.keysOf("palette"), view.keysOf("detach"));
}

std::string now(const ViewContext& view) {
    if (!view.typed.isEmpty()) return view.l10n.text("view.hint.leader", view.typed.shown(view.leader));
    if (view.overlay != nullptr) return view.overlay->hint(view);
    if (view.drag) return view.l10n.text("view.hint.drag");
    if (!view.isLocked) return normal(view);
    const std::string keys = view.keysOf("lock");
    return view.l10n.text("view.hint.locked", keys.empty() ? KeyText::write(view.leader) : keys);
}

std::vector<std::string> welcome(const ViewContext& view) {
    return {
        view.l10n.text("view.welcome.start", view.keysOf("new-session"), view.keysOf("split-right")),
        view.l10n.text("view.welcome.keys", KeyText::write(view.leader), view.keysOf("help"), view.keysOf("palette")),
        view.l10n.text("view.welcome.waiting", view.keysOf("next-waiting"), view.keysOf("answer")),
        view.l10n.text("view.welcome.leave", view.keysOf("detach"))};
}

}  // namespace orvane::ViewHints
