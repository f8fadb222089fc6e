#pragma once

#include <string>
#include <string_view>

/// Pieces of a Markdown document (CommonMark 0.31).
namespace orvane::Markdown {

/// One line that reads as it stands: no character of it is markup.
std::string escaped(std::string_view text);

/// One line as a code span, whatever backticks it holds.
std::string code(std::string_view text);

/// As a block quote.
std::string quoted(std::string_view text);

/// The text, with the end of a fenced code block that it leaves open: all that follows would be code.
std::string closed(std::string text);

}  // namespace orvane::Markdown
