#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "OrvaneShell/View/Plain/PlainScreen.h"

namespace orvane {

/// Screens as lines for somebody who has them read out: each frame writes what is new since the last one and nothing
/// else. No escape sequences; lines end with CR LF, and a line is as long as it is.
///
/// What somebody types grows a row at its end, and only the addition is written, behind what stands there. Spinners,
/// clocks and the like, which change in place all the time, are written once.
class PlainWriter {
 public:
    /// A line of its own.
    void line(std::string_view text);
    /// What is new on the screen of the pane.
    void screen(const PlainScreen& next);
    /// Another pane, or another size: the row of the cursor stands for what is there.
    void newScreen(const PlainScreen& next);
    void wholeScreen(const PlainScreen& next);
    /// A dialog or list over the pane: all of it when it opens, then what is new, and the choice when it moves.
    void dialog(const PlainScreen& next);
    void endDialog() { dialog_.rows.clear(); }
    /// Whence the rows that have scrolled away since the last screen are wanted; none when nobody can know.
    std::optional<std::int64_t> firstNumber() const;

    /// The bytes since the last call.
    std::string take() { return std::exchange(bytes_, {}); }

 private:
    using Texts = std::map<std::string, int, std::less<>>;
    enum class Line { ends, staysOpen };

    void write(const PlainRow& row, Line end);
    void add(const PlainRow& row, std::size_t known);
    void endLine();
    void keep(const PlainScreen& next);
    void compare(const PlainScreen& next, std::int64_t shift);
    void writeNews(const PlainRow& row, std::string_view before, Texts& moved);
    void writeTyped(const PlainRow& row, std::string_view before);
    bool isNewChoice(const PlainRow& row) const;

    std::string bytes_;
    bool isOpen_ = false;        ///< what was written last has no line end
    std::int64_t openRow_ = -1;  ///< the row that goes on there
    PlainScreen screen_;
    PlainScreen dialog_;
};

}  // namespace orvane
