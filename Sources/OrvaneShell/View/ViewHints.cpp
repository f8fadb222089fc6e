#include "OrvaneShell/View/ViewHints.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"

namespace orvane::ViewHints {

namespace {

/// The leader, and the keys that open groups of commands without it.
std::string beginnings(const ViewContext& view) {
    std::string all = KeyText::write(view.leader);
    std::vector<std::string> known;
    for (const auto& binding : view.bindings.all()) {
        if (binding.keys.beginsWithLeader || binding.keys.keys.size() < 2) continue;
        std::string first = KeyText::write(binding.keys.keys.front());
        if (std::ranges::find(known, first) != known.end()) continue;
        all += " " + first;
        known.push_back(std::move(first));
    }
    return all;
}

}  // namespace

std::string normal(const ViewContext& view, int cols) {
    std::string hint = view.l10n.text("view.hint.commands", beginnings(view));
    for (const char* name : {"new-session", "palette", "detach", "new-tab"}) {
        // Keys that were taken away leave no hole.
        const std::string keys = view.keysOf(name);
        const std::string part = "  " + keys + " " + ViewCommand::named(name)->label(view.l10n);
        const bool fits = static_cast<int>(Text::displayWidth(hint + part)) <= cols;
        if (!keys.empty() && fits) hint += part;
    }
    return hint;
}

std::string now(const ViewContext& view, int cols) {
    if (!view.typed.isEmpty()) return view.l10n.text("view.hint.leader", view.typed.shown(view.leader));
    if (view.overlay != nullptr) return view.overlay->hint(view);
    if (view.drag) return view.l10n.text("view.hint.drag");
    if (!view.isLocked) return normal(view, cols);
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
