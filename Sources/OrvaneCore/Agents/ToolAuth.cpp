#include "OrvaneCore/Agents/ToolAuth.h"

#include <algorithm>
#include <array>

namespace orvane::ToolAuth {

namespace {

enum class Trace { secret, file, variable };

struct Sign {
    std::string_view toolID;
    Trace trace;
    std::string_view name;  ///< of a file below the home folder
};

/// Any one of a tool's is enough.
constexpr std::array signs = {
    Sign{.toolID = "claude", .trace = Trace::secret, .name = claudeSecret},
    Sign{.toolID = "claude", .trace = Trace::file, .name = ".claude/.credentials.json"},
    Sign{.toolID = "claude", .trace = Trace::variable, .name = "ANTHROPIC_API_KEY"},
    Sign{.toolID = "codex", .trace = Trace::file, .name = ".codex/auth.json"},
    Sign{.toolID = "codex", .trace = Trace::variable, .name = "OPENAI_API_KEY"},
    Sign{.toolID = "gemini", .trace = Trace::file, .name = ".gemini/oauth_creds.json"},
    Sign{.toolID = "gemini", .trace = Trace::file, .name = ".gemini/google_accounts.json"},
    Sign{.toolID = "gemini", .trace = Trace::variable, .name = "GEMINI_API_KEY"},
    Sign{.toolID = "gemini", .trace = Trace::variable, .name = "GOOGLE_API_KEY"},
};

bool isThere(const Sign& sign, const Evidence& evidence) {
    switch (sign.trace) {
        case Trace::secret:
            return evidence.secret == Secret::present;
        case Trace::file:
            return evidence.fileExists(joinedPath(evidence.home, sign.name));
        case Trace::variable:
            return evidence.isVariableSet(std::string(sign.name));
    }
    return false;
}

}  // namespace

AuthState state(std::string_view toolID, const Evidence& evidence) {
    const bool isConnected =
        std::ranges::any_of(signs, [&](const Sign& sign) { return sign.toolID == toolID && isThere(sign, evidence); });
    return isConnected ? AuthState::connected : AuthState::notConnected;
}

}  // namespace orvane::ToolAuth
