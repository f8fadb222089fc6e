#pragma once

#include <string_view>

#include "Orvane/Agents/SessionController.h"
#include "TerminalEmulator/Buffer/Attribute.h"

namespace orvane {

/// The sign of a session's status, which tells it apart also without colours.
struct SessionMark {
    std::string_view glyph;
    Attribute look;

    /// A session of the last run that is still to come back.
    static SessionMark comingBack();
    static SessionMark of(const SessionController& session);
};

}  // namespace orvane
