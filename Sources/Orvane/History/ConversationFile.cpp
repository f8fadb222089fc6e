#include "Orvane/History/ConversationFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "Orvane/History/GeminiDocument.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Uninterrupted.h"

namespace orvane::ConversationFile {

namespace {

constexpr std::size_t readSize = std::size_t{256} << 10;
/// Gemini repeats the conversation within its file; what is repeated is found in one piece only.
constexpr std::size_t wholeBytes = std::size_t{256} << 20;
/// Of a line that does not fit into a block. Readers look at less of it.
constexpr std::size_t keptEnd = std::size_t{64} << 10;

/// Collects bytes until they are a block of whole lines.
class LineBlocks {
 public:
    LineBlocks(std::size_t blockSize, const std::function<bool(Lines)>& take) : blockSize_(blockSize), take_(take) {}

    /// False when no more are wanted.
    bool add(std::string_view bytes) {
        bytes_ += bytes;
        if (bytes_.size() < blockSize_) return true;
        const std::size_t end = bytes_.rfind('\n');
        if (end == std::string::npos) {
            dropMiddle();
            return true;
        }
        const bool isWanted = give(std::string_view(bytes_).substr(0, end));
        bytes_.erase(0, end + 1);
        return isWanted;
    }

    /// What is behind the last line end is a line that is being written, or the last one of a file that is done.
    void finish() { give(bytes_); }

 private:
    bool give(std::string_view text) {
        lines_.clear();
        while (!text.empty()) {
            const std::string_view line = text.substr(0, text.find('\n'));
            text.remove_prefix(std::min(line.size() + 1, text.size()));
            if (!line.empty()) lines_.push_back(line);
        }
        return take_(lines_);
    }

    void dropMiddle() {
        if (bytes_.size() > 2 * keptEnd) bytes_.erase(keptEnd, bytes_.size() - 2 * keptEnd);
    }

    std::size_t blockSize_;
    const std::function<bool(Lines)>& take_;
    std::string bytes_;
    std::vector<std::string_view> lines_;
};

std::expected<void, SystemError> readDocument(const std::string& path, const std::function<bool(Lines)>& take) {
    const auto text = GeminiDocument::lines(path);
    if (!text) return std::unexpected(text.error());
    const std::vector<std::string_view> lines(text->begin(), text->end());
    (void)take(lines);
    return {};
}

}  // namespace

std::expected<void, SystemError> readLines(const std::string& path, std::size_t blockSize,
                                           const std::function<bool(Lines)>& take) {
    if (GeminiDocument::isOne(path)) return readDocument(path, take);
    const FileDescriptor file(
        uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.isOpen()) return std::unexpected(SystemError::last("open", path));
    struct stat status{};
    if (fstat(file.number(), &status) != 0) return std::unexpected(SystemError::last("stat", path));
    if (!S_ISREG(status.st_mode)) return std::unexpected(SystemError{.what = path + ": not a file"});
    LineBlocks blocks(blockSize, take);
    std::string bytes(readSize, '\0');
    while (true) {
        const ssize_t count = uninterrupted([&] { return read(file.number(), bytes.data(), bytes.size()); });
        if (count < 0) return std::unexpected(SystemError::last("read", path));
        if (count == 0) break;
        if (!blocks.add(std::string_view(bytes).substr(0, static_cast<std::size_t>(count)))) return {};
    }
    blocks.finish();
    return {};
}

std::expected<std::vector<TranscriptFeed::Entry>, SystemError> entries(const std::string& path,
                                                                       TranscriptProvider provider, int limit,
                                                                       const std::stop_token& stop) {
    TranscriptFeed::Reader reader(provider, limit);
    const std::size_t blockSize = provider == TranscriptProvider::gemini ? wholeBytes : blockBytes;
    const auto done = readLines(path, blockSize, [&](Lines lines) {
        const NormalizedLines form = TranscriptForm::normalized(provider, lines);
        for (const std::string_view line : form.lines())
            reader.take(line);
        return !stop.stop_requested();
    });
    if (!done) return std::unexpected(done.error());
    return reader.finish();
}

std::expected<std::vector<ToolEvent>, SystemError> toolEvents(const std::string& path, TranscriptProvider provider) {
    ToolTrace::Reader reader(provider);
    const auto done = readLines(path, blockBytes, [&](Lines lines) {
        for (const std::string_view line : lines)
            reader.take(line);
        return true;
    });
    if (!done) return std::unexpected(done.error());
    return std::move(reader).finish();
}

}  // namespace orvane::ConversationFile
