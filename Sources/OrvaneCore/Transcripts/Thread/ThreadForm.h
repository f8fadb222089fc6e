#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/ThreadText.h"

namespace orvane::ThreadText {

/// How the pieces of a thread are written. None ends its last line.
class PieceForm {
 public:
    /// A label and what it labels: "Project", "/home/ann/site".
    using Fact = std::pair<std::string, std::string>;

    virtual ~PieceForm() = default;

    virtual std::string heading(std::string_view title, const std::vector<Fact>& facts) const = 0;
    /// Above what somebody says; `when` may be empty.
    virtual std::string turn(std::string_view speaker, std::string_view when) const = 0;
    virtual std::string message(std::string_view text) const = 0;
    /// What the agent's program says beside the conversation.
    virtual std::string aside(std::string_view label, std::string_view text) const = 0;
    /// A folded run.
    virtual std::string run(std::string_view text) const = 0;
    virtual std::string call(std::string_view tool, std::string_view target, std::string_view outcome) const = 0;
    /// Between a turn and what is said.
    virtual std::string_view behindTurn() const = 0;

    static std::unique_ptr<PieceForm> of(Form form);
};

}  // namespace orvane::ThreadText
