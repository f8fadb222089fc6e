#include "OrvaneShell/View/FrameBytes.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "OrvaneShell/View/LinkText.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

constexpr std::string_view linkEnd = "\x1b]8;;\x1b\\";
constexpr std::uint32_t styleMask = 0xFF000000;
constexpr std::uint32_t underlineColorMask = 0xFFFF0000;

void appendNumber(int number, std::string& out) {
    char digits[12];
    out.append(digits, std::to_chars(digits, std::end(digits), number).ptr);
}

}  // namespace

void FrameBytes::startOver() {
    bytes += "\x1b[m";
    if (outer_.hyperlinks) bytes += linkEnd;
    bytes += "\x1b[H\x1b[2J";
    source_ = {};
    look_ = {};
    link_ = 0;
    x_ = 0;
    y_ = 0;
}

void FrameBytes::moveTo(int x, int y) {
    if (x == x_ && y == y_) return;
    if (y == y_ && x_ != unknown && x > x_) {
        control(x - x_ == 1 ? 0 : x - x_, 0, 'C');
    } else {
        control(y == 0 ? 0 : y + 1, x == 0 ? 0 : x + 1, 'H');
    }
    x_ = x;
    y_ = y;
}

/// A parameter of 0 stands for its default and is left out.
void FrameBytes::control(int first, int second, char final) {
    bytes += "\x1b[";
    if (first > 0) appendNumber(first, bytes);
    if (second > 0) {
        bytes += ';';
        appendNumber(second, bytes);
    }
    bytes += final;
}

StoredCell FrameBytes::lookOf(const StoredCell& cell) {
    return {cell.text & styleMask, cell.foreground, cell.background, cell.extra & underlineColorMask};
}

bool FrameBytes::hasLook(const StoredCell& cell) const {
    return lookOf(cell) == source_ && cell.payload().code == link_;
}

void FrameBytes::setLook(const StoredCell& cell) {
    if (cell.payload().code != link_) openLink(cell.payload());
    const StoredCell source = lookOf(cell);
    if (source == source_) return;
    const CellLook look = CellLook::of(source, outer_);
    appendSgr(look_, look, bytes);
    source_ = source;
    look_ = look;
}

void FrameBytes::openLink(TinyAtom link) {
    const std::string* target = link.target();
    const std::string text = target == nullptr ? std::string() : outerLinkText(*target, link.code);
    if (!text.empty()) {
        bytes += "\x1b]8;";
        bytes += text;
        bytes += "\x1b\\";
    } else {
        closeLink();
    }
    link_ = link.code;
}

void FrameBytes::closeLink() {
    if (link_ == 0) return;
    bytes += linkEnd;
    link_ = 0;
}

void FrameBytes::write(const StoredCell& cell, const ClusterTable& clusters, int cols) {
    const std::int32_t code = cell.code();
    if (code < 0x80) {
        bytes += static_cast<char>(code);
    } else if (code < CharData::clusterBase) {
        appendUtf8(static_cast<char32_t>(code), bytes);
    } else {
        bytes += clusters.indexToChar(code);
    }
    x_ += cell.width();
    if (x_ >= cols) forgetPosition();
}

void FrameBytes::eraseToEndOfRow() {
    bytes += "\x1b[K";
}

void FrameBytes::eraseCharacters(int count) {
    control(count, 0, 'X');
}

/// Within margins (DECSTBM), by line feeds in the last row or reverse ones (RI) in the first, which every terminal has;
/// setting the margins moves the cursor.
void FrameBytes::scroll(const RowScroll& scroll) {
    setLook({});
    control(scroll.top + 1, scroll.bottom, 'r');
    forgetPosition();
    if (scroll.count > 0) {
        moveTo(0, scroll.bottom - 1);
        bytes.append(static_cast<std::size_t>(scroll.count), '\n');
    } else {
        moveTo(0, scroll.top);
        for (int row = scroll.count; row < 0; ++row)
            bytes += "\x1bM";
    }
    bytes += "\x1b[r";
    forgetPosition();
}

}  // namespace orvane
