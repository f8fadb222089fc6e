#include "OrvaneShell/View/Overlays/HistorySave.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "OrvaneCore/Support/Calendar.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Text.h"
#include "Platform/Files.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::HistorySave {

namespace {

constexpr std::size_t titleCharacters = 40;

/// Of a file for the session's history: "make-test-2026-11-21-0930.txt".
std::string proposedName(const ViewContext& view, const SessionController& session) {
    std::string name(Text::prefix(Text::trimmed(Text::oneLine(session.title())), titleCharacters));
    std::ranges::replace_if(name, [](char c) { return c == '/' || c == ' ' || c == '\\'; }, '-');
    if (name.empty() || name.starts_with('.') || name.starts_with('-')) name.insert(0, "session");
    auto [day, time] = Calendar(view.history.timeZone()).reading(view.now());
    std::erase(time, ':');
    return name + "-" + day + "-" + time + ".txt";
}

/// What was typed as a path of its own; relative ones are below the folder.
std::string resolved(std::string_view typed, const std::string& home, const std::string& folder) {
    if (typed == "~" || typed.starts_with("~/")) return home + std::string(typed.substr(1));
    return typed.starts_with('/') ? std::string(typed) : joinedPath(folder, typed);
}

std::string refusal(const ViewContext& view, const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return view.l10n.text("error.isFolder", path.string());
    if (!std::filesystem::is_directory(path.parent_path(), error))
        return view.l10n.text("error.noSuchFolder", path.parent_path().string());
    return {};
}

void write(const ViewContext& view, const std::string& path, std::string text) {
    const auto lines = static_cast<long long>(std::ranges::count(text, '\n'));
    std::string done = view.l10n.plural("view.history.saved", lines, path);
    runInBackground(
        view.store.pool(), view.store.loop(), [path, text = std::move(text)] { return writeWholeFile(path, text); },
        [say = view.sayLater(), done = std::move(done), l10n = view.l10n](const auto& written) {
            say(written ? done : l10n.text("view.history.notSaved", written.error().message()));
        });
}

}  // namespace

std::string text(const Terminal& terminal) {
    const auto part = [&](Terminal::BufferKind kind) {
        std::string all = terminal.getBufferAsData(kind);
        all.resize(all.find_last_not_of("\n ") + 1);
        return all.empty() ? all : all + "\n";
    };
    std::string all = part(Terminal::BufferKind::normal);
    if (terminal.isAlternateBufferActive()) all += part(Terminal::BufferKind::alternate);
    return all;
}

std::unique_ptr<PromptOverlay> prompt(const ViewContext& view, const SessionController& session) {
    const auto accept = [id = session.id(), replaces = std::string()](ViewContext& with,
                                                                      const std::string& typed) mutable -> std::string {
        const SessionController* saved = with.store.session(id);
        if (saved == nullptr || saved->terminal() == nullptr) return with.l10n.text("error.hasEnded");
        const std::string name(Text::trimmed(typed));
        if (name.empty()) return with.l10n.text("error.emptyName");
        const std::string path = resolved(name, with.history.home(), saved->identity().projectPath);
        if (std::string why = refusal(with, path); !why.empty()) return why;
        std::error_code error;
        if (std::filesystem::exists(path, error) && std::exchange(replaces, path) != path)
            return with.l10n.text("view.history.exists");
        write(with, path, text(saved->terminal()->terminal));
        return {};
    };
    return std::make_unique<PromptOverlay>(view.l10n.text("view.history.saveTitle"), "~/" + proposedName(view, session),
                                           accept);
}

}  // namespace orvane::HistorySave
