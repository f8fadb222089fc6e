#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/MainLoop.h"
#include "Platform/Registration.h"
#include "Platform/WholeFileWriter.h"

namespace orvane {

/// The user's settings: one JSON object of dotted keys in one file, read once and written behind at every change.
/// What it does not know stays in the file as it was. Used on the main thread; loop and queue must outlive it.
///
/// A file that cannot be read or understood counts as empty, and is kept as `<name>.corrupt-20261121T093000Z` (UTC)
/// before the first change replaces it. When it cannot be kept it is not replaced either: changes then stay in
/// memory, and each further change tries again.
class PreferencesStore {
 public:
    using Counts = std::map<std::string, std::int64_t>;
    using Texts = std::map<std::string, std::string>;
    using ErrorCallback = WholeFileWriter::ErrorCallback;
    using ChangeCallback = std::move_only_function<void(std::string_view key)>;

    /// `onError` runs on the loop: for a file that is there but useless, and for writes as in WholeFileWriter.
    PreferencesStore(MainLoop& loop, SerialQueue& queue, std::string path, ErrorCallback onError);
    PreferencesStore(const PreferencesStore&) = delete;
    PreferencesStore& operator=(const PreferencesStore&) = delete;
    /// Flushes.
    ~PreferencesStore();

    /// The value, or `fallback` when there is none or one of another type.
    bool boolean(std::string_view key, bool fallback) const;
    std::int64_t integer(std::string_view key, std::int64_t fallback) const;
    double number(std::string_view key, double fallback) const;
    std::string string(std::string_view key, std::string_view fallback) const;
    Counts counts(std::string_view key, Counts fallback = {}) const;
    Texts texts(std::string_view key) const;
    /// Of any type.
    bool contains(std::string_view key) const;

    void setBoolean(std::string_view key, bool value);
    void setInteger(std::string_view key, std::int64_t value);
    /// JSON has no word for infinity and not-a-number; setting one removes the key.
    void setNumber(std::string_view key, double value);
    /// Bytes that are not UTF-8 become U+FFFD.
    void setString(std::string_view key, std::string_view value);
    void setCounts(std::string_view key, const Counts& value);
    void setTexts(std::string_view key, const Texts& value);
    void remove(std::string_view key);

    /// The callback runs in a later turn, once for each change of a value, with the key that changed.
    Registration onChange(ChangeCallback callback);

    /// Blocks until everything is on the disk or has failed.
    [[nodiscard]] std::expected<void, SystemError> flush();

 private:
    struct Listeners;

    void load();
    void set(std::string_view key, std::string value);
    void changed(std::string_view key);
    void save();
    void tell(const SystemError& error);

    MainLoop& loop_;
    const std::string path_;
    std::shared_ptr<ErrorCallback> onError_;
    std::map<std::string, std::string, std::less<>> members_;  ///< values as JSON text
    std::shared_ptr<Listeners> listeners_;
    WholeFileWriter writer_;
    bool mustKeepOld_ = false;            ///< the file holds something that we did not understand
    std::optional<SystemError> keeping_;  ///< why it could not be kept; changes are waiting then
};

}  // namespace orvane
