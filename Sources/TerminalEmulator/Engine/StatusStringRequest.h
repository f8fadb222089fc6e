#pragma once

#include "TerminalEmulator/Engine/StringRequest.h"

namespace orvane {

/// DECRQSS, `DCS $ q … ST`: asks for a setting by the end of the control function that sets it, and is answered with
/// that function, or as invalid.
class StatusStringRequest final : public StringRequest {
 public:
    explicit StatusStringRequest(TerminalState& terminal) : StringRequest(terminal, maximumLength) {}

 private:
    static constexpr std::size_t maximumLength = 16;  // no function has a longer name than three

    void answer(std::string_view data) override;
};

}  // namespace orvane
