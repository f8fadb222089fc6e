#pragma once

#include <string>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Input/InputEvent.h"

namespace orvane {

/// A line of text being typed, with the keys that shells have for it.
class LineEditor {
 public:
    explicit LineEditor(std::string text = {}) : before_(std::move(text)) {}

    std::string text() const { return before_ + behind_; }
    /// Whether the key meant something here.
    bool key(const KeyEvent& key);
    /// Line ends and control characters become blanks.
    void insert(std::string_view text);
    /// The text with its cursor, its end in sight when it is longer than the room.
    void paint(CanvasPen& pen, Canvas& canvas, int x, int y, int cols) const;

 private:
    bool control(char32_t letter);
    void eraseWord();

    std::string before_;  ///< the cursor
    std::string behind_;
};

}  // namespace orvane
