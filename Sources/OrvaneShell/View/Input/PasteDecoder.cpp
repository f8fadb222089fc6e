#include "OrvaneShell/View/Input/PasteDecoder.h"

#include <algorithm>
#include <utility>

#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

constexpr std::string_view endOfPaste = "\x1b[201~";

}  // namespace

PasteDecoder::Result PasteDecoder::feed(std::string_view bytes) {
    Result result;
    std::string& text = result.event.text;
    if (std::exchange(hasReturn_, false)) text += '\r';
    while (result.taken < bytes.size() && !result.event.isLast) {
        const char byte = bytes[result.taken];
        if (byte == endOfPaste[endBytes_]) {
            ++result.taken;
            result.event.isLast = ++endBytes_ == endOfPaste.size();
        } else if (endBytes_ > 0) {
            // It was none: what looked like its beginning is text. The byte is looked at anew, as it may begin one.
            append(endOfPaste.substr(0, std::exchange(endBytes_, 0)), text);
        } else {
            const std::size_t end = std::min(bytes.find(endOfPaste.front(), result.taken), bytes.size());
            append(bytes.substr(result.taken, end - result.taken), text);
            result.taken = end;
        }
    }
    if (result.event.isLast) {
        finish(text);
    } else if (text.ends_with('\r')) {
        text.pop_back();
        hasReturn_ = true;
    }
    result.event.isFirst = isFirst_ && (result.event.isLast || !text.empty());
    isFirst_ = isFirst_ && !result.event.isFirst;
    return result;
}

void PasteDecoder::append(std::string_view bytes, std::string& text) {
    characters_.decode(bytes, [&](char32_t scalar) { appendUtf8(scalar, text); });
}

void PasteDecoder::finish(std::string& text) {
    characters_.finish([&](char32_t scalar) { appendUtf8(scalar, text); });
    endBytes_ = 0;
}

}  // namespace orvane
