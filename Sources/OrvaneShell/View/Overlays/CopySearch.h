#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Overlays/CopyCursor.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewContext.h"
#include "TerminalEmulator/SearchService.h"

namespace orvane {

/// The search of the copy mode: the term that is typed in the bottom row, and its hits in the text. It moves the cursor
/// of the mode.
class CopySearch {
 public:
    enum class Toward : std::uint8_t { older, newer };

    /// A term is typed from now on; hits count from the cursor.
    void begin(const Terminal& terminal, const CopyCursor& cursor, Toward toward);
    bool isTyping() const { return isTyping_; }
    /// A key, or pasted text, for the term being typed. The cursor goes to the first hit, and back to where it was when
    /// there is none or when the search is given up.
    void key(ViewContext& view, Terminal& terminal, CopyCursor& cursor, const KeyEvent& key);
    void text(Terminal& terminal, CopyCursor& cursor, const std::string& pasted);

    /// To the next hit in the direction of the search, or against it; with the term of the search before when nothing
    /// has been searched yet.
    enum class Course : std::uint8_t { on, back };
    void next(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Course course);
    /// Searches the name under the cursor as a whole word.
    void searchWord(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Toward toward);

    /// The text of the hit that the cursor came to last, if it still stands there; else empty.
    std::string hitText(const Terminal& terminal, const CopyCursor& cursor) const;
    /// "3/17" of the hits, "10000+" when there are very many; empty without any.
    std::string count() const;

    /// Marks what shows of the hits in the rectangle that the terminal was drawn into.
    void paintHits(CanvasPen& pen, const CellRect& body, const Terminal& terminal);
    /// The bottom row while a term is typed.
    void paintRow(const ViewContext& view, CanvasPen& pen, Canvas& canvas, const CellRect& row) const;

 private:
    bool toggle(const KeyEvent& key);
    void recall(const ViewContext& view, int step);
    void typed(Terminal& terminal, CopyCursor& cursor);
    void accept(ViewContext& view, Terminal& terminal, CopyCursor& cursor);
    void giveUp(Terminal& terminal, CopyCursor& cursor);
    SearchService& service(const Terminal& terminal);
    /// Whether there is a hit, with the cursor on it then; what is wrong with the term is in `refusal_`.
    bool find(Terminal& terminal, CopyCursor& cursor, Toward toward, Position from);
    void countHits(const Terminal& terminal);
    void goOn(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Toward toward);

    std::unique_ptr<SearchService> service_;
    const Buffer* buffer_ = nullptr;  ///< that the service searches
    std::string term_;                ///< whose hits are marked
    SearchOptions options_;
    Toward toward_ = Toward::older;
    std::optional<SearchResult> hit_;  ///< the current one
    std::size_t hitNumber_ = 0;        ///< from 1; 0 when it is not known
    std::size_t hitCount_ = 0;
    bool areMoreHits_ = false;

    // While a term is typed.
    bool isTyping_ = false;
    LineEditor editor_;
    std::optional<CopyCursor> origin_;
    std::int64_t originTop_ = 0;  ///< of the view, plus `Buffer::linesTop`
    std::size_t recalled_ = 0;    ///< how many terms back
    std::string refusal_;         ///< what is wrong with the term
};

}  // namespace orvane
