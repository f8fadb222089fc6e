#include "TerminalEmulator/Engine/RectangleFunctions.h"

#include <algorithm>
#include <vector>

namespace orvane::RectangleFunctions {

namespace {

using Style = Attribute::CharacterStyle;

/// The place that parameters count from, and the farthest they reach.
Area frameOf(const TerminalState& state) {
    if (!state.modes.originMode) return {0, 0, state.rows() - 1, state.cols() - 1};
    return {state.buffer->scrollTop(), state.leftMargin(), state.buffer->scrollBottom(), state.rightMargin()};
}

int bounded(std::int32_t parameter) {
    return std::min(parameter, Buffer::maximumSize);
}

/// What one SGR code does to a style, as far as DECCARA knows it.
Style changed(Style style, std::int32_t code) {
    const auto with = [style](Style bits) { return style | bits; };
    const auto without = [style](Style bits) {
        return style & static_cast<Style>(~static_cast<unsigned>(bits) & 0xFFU);
    };
    switch (code) {
        case 0:
            return without(Style::bold | Style::underline | Style::blink | Style::inverse | Style::invisible);
        case 1:
            return with(Style::bold);
        case 4:
            return with(Style::underline);
        case 5:
            return with(Style::blink);
        case 7:
            return with(Style::inverse);
        case 8:
            return with(Style::invisible);
        case 22:
            return without(Style::bold);
        case 24:
            return without(Style::underline);
        case 25:
            return without(Style::blink);
        case 27:
            return without(Style::inverse);
        case 28:
            return without(Style::invisible);
        default:
            return style;
    }
}

Style reversed(Style style, std::int32_t code) {
    const Style bits = code == 0 ? Style::bold | Style::underline | Style::blink | Style::inverse | Style::invisible
                                 : changed(Style::none, code);
    return static_cast<Style>(static_cast<unsigned>(style) ^ static_cast<unsigned>(bits));
}

using Change = Style (*)(Style style, std::int32_t code);

void changeCells(TerminalState& state, int y, int left, int right, std::span<const std::int32_t> codes, Change change) {
    BufferLine line = state.buffer->line(y);
    for (int col = left; col <= right; ++col) {
        CharData cell = line.at(col).unpack();
        const Style before = cell.attribute.style;
        for (const std::int32_t code : codes)
            cell.attribute.style = change(cell.attribute.style, code);
        if (cell.attribute.style == before) continue;
        const bool isUnderlined = (cell.attribute.style & Style::underline) != Style::none;
        if (!isUnderlined) {
            cell.attribute.underlineStyle = Attribute::UnderlineStyle::none;
        } else if (cell.attribute.underlineStyle == Attribute::UnderlineStyle::none) {
            cell.attribute.underlineStyle = Attribute::UnderlineStyle::single;
        }
        line.set(col, cell);
    }
}

/// As a stream the area is the text from its first to its last place, all columns of the rows between.
void changeArea(TerminalState& state, const ParserParameters& parameters, Change change) {
    const auto area = areaOf(state, parameters, 0);
    if (!area) return;
    static constexpr std::int32_t plain[] = {0};
    const auto codes = parameters.size() > 4 ? parameters.values.subspan(4) : std::span<const std::int32_t>(plain);
    const Area frame = frameOf(state);
    const bool isStream = state.attributeExtent == TerminalState::AttributeExtent::stream;
    for (int y = area->top; y <= area->bottom; ++y) {
        const int left = isStream && y > area->top ? frame.left : area->left;
        const int right = isStream && y < area->bottom ? frame.right : area->right;
        changeCells(state, y, left, right, codes, change);
    }
    state.markRows(area->top, area->bottom);
}

}  // namespace

std::optional<Area> areaOf(const TerminalState& state, const ParserParameters& parameters, std::size_t first) {
    const Area frame = frameOf(state);
    const int height = frame.bottom - frame.top + 1;
    const int width = frame.right - frame.left + 1;
    const Area area{
        .top = frame.top + bounded(parameters.valueOr(first, 1)) - 1,
        .left = frame.left + bounded(parameters.valueOr(first + 1, 1)) - 1,
        .bottom = std::min(frame.top + bounded(parameters.valueOr(first + 2, height)) - 1, frame.bottom),
        .right = std::min(frame.left + bounded(parameters.valueOr(first + 3, width)) - 1, frame.right),
    };
    if (area.top > area.bottom || area.left > area.right) return {};
    return area;
}

void copy(TerminalState& state, const ParserParameters& parameters) {
    const auto from = areaOf(state, parameters, 0);
    if (!from) return;
    const Area frame = frameOf(state);
    const int top = frame.top + bounded(parameters.valueOr(5, 1)) - 1;
    const int left = frame.left + bounded(parameters.valueOr(6, 1)) - 1;
    if (top > frame.bottom || left > frame.right) return;
    const int height = std::min(from->bottom - from->top, frame.bottom - top) + 1;
    const int width = std::min(from->right - from->left, frame.right - left) + 1;
    Buffer& buffer = *state.buffer;
    for (int step = 0; step < height; ++step) {
        // From the far end when it moves down, for the areas may overlap.
        const int row = top > from->top ? height - 1 - step : step;
        buffer.line(top + row).copyFrom(buffer.line(from->top + row).view(), from->left, left, width);
    }
    state.markRows(top, top + height - 1);
}

void fill(TerminalState& state, const ParserParameters& parameters) {
    const std::int32_t code = parameters.values[0];
    const bool isGraphic = (code >= 0x20 && code <= 0x7E) || (code >= 0xA0 && code <= 0xFF);
    const auto area = areaOf(state, parameters, 1);
    if (!isGraphic || !area) return;
    const StoredCell cell = state.buffer->pen.cell().with(code, 1);
    for (int y = area->top; y <= area->bottom; ++y)
        state.buffer->line(y).replaceCells(area->left, area->right + 1, cell);
    state.markRows(area->top, area->bottom);
}

void erase(TerminalState& state, const ParserParameters& parameters) {
    const auto area = areaOf(state, parameters, 0);
    if (!area) return;
    for (int y = area->top; y <= area->bottom; ++y)
        state.buffer->line(y).replaceCells(area->left, area->right + 1, state.eraseFill());
    state.markRows(area->top, area->bottom);
}

void eraseUnprotected(TerminalState& state, const ParserParameters& parameters) {
    const auto area = areaOf(state, parameters, 0);
    if (!area) return;
    for (int y = area->top; y <= area->bottom; ++y)
        state.buffer->line(y).eraseUnprotected(area->left, area->right + 1, state.eraseFill());
    state.markRows(area->top, area->bottom);
}

void changeAttributes(TerminalState& state, const ParserParameters& parameters) {
    changeArea(state, parameters, changed);
}

void reverseAttributes(TerminalState& state, const ParserParameters& parameters) {
    changeArea(state, parameters, reversed);
}

void selectExtent(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] > 2) return;
    state.attributeExtent =
        parameters.values[0] == 2 ? TerminalState::AttributeExtent::rectangle : TerminalState::AttributeExtent::stream;
}

}  // namespace orvane::RectangleFunctions
