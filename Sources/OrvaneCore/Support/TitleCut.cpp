#include "OrvaneCore/Support/TitleCut.h"

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// A pasted file need not be cleaned whole for its first line. No character has more bytes than this in practice, and
/// an emoji family of 25 bytes still leaves a title of some length.
constexpr std::size_t bytesPerCharacter = 32;

}  // namespace

std::string titleCut(std::string_view text, std::size_t limit) {
    std::string line = Text::oneLine(text.substr(0, limit * bytesPerCharacter));
    if (Text::prefix(line, limit).size() == line.size()) return line;
    std::string_view kept = Text::prefix(line, limit == 0 ? 0 : limit - 1);
    const bool endsWithWord = line[kept.size()] == ' ';
    const auto blank = kept.rfind(' ');
    // A title that loses more than half to one long word says less than half of that word.
    if (!endsWithWord && blank != std::string_view::npos && blank >= kept.size() / 2) kept = kept.substr(0, blank);
    return std::string(Text::trimmed(kept)) + (limit == 0 ? "" : "…");
}

}  // namespace orvane
