#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// An agent's program that we offer to install.
struct AgentTool {
    std::string_view id;
    std::string_view displayName;
    std::string_view binary;
    /// Shell command lines.
    std::string_view installCommand;
    std::optional<std::string_view> loginCommand;
};

inline constexpr std::array agentTools = {
    AgentTool{.id = "claude",
              .displayName = "Claude Code",
              .binary = "claude",
              .installCommand = "npm install -g @anthropic-ai/claude-code",
              .loginCommand = std::nullopt},
    AgentTool{.id = "codex",
              .displayName = "Codex",
              .binary = "codex",
              .installCommand = "npm install -g @openai/codex",
              .loginCommand = "codex login"},
    AgentTool{.id = "gemini",
              .displayName = "Gemini CLI",
              .binary = "gemini",
              .installCommand = "npm install -g @google/gemini-cli",
              .loginCommand = std::nullopt},
};

/// Whether a tool is there.
struct ToolState {
    struct Installed {
        /// What the program says of itself, in one line.
        std::optional<std::string> version;
        bool operator==(const Installed&) const = default;
    };
    struct Checking {
        bool operator==(const Checking&) const = default;
    };
    struct Missing {
        bool operator==(const Missing&) const = default;
    };
    struct Installing {
        bool operator==(const Installing&) const = default;
    };

    std::variant<Checking, Installed, Missing, Installing> value;

    /// The bare case name, for scripts and for the keys of texts.
    std::string_view name() const {
        static constexpr std::array names = {"checking", "installed", "missing", "installing"};
        return names.at(value.index());
    }
    bool isInstalled() const { return std::holds_alternative<Installed>(value); }

    bool operator==(const ToolState&) const = default;
};

/// Whether the user is signed in to the service behind a tool.
enum class AuthState { checking, connected, notConnected };

template <>
struct RawValues<AuthState> {
    static constexpr std::array table = {
        rawValueOf(AuthState::checking, "checking"),
        rawValueOf(AuthState::connected, "connected"),
        rawValueOf(AuthState::notConnected, "notConnected"),
    };
};

}  // namespace orvane
