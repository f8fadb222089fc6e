#pragma once

#include <string>
#include <variant>

namespace orvane {

/// What a program tells the person in front of its terminal, beside what it draws.
struct TerminalNews {
    struct Bell {
        bool operator==(const Bell&) const = default;
    };
    /// It puts this into the clipboard.
    struct Clipboard {
        std::string content;
        bool operator==(const Clipboard&) const = default;
    };
    struct Notification {
        std::string title;
        std::string body;
        bool operator==(const Notification&) const = default;
    };

    std::variant<Bell, Clipboard, Notification> value;

    bool operator==(const TerminalNews&) const = default;
};

}  // namespace orvane
