#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TerminalEmulator/TerminalModes.h"

/// A paste on its way to a program. Whoever forwards one asks once, at its first piece, for its form and keeps to it:
/// the program may change its mode, and the view its focus, while pieces still come.
///
///     const PasteForm form = pasteForm(terminal.modes());
///     write(pasteBegin(form)); write(encodePaste(piece, form)); … write(pasteEnd(form));
namespace orvane {

enum class PasteForm : std::uint8_t { plain, bracketed };

PasteForm pasteForm(const TerminalModes& modes);
std::string_view pasteBegin(PasteForm form);
std::string_view pasteEnd(PasteForm form);

/// The piece without what would end the bracket or act as a key: of the control characters only tab, CR and LF stay.
/// Malformed bytes become U+FFFD. Line ends become CR, as Enter sends it, in the plain form.
std::string encodePaste(std::string_view piece, PasteForm form);

}  // namespace orvane
