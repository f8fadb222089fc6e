#include "Orvane/Workspace/SessionEvent.h"

#include <boost/json.hpp>

namespace orvane {

JsonValue SessionEvent::encode() const {
    const auto textOrNull = [](const std::optional<std::string>& text) {
        return text ? JsonValue(*text) : JsonValue();
    };
    return {
        {"revision", revision}, {"session", session.lowerText()}, {"from", textOrNull(from)}, {"to", textOrNull(to)}};
}

}  // namespace orvane
