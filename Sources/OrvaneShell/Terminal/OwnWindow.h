#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "TerminalEmulator/Terminal.h"

namespace orvane {

/// Columns and rows, whoever asks for them: nobody may have gigabytes of screen.
inline constexpr int largestScreenSide = 4096;

/// A delegate whose terminal is all there is: its program may change the size as it likes, has a clipboard of its own,
/// empty at first, and is trusted. `Base` is a delegate with `Terminal& shownTerminal()`.
template <typename Base>
class OwnWindow : public Base {
 public:
    using Base::Base;

    std::optional<std::string> windowCommand(const WindowManipulationCommand& command) override {
        Terminal& shown = this->shownTerminal();
        if (const auto* size = std::get_if<WindowManipulationCommand::ResizeTerminal>(&command.value)) {
            shown.resize(std::min(size->cols, largestScreenSide), std::min(size->rows, largestScreenSide));
        } else if (const auto* lines = std::get_if<WindowManipulationCommand::ResizeToLines>(&command.value)) {
            shown.resize(shown.cols(), std::min(lines->lines, largestScreenSide));
        }
        return {};
    }

    /// A nominal cell, for those who ask for pixels.
    std::optional<TerminalDelegate::CellSize> cellSizeInPixels() override {
        return TerminalDelegate::CellSize{.width = 8, .height = 16};
    }

    void clipboardCopy(std::string_view content) override { clipboard_ = content; }
    std::optional<std::string> clipboardRead() override { return clipboard_; }

 private:
    std::string clipboard_;
};

}  // namespace orvane
