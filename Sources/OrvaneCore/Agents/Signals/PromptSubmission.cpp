#include "OrvaneCore/Agents/Signals/PromptSubmission.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <string>

#include "OrvaneCore/Agents/Signals/TerminalOutputScanner.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

bool hasReturn(std::string_view bytes) {
    return bytes.find_first_of("\r\n") != std::string_view::npos;
}

std::string_view withoutBlanksAround(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

/// Of the one character that the text is; -1 when it is none, or more.
int wholeNumberValue(std::string_view text) {
    UChar32 codePoint = 0;
    std::size_t end = 0;
    if (text.empty()) return -1;
    U8_NEXT(text.data(), end, text.size(), codePoint);  // NOLINT(bugprone-inc-dec-in-conditions): the macro
    if (codePoint < 0 || end != text.size()) return -1;
    const double value = u_getNumericValue(codePoint);
    return value >= 0 && value <= 9 && value == static_cast<int>(value) ? static_cast<int>(value) : -1;
}

}  // namespace

bool PromptSubmission::submits(std::string_view inputBytes, const std::optional<std::string_view>& draft) {
    if (!hasReturn(inputBytes)) return false;
    const std::string typed = Text::sanitizedUtf8(TerminalOutputScanner::textOf(inputBytes));
    if (!Text::trimmed(typed).empty()) return true;
    return draft && !Text::trimmed(*draft).empty();
}

bool DialogAnswer::closesDialog(std::string_view inputBytes) {
    return hasReturn(inputBytes) || wholeNumberValue(withoutBlanksAround(inputBytes)) >= 1;
}

}  // namespace orvane
