#include "Orvane/Support/JsonFile.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cerrno>
#include <utility>

#include "Platform/Files.h"

namespace orvane {

namespace {

/// Far above any of ours; a larger file is not ours to read into memory.
constexpr std::size_t largestFile = 256 << 20;

std::string timeStamp(WallTime time) {
    return fmt::format("{:%Y%m%dT%H%M%SZ}", std::chrono::floor<std::chrono::seconds>(time));
}

}  // namespace

JsonFile::JsonFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError)
    : path_(std::move(path)),
      loop_(loop),
      onError_(std::make_shared<WholeFileWriter::ErrorCallback>(std::move(onError))),
      writer_(loop, queue, path_, [told = onError_](const SystemError& error) {
          if (*told) (*told)(error);
      }) {}

void JsonFile::load(const Accept& accept) {
    mustKeepOld_ = !readsInto(accept);
}

/// Whether nothing of the file is lost when it is overwritten.
bool JsonFile::readsInto(const Accept& accept) const {
    const auto text = readWholeFile(path_, largestFile);
    if (!text) return text.error().number == ENOENT;
    const auto json = Json::parse(*text);
    return json && accept(*json);
}

void JsonFile::save(const JsonValue& document) {
    held_ = Json::write(document, Json::Layout::indented) + "\n";
    const auto submitted = submit();
    if (submitted) return keepingFailed_.reset();
    if (keepingFailed_ == submitted.error()) return;
    keepingFailed_ = submitted.error();
    if (*onError_) (*onError_)(*keepingFailed_);
}

std::expected<void, SystemError> JsonFile::flush() {
    if (auto submitted = submit(); !submitted) return submitted;
    return writer_.flush();
}

std::expected<void, SystemError> JsonFile::submit() {
    if (!held_) return {};
    if (auto kept = keepOld(); !kept) return kept;
    writer_.write(*std::exchange(held_, std::nullopt));
    return {};
}

std::expected<void, SystemError> JsonFile::keepOld() {
    if (!mustKeepOld_) return {};
    auto kept = keepAside(path_, ".corrupt-" + timeStamp(loop_.wallTime()));
    if (!kept && kept.error().number != ENOENT) return std::unexpected(std::move(kept.error()));
    mustKeepOld_ = false;
    return {};
}

}  // namespace orvane
