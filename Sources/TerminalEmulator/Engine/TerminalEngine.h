#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "TerminalEmulator/Engine/CapabilityRequest.h"
#include "TerminalEmulator/Engine/PresentationReports.h"
#include "TerminalEmulator/Engine/StatusStringRequest.h"
#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Engine/TextPrinter.h"
#include "TerminalEmulator/Parser/EscapeSequenceParser.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {

/// Takes the parser's calls to the functions that carry them out.
class TerminalEngine final : private ParserHandler {
 public:
    TerminalEngine(TerminalDelegate& delegate, TerminalOptions options, TerminalTimer* timer)
        : state(delegate, std::move(options), timer) {}

    TerminalState state;
    std::map<int, Terminal::OscHandler> oscHandlers;
    Terminal::Focus focus = Terminal::Focus::in;

    void feed(std::string_view bytes) { parser_.parse(bytes); }
    void reset();

 private:
    void print(std::string_view text, std::size_t plainCount) override { printer_.print(text, plainCount); }
    void execute(std::uint8_t code) override;
    void csiDispatch(const CsiArguments& arguments) override;
    void escDispatch(char final, std::string_view collect) override;
    void oscDispatch(std::int32_t code, std::string_view payload, StringEnd end) override;
    void apcDispatch(char identifier, std::string_view payload, StringEnd end) override;
    DcsHandler* dcsHandler(std::string_view collect, const ParserParameters& parameters, char final) override;
    void printStateReset() override { printer_.finishCharacter(); }

    TextPrinter printer_{state};
    StatusStringRequest statusRequest_{state};
    CapabilityRequest capabilityRequest_{state};
    PresentationRestore presentationRestore_{state};
    EscapeSequenceParser parser_{*this};
};

}  // namespace orvane
