#include "OrvaneCore/Agents/ClaudeSessionStatus.h"

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"

namespace orvane {

namespace {

constexpr Seconds drawingLag{1.0};

SilenceVerdict verdictOf(std::string_view word) {
    if (word == "idle") return SilenceVerdict::finished;
    if (word == "busy") return SilenceVerdict::working;
    if (word == "waiting") return SilenceVerdict::needsUser;
    return SilenceVerdict::unknown;
}

}  // namespace

std::optional<ClaudeSessionStatus> ClaudeSessionStatus::parse(std::string_view text) {
    const auto json = Json::parse(text);
    if (!json || !json->is_object()) return std::nullopt;
    const JSONObject object(*json);
    const std::int64_t milliseconds = object.integer("statusUpdatedAt", 0);
    if (milliseconds <= 0) return std::nullopt;
    return ClaudeSessionStatus{.verdict = verdictOf(object.string("status")),
                               .waitingFor = object.string("waitingFor"),
                               .updatedAt = Date{static_cast<double>(milliseconds) / 1000}};
}

SilenceVerdict ClaudeSessionStatus::trustedVerdict(Date lastOutput, Date lastAnsweringInput) const {
    const bool isLate = updatedAt + drawingLag < lastOutput || updatedAt < lastAnsweringInput;
    return isLate ? SilenceVerdict::unknown : verdict;
}

}  // namespace orvane
