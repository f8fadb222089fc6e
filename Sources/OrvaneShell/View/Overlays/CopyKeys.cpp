#include "OrvaneShell/View/Overlays/CopyKeys.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "OrvaneShell/View/Input/KeyText.h"

namespace orvane {

namespace {

using Meaning = std::variant<CopyMotion, CopyAction>;

struct Row {
    std::vector<std::string_view> keys;
    Meaning meaning;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all = {
        {{"h", "Left", "Backspace"}, CopyMotion::left},
        {{"l", "Right"}, CopyMotion::right},
        {{"k", "Up", "C-p"}, CopyMotion::up},
        {{"j", "Down", "C-n"}, CopyMotion::down},
        {{"w"}, CopyMotion::wordForward},
        {{"e"}, CopyMotion::wordEnd},
        {{"b"}, CopyMotion::wordBack},
        {{"W"}, CopyMotion::longWordForward},
        {{"E"}, CopyMotion::longWordEnd},
        {{"B"}, CopyMotion::longWordBack},
        {{"0", "Home"}, CopyMotion::lineStart},
        {{"^"}, CopyMotion::lineText},
        {{"$", "End"}, CopyMotion::lineEnd},
        {{"g", "C-Home"}, CopyMotion::oldest},
        {{"G", "C-End"}, CopyMotion::newest},
        {{"H"}, CopyMotion::top},
        {{"M"}, CopyMotion::middle},
        {{"L"}, CopyMotion::bottom},
        {{"PageUp", "C-b"}, CopyMotion::pageUp},
        {{"PageDown", "C-f"}, CopyMotion::pageDown},
        {{"C-u"}, CopyMotion::halfPageUp},
        {{"C-d"}, CopyMotion::halfPageDown},
        {{"C-y", "C-Up", "K"}, CopyMotion::scrollUp},
        {{"C-e", "C-Down", "J"}, CopyMotion::scrollDown},
        {{"{"}, CopyMotion::paragraphUp},
        {{"}"}, CopyMotion::paragraphDown},
        {{"v", "Space"}, CopyAction::selectCharacters},
        {{"V"}, CopyAction::selectRows},
        {{"C-v"}, CopyAction::selectBlock},
        {{"o"}, CopyAction::swapEnds},
        {{"y", "Enter"}, CopyAction::copy},
        {{"/", "C-r"}, CopyAction::searchOlder},
        {{"?", "C-s"}, CopyAction::searchNewer},
        {{"n"}, CopyAction::nextHit},
        {{"N"}, CopyAction::previousHit},
        {{"*"}, CopyAction::searchWordOlder},
        {{"#"}, CopyAction::searchWordNewer},
        {{"[", "S-Up"}, CopyAction::previousPrompt},
        {{"]", "S-Down"}, CopyAction::nextPrompt},
        {{"s"}, CopyAction::save},
        {{"Escape"}, CopyAction::stepBack},
        {{"q", "C-c"}, CopyAction::leave},
    };
    return all;
}

struct Binding {
    KeyPattern key;
    Meaning meaning;
};

std::vector<Binding> parsed() {
    std::vector<Binding> bindings;
    for (const Row& row : rows()) {
        for (const std::string_view key : row.keys) {
            if (const auto pattern = KeyText::parse(key)) bindings.push_back({*pattern, row.meaning});
        }
    }
    return bindings;
}

}  // namespace

std::optional<Meaning> copyKey(const KeyEvent& key) {
    static const std::vector<Binding> bindings = parsed();
    const auto found = std::ranges::find_if(bindings, [&](const Binding& binding) { return binding.key.matches(key); });
    return found == bindings.end() ? std::nullopt : std::optional(found->meaning);
}

}  // namespace orvane
