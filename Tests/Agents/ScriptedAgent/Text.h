#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::scripted {

/// Stands in a row where the cursor is; it is no part of what is written.
inline constexpr char cursorMark = '\x01';

/// Cells that a text takes; control sequences take none.
int width(std::string_view text);

/// The longest beginning that takes no more cells; control sequences behind it stay, so that attributes end.
std::string clipped(std::string_view text, int cells);

/// Breaks a row between words. What follows is indented like the text behind the row's bullet, if it has one.
std::vector<std::string> wrapped(std::string_view row, int cells);

std::vector<std::string> split(std::string_view text, char separator);

/// Without the spaces around it.
std::string_view trimmed(std::string_view text);

/// Takes the first word off.
std::string_view takeWord(std::string_view& rest);

/// Whether a text matches a pattern, in which '*' stands for any text.
bool matches(std::string_view text, std::string_view pattern);

/// Replaces \e \a \r \n \t \s (a space) \\ and \xHH.
std::string unescaped(std::string_view text);

/// As it stands in a JSON string, without the quotes.
std::string jsonEscaped(std::string_view text);

}  // namespace orvane::scripted
