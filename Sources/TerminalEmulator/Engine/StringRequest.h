#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane {

/// A device control string that is read whole before it is answered. Of a longer one only the first `limit` bytes are
/// kept.
class StringRequest : public DcsHandler {
 public:
    void hook(std::string_view collect, const ParserParameters& parameters, char final) override;
    void put(std::string_view data) override;
    void unhook() override { answer(data_); }

 protected:
    /// The state outlives the request.
    StringRequest(TerminalState& terminal, std::size_t limit) : state(terminal), limit_(limit) {}

    virtual void answer(std::string_view data) = 0;

    TerminalState& state;
    int parameter = 0;  ///< the first one

 private:
    std::size_t limit_;
    std::string data_;
};

}  // namespace orvane
