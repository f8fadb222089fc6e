#pragma once

#include <string>
#include <vector>

#include "Orvane/Agents/SessionController.h"

namespace orvane {

/// What a session asks its user.
struct SessionQuestion {
    struct Option {
        int number = 0;  ///< as it is printed, the key that takes it
        std::string label;
        bool operator==(const Option&) const = default;
    };

    std::string text;
    std::vector<Option> options;

    bool operator==(const SessionQuestion&) const = default;

    static bool isAsked(const SessionController& session) {
        return std::holds_alternative<SessionStatus::Waiting>(session.status().value) && session.agent() != nullptr;
    }
    static SessionQuestion of(const SessionController& session);
    /// In one row: "Do you want to proceed?  1 Yes  2 No".
    std::string line() const;
};

}  // namespace orvane
