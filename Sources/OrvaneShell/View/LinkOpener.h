#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "Platform/ChildProcess.h"
#include "Platform/Environment.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// Opens addresses with the program that the user chose, or with that of the desktop which the client of a view runs
/// on. Main thread only.
class LinkOpener {
 public:
    static constexpr std::string_view preference = "view.linkOpener";
    /// What a client sends of its environment: how to reach its desktop.
    static constexpr std::string_view variables[] = {"DISPLAY",         "WAYLAND_DISPLAY",          "XAUTHORITY",
                                                     "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS", "BROWSER"};

    /// The loop and the preferences outlive it.
    LinkOpener(MainLoop& loop, const PreferencesStore& preferences, Environment desktop)
        : loop_(loop), preferences_(preferences), desktop_(std::move(desktop)) {}

    /// False when there is nothing to open it with. `onFailure` runs later when the program says that it could not.
    bool open(const std::string& address, std::function<void()> onFailure);

 private:
    std::string command() const;

    MainLoop& loop_;
    const PreferencesStore& preferences_;
    Environment desktop_;
    /// Those that are at it still.
    std::list<std::unique_ptr<ChildProcess>> running_;
};

}  // namespace orvane
