#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What keeps a prompt from being typed now.
enum class PromptObstacle {
    none,
    starting,  ///< no composer is seen, and the program has not been quiet for long enough to be taken for ready
    settling,  ///< something was typed a moment ago
    working,
    dialog,  ///< it would answer a question
    draft,   ///< it would join what somebody is typing
};

template <>
struct RawValues<PromptObstacle> {
    static constexpr std::array table = {
        rawValueOf(PromptObstacle::none, "none"),         rawValueOf(PromptObstacle::starting, "starting"),
        rawValueOf(PromptObstacle::settling, "settling"), rawValueOf(PromptObstacle::working, "working"),
        rawValueOf(PromptObstacle::dialog, "dialog"),     rawValueOf(PromptObstacle::draft, "draft"),
    };
};

/// The agent that prompts are delivered into.
class PromptTarget {
 public:
    PromptTarget() = default;
    PromptTarget(const PromptTarget&) = delete;
    PromptTarget& operator=(const PromptTarget&) = delete;
    virtual ~PromptTarget() = default;

    /// What stands in the way at this moment; reads the screen.
    virtual PromptObstacle obstacle() = 0;
    /// What stands in the composer; none when no composer is on the screen.
    virtual std::optional<std::string> draft() = 0;
    /// Whether the screen, the title, a hook or a file say that it works, rather than what we typed.
    virtual bool isProvenWorking() = 0;
    virtual bool isDialogUp() = 0;
    virtual bool hasProducedOutput() const = 0;

    /// Bytes for the program.
    virtual void write(std::string_view bytes) = 0;
    /// Whether the program reads a text between paste marks as one.
    virtual bool takesPastes() const = 0;
    /// Another number whenever the program has written something.
    virtual std::uint64_t revision() const = 0;
    /// Whether the program has read all that was typed; none when nobody knows.
    virtual std::optional<bool> hasReadInput() const = 0;
    /// A prompt is about to be typed, as a user would.
    virtual void noteDelivery() = 0;
    /// Nothing else may be typed for a second.
    virtual void blockPrompts() = 0;
    /// Whether the session runs with this model already, or nobody can tell it to change.
    virtual bool runsModel(const std::string& model) const = 0;
    virtual void switchModel(const std::string& model) = 0;
    /// "/clear" has been submitted.
    virtual void noteClear() = 0;

    virtual void logLine(const std::string& line) = 0;
    /// A prompt came, went or changed its state.
    virtual void promptsChanged() = 0;
    virtual void promptFailed() = 0;
};

}  // namespace orvane
