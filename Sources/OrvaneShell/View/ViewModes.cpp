#include "OrvaneShell/View/ViewModes.h"

#include "OrvaneCore/Support/Text.h"
#include "TerminalEmulator/Engine/Base64.h"

namespace orvane {

// Names after xterm's "Control Sequences". Where a terminal does not know a sequence and shows its last character, as
// the Linux console may, the erasure behind it takes that away.

std::string viewEnterText(MouseReports mouse) {
    std::string text =
        "\x1b[?1049h"              // alternate screen
        "\x1b[?25l"                // DECTCEM: no cursor
        "\x1b[r\x1b[?6l\x1b[4l"    // no margins, no origin mode, no insert mode
        "\x1b(B\x0f"               // ASCII, and not line drawing
        "\x1b[?7l"                 // DECAWM: the last column may be written without a scroll
        "\x1b[?2004h\x1b[?1004h";  // bracketed paste, focus
    if (mouse == MouseReports::wanted) text += "\x1b[?1002h\x1b[?1006h";  // buttons and dragging, in SGR form
    text +=
        "\x1b[?2031h"           // changes of the colour scheme are told
        "\x1b]11;?\x1b\\"       // the questions
        "\x1b[?u\x1b[?2026$p"   //
        "\x1b[c"                // DA1, which everyone answers, comes last
        "\x1b[m\x1b[H\x1b[2J";  // an empty screen
    return text;
}

std::string_view plainEnterText() {
    return "\x1b[?2004h";
}

std::string_view plainLeaveText() {
    return "\x1b[?2004l\r\n";
}

std::string_view viewKeepTitleText() {
    return "\x1b[22;2t";
}

std::string_view viewLeaveText() {
    return "\x18\x1b\\"                                    // CAN and ST end what was cut
           "\x1b[?2026l"                                   // shows what was held back
           "\x1b[?1003l\x1b[?1002l\x1b[?1000l\x1b[?1006l"  // early: the mouse goes on moving
           "\x1b[?1004l\x1b[?2004l\x1b[?2031l"             // focus, bracketed paste, colour scheme
           "\x1b[<u\x1b[>4m"                               // keyboard: kitty's protocol, modifyOtherKeys
           "\x1b[?7h\x1b[r\x1b(B\x0f"                      // autowrap, margins, ASCII
           "\x1b]8;;\x1b\\"                                // no link
           "\x1b[m\x1b[0 q\x1b[?25h"                       // plain text; the user's cursor, shown
           "\x1b[H\x1b[2J"                                 // for terminals without an alternate screen
           "\x1b[23;2t"                                    // the title that was kept
           "\x1b[?1049l";
}

std::string_view viewKeyboardText() {
    return "\x1b[=5;1u";
}

std::string_view viewMotionText(bool isWanted) {
    return isWanted ? "\x1b[?1003h" : "\x1b[?1003l\x1b[?1002h";
}

std::string viewTitleText(std::string_view title) {
    return "\x1b]2;" + Text::oneLine(title) + "\x1b\\";
}

std::string viewClipboardText(std::string_view content) {
    return "\x1b]52;c;" + Base64::encode(content) + "\x1b\\";
}

std::string viewNotificationText(std::string_view line) {
    return "\a\x1b]9;" + Text::oneLine(line) + "\x1b\\";
}

}  // namespace orvane
