#include "TerminalEmulator/Engine/OscFunctions.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "TerminalEmulator/Engine/Base64.h"
#include "TerminalEmulator/Engine/ColorFunctions.h"
#include "TerminalEmulator/Engine/FileUrl.h"
#include "TerminalEmulator/Engine/PayloadText.h"
#include "TerminalEmulator/Engine/TitleFunctions.h"

namespace orvane::OscFunctions {
namespace {

using TitleFunctions::Title;

constexpr std::size_t maximumNotification = 4096;          // of its title and of its body, in bytes
constexpr std::size_t maximumClipboardText = 1024 * 1024;  // in Base64
constexpr std::size_t maximumSelections = 16;

struct Osc {
    std::int32_t code = 0;
    std::string_view payload;
    StringEnd end = StringEnd::stringTerminator;
};

/// Whether the command was understood.
using Handler = bool (*)(TerminalState& state, const Osc& osc);

bool setBothTitles(TerminalState& state, const Osc& osc) {
    TitleFunctions::set(state, Title::icon, osc.payload);
    TitleFunctions::set(state, Title::window, osc.payload);
    return true;
}

bool setIconTitle(TerminalState& state, const Osc& osc) {
    TitleFunctions::set(state, Title::icon, osc.payload);
    return true;
}

bool setWindowTitle(TerminalState& state, const Osc& osc) {
    TitleFunctions::set(state, Title::window, osc.payload);
    return true;
}

bool setPalette(TerminalState& state, const Osc& osc) {
    ColorFunctions::setPalette(state, osc.payload, osc.end);
    return true;
}

bool setDynamic(TerminalState& state, const Osc& osc) {
    ColorFunctions::setDynamic(state, osc.code, osc.payload, osc.end);
    return true;
}

/// Keeps a URL as it was given, when it names a file here; an empty one is forgotten. Whether it was taken.
bool keepUrl(const TerminalState& state, std::string_view url, std::optional<std::string>& kept) {
    if (url.empty()) {
        kept.reset();
        return true;
    }
    if (!FileUrl::localPath(url, state.options.hostName)) return false;
    kept = url;
    return true;
}

bool setDocument(TerminalState& state, const Osc& osc) {
    if (!keepUrl(state, osc.payload, state.hostCurrentDocument)) return false;
    state.delegate.hostCurrentDocumentUpdated();
    return true;
}

bool setDirectory(TerminalState& state, const Osc& osc) {
    if (!keepUrl(state, osc.payload, state.hostCurrentDirectory)) return false;
    state.delegate.hostCurrentDirectoryUpdated();
    return true;
}

/// "params;uri": cells that are written from now on carry both. An empty URI ends the link.
bool setHyperlink(TerminalState& state, const Osc& osc) {
    const std::size_t separator = osc.payload.find(';');
    if (separator == std::string_view::npos) return false;
    const bool isEnd = separator + 1 == osc.payload.size();
    state.buffer->pen.setPayload(isEnd ? TinyAtom{} : state.payloads.hold(osc.payload, state.markPayloads));
    return true;
}

bool reportProgress(TerminalState& state, const Osc& osc) {
    const auto report = ProgressReport::parse(osc.payload);
    if (report) state.delegate.progressReport(*report);
    return report.has_value();
}

void tellClipboard(TerminalState& state, std::string_view selections, StringEnd end) {
    if (!state.delegate.isProcessTrusted()) return;
    const auto content = state.delegate.clipboardRead();
    if (!content) return;
    state.sendOsc("52;" + std::string(selections) + ";" + Base64::encode(*content), end);
}

/// "selections;Base64": there is one clipboard, whichever of xterm's selections is named.
bool useClipboard(TerminalState& state, const Osc& osc) {
    const std::size_t separator = osc.payload.find(';');
    const std::string_view selections = osc.payload.substr(0, separator);
    const bool areKnown = selections.find_first_not_of("cpqs01234567") == std::string_view::npos;
    if (separator == std::string_view::npos || selections.size() > maximumSelections || !areKnown) return false;
    const std::string_view text = osc.payload.substr(separator + 1);
    if (text == "?") {
        tellClipboard(state, selections, osc.end);
        return true;
    }
    if (text.size() > maximumClipboardText) return false;
    const auto content = Base64::decode(text);
    if (content) state.delegate.clipboardCopy(*content);
    return content.has_value();
}

/// FinalTerm's marks of what a shell does, "A;aid=1;k=s": a prompt begins (A, or N for one in a fresh row), a line is
/// typed (B), its output begins (C), it has ended (D;status). Only where prompts begin is kept. `k` tells kinds of
/// prompts; that of a line that is not complete yet ("c", "s") and one at the right ("r") start nothing new.
bool markShell(TerminalState& state, const Osc& osc) {
    PayloadText::Parts parts(osc.payload);
    const auto mark = parts.next();
    if (!mark || mark->size() != 1 || !std::string_view("ABCDILNP").contains(mark->front())) return false;
    if (*mark != "A" && *mark != "N" && *mark != "P") return true;
    while (const auto parameter = parts.next()) {
        if (*parameter == "k=c" || *parameter == "k=s" || *parameter == "k=r") return true;
    }
    state.cursorLine().setStartsPrompt(true);
    return true;
}

bool resetPalette(TerminalState& state, const Osc& osc) {
    ColorFunctions::resetPalette(state, osc.payload);
    return true;
}

bool resetCursor(TerminalState& state, const Osc& /*osc*/) {
    ColorFunctions::resetCursor(state);
    return true;
}

/// "notify;title;body", where the body may hold semicolons.
bool notify(TerminalState& state, const Osc& osc) {
    PayloadText::Parts parts(osc.payload);
    const auto command = parts.next();
    const auto title = parts.next();
    const auto body = parts.rest();
    if (command != "notify" || !title || !body) return false;
    state.delegate.notify(PayloadText::shown(*title, maximumNotification),
                          PayloadText::shown(*body, maximumNotification));
    return true;
}

/// Inline images are not shown; what else there is goes to the delegate.
bool handleContent(TerminalState& state, const Osc& osc) {
    if (!osc.payload.starts_with("File=")) state.delegate.iTermContent(osc.payload);
    return true;
}

struct Row {
    std::int32_t code;
    Handler handler;
};

// In rising order.
constexpr Row rows[] = {
    {0, setBothTitles}, {1, setIconTitle},     {2, setWindowTitle}, {4, setPalette},    {6, setDocument},
    {7, setDirectory},  {8, setHyperlink},     {9, reportProgress}, {10, setDynamic},   {11, setDynamic},
    {12, setDynamic},   {52, useClipboard},    {104, resetPalette}, {112, resetCursor}, {133, markShell},
    {777, notify},      {1337, handleContent},
};

static_assert(std::ranges::is_sorted(rows, {}, &Row::code));

}  // namespace

void dispatch(TerminalState& state, std::int32_t code, std::string_view payload, StringEnd end) {
    const auto* row = std::ranges::lower_bound(rows, code, {}, &Row::code);
    const bool isKnown = row != std::end(rows) && row->code == code;
    if (isKnown && row->handler(state, {.code = code, .payload = payload, .end = end})) return;
    state.log("Unknown OSC code: ", std::to_string(code) + ";" + std::string(payload));
}

}  // namespace orvane::OscFunctions
