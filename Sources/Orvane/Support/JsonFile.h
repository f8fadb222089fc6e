#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Json.h"
#include "Platform/WholeFileWriter.h"

namespace orvane {

/// A JSON document that we keep between runs. Main thread; the writing goes on behind. A file that was there but could
/// not be taken over whole is given a second name, `path.corrupt-<time>`, before it is overwritten: nobody may lose
/// what they had because a build could not read it.
class JsonFile {
 public:
    /// Takes the document over; false when that would lose some of it.
    using Accept = std::function<bool(const JsonValue&)>;

    /// Loop and queue outlive it. `onError` hears of a write that failed, once until another thing fails; the content
    /// stays in memory and goes out with the next write.
    JsonFile(MainLoop& loop, SerialQueue& queue, std::string path, WholeFileWriter::ErrorCallback onError);

    /// Calls `accept` when there is a file that holds JSON.
    void load(const Accept& accept);
    void save(const JsonValue& document);
    /// Waits until the last document is on the disk.
    [[nodiscard]] std::expected<void, SystemError> flush();

 private:
    bool readsInto(const Accept& accept) const;
    std::expected<void, SystemError> submit();
    std::expected<void, SystemError> keepOld();

    std::string path_;
    MainLoop& loop_;
    bool mustKeepOld_ = false;
    std::optional<std::string> held_;           ///< what cannot be written before the old content is kept
    std::optional<SystemError> keepingFailed_;  ///< as it was told
    std::shared_ptr<WholeFileWriter::ErrorCallback> onError_;
    WholeFileWriter writer_;
};

}  // namespace orvane
