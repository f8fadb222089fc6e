#include "TerminalEmulator/Engine/TitleFunctions.h"

#include <optional>
#include <utility>

#include "TerminalEmulator/Engine/Hex.h"
#include "TerminalEmulator/Engine/PayloadText.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane::TitleFunctions {
namespace {

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes)
        appendUtf8(static_cast<unsigned char>(byte), text);
    return text;
}

/// What Latin-1 does not have becomes a question mark.
std::string toLatin1(std::string_view text) {
    std::string bytes;
    Utf8Decoder decoder;
    decoder.decode(text, [&](char32_t scalar) { bytes += scalar <= 0xFF ? static_cast<char>(scalar) : '?'; });
    return bytes;
}

std::string& held(TitleState& titles, Title title) {
    return title == Title::window ? titles.terminalTitle : titles.iconTitle;
}

std::vector<std::string>& stack(TitleState& titles, Title title) {
    return title == Title::window ? titles.terminalTitleStack : titles.terminalIconStack;
}

void show(TerminalState& state, Title title, std::string text) {
    std::string& shown = held(state.titles, title);
    shown = std::move(text);
    if (title == Title::window) {
        state.delegate.setTerminalTitle(shown);
    } else {
        state.delegate.setTerminalIconTitle(shown);
    }
}

enum class Feature : std::uint8_t { off, on };

void setFeatures(TitleState& titles, const ParserParameters& parameters, Feature to) {
    static constexpr bool TitleState::* features[] = {
        &TitleState::xtermTitleSetHex,
        &TitleState::xtermTitleQueryHex,
        &TitleState::xtermTitleSetUtf,
        &TitleState::xtermTitleQueryUtf,
    };
    for (const std::int32_t feature : parameters.values) {
        if (feature < static_cast<std::int32_t>(std::size(features))) titles.*features[feature] = to == Feature::on;
    }
}

}  // namespace

void set(TerminalState& state, Title title, std::string_view payload) {
    std::optional<std::string> bytes(payload);
    if (state.titles.xtermTitleSetHex) bytes = Hex::decode(payload);
    if (!bytes) return;
    if (!state.titles.xtermTitleSetUtf) bytes = fromLatin1(*bytes);
    show(state, title, PayloadText::shown(*bytes, TitleState::maximumLength));
}

std::string told(const TitleState& titles, Title title) {
    std::string text = title == Title::window ? titles.terminalTitle : titles.iconTitle;
    if (!titles.xtermTitleQueryUtf) text = toLatin1(text);
    return titles.xtermTitleQueryHex ? Hex::encode(text) : text;
}

void push(TerminalState& state, Title title) {
    auto& titles = stack(state.titles, title);
    if (titles.size() == TitleState::maximumStack) titles.erase(titles.begin());
    titles.push_back(held(state.titles, title));
}

void pop(TerminalState& state, Title title) {
    auto& titles = stack(state.titles, title);
    if (titles.empty()) return;
    std::string text = std::move(titles.back());
    titles.pop_back();
    show(state, title, std::move(text));
}

void setModes(TerminalState& state, const ParserParameters& parameters) {
    setFeatures(state.titles, parameters, Feature::on);
}

void resetModes(TerminalState& state, const ParserParameters& parameters) {
    setFeatures(state.titles, parameters, Feature::off);
}

}  // namespace orvane::TitleFunctions
