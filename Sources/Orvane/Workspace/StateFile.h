#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OrvaneCore/Workspace/SavedState.h"
#include "Platform/WholeFileWriter.h"

namespace orvane {

/// state.json: the workspace between runs. Main thread; the writing goes on behind.
class StateFile {
 public:
    /// `onError` hears of a write that failed; the state stays in memory and goes out with the next write.
    StateFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError);

    /// None when there is no file, or none that can be read; such a one is kept beside before it is overwritten.
    std::optional<SavedState> load(const std::string& timeStamp);
    void save(const SavedState& state);
    /// Waits until the last state is on the disk.
    std::expected<void, SystemError> flush() { return writer_.flush(); }

 private:
    std::string path_;
    /// The time stamp of a file that could not be read nor kept aside; it is not overwritten before that succeeds.
    std::optional<std::string> mustKeepOld_;
    WholeFileWriter writer_;
};

}  // namespace orvane
