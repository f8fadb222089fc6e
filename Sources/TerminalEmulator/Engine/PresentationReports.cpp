#include "TerminalEmulator/Engine/PresentationReports.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "TerminalEmulator/Engine/PayloadText.h"

namespace orvane {
namespace {

using Style = Attribute::CharacterStyle;

constexpr int cursorReport = 1;
constexpr int tabReport = 2;

// Sets of flags are sent as characters from "@" on, six bits each of which the upper one stays free.
constexpr unsigned flagBase = 0x40;
constexpr unsigned flagMask = 0x1F;

constexpr std::array<Style, 5> renditions{Style::bold, Style::underline, Style::blink, Style::inverse,
                                          Style::invisible};
constexpr unsigned protectedFlag = 1;
constexpr unsigned originFlag = 1;
constexpr unsigned singleShift2Flag = 2;
constexpr unsigned singleShift3Flag = 4;
constexpr unsigned wrapFlag = 8;

char flagCharacter(unsigned flags) {
    return static_cast<char>(flagBase | flags);
}

unsigned renditionFlags(const Pen& pen) {
    const Style style = pen.attribute().style;
    unsigned flags = 0;
    for (std::size_t i = 0; i < renditions.size(); ++i) {
        if ((style & renditions[i]) != Style::none) flags |= 1U << i;
    }
    return flags;
}

unsigned cursorFlags(const TerminalState& state) {
    const auto shift = state.charsets.singleShift;
    return (state.modes.originMode ? originFlag : 0U) | (shift == 2 ? singleShift2Flag : 0U) |
           (shift == 3 ? singleShift3Flag : 0U) | (state.buffer->isWrapPending ? wrapFlag : 0U);
}

/// DECCIR (VT420 programmer reference): the cursor is told on the screen, whatever DECOM says.
std::string cursorText(const TerminalState& state) {
    unsigned sizes = 0;
    std::string designators;
    for (std::size_t i = 0; i < state.charsets.gCharsets.size(); ++i) {
        const CharsetDesignation designation = designationOf(state.charsets.gCharsets[i]);
        if (designation.size == CharsetSize::of96) sizes |= 1U << i;
        designators += designation.designator;
    }
    const Buffer& buffer = *state.buffer;
    return fmt::format("{};{};1;{};{};{};{};{};{};{}", buffer.y() + 1, buffer.x() + 1,
                       flagCharacter(renditionFlags(buffer.pen)),
                       flagCharacter(buffer.pen.isProtected() ? protectedFlag : 0), flagCharacter(cursorFlags(state)),
                       state.charsets.gLevel, state.charsets.gRightLevel, flagCharacter(sizes), designators);
}

std::string tabText(const TerminalState& state) {
    std::string text;
    for (int col = 0; col < state.cols(); ++col) {
        if (state.buffer->tabStops.isSet(col)) text += fmt::format("{}{}", text.empty() ? "" : "/", col + 1);
    }
    return text;
}

/// What DECCIR tells, read back.
struct CursorInformation {
    int row = 0;
    int col = 0;
    unsigned rendition = 0;
    unsigned attributes = 0;
    unsigned flags = 0;
    std::uint8_t leftLevel = 0;
    std::uint8_t rightLevel = 0;
    std::array<Charset, 4> charsets{};
};

std::optional<unsigned> flagsOf(std::string_view text) {
    const auto code = static_cast<unsigned char>(text.empty() ? 0 : text.front());
    if (text.size() != 1 || code < flagBase || code > 0x7E) return std::nullopt;
    return code & flagMask;
}

std::optional<std::uint8_t> levelOf(std::string_view text) {
    const auto level = PayloadText::number(text);
    if (!level || *level > 3) return std::nullopt;
    return static_cast<std::uint8_t>(*level);
}

/// Four designators one after the other, each up to its final byte.
std::optional<std::array<Charset, 4>> charsetsOf(std::string_view text, unsigned sizes) {
    std::array<Charset, 4> charsets{};
    for (std::size_t i = 0; i < charsets.size(); ++i) {
        const std::size_t final = std::min(text.find_first_not_of(" !\"#$%&'()*+,-./"), text.size());
        const CharsetSize size = (sizes >> i & 1U) != 0 ? CharsetSize::of96 : CharsetSize::of94;
        const auto charset = charsetDesignated(text.substr(0, final + 1), size);
        if (!charset) return std::nullopt;
        charsets[i] = *charset;
        text.remove_prefix(std::min(final + 1, text.size()));
    }
    return text.empty() ? std::optional(charsets) : std::nullopt;
}

std::optional<CursorInformation> cursorInformation(std::string_view data) {
    std::array<std::string_view, 10> fields;
    PayloadText::Parts parts(data);
    for (std::string_view& field : fields) {
        const auto part = parts.next();
        if (!part) return std::nullopt;
        field = *part;
    }
    const auto row = PayloadText::number(fields[0]);
    const auto col = PayloadText::number(fields[1]);
    const auto rendition = flagsOf(fields[3]);
    const auto attributes = flagsOf(fields[4]);
    const auto flags = flagsOf(fields[5]);
    const auto left = levelOf(fields[6]);
    const auto right = levelOf(fields[7]);
    const auto sizes = flagsOf(fields[8]);
    if (parts.rest() || !row || !col || !rendition || !attributes || !flags || !left || !right || !sizes)
        return std::nullopt;
    const auto charsets = charsetsOf(fields[9], *sizes);
    if (!charsets || *row < 1 || *col < 1) return std::nullopt;
    return CursorInformation{*row - 1, *col - 1, *rendition, *attributes, *flags, *left, *right, *charsets};
}

void restoreRendition(Pen& pen, unsigned flags) {
    for (std::size_t i = 0; i < renditions.size(); ++i) {
        if ((flags >> i & 1U) != 0) {
            pen.addStyle(renditions[i]);
        } else {
            pen.removeStyle(renditions[i]);
        }
    }
    const bool isUnderlined = (pen.attribute().style & Style::underline) != Style::none;
    pen.setUnderlineStyle(isUnderlined ? Attribute::UnderlineStyle::single : Attribute::UnderlineStyle::none);
}

void restore(TerminalState& state, const CursorInformation& cursor) {
    Buffer& buffer = *state.buffer;
    state.modes.originMode = (cursor.flags & originFlag) != 0;
    state.placeCursor(std::min(cursor.col, state.cols() - 1), std::min(cursor.row, state.rows() - 1));
    buffer.isWrapPending = (cursor.flags & wrapFlag) != 0 && buffer.x() == state.rightMargin();
    restoreRendition(buffer.pen, cursor.rendition);
    const bool isProtected = (cursor.attributes & protectedFlag) != 0;
    if (isProtected) state.protectedMode = TerminalState::ProtectedMode::dec;
    buffer.pen.setIsProtected(isProtected);
    state.charsets.gCharsets = cursor.charsets;
    state.charsets.gLevel = cursor.leftLevel;
    state.charsets.gRightLevel = cursor.rightLevel;
    state.charsets.singleShift.reset();
    if ((cursor.flags & singleShift2Flag) != 0) state.charsets.singleShift = 2;
    if ((cursor.flags & singleShift3Flag) != 0) state.charsets.singleShift = 3;
}

void restoreTabs(TerminalState& state, std::string_view data) {
    std::vector<int> columns;
    for (std::size_t at = 0; at < data.size();) {
        const std::size_t end = std::min(data.find('/', at), data.size());
        const auto column = PayloadText::number(data.substr(at, end - at));
        if (!column || *column < 1) return;
        columns.push_back(*column - 1);
        at = end + 1;
    }
    state.buffer->tabStops.clearAll();
    for (const int column : columns)
        state.buffer->tabStops.set(column);
}

}  // namespace

void reportPresentation(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == cursorReport) state.sendDcs("1$u" + cursorText(state));
    if (parameters.values[0] == tabReport) state.sendDcs("2$u" + tabText(state));
}

void PresentationRestore::answer(std::string_view data) {
    if (parameter == tabReport) restoreTabs(state, data);
    if (parameter != cursorReport) return;
    if (const auto cursor = cursorInformation(data)) restore(state, *cursor);
}

}  // namespace orvane
