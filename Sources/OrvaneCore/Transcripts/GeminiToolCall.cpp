#include "OrvaneCore/Transcripts/GeminiToolCall.h"

#include <initializer_list>
#include <string_view>

namespace orvane::GeminiToolCall {

namespace {

/// The first text below the value: itself, or what stands under one of the keys. `result` wraps it in a
/// `functionResponse` with a `response`, in an array.
std::string textBelow(const TranscriptRecord& value, std::initializer_list<std::string_view> keys) {
    if (const auto text = value.string()) return std::string(*text);
    for (const TranscriptRecord& element : value.elements()) {
        std::string text = textBelow(element, keys);
        if (!text.empty()) return text;
    }
    if (!value.isObject()) return {};
    for (const std::string_view key : keys) {
        std::string text = textBelow(value[key], keys);
        if (!text.empty()) return text;
    }
    return {};
}

}  // namespace

std::string failureText(const TranscriptRecord& call) {
    std::string text = textBelow(call["result"], {"functionResponse", "response", "error", "output", "message"});
    return text.empty() ? textBelow(call["error"], {"message", "output", "error"}) : text;
}

std::string outputText(const TranscriptRecord& call) {
    return textBelow(call["result"], {"functionResponse", "response", "output", "error"});
}

}  // namespace orvane::GeminiToolCall
