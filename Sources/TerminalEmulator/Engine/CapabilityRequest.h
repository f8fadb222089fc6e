#pragma once

#include "TerminalEmulator/Engine/StringRequest.h"

namespace orvane {

/// XTGETTCAP, `DCS + q … ST`: asks for capabilities by their names in termcap or terminfo. As xterm has it, known ones
/// are answered together, and the first that is not known ends the list.
class CapabilityRequest final : public StringRequest {
 public:
    explicit CapabilityRequest(TerminalState& terminal) : StringRequest(terminal, maximumLength) {}

 private:
    static constexpr std::size_t maximumLength = 4096;

    void answer(std::string_view data) override;
};

}  // namespace orvane
