#include "Transcripts/MadeTranscript.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace orvane::benchmark {

namespace {

constexpr std::string_view usage =
    R"("usage":{"input_tokens":1200,"cache_creation_input_tokens":300,"cache_read_input_tokens":5000,"output_tokens":57})";

}  // namespace

std::string MadeTranscript::nextTurn() {
    ++turns_;
    switch (provider_) {
        case TranscriptProvider::claude:
            return claudeTurn();
        case TranscriptProvider::codex:
            return codexTurn();
        case TranscriptProvider::gemini:
            return geminiTurn();
    }
    std::unreachable();
}

/// Program text and prose as it stands inside a JSON string.
std::string MadeTranscript::words(std::size_t bytes) {
    constexpr std::array<std::string_view, 16> pieces = {
        "the ",          "return value_", ";\\n    ", "if (count > 0) ", "error: ", "file ",      "\\\"type\\\"",
        "src/main.cpp:", "12345",         "\\t",      "déjà ",           "user ",   "assistant ", "tool_result of ",
        "std::string ",  "\\n",
    };
    std::string text;
    while (text.size() < bytes)
        text += pieces[random_() % pieces.size()];
    return text;
}

std::string MadeTranscript::toolOutput() {
    if (random_() % 400 == 0) return std::string(400000, 'A');
    // From 100 bytes to 60 KB, half of them below 2.5 KB.
    return words(static_cast<std::size_t>(100 * std::pow(600, static_cast<double>(random_() % 1000) / 1000)));
}

std::string MadeTranscript::head() {
    ++lines_;
    return fmt::format(R"("timestamp":"2026-11-21T{:02}:{:02}:{:02}.396Z")", lines_ / 3600 % 24, lines_ / 60 % 60,
                       lines_ % 60);
}

std::string MadeTranscript::claudeTurn() {
    const auto record = [&](std::string_view type, const std::string& message, const std::string& more = "") {
        return fmt::format(
            R"({{"parentUuid":"8121d0fc-f5b6-479e-9d3a-{0:012}","isSidechain":false,"type":"{1}","message":{2},"uuid":"8121d0fc-f5b6-479e-9d3a-{3:012}",{4}{5},"cwd":"/home/demo/proj","version":"2.1.329","gitBranch":"main"}})"
            "\n",
            lines_, type, message, lines_ + 1, head(), more);
    };
    const auto answer = [&](const std::string& block) {
        return record("assistant",
                      fmt::format(R"({{"id":"msg_{}","role":"assistant","content":[{}],{}}})", lines_, block, usage));
    };
    std::string turn = record("user", fmt::format(R"({{"role":"user","content":"prompt {} {}"}})", turns_, words(80)));
    turn += fmt::format(R"({{"type":"file-history-snapshot","snapshot":{{"files":"{}"}}}})"
                        "\n",
                        words(300));
    for (std::size_t call = 0, calls = 1 + random_() % 8; call < calls; ++call) {
        turn += answer(fmt::format(R"({{"type":"text","text":"{}"}})", words(random_() % 400)));
        turn += answer(fmt::format(
            R"({{"type":"tool_use","id":"toolu_{0}_{1}","name":"Bash","input":{{"command":"make {0}","description":"{2}"}}}})",
            turns_, call, words(random_() % 1500)));
        const std::string output = toolOutput();
        turn += record("user",
                       fmt::format(R"({{"role":"user","content":[{{"tool_use_id":"toolu_{}_{}","type":"tool_result",)"
                                   R"("content":"{}","is_error":{}}}]}})",
                                   turns_, call, output, random_() % 20 == 0),
                       fmt::format(R"(,"toolUseResult":{{"stdout":"{}","stderr":""}})", output));
    }
    return turn + answer(fmt::format(R"({{"type":"text","text":"answer {}"}})", turns_));
}

std::string MadeTranscript::codexTurn() {
    const auto record = [&](std::string_view type, const std::string& payload) {
        return fmt::format("{{{},\"ordinal\":{},\"type\":\"{}\",\"payload\":{}}}\n", head(), lines_, type, payload);
    };
    const auto item = [&](std::string_view type, const std::string& text) {
        return record(
            "event_msg",
            fmt::format(
                R"({{"type":"item_completed","item":{{"type":"{}","content":[{{"type":"text","text":"{}"}}]}}}})", type,
                text));
    };
    std::string turn = item("UserMessage", fmt::format("prompt {} {}", turns_, words(80)));
    turn += record("turn_context", fmt::format(R"({{"cwd":"/home/demo","instructions":"{}"}})", words(3000)));
    for (std::size_t call = 0, calls = 1 + random_() % 8; call < calls; ++call) {
        turn += record("response_item", fmt::format(R"({{"type":"reasoning","encrypted_content":"{}"}})",
                                                    std::string(500 + random_() % 3000, 'Z')));
        turn += record(
            "response_item",
            fmt::format(
                R"({{"type":"function_call","name":"exec_command","arguments":"{{\"cmd\":\"make {0}\"}}","call_id":"call_{0}_{1}"}})",
                turns_, call));
        turn += record(
            "response_item",
            fmt::format(
                R"({{"type":"function_call_output","call_id":"call_{}_{}","output":"Chunk ID: 1\nProcess exited with code {}\nOutput:\n{}"}})",
                turns_, call, random_() % 20 == 0 ? 2 : 0, toolOutput()));
        turn += record("event_msg", R"({"type":"token_count","info":{"last_token_usage":{"input_tokens":1500}}})");
    }
    return turn + item("AgentMessage", fmt::format("answer {}", turns_));
}

std::string MadeTranscript::geminiTurn() {
    const auto record = [&](std::string_view type, const std::string& members) {
        return fmt::format("{{\"id\":\"efe72864-ccfc-4955-8b83-{:012}\",{},\"type\":\"{}\",{}}}\n", lines_, head(),
                           type, members);
    };
    std::string turn = record("user", fmt::format(R"("content":[{{"text":"prompt {} {}"}}])", turns_, words(80)));
    for (std::size_t call = 0, calls = 1 + random_() % 8; call < calls; ++call) {
        const std::string output = toolOutput();
        turn += record(
            "gemini",
            fmt::format(
                R"("content":"{0}","toolCalls":[{{"id":"c_{1}_{2}","name":"run_shell_command","args":{{"command":"make"}},"result":[{{"functionResponse":{{"response":{{"output":"{3}"}}}}}}],"status":"success","resultDisplay":"{3}"}}])",
                words(random_() % 400), turns_, call, output));
        turn += record("user",
                       fmt::format(R"("content":[{{"functionResponse":{{"response":{{"output":"{}"}}}}}}])", output));
        turn += fmt::format(R"({{"$set":{{"lastUpdated":"{}"}}}})"
                            "\n",
                            lines_);
    }
    return turn + record("gemini", fmt::format(R"("content":"answer {}")", turns_));
}

}  // namespace orvane::benchmark
