#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TerminalEmulator/Parser/EscapeSequenceParser.h"

namespace orvane {

/// Writes down what a parser calls, one entry an event. Pieces of one text or of one device control string are joined,
/// since they are cut as the input was.
class ParserLog final : public ParserHandler, public DcsHandler {
 public:
    ParserLog() = default;

    /// Parses the pieces one after another.
    explicit ParserLog(const std::vector<std::string_view>& pieces) {
        for (const std::string_view piece : pieces)
            parser.parse(piece);
    }

    EscapeSequenceParser parser{*this};
    std::vector<std::string> events;
    /// Each time that what `ParserHandler` promises did not hold.
    std::vector<std::string> brokenPromises;
    bool abortsOnErrors = false;
    bool resetsParser = false;

    void print(std::string_view text, std::size_t plainCount) override {
        const auto isPlain = [](char byte) { return byte >= 0x20 && byte < 0x7F; };
        const auto plainEnd = std::ranges::find_if_not(text, isPlain);
        if (text.empty() || plainEnd - text.begin() != static_cast<std::ptrdiff_t>(plainCount) ||
            std::ranges::any_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x20; })) {
            brokenPromises.push_back(fmt::format("{} plain bytes in '{}'", plainCount, text));
        }
        join("print:", text);
    }

    void execute(std::uint8_t code) override { add(fmt::format("execute:{:02X}", code)); }

    void csiDispatch(const CsiArguments& arguments) override {
        const CsiFunction name = arguments.function;
        const std::string known = name != 0 ? std::string{text(name >> 16) + text(name >> 8)} : "many ";
        add(fmt::format("csi {}[{}]{}", known, text(arguments.parameters), arguments.final));
        lastCollect = arguments.collect;
        lastParameterCount = arguments.parameters.size();
        reset();
    }

    void escDispatch(char final, std::string_view collect) override {
        add(fmt::format("esc {}{}", collect, final));
        reset();
    }

    void oscDispatch(std::int32_t code, std::string_view payload, StringEnd end) override {
        reset();
        add(fmt::format("osc {}:{}{}", code, payload, text(end)));
    }

    void apcDispatch(char identifier, std::string_view payload, StringEnd end) override {
        reset();
        add(fmt::format("apc {}:{}{}", identifier, payload, text(end)));
    }

    DcsHandler* dcsHandler(std::string_view /*collect*/, const ParserParameters& /*parameters*/, char final) override {
        return final == 'q' ? this : nullptr;
    }

    void hook(std::string_view collect, const ParserParameters& parameters, char final) override {
        add(fmt::format("hook {}[{}]{}", collect, text(parameters), final));
    }

    void put(std::string_view data) override {
        join("put:", data);
        reset();
    }

    void unhook() override { add("unhook"); }

    void printStateReset() override { add("reset"); }

    ParsingState errorHandler(const ParsingState& state) override {
        add(fmt::format("error {:02X} in {} [{}]", state.code, static_cast<int>(state.currentState),
                        text(state.parameters)));
        lastErrorPosition = state.position;
        ParsingState result = state;
        result.abort = abortsOnErrors;
        return result;
    }

    std::string lastCollect;
    std::size_t lastParameterCount = 0;
    std::size_t lastErrorPosition = 0;

 private:
    void add(std::string event) { events.push_back(std::move(event)); }

    void join(std::string_view kind, std::string_view bytes) {
        if (events.empty() || !events.back().starts_with(kind)) events.emplace_back(kind);
        events.back() += bytes;
    }

    void reset() {
        if (resetsParser) parser.reset();
    }

    static std::string text(const ParserParameters& parameters) {
        std::string result;
        for (std::size_t index = 0; index < parameters.size(); ++index) {
            if (index > 0) result += parameters.separators[index - 1];
            result += std::to_string(parameters.values[index]);
        }
        return result;
    }

    static std::string text(CsiFunction shifted) {
        const auto byte = static_cast<char>(shifted & 0xFF);
        return byte == 0 ? std::string() : std::string(1, byte);
    }

    static std::string_view text(StringEnd end) { return end == StringEnd::bell ? " BEL" : " ST"; }
};

}  // namespace orvane
