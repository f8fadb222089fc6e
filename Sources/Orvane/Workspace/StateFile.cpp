#include "Orvane/Workspace/StateFile.h"

#include <utility>

namespace orvane {

StateFile::StateFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError)
    : file_(loop, queue, std::move(path), std::move(onError)) {}

std::optional<SavedState> StateFile::load() {
    std::optional<SavedState> state;
    file_.load([&](const JsonValue& json) {
        state = SavedState::decode(json);
        return state.has_value();
    });
    return state;
}

}  // namespace orvane
