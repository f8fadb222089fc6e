#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TerminalEmulator/TerminalDelegate.h"
#include "TerminalEmulator/TerminalTimer.h"

namespace orvane {

/// Keeps what a terminal sends, and what else it tells as one line each.
class RecordingDelegate : public TerminalDelegate {
 public:
    std::string sent;
    std::vector<std::string> news;
    std::vector<WindowManipulationCommand> commands;
    bool isTrusted = true;
    std::optional<CellSize> cellSize;
    std::optional<Colors> colors;
    std::string clipboard;

    std::string takeSent() { return std::exchange(sent, {}); }
    std::vector<std::string> takeNews() { return std::exchange(news, {}); }

    void send(std::string_view bytes) override { sent += bytes; }
    bool isProcessTrusted() override { return isTrusted; }
    std::optional<CellSize> cellSizeInPixels() override { return cellSize; }
    std::optional<Colors> getColors() override { return colors; }
    std::optional<std::string> clipboardRead() override { return clipboard; }
    std::optional<std::string> windowCommand(const WindowManipulationCommand& command) override {
        commands.push_back(command);
        return {};
    }

    void showCursor() override { news.emplace_back("cursor shown"); }
    void hideCursor() override { news.emplace_back("cursor hidden"); }
    void setTerminalTitle(std::string_view title) override { tell("title", title); }
    void setTerminalIconTitle(std::string_view title) override { tell("icon", title); }
    void bufferActivated() override { news.emplace_back("buffer"); }
    void synchronizedOutputChanged(bool isActive) override { news.emplace_back(isActive ? "held" : "released"); }
    void mouseModeChanged() override { news.emplace_back("mouse"); }
    void hostCurrentDirectoryUpdated() override { news.emplace_back("directory"); }
    void colorChanged(std::optional<int> index) override { tell("colour", index ? std::to_string(*index) : "all"); }
    void setCursorColor(const std::optional<TerminalColor>& color) override { tell("cursor", color ? "set" : "reset"); }
    void iTermContent(std::string_view content) override { tell("content", content); }
    void clipboardCopy(std::string_view content) override { tell("clipboard", content); }
    void notify(std::string_view title, std::string_view body) override {
        tell("notify", std::string(title) + "|" + std::string(body));
    }
    void progressReport(const ProgressReport& report) override {
        tell("progress", std::to_string(report.progress.value_or(0)));
    }

 private:
    void tell(std::string_view what, std::string_view value) {
        news.push_back(std::string(what) + " " + std::string(value));
    }
};

/// A timer that runs when a test says so.
class ManualTimer final : public TerminalTimer {
 public:
    std::function<void()> task;
    int starts = 0;

    void start(std::chrono::duration<double> /*delay*/, std::function<void()> next) override {
        task = std::move(next);
        ++starts;
    }
    void stop() override { task = {}; }
    void fire() { std::exchange(task, {})(); }
};

}  // namespace orvane
