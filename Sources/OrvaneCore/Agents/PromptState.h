#pragma once

#include <array>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// How far a prompt for an agent in a terminal has come.
enum class PromptState {
    queued,      ///< waits until it may be typed
    delivering,  ///< stands in the composer, and its Return has been or is about to be pressed
    standing,    ///< stands in the composer, and no Return helped
    delivered,
    failed,
};

template <>
struct RawValues<PromptState> {
    static constexpr std::array table = {
        rawValueOf(PromptState::queued, "queued"),     rawValueOf(PromptState::delivering, "delivering"),
        rawValueOf(PromptState::standing, "standing"), rawValueOf(PromptState::delivered, "delivered"),
        rawValueOf(PromptState::failed, "failed"),
    };
};

}  // namespace orvane
