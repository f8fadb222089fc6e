#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "ScriptedAgent/Composer.h"
#include "ScriptedAgent/Conversation.h"
#include "ScriptedAgent/Keys.h"
#include "ScriptedAgent/Painter.h"
#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

/// Plays a scenario: keys, signals and time in, bytes for the terminal, files and commands out. It looks at no clock.
class Player {
 public:
    using Write = std::function<void(std::string_view bytes)>;

    /// The scenario must outlive the player.
    Player(const Scenario& scenario, Size size, Write write);

    void start(const std::string& firstPrompt, TimePoint now);
    void press(const Key& key, TimePoint now);
    /// By its name without SIG. One that the scenario does not mention ends the agent, as is usual.
    void signal(const std::string& name, int number, TimePoint now);
    void resize(Size size, TimePoint now);
    /// What is due by now.
    void advance(TimePoint now);

    /// When something is due again on its own.
    std::optional<TimePoint> nextWake() const;
    std::optional<int> exitStatus() const { return exitStatus_; }
    /// Why the scenario cannot go on; it ended with status 2 then.
    const std::string& failure() const { return failure_; }

 private:
    /// A prompt as it was typed: a paste may be shown by a text in its place.
    struct Prompt {
        std::string shown;
        std::string text;
    };
    struct Turn {
        Prompt prompt;
        TimePoint began;
    };

    const Reaction* reactionTo(Trigger::Kind kind, const std::function<bool(const Trigger&)>& isMeant) const;
    const Reaction* nextDue() const;
    /// The first state of the current one's bases that has the property.
    const State& having(const std::function<bool(const State&)>& property) const;

    int number(const std::string& text) const;
    Milliseconds duration(const std::string& text) const { return Milliseconds(number(text)); }

    void go(const std::string& state);
    void react(const Reaction& reaction);
    void perform(const Action& action);
    void print(const std::string& text);
    void outside(const Action& action);
    void receive();
    void enter(Prompt prompt);
    void queuePrompt();
    void restorePrompt();
    bool reactToKey(const Key& key);
    bool choose(const Key& key);
    void edit(const Key& key);
    void editReturn();
    void fail(const std::string& reason);
    void draw();
    void end(int status);

    std::string value(std::string_view name) const;
    std::string composerValue() const;
    Frame frame() const;

    const Scenario& scenario_;
    Painter painter_;
    Size size_;
    Write write_;
    std::map<std::string, std::string> variables_;
    Conversation conversation_;
    Composer composer_;
    std::deque<Prompt> queue_;
    Turn turn_, previousTurn_;
    Key key_;
    std::string state_;
    std::set<const Reaction*> done_;  ///< what was due by time in this state
    int selected_ = 1;
    std::set<int> checked_;
    TimePoint now_, started_, entered_;
    int depth_ = 0;
    int visits_ = 0;  ///< of states
    int lostReturns_ = 0;
    std::optional<int> exitStatus_;
    std::string failure_;
};

}  // namespace orvane::scripted
