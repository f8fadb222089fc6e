#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneShell/Terminal/TypedBytes.h"
#include "OrvaneShell/View/Input/InputDecoder.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "OrvaneShell/View/Input/KeyText.h"
#include "Support/Table.h"

namespace orvane::testing {

inline std::vector<InputEvent> decodedInput(const std::vector<std::string_view>& pieces) {
    std::vector<InputEvent> events;
    InputDecoder decoder;
    const auto sink = [&](const InputEvent& event) { events.push_back(event); };
    for (const std::string_view piece : pieces)
        decoder.feed(piece, sink);
    for (int tries = 0; decoder.isPending() && tries < InputDecoder::patience; ++tries)
        decoder.flush(sink);
    EXPECT_FALSE(decoder.isPending());
    return events;
}

inline std::string inputText(const KeyEvent& event) {
    const auto number = [](char32_t scalar) { return static_cast<unsigned>(scalar); };
    const KeyModifiers& held = event.modifiers;
    std::string text = KeyText::write({event.name, event.character, held});
    if (KeyTable::isKeypad(event.name)) text += fmt::format("keypad({})", number(KeyTable::numberOf(event)));
    if (event.name == KeyName::functional) text += fmt::format("functional({})", number(event.character));
    if (event.name == KeyName::other) text = "other";
    if (held.hyper) text += " hyper";
    if (held.meta) text += " meta";
    if (held.capsLock) text += " caps";
    if (held.numLock) text += " num";
    if (event.action == KeyEvent::Action::repeat) text += " repeat";
    if (event.action == KeyEvent::Action::release) text += " release";
    if (event.baseCharacter != 0) text += fmt::format(" base={}", static_cast<char>(event.baseCharacter));
    if (!event.text.empty()) text += " text=" + event.text;
    return text;
}

inline std::string inputText(const MouseEvent& event) {
    constexpr const char* buttons[] = {"left",      "middle",    "right",      "wheelUp",
                                       "wheelDown", "wheelLeft", "wheelRight", "none"};
    constexpr const char* actions[] = {"press", "release", "motion"};
    const KeyModifiers& held = event.modifiers;
    return fmt::format("{}{}{}{} {} {},{}", held.control ? "C-" : "", held.alt ? "M-" : "", held.shift ? "S-" : "",
                       buttons[std::to_underlying(event.button)], actions[std::to_underlying(event.action)], event.x,
                       event.y);
}

inline std::string inputText(const ReplyEvent& event) {
    constexpr const char* kinds[] = {"attributes", "mode", "flags", "background", "scheme", "cursor", "reply"};
    return fmt::format("{}({})", kinds[std::to_underlying(event.kind)], fmt::join(event.parameters, ","));
}

/// Events in short, set apart by ", ".
inline std::string inputText(const std::vector<InputEvent>& events) {
    std::vector<std::string> texts;
    const Overloaded text{
        [](const PasteEvent& event) {
            return fmt::format("{}paste[{}]{}", event.isFirst ? "<" : "", TypedBytes::write(event.text),
                               event.isLast ? ">" : "");
        },
        [](const FocusEvent& event) { return std::string(event.hasFocus ? "focus" : "blur"); },
        [](const auto& event) { return inputText(event); },
    };
    for (const InputEvent& event : events)
        texts.push_back(std::visit(text, event));
    return fmt::format("{}", fmt::join(texts, ", "));
}

/// A table whose rows end with their lines alone, as sequences are full of semicolons.
template <std::size_t columns>
std::vector<std::array<std::string, columns>> lineTable(std::string text) {
    const auto exchange = [](std::string& cell, char from, char to) { std::ranges::replace(cell, from, to); };
    constexpr char standIn = '\x01';
    exchange(text, ';', standIn);
    auto rows = table<columns>(text);
    for (auto& row : rows) {
        for (std::string& cell : row)
            exchange(cell, standIn, ';');
    }
    return rows;
}

inline std::string bytesOf(std::string_view typed) {
    return TypedBytes::parse(typed).value();
}

}  // namespace orvane::testing
