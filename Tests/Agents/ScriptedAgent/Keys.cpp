#include "ScriptedAgent/Keys.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {
namespace {

constexpr std::string_view pasteBegin = "\x1b[200~";
constexpr std::string_view pasteEnd = "\x1b[201~";
/// What a program that never ends its sequence or paste may cost.
constexpr std::size_t longestSequence = 256;
constexpr std::size_t longestPaste = 16 << 20;

std::string nameOfCode(int code) {
    static const std::map<int, std::string> names = {
        {9, "Tab"}, {13, "Return"}, {27, "Escape"}, {32, "Space"}, {127, "Backspace"}};
    if (const auto found = names.find(code); found != names.end()) return found->second;
    if (code > 32 && code < 127)
        return std::string(1, static_cast<char>(code >= 'a' && code <= 'z' ? code - 32 : code));
    return "Key-" + std::to_string(code);
}

/// Modifiers as xterm counts them: 1, and 1, 2, 4 for shift, alt, control.
std::string modified(int modifiers, const std::string& name) {
    const int bits = std::max(modifiers, 1) - 1;
    return std::string(bits & 4 ? "Ctrl-" : "") + (bits & 2 ? "Alt-" : "") + (bits & 1 ? "Shift-" : "") + name;
}

int number(std::string_view text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

struct Parameters {
    std::vector<int> values;
    bool isRelease = false;

    int at(std::size_t index) const { return index < values.size() ? values[index] : 0; }
};

Parameters parametersOf(std::string_view text) {
    Parameters result;
    for (const std::string& part : split(text, ';')) {
        const auto fields = split(part, ':');
        result.values.push_back(number(fields[0]));
        if (result.values.size() == 2 && fields.size() > 1) result.isRelease = number(fields[1]) == 3;
    }
    return result;
}

Key plain(char byte) {
    if (byte == '\r') return {.name = "Return"};
    if (byte == '\t') return {.name = "Tab"};
    if (byte == '\x1b') return {.name = "Escape"};
    if (byte == '\x7f' || byte == '\b') return {.name = "Backspace"};
    if (byte == ' ') return {.name = "Space", .text = " "};
    if (static_cast<unsigned char>(byte) < 0x20) return {.name = std::string("Ctrl-") + static_cast<char>(byte + 64)};
    return {.text = std::string(1, byte)};
}

/// The key of a whole control sequence; its name is empty when it stands for none.
Key ofSequence(std::string_view body, char last) {
    static const std::map<char, std::string> letters = {{'A', "Up"},   {'B', "Down"}, {'C', "Right"},    {'D', "Left"},
                                                        {'H', "Home"}, {'F', "End"},  {'Z', "Shift-Tab"}};
    static const std::map<int, std::string> tildes = {
        {1, "Home"}, {3, "Delete"}, {4, "End"}, {5, "PageUp"}, {6, "PageDown"}};
    if (!body.empty() && (body[0] < '0' || body[0] > ';')) return {};
    const Parameters values = parametersOf(body);
    if (values.isRelease) return {};
    if (const auto letter = letters.find(last); letter != letters.end())
        return {.name = modified(values.at(1), letter->second)};
    if (last == 'u' && values.at(0) > 0) {
        const bool isText = values.at(1) <= 1 && values.at(0) >= 32 && values.at(0) < 127;
        if (isText) return plain(static_cast<char>(values.at(0)));
        return {.name = modified(values.at(1), nameOfCode(values.at(0)))};
    }
    if (last != '~') return {};
    if (values.at(0) == 27) return {.name = modified(values.at(1), nameOfCode(values.at(2)))};
    const auto tilde = tildes.find(values.at(0));
    return {.name = tilde == tildes.end() ? std::string() : modified(values.at(1), tilde->second)};
}

std::string withLineFeeds(std::string text) {
    for (std::size_t at = text.find('\r'); at != std::string::npos; at = text.find('\r', at))
        text.replace(at, text.compare(at, 2, "\r\n") == 0 ? 2 : 1, "\n");
    return text;
}

}  // namespace

std::vector<Key> KeyReader::feed(std::string_view bytes) {
    pending_ += bytes;
    std::vector<Key> keys;
    while (!pending_.empty() && takeOne(keys)) {
    }
    return keys;
}

std::vector<Key> KeyReader::giveUp() {
    pending_.clear();
    return {{.name = "Escape"}};
}

bool KeyReader::takeOne(std::vector<Key>& keys) {
    if (pending_[0] != '\x1b') {
        const unsigned char lead = static_cast<unsigned char>(pending_[0]);
        const std::size_t size = lead < 0xc0 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
        if (pending_.size() < size) return false;
        keys.push_back(size == 1 ? plain(pending_[0]) : Key{.text = pending_.substr(0, size)});
        pending_.erase(0, size);
        return true;
    }
    if (pending_.size() == 1) return false;
    if (pending_.starts_with(pasteBegin)) return takePaste(keys);
    if (pending_[1] == '[' || pending_[1] == 'O') return takeSequence(keys);
    if (pending_[1] == ']' || pending_[1] == 'P' || pending_[1] == '_') return takeString();
    if (pending_[1] == '\x1b') {
        keys.push_back({.name = "Escape"});
        pending_.erase(0, 1);
        return true;
    }
    const Key key = plain(pending_[1]);
    keys.push_back({.name = "Alt-" + (key.name.empty() ? key.text : key.name)});
    pending_.erase(0, 2);
    return true;
}

bool KeyReader::takeSequence(std::vector<Key>& keys) {
    std::size_t end = 2;
    while (end < pending_.size() && end < longestSequence && (pending_[end] < 0x40 || pending_[end] > 0x7e))
        ++end;
    if (end == pending_.size()) return false;
    Key key = ofSequence(std::string_view(pending_).substr(2, end - 2), pending_[end]);
    if (!key.name.empty() || !key.text.empty()) keys.push_back(std::move(key));
    pending_.erase(0, end + 1);
    return true;
}

bool KeyReader::takePaste(std::vector<Key>& keys) {
    const std::size_t end = pending_.find(pasteEnd);
    if (end == std::string::npos && pending_.size() < longestPaste) return false;
    std::string text = pending_.substr(pasteBegin.size(), end - pasteBegin.size());
    keys.push_back({.name = "Paste", .text = withLineFeeds(std::move(text))});
    pending_.erase(0, end == std::string::npos ? end : end + pasteEnd.size());
    return true;
}

/// Answers come as strings too (colours, capabilities); they end with BEL or ST.
bool KeyReader::takeString() {
    const std::size_t bell = pending_.find('\a');
    const std::size_t terminator = pending_.find("\x1b\\");
    const std::size_t end = std::min(bell, terminator);
    if (end == std::string::npos) {
        if (pending_.size() > longestSequence) pending_.clear();
        return false;
    }
    pending_.erase(0, end + (end == bell ? 1 : 2));
    return true;
}

}  // namespace orvane::scripted
