#include "TerminalEmulator/Engine/PayloadText.h"

#include <charconv>

#include "TerminalEmulator/Parser/TextScan.h"
#include "TerminalEmulator/Unicode/UnicodeUtil.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane::PayloadText {

std::optional<std::string_view> Parts::next() {
    if (!rest_) return std::nullopt;
    const std::size_t end = rest_->find(';');
    const std::string_view part = rest_->substr(0, end);
    if (end == std::string_view::npos) {
        rest_.reset();
    } else {
        rest_->remove_prefix(end + 1);
    }
    return part;
}

std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.front() == '-') return std::nullopt;
    return value;
}

std::string shown(std::string_view text, std::size_t limit) {
    const std::string_view head = text.substr(0, limit);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(head.data());
    if (TextScan::plainLength(bytes, head.size()) == head.size()) return std::string(head);
    std::string result;
    bool isFull = false;
    const auto add = [&](char32_t scalar) {
        if (isFull || UnicodeUtil::isControl(scalar)) return;
        const std::size_t before = result.size();
        appendUtf8(scalar, result);
        isFull = result.size() > limit;
        if (isFull) result.resize(before);
    };
    Utf8Decoder decoder;
    decoder.decode(text, add);
    decoder.finish(add);
    return result;
}

}  // namespace orvane::PayloadText
