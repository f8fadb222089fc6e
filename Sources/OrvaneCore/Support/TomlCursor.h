#pragma once

#include <cstddef>
#include <string_view>

namespace orvane {

/// A place in a TOML text, and the steps that its grammar takes from there. A copy remembers the place.
class TomlCursor {
 public:
    explicit TomlCursor(std::string_view text) : text_(text) {}

    std::size_t position() const { return position_; }
    bool isAtEnd() const { return position_ == text_.size(); }
    std::string_view rest() const { return text_.substr(position_); }
    bool isAt(std::string_view expected) const { return rest().starts_with(expected); }
    bool isAtNewline() const { return isAt("\n") || isAt("\r\n"); }

    /// Steps over the text if it stands here.
    bool take(std::string_view expected) {
        if (!isAt(expected)) return false;
        position_ += expected.size();
        return true;
    }

    /// Not to be asked for at the end.
    char takeByte() { return text_[position_++]; }

    template <typename Test>
    std::string_view takeWhile(Test test) {
        const std::size_t start = position_;
        while (!isAtEnd() && test(text_[position_]))
            ++position_;
        return text_.substr(start, position_ - start);
    }

    bool takeNewline() { return take("\n") || take("\r\n"); }

    void skipBlanks() {
        takeWhile([](char byte) { return byte == ' ' || byte == '\t'; });
    }

    void skipWhiteSpace() {
        do {
            skipBlanks();
        } while (takeNewline());
    }

    /// White space, newlines and comments.
    void skipFiller() {
        for (skipWhiteSpace(); isAt("#"); skipWhiteSpace())
            skipToNextLine();
    }

    void skipToNextLine() {
        takeWhile([](char byte) { return byte != '\n'; });
        take("\n");
    }

    /// Steps to the next line, or stays where more than a comment is left of this one.
    bool takeLineEnd() {
        skipBlanks();
        if (!isAt("#") && !isAtNewline() && !isAtEnd()) return false;
        skipToNextLine();
        return true;
    }

 private:
    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace orvane
