#include "Platform/PreferencesStore.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <ctime>
#include <utility>
#include <vector>

#include "Platform/Files.h"
#include "Platform/PreferencesText.h"
#include "Platform/StandardError.h"

namespace orvane {

namespace {

constexpr std::size_t sizeLimit = std::size_t{16} * 1024 * 1024;

std::string corruptSuffix(WallTime time) {
    const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    return fmt::format(".corrupt-{:04}{:02}{:02}T{:02}{:02}{:02}Z", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                       utc.tm_hour, utc.tm_min, utc.tm_sec);
}

/// Reads the value of a key with one of the decoders of PreferencesText.
template <typename Decode, typename Fallback>
auto decoded(const PreferencesText::Members& members, std::string_view key, Decode decode, Fallback fallback) {
    const auto found = members.find(key);
    return found == members.end() ? fallback : decode(found->second).value_or(std::move(fallback));
}

}  // namespace

struct PreferencesStore::Listeners {
    struct Listener {
        ChangeCallback callback;
        bool isCancelled = false;
    };
    std::vector<std::shared_ptr<Listener>> all;

    void tell(const std::string& key) const {
        // A copy: a callback may add listeners or remove itself and others.
        for (const auto copy = all; const auto& listener : copy) {
            if (!listener->isCancelled) listener->callback(key);
        }
    }
};

PreferencesStore::PreferencesStore(MainLoop& loop, SerialQueue& queue, std::string path, ErrorCallback onError)
    : loop_(loop),
      path_(std::move(path)),
      onError_(std::make_shared<ErrorCallback>(std::move(onError))),
      listeners_(std::make_shared<Listeners>()),
      writer_(loop, queue, path_, [this](const SystemError& error) {
          if (*onError_) (*onError_)(error);
      }) {
    load();
}

PreferencesStore::~PreferencesStore() {
    if (keeping_) save();
    if (keeping_) reportOnStandardError("not saved", keeping_->message().c_str());
}

void PreferencesStore::load() {
    const auto text = readWholeFile(path_, sizeLimit);
    if (!text) {
        if (text.error().number == ENOENT) return;
        mustKeepOld_ = true;
        return tell(text.error());
    }
    auto members = PreferencesText::parse(*text);
    if (!members) {
        mustKeepOld_ = true;
        return tell({.what = "read " + path_ + ": " + members.error()});
    }
    members_ = *std::move(members);
}

bool PreferencesStore::boolean(std::string_view key, bool fallback) const {
    return decoded(members_, key, PreferencesText::boolean, fallback);
}

std::int64_t PreferencesStore::integer(std::string_view key, std::int64_t fallback) const {
    return decoded(members_, key, PreferencesText::integer, fallback);
}

double PreferencesStore::number(std::string_view key, double fallback) const {
    return decoded(members_, key, PreferencesText::number, fallback);
}

std::string PreferencesStore::string(std::string_view key, std::string_view fallback) const {
    return decoded(members_, key, PreferencesText::string, std::string(fallback));
}

PreferencesStore::Counts PreferencesStore::counts(std::string_view key, Counts fallback) const {
    return decoded(members_, key, PreferencesText::counts, std::move(fallback));
}

PreferencesStore::Texts PreferencesStore::texts(std::string_view key) const {
    return decoded(members_, key, PreferencesText::texts, Texts());
}

bool PreferencesStore::contains(std::string_view key) const {
    return members_.contains(key);
}

void PreferencesStore::setBoolean(std::string_view key, bool value) {
    set(key, value ? "true" : "false");
}

void PreferencesStore::setInteger(std::string_view key, std::int64_t value) {
    set(key, std::to_string(value));
}

void PreferencesStore::setNumber(std::string_view key, double value) {
    if (!std::isfinite(value)) return remove(key);
    set(key, PreferencesText::encode(value));
}

void PreferencesStore::setString(std::string_view key, std::string_view value) {
    set(key, PreferencesText::encode(value));
}

void PreferencesStore::setCounts(std::string_view key, const Counts& value) {
    set(key, PreferencesText::encode(value));
}

void PreferencesStore::setTexts(std::string_view key, const Texts& value) {
    set(key, PreferencesText::encode(value));
}

void PreferencesStore::remove(std::string_view key) {
    const auto found = members_.find(key);
    if (found == members_.end()) return;
    const std::string removed = found->first;  // `key` may be a view of it
    members_.erase(found);
    changed(removed);
}

void PreferencesStore::set(std::string_view key, std::string value) {
    std::string& current = members_[std::string(key)];
    if (current == value) return;
    current = std::move(value);
    changed(key);
}

void PreferencesStore::changed(std::string_view key) {
    save();
    loop_.post([weak = std::weak_ptr(listeners_), key = std::string(key)] {
        if (const auto listeners = weak.lock()) listeners->tell(key);
    });
}

void PreferencesStore::save() {
    if (mustKeepOld_) {
        const auto kept = keepAside(path_, corruptSuffix(loop_.wallTime()));
        const bool isGone = !kept && kept.error().number == ENOENT;
        if (!kept && !isGone) {
            if (keeping_ != kept.error()) tell(kept.error());
            keeping_ = kept.error();
            return;
        }
        mustKeepOld_ = false;
        keeping_.reset();
    }
    writer_.write(PreferencesText::print(members_));
}

void PreferencesStore::tell(const SystemError& error) {
    loop_.post([weak = std::weak_ptr(onError_), error] {
        const auto callback = weak.lock();
        if (callback && *callback) (*callback)(error);
    });
}

Registration PreferencesStore::onChange(ChangeCallback callback) {
    const auto listener = std::make_shared<Listeners::Listener>(std::move(callback));
    listeners_->all.push_back(listener);
    return Registration([weak = std::weak_ptr(listeners_), listener] {
        listener->isCancelled = true;
        if (const auto listeners = weak.lock()) std::erase(listeners->all, listener);
    });
}

std::expected<void, SystemError> PreferencesStore::flush() {
    if (keeping_) save();
    if (keeping_) return std::unexpected(*keeping_);
    return writer_.flush();
}

}  // namespace orvane
