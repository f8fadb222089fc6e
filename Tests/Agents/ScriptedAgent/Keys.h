#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::scripted {

/// A key or a paste, as a program that reads a raw terminal gets it.
struct Key {
    std::string name;  ///< "Return", "Ctrl-C", "Shift-Tab", "Paste"…; empty when it is text alone
    std::string text;  ///< what it types, or was pasted
    bool operator==(const Key&) const = default;
};

/// Reads keys out of bytes: plain ones, sequences of xterm, of modifyOtherKeys and of the progressive enhancements,
/// and bracketed pastes. Answers to queries, focus, mouse and releases are left out.
class KeyReader {
 public:
    std::vector<Key> feed(std::string_view bytes);
    /// An escape byte waits for what may follow it.
    bool isWaiting() const { return pending_ == "\x1b"; }
    /// Nothing has followed: it was the Escape key.
    std::vector<Key> giveUp();

 private:
    bool takeOne(std::vector<Key>& keys);
    bool takeSequence(std::vector<Key>& keys);
    bool takePaste(std::vector<Key>& keys);
    bool takeString();

    std::string pending_;
};

}  // namespace orvane::scripted
