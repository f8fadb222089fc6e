#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"

/// Buffers in a textual notation: one string a row, `+` before a row that continues the one above it, blanks at the
/// right left off. Characters from U+3000 on are wide.
namespace orvane::testing {

/// All rows from the oldest of the history on, or those of the screen; blank rows at the end are left off.
std::vector<std::string> ringRows(const Buffer& buffer);
std::vector<std::string> screenRows(const Buffer& buffer);

/// The rows joined by their wrap flags, blank lines at the end left off.
std::vector<std::string> logicalLines(const Buffer& buffer);

/// What stands from the cursor's character on, lines parted by newlines.
std::string textFromCursor(const Buffer& buffer);

/// Types as an engine does: wraps at the right end, scrolls at the bottom, `\n` starts the next row.
void type(Buffer& buffer, std::u32string_view text, const Pen& pen = {});

/// Nothing when every wide character has both its halves.
std::string splitCharacter(const Buffer& buffer);

}  // namespace orvane::testing
