#include "Platform/FolderWatch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "Platform/FileDescriptor.h"
#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

constexpr std::uint32_t folderEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                                       IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
/// The parent is watched as well: a folder that was removed while some process still works in it tells nothing itself.
constexpr std::uint32_t parentEvents = IN_DELETE | IN_MOVED_FROM;
/// Read at once; the longest event takes 272.
constexpr std::size_t eventBytes = std::size_t{16} * 1024;
constexpr std::uint32_t goneEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

std::expected<std::string, SystemError> realPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), &std::free);
    if (!resolved) return std::unexpected(SystemError::last("watch folder", path));
    return std::string(resolved.get());
}

}  // namespace

struct FolderWatch::State : std::enable_shared_from_this<State> {
    MainLoop& loop;
    Callback callback;
    const Duration coalesce;
    FileDescriptor inotify;
    int folderWatch = -1;
    std::string name;  ///< of the folder in its parent
    bool isGone = false;
    Registration readable;
    Registration timer;

    State(MainLoop& itsLoop, Callback itsCallback, Duration span)
        : loop(itsLoop), callback(std::move(itsCallback)), coalesce(span) {}

    std::expected<void, SystemError> open(const std::string& path) {
        const auto real = realPath(path);
        if (!real) return std::unexpected(real.error());
        inotify = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
        if (!inotify.isOpen()) return std::unexpected(SystemError::last("watch folder", path));
        folderWatch = inotify_add_watch(inotify.number(), real->c_str(), folderEvents | IN_ONLYDIR);
        if (folderWatch < 0) return std::unexpected(SystemError::last("watch folder", path));
        const auto slash = real->rfind('/');
        name = real->substr(slash + 1);
        // Without the parent's events only the rare case above goes untold. The root has no parent.
        if (!name.empty()) {
            const std::string parent = real->substr(0, slash + 1);
            inotify_add_watch(inotify.number(), parent.c_str(), parentEvents | IN_ONLYDIR);
        }
        readable = loop.watch(inotify.number(), Readiness::readable, [this] { read(); });
        return {};
    }

    void read() {
        alignas(inotify_event) std::array<char, eventBytes> buffer{};
        const ssize_t length = uninterrupted([&] { return ::read(inotify.number(), buffer.data(), buffer.size()); });
        bool isChange = false;
        for (ssize_t offset = 0; offset < length;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            const char* entry = event.len > 0 ? buffer.data() + offset + sizeof event : "";
            isChange = take(event, entry) || isChange;
            offset += static_cast<ssize_t>(sizeof event + event.len);
        }
        if (isGone) readable.reset();
        if (isChange && !timer) timer = loop.after(coalesce, [this] { tell(); });
    }

    /// True when the event is one to tell of.
    bool take(const inotify_event& event, const char* entry) {
        const bool isOverflow = (event.mask & IN_Q_OVERFLOW) != 0;
        if (event.wd != folderWatch && !isOverflow) {
            if ((event.mask & parentEvents) == 0 || name != entry) return false;
            isGone = true;
        }
        if (!isOverflow && (event.mask & goneEvents) != 0) isGone = true;
        return true;
    }

    void tell() {
        const auto self = shared_from_this();  // the callback may destroy the watch
        timer.reset();
        callback(isGone ? Change::folderGone : Change::contents);
    }
};

std::expected<std::unique_ptr<FolderWatch>, SystemError> FolderWatch::create(MainLoop& loop, const std::string& path,
                                                                             Callback callback, Duration coalesce) {
    auto state = std::make_shared<State>(loop, std::move(callback), coalesce);
    if (const auto opened = state->open(path); !opened) return std::unexpected(opened.error());
    return std::unique_ptr<FolderWatch>(new FolderWatch(std::move(state)));
}

}  // namespace orvane
