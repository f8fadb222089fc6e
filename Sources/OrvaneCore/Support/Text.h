#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text as people see it. All text is UTF-8; a "character" is an extended grapheme cluster (Unicode Annex 29), so that
/// a flag, a letter with its accents and CR LF count one each. Bytes that are no UTF-8 are never a failure: each
/// malformed run counts, compares and prints as the U+FFFD that the Unicode Standard (section 3.9, "maximal subpart")
/// puts in its place. Views given back look into the argument. Every function may be called on any thread.
namespace orvane::Text {

std::size_t characterCount(std::string_view text);

/// The columns that the text takes in a terminal: wide and full-width characters and emoji take two, marks on their own
/// and control characters none (Unicode Annex 11).
std::size_t displayWidth(std::string_view text);

/// The first `count` characters; the whole text when it has no more.
std::string_view prefix(std::string_view text, std::size_t count);

/// The last `count` characters; the whole text when it has no more.
std::string_view suffix(std::string_view text, std::size_t count);

/// The text itself when it has at most `count` characters, else its beginning and the ellipsis, `count` characters
/// together. An ellipsis longer than that is cut itself.
std::string truncated(std::string_view text, std::size_t count, std::string_view ellipsis = "…");

/// What searches compare: blind to case (full folding, "ß" is "ss"), to nonspacing marks ("é" is "e") and to width
/// ("Ａ" is "a", "ｶ" is "カ"). Ligatures and other compatibility forms keep their difference where case folding has no
/// say. Japanese sound marks are nonspacing marks and go too: "が" finds "か" and back, as people know it from searches
/// that ignore accents; hiragana and katakana stay apart. Hangul syllables stay whole and conjoining letters are
/// composed into them. Forms NFC and NFD of one text fold equal.
std::string folded(std::string_view text);

/// Whether the folded text contains a needle that is folded already. An empty needle is found everywhere.
bool containsFolded(std::string_view text, std::string_view foldedNeedle);

/// Full case folding alone: accents, width and normal form keep their difference. Malformed bytes stay as they are, so
/// that two file names which differ in them stay two.
std::string caseFolded(std::string_view text);

/// Whether two names differ at most in case.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// Without Unicode white space and newlines at both ends.
std::string_view trimmed(std::string_view text);

/// A text made fit for a title, a row or a message, whoever wrote it: control characters (ESC among them), newlines
/// and runs of white space become one blank each, none at the ends; marks that turn the direction of writing and
/// invisible zero-width characters, which make a text look like another, are dropped (joiners stay: emoji and Persian
/// need them); malformed bytes become U+FFFD.
std::string oneLine(std::string_view text);

bool isValidUtf8(std::string_view text);

/// The text with U+FFFD in the place of every malformed run.
std::string sanitizedUtf8(std::string_view text);

}  // namespace orvane::Text
