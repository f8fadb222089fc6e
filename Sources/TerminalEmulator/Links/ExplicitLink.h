#pragma once

#include <optional>
#include <string_view>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Links/LinkMatch.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// The payload of OSC 8, `params;uri`; params are `key=value` with colons between them.
struct Hyperlink {
    std::string_view id;  ///< empty when the program gave none
    std::string_view uri;

    static std::optional<Hyperlink> parsed(std::string_view payload);  ///< nothing without an address

    bool operator==(const Hyperlink&) const = default;
};

/// How many rows above and below a cell are looked at for other parts of its link.
inline constexpr int maximumExplicitLinkRows = 128;

/// The marked link of a cell. Neighbouring cells of the same payload belong to it, also over wrapped rows; with an id,
/// all cells near by that have the same id and address.
std::optional<LinkMatch> explicitLink(const Buffer& buffer, Position at);

}  // namespace orvane
