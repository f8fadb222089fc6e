#include "Orvane/Workspace/StateFile.h"

#include <cerrno>
#include <utility>

#include "Platform/Files.h"

namespace orvane {

namespace {

/// Far above any workspace; a larger file is not ours to read into memory.
constexpr std::size_t largestFile = 256 << 20;

}  // namespace

StateFile::StateFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError)
    : path_(std::move(path)), writer_(loop, queue, path_, std::move(onError)) {}

std::optional<SavedState> StateFile::load(const std::string& timeStamp) {
    const auto text = readWholeFile(path_, largestFile);
    if (!text && text.error().number == ENOENT) return std::nullopt;
    if (text) {
        const auto json = Json::parse(*text);
        if (auto state = json ? SavedState::decode(*json) : std::nullopt) return state;
    }
    // Nobody may lose a workspace because a build could not read its file.
    const auto kept = keepAside(path_, ".corrupt-" + timeStamp);
    if (!kept) mustKeepOld_ = timeStamp;
    return std::nullopt;
}

void StateFile::save(const SavedState& state) {
    if (mustKeepOld_ && !keepAside(path_, ".corrupt-" + *mustKeepOld_)) return;
    mustKeepOld_.reset();
    writer_.write(Json::write(state.encode(), Json::Layout::indented) + "\n");
}

}  // namespace orvane
