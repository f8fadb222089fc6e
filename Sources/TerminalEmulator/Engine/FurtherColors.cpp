#include "TerminalEmulator/Engine/FurtherColors.h"

#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>

#include "TerminalEmulator/Engine/ColorFunctions.h"
#include "TerminalEmulator/Engine/ColorSpec.h"
#include "TerminalEmulator/Engine/PayloadText.h"

namespace orvane {
namespace {

constexpr int maximumPairs = 512;
constexpr int firstSpecialEntry = 256;  // as OSC 4 and 104 count them, behind the palette
constexpr int firstDynamic = 13;
constexpr int lastDynamic = 19;
constexpr int resetOffset = 100;  // OSC 113 resets what OSC 13 sets

/// Whether a colour that has not been set is that of the text or of what is behind it.
enum class Plain : std::uint8_t { foreground, background };

constexpr std::array<Plain, lastDynamic - firstDynamic + 1> plainDynamics{
    Plain::foreground, Plain::background,                     // the pointer
    Plain::foreground, Plain::background,                     // Tektronix
    Plain::foreground, Plain::foreground, Plain::background,  // selection, Tektronix cursor, selected text
};

class FurtherColors {
 public:
    explicit FurtherColors(TerminalState& state) : state_(state) {}

    /// OSC 5, and OSC 4 with numbers behind those of the palette.
    void setSpecial(int code, int first, std::string_view payload, StringEnd end) {
        PayloadText::Parts parts(payload);
        for (int pair = 0; pair < maximumPairs; ++pair) {
            const auto number = parts.next();
            const auto spec = parts.next();
            if (!number || !spec) return;
            const int index = PayloadText::number(*number).value_or(-1);
            if (!isSpecial(index - first)) continue;
            set(special_[static_cast<std::size_t>(index - first)], Plain::foreground, fmt::format("{};{}", code, index),
                *spec, end);
        }
    }

    /// OSC 105 and 104.
    void resetSpecial(int first, std::string_view payload) {
        if (payload.empty()) special_.fill(std::nullopt);
        PayloadText::Parts parts(payload);
        for (auto part = parts.next(); part; part = parts.next()) {
            const int index = PayloadText::number(*part).value_or(-1);
            if (isSpecial(index - first)) special_[static_cast<std::size_t>(index - first)].reset();
        }
    }

    /// OSC 13 to 19.
    void setDynamic(int code, std::string_view payload, StringEnd end) {
        PayloadText::Parts parts(payload);
        for (; code <= lastDynamic; ++code) {
            const auto spec = parts.next();
            if (!spec) return;
            const auto index = static_cast<std::size_t>(code - firstDynamic);
            set(dynamic_[index], plainDynamics[index], std::to_string(code), *spec, end);
        }
    }

    void resetDynamic(int code) { dynamic_[static_cast<std::size_t>(code - firstDynamic)].reset(); }

    TerminalState& state() { return state_; }

 private:
    bool isSpecial(int index) const { return index >= 0 && static_cast<std::size_t>(index) < special_.size(); }

    void set(std::optional<TerminalColor>& color, Plain plain, std::string_view code, std::string_view spec,
             StringEnd end) {
        if (spec == "?") {
            const TerminalColor unset =
                plain == Plain::foreground ? ColorFunctions::foreground(state_) : ColorFunctions::background(state_);
            ColorFunctions::tell(state_, code, color.value_or(unset), end);
        } else if (const auto wanted = ColorSpec::parse(spec)) {
            color = wanted;
        }
    }

    TerminalState& state_;
    std::array<std::optional<TerminalColor>, 5> special_;
    std::array<std::optional<TerminalColor>, plainDynamics.size()> dynamic_;
};

}  // namespace

std::vector<std::pair<int, Terminal::OscHandler>> furtherColorHandlers(TerminalState& state) {
    const auto colors = std::make_shared<FurtherColors>(state);
    std::vector<std::pair<int, Terminal::OscHandler>> handlers{
        {4,
         [colors](std::string_view payload, StringEnd end) {
             ColorFunctions::setPalette(colors->state(), payload, end);
             colors->setSpecial(4, firstSpecialEntry, payload, end);
         }},
        {5, [colors](std::string_view payload, StringEnd end) { colors->setSpecial(5, 0, payload, end); }},
        {104,
         [colors](std::string_view payload, StringEnd /*end*/) {
             ColorFunctions::resetPalette(colors->state(), payload);
             colors->resetSpecial(firstSpecialEntry, payload);
         }},
        {105, [colors](std::string_view payload, StringEnd /*end*/) { colors->resetSpecial(0, payload); }},
        // Text with these looks has its own colour anyway, so there is nothing to switch.
        {106, [](std::string_view /*payload*/, StringEnd /*end*/) {}},
        {110, [colors](std::string_view, StringEnd) { ColorFunctions::resetForeground(colors->state()); }},
        {111, [colors](std::string_view, StringEnd) { ColorFunctions::resetBackground(colors->state()); }},
    };
    for (int code = firstDynamic; code <= lastDynamic; ++code) {
        handlers.emplace_back(
            code, [colors, code](std::string_view payload, StringEnd end) { colors->setDynamic(code, payload, end); });
        handlers.emplace_back(code + resetOffset,
                              [colors, code](std::string_view, StringEnd) { colors->resetDynamic(code); });
    }
    return handlers;
}

}  // namespace orvane
