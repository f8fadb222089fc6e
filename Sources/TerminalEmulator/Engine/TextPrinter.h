#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane {

/// Writes text at the cursor: decodes it, joins it to grapheme clusters, wraps, inserts. Runs of plain ASCII, which is
/// nearly all there is, go straight into the row.
class TextPrinter {
 public:
    explicit TextPrinter(TerminalState& state) : state_(state) {}

    /// As `ParserHandler::print`.
    void print(std::string_view text, std::size_t plainCount);
    /// A character that was begun and is not whole shows as U+FFFD.
    void finishCharacter() {
        if (decoder_.isPending()) replacePending();
    }
    /// REP: the last character once more, `count` times; at most as often as fills the screen.
    void repeat(int count);
    void reset();

 private:
    void replacePending();
    bool takesPlain() const;
    void printPlain(std::string_view bytes);
    void printOther(std::string_view text);
    void printScalar(char32_t scalar);
    void place(char32_t scalar, int width);
    bool join(char32_t scalar);
    bool joinsCluster(char32_t scalar, std::int32_t code) const;
    void applyPresentation(char32_t selector, int col);
    int lastCellColumn() const;
    int rightLimit();
    void advance(int col, int limit);
    void unlinkNextRow(int limit);

    TerminalState& state_;
    Utf8Decoder decoder_;
    int limit_ = 0;             ///< `rightLimit()` of the row that is being written
    char32_t lastScalar_ = 0;   ///< what REP repeats; 0 for nothing
    bool afterJoiner_ = false;  ///< a joiner was the last that was printed, wherever the cursor is now
};

}  // namespace orvane
