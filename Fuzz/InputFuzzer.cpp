#include <vector>

#include "Fuzzing.h"
#include "OrvaneShell/View/Input/InputDecoder.h"
#include "OrvaneShell/View/Input/KeyEncoder.h"
#include "OrvaneShell/View/Input/KeyText.h"
#include "OrvaneShell/View/Input/PasteEncoder.h"

using namespace orvane;
using fuzzing::require;

namespace {

/// Pieces of a paste are told as one: where it is cut is free.
void keep(std::vector<InputEvent>& events, const InputEvent& event) {
    const auto* const piece = std::get_if<PasteEvent>(&event);
    auto* const before = events.empty() ? nullptr : std::get_if<PasteEvent>(&events.back());
    if (piece != nullptr) require(piece->isFirst == (before == nullptr || before->isLast), "a paste begins once");
    if (piece == nullptr || before == nullptr || before->isLast) {
        events.push_back(event);
    } else {
        before->text += piece->text;
        before->isLast = piece->isLast;
    }
}

std::vector<InputEvent> decoded(std::string_view bytes, std::size_t step) {
    std::vector<InputEvent> events;
    InputDecoder decoder;
    const auto sink = [&](const InputEvent& event) { keep(events, event); };
    for (std::size_t at = 0; at < bytes.size(); at += step)
        decoder.feed(bytes.substr(at, step), sink);
    for (int count = 0; count < InputDecoder::patience; ++count)
        decoder.flush(sink);
    require(!decoder.isPending(), "nothing waits for ever");
    return events;
}

void checkKey(const KeyEvent& key) {
    require(key.bytes.size() <= InputDecoder::longestSequence + 1, "what a key keeps is bounded");
    for (const bool isOn : {false, true}) {
        const TerminalModes modes{.applicationCursor = isOn, .applicationKeypad = isOn};
        for (const int flags : {0, 1, 2, 5, 8, 31}) {
            const std::string bytes = encodeKey(key, modes, {.flags = flags}, {.values = {0, 2, 2, 0, isOn ? 2 : 0}});
            require(key.name != KeyName::other || bytes.empty(), "what nobody knows is for nobody");
            const auto back = decoded(bytes, 1);
            const bool isEnhanced = flags != 0 && flags != 2;
            require(back.size() < 2 || !isEnhanced || !key.text.empty(), "an enhanced key is one event");
        }
    }
}

}  // namespace

/// The first byte is the size of the pieces that the rest comes in; the rest is also a paste and a key that one writes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view input = fuzzing::asText(data + 1, size - 1);
    const auto events = decoded(input, input.size() + 1);
    require(decoded(input, 1) == events && decoded(input, 1U + data[0]) == events, "any cut gives the same events");
    for (const InputEvent& event : events) {
        if (const auto* const key = std::get_if<KeyEvent>(&event)) checkKey(*key);
    }
    const std::string pasted = encodePaste(input, PasteForm::bracketed);
    require(!pasted.contains('\x1b') && !pasted.contains("\xc2\x9b"), "a paste cannot end itself");
    const auto pattern = KeyText::parse(input);
    require(!pattern || KeyText::parse(KeyText::write(*pattern)) == *pattern, "a key is read as it is written");
    return 0;
}
