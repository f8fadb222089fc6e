#include "OrvaneShell/Terminal/ScreenJson.h"

#include <fmt/format.h>

#include <array>
#include <boost/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Overloaded.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {

namespace {

using Style = Attribute::CharacterStyle;
using Underline = Attribute::UnderlineStyle;

bool has(const Attribute& attribute, Style style) {
    return (attribute.style & style) != Style::none;
}

std::optional<JsonValue> colorJson(const Attribute::Color& color) {
    using Color = Attribute::Color;
    return std::visit(Overloaded{
                          [](const Color::DefaultColor&) { return std::optional<JsonValue>(); },
                          [](const Color::DefaultInvertedColor&) { return std::optional<JsonValue>(); },
                          [](const Color::Ansi256& indexed) { return std::optional<JsonValue>(indexed.code); },
                          [](const Color::TrueColor& direct) {
                              return std::optional<JsonValue>(
                                  fmt::format("#{:02x}{:02x}{:02x}", direct.red, direct.green, direct.blue));
                          },
                      },
                      color.value);
}

std::string_view underlineName(Underline style) {
    switch (style) {
        case Underline::none:
        case Underline::single:
            return "underline";
        case Underline::double_:
            return "double";
        case Underline::curly:
            return "curly";
        case Underline::dotted:
            return "dotted";
        case Underline::dashed:
            return "dashed";
    }
    std::unreachable();
}

boost::json::array attributesJson(const CharData& cell) {
    static constexpr auto styles = std::to_array<std::pair<Style, std::string_view>>({
        {Style::bold, "bold"},
        {Style::dim, "dim"},
        {Style::italic, "italic"},
        {Style::underline, ""},
        {Style::blink, "blink"},
        {Style::inverse, "inverse"},
        {Style::invisible, "hidden"},
        {Style::crossedOut, "strike"},
    });
    boost::json::array names;
    for (const auto& [style, name] : styles) {
        if (!has(cell.attribute, style)) continue;
        names.emplace_back(style == Style::underline ? underlineName(cell.attribute.underlineStyle) : name);
    }
    if (cell.isProtected) names.emplace_back("protected");
    return names;
}

/// The address of a link, which is stored as it came: with its parameters and a semicolon before it.
std::string_view addressOf(std::string_view link) {
    return link.substr(link.find(';') + 1);
}

boost::json::object cellJson(const StoredCell& stored, const ClusterTable& clusters) {
    const CharData cell = stored.unpack();
    boost::json::object object;
    if (cell.code != 0 && cell.code != ' ') object["t"] = clusters.text(cell.code);
    if (cell.width != 1) object["w"] = cell.width;
    if (auto color = colorJson(cell.attribute.fg)) object["fg"] = std::move(*color);
    if (auto color = colorJson(cell.attribute.bg)) object["bg"] = std::move(*color);
    if (cell.attribute.underlineColor) {
        if (auto color = colorJson(*cell.attribute.underlineColor)) object["ul"] = std::move(*color);
    }
    if (auto names = attributesJson(cell); !names.empty()) object["a"] = std::move(names);
    if (const std::string* link = cell.payload.target()) object["link"] = addressOf(*link);
    return object;
}

boost::json::object lineJson(const Buffer& buffer, int row, const ClusterTable& clusters) {
    // Whether it is continued first: a view of a row is good until others are read.
    boost::json::object object{{"wrapped", buffer.row(row + 1).isWrapped}};
    const RowView view = buffer.row(row);
    static constexpr std::array<std::string_view, 4> sizes = {"", "width", "top", "bottom"};
    if (view.renderMode != RenderLineMode::single) object["double"] = sizes[std::to_underlying(view.renderMode)];
    boost::json::array cells;
    std::size_t length = view.cells.size();
    while (length > 0 && view.cells[length - 1].isDefaultBlank())
        --length;
    for (const StoredCell& cell : view.cells.first(length))
        cells.push_back(cellJson(cell, clusters));
    object["cells"] = std::move(cells);
    return object;
}

boost::json::array linesJson(const Buffer& buffer, int first, int end, const ClusterTable& clusters) {
    boost::json::array lines;
    for (int row = first; row < end; ++row)
        lines.push_back(lineJson(buffer, row, clusters));
    return lines;
}

boost::json::object cursorJson(const Terminal& terminal) {
    static constexpr std::array<std::string_view, 3> shapes = {"block", "underline", "bar"};
    const auto [x, y] = terminal.getCursorLocation();
    boost::json::object object{{"row", y},
                               {"col", x},
                               {"visible", !terminal.modes().cursorHidden},
                               {"pendingWrap", terminal.isWrapPending()},
                               {"shape", shapes[std::to_underlying(terminal.cursorStyle()) / 2]}};
    if (terminal.modes().cursorBlink) object["blink"] = true;
    return object;
}

}  // namespace

JsonValue screenJson(const Terminal& terminal, HistoryPart history) {
    const Buffer& buffer = terminal.buffer();
    const int first = history == HistoryPart::shown ? 0 : buffer.yBase();
    const ClusterTable& clusters = terminal.clusters();
    return {{"cols", terminal.cols()},
            {"rows", terminal.rows()},
            {"alt", terminal.isAlternateBufferActive()},
            {"cursor", cursorJson(terminal)},
            {"title", terminal.terminalTitle()},
            {"scrollback", linesJson(buffer, first, buffer.yBase(), clusters)},
            {"lines", linesJson(buffer, buffer.yBase(), buffer.count(), clusters)}};
}

std::string screenText(const Terminal& terminal, HistoryPart history) {
    const Buffer& buffer = terminal.buffer();
    std::string text;
    for (int row = history == HistoryPart::shown ? 0 : buffer.yBase(); row < buffer.count(); ++row) {
        text += buffer.row(row).translateToString(terminal.clusters(),
                                                  {.trimsRight = true, .skipsNullCellsFollowingWide = true});
        text += '\n';
    }
    return text;
}

}  // namespace orvane
