#pragma once

#include <expected>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Orvane/Support/JsonFile.h"
#include "Orvane/Support/Signal.h"
#include "Orvane/Workspace/UsageTally.h"
#include "OrvaneCore/Agents/AgentSpecCheck.h"

namespace orvane {

/// The agents that the user added, kept in agents.json. Main thread only. A write that fails leaves the list as it is
/// in memory. Sessions have copies of their agents, so an edit or a removal changes no session that runs.
class CustomAgentStore {
 public:
    using Error = AgentSpecCheck::Error;

    /// Everything given outlives it. `onError` hears of a write that failed.
    CustomAgentStore(MainLoop& loop, SerialQueue& queue, PreferencesStore& preferences, std::string path,
                     WholeFileWriter::ErrorCallback onError);

    /// Takes over what is in the file; the list is empty when there is none that can be read.
    void load();

    const std::vector<AgentSpec>& specs() const { return specs_; }
    std::optional<AgentSpec> spec(const Uuid& id) const;

    /// Gives the agent a fresh id and puts it last.
    std::expected<Uuid, Error> add(AgentSpec spec);
    /// Replaces the agent with the same id; one that is gone stays gone.
    std::expected<void, Error> edit(AgentSpec spec);
    void remove(const Uuid& id);

    /// After every change of the list.
    Signal<> changed;

    /// Writes the list again, whose file was lost.
    void restoreFile();
    /// Waits until the list is on the disk.
    [[nodiscard]] std::expected<void, SystemError> flush() { return file_.flush(); }

 private:
    void committed();
    void save();

    JsonFile file_;
    UsageTally tally_;
    std::vector<AgentSpec> specs_;
};

}  // namespace orvane
