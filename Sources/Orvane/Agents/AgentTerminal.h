#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/Signals/AgentScreen.h"
#include "OrvaneCore/Agents/Signals/TerminalOutputScanner.h"
#include "Platform/MainLoop.h"

namespace orvane {

class HeadlessTerminal;
class SessionController;

/// The terminal of an agent, as those see it who drive the agent: what is on it, for how long, and the way to type.
/// Main thread only.
class AgentTerminal {
 public:
    /// Both must outlive it.
    AgentTerminal(const SessionController& session, MainLoop& loop);

    /// The program has written these bytes, and they are on the screen.
    void noteOutput(std::string_view bytes);
    /// What stands there now; read again only when something was drawn. Nothing on a session without a terminal.
    const AgentScreenReading& reading();
    /// The last rows, joined by newlines.
    std::string lastRows(std::size_t count);
    const std::string& title() const;
    bool takesPastes() const;
    void write(std::string_view bytes);
    /// Whether the program has read all that was written to it; none without a program on a terminal.
    std::optional<bool> hasReadInput() const;

    bool hasProducedOutput() const { return lastOutputAt_.has_value(); }
    /// When something was drawn last; none yet counts from the start of the program.
    Instant lastOutputAt() const { return lastOutputAt_.value_or(startedAt_); }
    WallTime lastOutputTime() const { return lastOutputTime_; }
    Seconds silence() const { return loop_.now() - lastOutputAt(); }
    Seconds age() const { return loop_.now() - startedAt_; }
    std::uint64_t revision() const { return revision_; }

 private:
    HeadlessTerminal* terminal() const;

    const SessionController& session_;
    MainLoop& loop_;
    TerminalOutputScanner scanner_;
    Instant startedAt_;
    std::optional<Instant> lastOutputAt_;
    WallTime lastOutputTime_;
    std::uint64_t revision_ = 0;
    std::optional<std::uint64_t> readRevision_;
    AgentScreenReading reading_;
};

}  // namespace orvane
