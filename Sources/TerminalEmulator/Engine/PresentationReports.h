#pragma once

#include "TerminalEmulator/Engine/StringRequest.h"
#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane {

/// DECRQPSR, `CSI Ps $ w`: tells the cursor with its look and character sets (1, DECCIR) or the tab stops (2,
/// DECTABSR).
void reportPresentation(TerminalState& state, const ParserParameters& parameters);

/// DECRSPS, `DCS Ps $ t … ST`: takes back what DECRQPSR has told. What is malformed changes nothing.
class PresentationRestore final : public StringRequest {
 public:
    explicit PresentationRestore(TerminalState& terminal) : StringRequest(terminal, maximumLength) {}

 private:
    static constexpr std::size_t maximumLength = 192 * 1024;  // a stop in each of 32,767 columns takes less

    void answer(std::string_view data) override;
};

}  // namespace orvane
