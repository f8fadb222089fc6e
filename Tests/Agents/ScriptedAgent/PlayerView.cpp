// What the player shows: the values of placeholders and the frame they make.

#include "ScriptedAgent/Placeholders.h"
#include "ScriptedAgent/Player.h"
#include "ScriptedAgent/Text.h"
#include "ScriptedAgent/Values.h"

namespace orvane::scripted {
namespace {

std::string variable(const std::map<std::string, std::string>& variables, const std::string& name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::string() : found->second;
}

int numberBehind(std::string_view prefix, std::string_view name) {
    return std::atoi(std::string(name.substr(prefix.size())).c_str());
}

}  // namespace

/// What is typed, with the cursor behind it; the hint when nothing is.
std::string Player::composerValue() const {
    const std::string mark(1, cursorMark);
    const std::string caret = variable(variables_, "caret");
    if (!composer_.empty()) return composer_.shown() + mark + caret;
    const std::string hint = variable(variables_, "hint");
    return mark + (hint.empty() ? caret : hint);
}

std::string Player::value(std::string_view name) const {
    if (name.starts_with("json:")) return jsonEscaped(value(name.substr(5)));
    if (name.starts_with("pick:")) {
        const std::string pointer = variable(variables_, "pointer");
        if (numberBehind("pick:", name) == selected_) return cursorMark + pointer;
        return std::string(width(pointer), ' ');
    }
    if (name.starts_with("check:"))
        return checked_.contains(numberBehind("check:", name)) ? variable(variables_, "tick") : " ";
    if (name.starts_with("selected:")) return numberBehind("selected:", name) == selected_ ? "yes" : "";
    if (name == "checked") return checked_.empty() ? "" : "yes";
    if (name == "composer") return composerValue();
    if (name == "typed") return composer_.shown();
    if (name == "typed-lines") return composer_.text().find('\n') == std::string::npos ? "" : "yes";
    if (name == "prompt") return turn_.prompt.text;
    if (name == "prompt-shown") return turn_.prompt.shown;
    if (name == "seconds")
        return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(now_ - turn_.began).count());
    if (name == "queue") {
        std::string all;
        for (const Prompt& prompt : queue_)
            all += (all.empty() ? "" : "\n") + prompt.shown;
        return all;
    }
    if (const auto cycle = scenario_.cycles.find(std::string(name)); cycle != scenario_.cycles.end()) {
        const auto step = (now_ - started_) / cycle->second.period;
        return cycle->second.glyphs[static_cast<std::size_t>(step) % cycle->second.glyphs.size()];
    }
    const auto own = variables_.find(std::string(name));
    return own == variables_.end() ? outsideValue(name) : own->second;
}

Frame Player::frame() const {
    const auto lookup = [this](std::string_view name) { return value(name); };
    Frame frame;
    frame.title = expanded(having([](const State& state) { return !state.title.empty(); }).title, lookup);
    frame.cursor = having([](const State& state) { return state.cursor != Cursor::unset; }).cursor;
    frame.conversation = conversation_.settledRows(size_.cols);
    frame.above = conversation_.streamingRows(size_.cols, scenario_.streams);
    const State& viewed = having([](const State& state) { return !state.view.empty(); });
    if (viewed.view.empty()) return frame;
    const Rows& rows = scenario_.texts.at(viewed.view);
    std::size_t next = 0;
    for (std::string& row : expandedRows(rows, next, lookup, size_.cols))
        frame.above.push_back(std::move(row));
    frame.below = expandedRows(rows, next, lookup, size_.cols);
    return frame;
}

}  // namespace orvane::scripted
