#pragma once

#include <expected>
#include <functional>
#include <string>

#include "Orvane/Agents/AgentTerminal.h"

namespace orvane {

/// Why an answer was not typed.
enum class AnswerRefusal {
    nothingAsked,
    anotherSelected,  ///< Return would take another row than the first
    noSuchOption,     ///< no option has this number, or none takes words
    notByKey,         ///< several may be taken, or its number has two digits
};

/// Answers the question on an agent's screen by the keys that it asks for. Main thread only.
class AgentAnswers {
 public:
    /// The terminal and the loop must outlive it. `noteAnswer` runs when an answer is on its way.
    AgentAnswers(AgentTerminal& terminal, MainLoop& loop, std::function<void()> noteAnswer);

    /// Takes the first option, which is what the agent proposes.
    std::expected<void, AnswerRefusal> approve();
    std::expected<void, AnswerRefusal> deny();
    /// The number that is printed on the screen, the words of an option, or words for a field that takes them.
    std::expected<void, AnswerRefusal> answer(const std::string& text);
    void stop() { timer_.reset(); }

 private:
    std::expected<void, AnswerRefusal> choose(int number);
    std::expected<void, AnswerRefusal> say(const std::string& text);
    enum class Keeps { question, selection };
    /// Types as soon as the agent takes keys, when it still asks the same then.
    void type(std::string keys, Keeps keeps, std::function<void()> then = {});
    bool isSame(const AgentScreenReading& asked, Keeps keeps);
    Duration untilReady() const;

    AgentTerminal& terminal_;
    MainLoop& loop_;
    std::function<void()> noteAnswer_;
    Registration timer_;
};

}  // namespace orvane
