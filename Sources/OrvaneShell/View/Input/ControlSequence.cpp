#include "OrvaneShell/View/Input/ControlSequence.h"

#include <algorithm>

namespace orvane {

namespace {

void addDigit(std::optional<int>& number, char digit) {
    const int value = number.value_or(0);
    const bool fits = value <= (greatestParameter - 9) / 10;
    number = fits ? value * 10 + (digit - '0') : greatestParameter;
}

void addParameterByte(ControlSequence& sequence, char byte) {
    if (sequence.parameters.empty()) sequence.parameters.push_back({std::nullopt});
    if (byte == ';') {
        sequence.parameters.push_back({std::nullopt});
    } else if (byte == ':') {
        sequence.parameters.back().push_back(std::nullopt);
    } else {
        addDigit(sequence.parameters.back().back(), byte);
    }
}

}  // namespace

std::optional<int> ControlSequence::part(std::size_t parameter, std::size_t place) const {
    if (parameter >= parameters.size() || place >= parameters[parameter].size()) return {};
    return parameters[parameter][place];
}

std::vector<int> ControlSequence::values() const {
    std::vector<int> all;
    all.reserve(parameters.size());
    for (std::size_t parameter = 0; parameter < parameters.size(); ++parameter)
        all.push_back(valueOr(parameter, 0));
    return all;
}

std::optional<ControlSequence> readControlSequence(std::string_view body) {
    if (body.empty()) return {};
    ControlSequence sequence{.final = body.back()};
    body.remove_suffix(1);
    if (!body.empty() && body.front() >= '<' && body.front() <= '?') {
        sequence.prefix = body.front();
        body.remove_prefix(1);
    }
    const std::string_view parameters = body.substr(0, body.find_first_not_of("0123456789:;"));
    sequence.intermediates = body.substr(parameters.size());
    const auto isIntermediate = [](char byte) { return byte >= ' ' && byte <= '/'; };
    if (!std::ranges::all_of(sequence.intermediates, isIntermediate)) return {};
    for (const char byte : parameters)
        addParameterByte(sequence, byte);
    return sequence;
}

}  // namespace orvane
