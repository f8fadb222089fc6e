#pragma once

#include <optional>
#include <string>

#include "Orvane/Support/JsonFile.h"
#include "OrvaneCore/Workspace/SavedState.h"

namespace orvane {

/// state.json: the workspace between runs. Main thread; the writing goes on behind.
class StateFile {
 public:
    /// `onError` hears of a write that failed; the state stays in memory and goes out with the next write.
    StateFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError);

    /// None when there is no file, or none that can be read; such a one is kept beside before it is overwritten.
    std::optional<SavedState> load();
    void save(const SavedState& state) {
        if (!isGivenUp_) file_.save(state.encode());
    }
    /// Saves nothing any more: the file is another process's now.
    void giveUp() { isGivenUp_ = true; }
    /// Waits until the last state is on the disk.
    std::expected<void, SystemError> flush() { return file_.flush(); }

 private:
    JsonFile file_;
    bool isGivenUp_ = false;
};

}  // namespace orvane
