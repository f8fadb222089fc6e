#include "OrvaneCore/Support/OutputLines.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr char escape = '\x1b';

bool isBetween(char byte, char first, char last) {
    return byte >= first && byte <= last;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Takes the bytes from `first` to `last` at the beginning of the text.
std::string_view takeWhileBetween(std::string_view& text, char first, char last) {
    const auto* const end = std::ranges::find_if_not(text, [&](char byte) { return isBetween(byte, first, last); });
    const std::string_view taken = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(taken.size());
    return taken;
}

/// One line of valid UTF-8 while it is drawn. Text comes only at its end or, after a return, in the place of all of it:
/// a drawing that is shorter than the one before is meant to hide it.
class Drawing {
 public:
    explicit Drawing(std::string_view rest) : rest_(rest) {}

    std::string result() {
        while (!rest_.empty())
            drawNext();
        return std::move(line_);
    }

 private:
    void drawNext() {
        if (rest_.size() > 1 && rest_.front() == '\xC2' && isBetween(rest_[1], '\x80', '\x9F')) return control();
        const char byte = rest_.front();
        rest_.remove_prefix(1);
        if (byte == escape) return escapeSequence();
        if (byte == '\r') {
            isAtStart_ = true;
        } else if (byte == '\b') {
            dropCharacter();
        } else if (byte == '\t' || !(isBetween(byte, 0, '\x1f') || byte == '\x7f')) {
            if (std::exchange(isAtStart_, false)) line_.clear();
            line_ += byte;
        }
    }

    /// A control character from the upper half (ECMA-48, 5.3), in UTF-8.
    void control() {
        const bool isIntroducer = rest_[1] == '\x9B';
        rest_.remove_prefix(2);
        if (isIntroducer) controlSequence();
    }

    /// What follows an ESC (ECMA-48, 5.3 and 8.2).
    void escapeSequence() {
        if (rest_.empty()) return;
        const char kind = rest_.front();
        if (kind == '[') {
            rest_.remove_prefix(1);
            return controlSequence();
        }
        if (std::string_view("]PX^_").contains(kind)) return controlString();
        takeWhileBetween(rest_, ' ', '/');
        if (!rest_.empty() && isBetween(rest_.front(), '0', '~')) rest_.remove_prefix(1);
    }

    void controlSequence() {
        const std::string_view parameters = takeWhileBetween(rest_, '0', '?');
        takeWhileBetween(rest_, ' ', '/');
        if (rest_.empty() || !isBetween(rest_.front(), '@', '~')) return;
        const char function = rest_.front();
        rest_.remove_prefix(1);
        const bool isDefault = parameters.empty() || parameters == "0";
        if (function == 'G' && (isDefault || parameters == "1")) isAtStart_ = true;
        // Behind the end of the line there is nothing to erase.
        if (function == 'K' && (parameters == "2" || (isDefault && isAtStart_))) line_.clear();
    }

    /// A title, a link and the like; ended by BEL or ESC \.
    void controlString() {
        const std::size_t end = rest_.find_first_of("\a\x1b");
        rest_.remove_prefix(std::min(end, rest_.size()));
        if (rest_.starts_with("\x1b\\")) rest_.remove_prefix(1);
        if (!rest_.empty() && rest_.front() != escape) rest_.remove_prefix(1);
    }

    void dropCharacter() {
        while (!line_.empty() && isContinuation(line_.back()))
            line_.pop_back();
        if (!line_.empty()) line_.pop_back();
    }

    std::string_view rest_;
    std::string line_;
    bool isAtStart_ = false;  ///< of a line that was drawn before
};

}  // namespace

std::vector<std::string> OutputLines::append(std::string_view bytes) {
    std::vector<std::string> lines;
    for (std::size_t end = 0; (end = bytes.find('\n')) != std::string_view::npos; bytes.remove_prefix(end + 1)) {
        unfinished_ += bytes.substr(0, end);
        lines.push_back(shown(std::exchange(unfinished_, {})));
    }
    unfinished_ += bytes;
    if (unfinished_.size() <= longestLine) return lines;
    // A progress bar may draw itself for hours.
    const std::size_t lastReturn = unfinished_.find_last_of('\r', unfinished_.size() - 2);
    if (lastReturn != std::string::npos) unfinished_.erase(0, lastReturn);
    while (unfinished_.size() > longestLine) {
        std::size_t cut = longestLine;
        while (cut > longestLine - 4 && isContinuation(unfinished_[cut]))
            --cut;
        lines.push_back(shown(std::string_view(unfinished_).substr(0, cut)));
        unfinished_.erase(0, cut);
    }
    return lines;
}

std::optional<std::string> OutputLines::finish() {
    if (unfinished_.empty()) return std::nullopt;
    return shown(std::exchange(unfinished_, {}));
}

std::string OutputLines::shown(std::string_view line) {
    // First, so that what is taken out between two stray bytes cannot make a character of them.
    const std::string text = Text::sanitizedUtf8(line);
    return Drawing(text).result();
}

}  // namespace orvane
