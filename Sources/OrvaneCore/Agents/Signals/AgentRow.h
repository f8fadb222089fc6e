#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A row of an agent's screen made fit for reading: no-break spaces are spaces (Claude Code puts one behind the marker
/// of its composer), the borders of boxes around the text are blanks, and none stands at the end.
struct AgentRow {
    enum class Kind {
        blank,
        text,
        rule,    ///< a solid line across, or the upper or lower side of a box, perhaps with a title in it
        dashes,  ///< a broken line; it parts what a dialog shows
    };

    Kind kind = Kind::blank;
    std::string text;
    int indent = 0;   ///< columns before the text
    int width = 0;    ///< columns up to its end
    int boxes = 0;    ///< borders to its left
    int wrapsAt = 0;  ///< text beyond this column would have gone to the next row

    bool isText() const { return kind == Kind::text; }
    bool isLine() const { return kind == Kind::rule || kind == Kind::dashes; }
    std::string_view content() const;  ///< without the blanks before it
};

using AgentRowSpan = std::span<const AgentRow>;

namespace AgentRowText {

inline constexpr std::size_t maximumRowSize = 4096;  ///< bytes; what follows is cut

/// Columns of 0 are guessed by the lines across the screen.
std::vector<AgentRow> reading(std::span<const std::string> rows, int columns = 0);

/// Whether the second row goes on with a text that did not fit into the first.
bool continues(const AgentRow& above, const AgentRow& below);
/// Appends a row's text, behind a blank where the script has blanks.
void append(std::string& text, std::string_view more);

/// Whether it begins a message of the conversation: at the left edge, behind a mark.
bool startsMessage(const AgentRow& row);
/// Whether it begins with the mark of a prompt, one of `>`, `❯`, `›`, `»`, and a blank.
bool startsPrompt(const AgentRow& row);

}  // namespace AgentRowText

}  // namespace orvane
