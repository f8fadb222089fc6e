#include "OrvaneShell/View/Overlays/LineEditor.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Painting/ViewLook.h"

namespace orvane {

bool LineEditor::key(const KeyEvent& key) {
    const std::string last(Text::suffix(before_, 1));
    const std::string next(Text::prefix(behind_, 1));
    switch (key.name) {
        case KeyName::backspace:
            before_.resize(before_.size() - last.size());
            return true;
        case KeyName::delete_:
            behind_.erase(0, next.size());
            return true;
        case KeyName::left:
            before_.resize(before_.size() - last.size());
            behind_.insert(0, last);
            return true;
        case KeyName::right:
            behind_.erase(0, next.size());
            before_ += next;
            return true;
        case KeyName::home:
            return control('a');
        case KeyName::end:
            return control('e');
        default:
            break;
    }
    if (key.name == KeyName::character && key.modifiers.control) return control(key.character);
    const std::string typed = typedText(key);
    insert(typed);
    return !typed.empty();
}

bool LineEditor::control(char32_t letter) {
    switch (letter) {
        case 'a':
            behind_.insert(0, std::exchange(before_, {}));
            return true;
        case 'e':
            before_ += std::exchange(behind_, {});
            return true;
        case 'u':
            before_.clear();
            return true;
        case 'k':
            behind_.clear();
            return true;
        case 'w':
            eraseWord();
            return true;
        default:
            return false;
    }
}

void LineEditor::eraseWord() {
    while (before_.ends_with(' '))
        before_.pop_back();
    const auto blank = before_.rfind(' ');
    before_.resize(blank == std::string::npos ? 0 : blank + 1);
}

void LineEditor::insert(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(line, [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    before_ += line;
}

void LineEditor::paint(CanvasPen& pen, Canvas& canvas, int x, int y, int cols) const {
    std::string shown = before_;
    while (static_cast<int>(Text::displayWidth(shown)) >= cols && !shown.empty())
        shown.erase(0, Text::prefix(shown, 1).size());
    pen.fill({x, y, cols, 1}, ViewLook::plain);
    const int width = pen.text(x, y, shown, ViewLook::plain, cols);
    pen.text(x + width, y, behind_, ViewLook::plain, cols - width);
    canvas.cursor = Canvas::Cursor{.x = x + width, .y = y, .style = CursorStyle::steadyBar};
}

}  // namespace orvane
