#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "OrvaneShell/View/OuterTerminal.h"
#include "TerminalEmulator/Buffer/Attribute.h"

namespace orvane {

/// What the interface's own looks become on a terminal: colours that read on its background, or none. What programs
/// draw in panes is not touched.
struct ViewTheme {
    /// What a user may ask for.
    enum class Choice : std::uint8_t {
        automatic,  ///< as the terminal's background is
        dark,
        light,
        none,  ///< no colours
    };
    enum class Ground : std::uint8_t { dark, light };
    enum class Palette : std::uint8_t {
        asDrawn,  ///< looks stay what painters made them
        none,
        sixteen,
        indexed,  ///< fixed colours, which no user has set to something else
    };

    Ground ground = Ground::dark;
    Palette palette = Palette::asDrawn;

    /// "auto", "dark", "light" or "none"; nothing for another word.
    static std::optional<Choice> choiceNamed(std::string_view name);
    /// `background` is what the terminal has, or `dark` when it does not tell.
    static ViewTheme of(Choice choice, Ground background, OuterTerminal::Colors colors);

    /// Where there are no colours, what one set apart is bold. A bar is all of one brightness.
    Attribute applied(Attribute look) const;

    bool operator==(const ViewTheme&) const = default;
};

}  // namespace orvane
