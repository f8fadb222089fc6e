#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What an agent asks of its user, and how an answer reaches it.
namespace ApprovalPolicy {

inline constexpr Seconds staleAfter{900};
inline constexpr std::size_t detailLimit = 180;      ///< characters of a question
inline constexpr std::size_t actionLabelLimit = 42;  ///< characters of a button

enum class Decision { approve, deny };

/// A request as it is shown to a person.
struct Request {
    enum class Kind {
        approval,    ///< may the agent do this?
        choice,      ///< one of the options
        freeform,    ///< an answer in words
        revealOnly,  ///< only the agent's own screen can answer it
    };

    Kind kind = Kind::approval;
    std::string toolName;              ///< what wants to act, or the dialog's heading; may be empty
    std::string detail;                ///< the question, or what the tool would do
    std::vector<std::string> options;  ///< the first is answered by the digit 1, and so on
    std::optional<int> questionIndex;  ///< from 1
    std::optional<int> questionCount;

    bool operator==(const Request&) const = default;
};

struct Response {
    struct Option {
        int index = 0;  ///< from 0
        bool operator==(const Option&) const = default;
    };
    struct Text {
        std::string text;
        bool operator==(const Text&) const = default;
    };
    struct Approve {
        bool operator==(const Approve&) const = default;
    };
    struct Deny {
        bool operator==(const Deny&) const = default;
    };

    std::variant<Approve, Deny, Option, Text> value;

    bool operator==(const Response&) const = default;
};

/// What is typed into an agent's terminal for it; nothing when no key stands for it.
std::optional<std::string> keystrokes(Decision decision);
std::optional<std::string> keystrokes(const Response& response);

/// Whether an answer may still be given: it is waited for, has not been given, and is 0 to 900 seconds old.
bool canAct(Date emittedAt, Date now, bool stillWaiting, bool alreadyAnswered);

/// A request for approval, its texts made fit for one row.
Request summarize(std::string_view toolName, std::string_view detail);

/// The text as one row of at most `limit` characters, cut at a word where that keeps at least half. A limit below 2
/// does not cut.
std::string clean(std::string_view text, std::size_t limit);

}  // namespace ApprovalPolicy

template <>
struct RawValues<ApprovalPolicy::Decision> {
    static constexpr std::array table = {
        rawValueOf(ApprovalPolicy::Decision::approve, "approve"),
        rawValueOf(ApprovalPolicy::Decision::deny, "deny"),
    };
};

template <>
struct RawValues<ApprovalPolicy::Request::Kind> {
    static constexpr std::array table = {
        rawValueOf(ApprovalPolicy::Request::Kind::approval, "approval"),
        rawValueOf(ApprovalPolicy::Request::Kind::choice, "choice"),
        rawValueOf(ApprovalPolicy::Request::Kind::freeform, "freeform"),
        rawValueOf(ApprovalPolicy::Request::Kind::revealOnly, "revealOnly"),
    };
};

}  // namespace orvane
