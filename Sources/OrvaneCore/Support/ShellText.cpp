#include "OrvaneCore/Support/ShellText.h"

#include <optional>
#include <utility>

namespace orvane {

std::string shellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char byte : text) {
        if (byte == '\'') {
            quoted += R"('\'')";
        } else {
            quoted += byte;
        }
    }
    return quoted + "'";
}

namespace {

/// Reads words by the quoting rules of POSIX.1-2017, Shell Command Language, 2.2.
class WordReader {
 public:
    explicit WordReader(std::string_view command) : rest_(command) {}

    std::vector<std::string> words() {
        while (!rest_.empty())
            read(take());
        endWord();
        return std::move(words_);
    }

 private:
    static bool isBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\n'; }

    char take() {
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return first;
    }

    void read(char byte) {
        if (isBlank(byte)) return endWord();
        if (!word_) word_.emplace();
        if (byte == '\\') {
            if (!rest_.empty()) *word_ += take();
        } else if (byte == '\'' || byte == '"') {
            readQuoted(byte);
        } else {
            *word_ += byte;
        }
    }

    void readQuoted(char quote) {
        while (!rest_.empty()) {
            const char byte = take();
            if (byte == quote) return;
            const bool escapes =
                quote == '"' && byte == '\\' && !rest_.empty() && std::string_view("$`\"\\\n").contains(rest_.front());
            *word_ += escapes ? take() : byte;
        }
    }

    void endWord() {
        if (word_) words_.push_back(*std::exchange(word_, std::nullopt));
    }

    std::string_view rest_;
    std::optional<std::string> word_;
    std::vector<std::string> words_;
};

}  // namespace

std::vector<std::string> shellWords(std::string_view command) {
    return WordReader(command).words();
}

}  // namespace orvane
