#pragma once

#include <expected>
#include <string>

#include "Platform/Environment.h"
#include "Platform/SystemError.h"

/// Where this system keeps the program's files. Paths are absolute, without a slash at the end; nothing is created
/// unless a function says so.
namespace orvane::Folders {

/// $HOME, else the home of the password file, else "/".
std::string home(const Environment& environment);

/// State of the application: $XDG_DATA_HOME/Orvane, by default ~/.local/share/Orvane. A relative $XDG_DATA_HOME does
/// not count.
std::string applicationSupport(const Environment& environment);

/// The user's settings: $XDG_CONFIG_HOME/Orvane/preferences.json, by default below ~/.config.
std::string preferencesFile(const Environment& environment);

/// A folder for the control socket, made if missing: $XDG_RUNTIME_DIR/orvane when that works and the folder above is
/// ours, else `temporary`.
std::expected<std::string, SystemError> runtime(const Environment& environment);

/// A folder of our own, named after the user id, in $TMPDIR, or in /tmp when there is no such folder; made if missing.
std::expected<std::string, SystemError> temporary(const Environment& environment);

/// Makes a folder that only its owner can enter. One that is there already must be a real folder, ours, and is closed
/// to others if it was open; a link or somebody else's folder is an error.
std::expected<void, SystemError> makePrivate(const std::string& path);

}  // namespace orvane::Folders
