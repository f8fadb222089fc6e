#include "TerminalEmulator/Buffer/HistoryCodec.h"

#include <algorithm>
#include <bit>

#include "TerminalEmulator/Buffer/HistoryLook.h"

namespace orvane::HistoryCodec {
namespace {

constexpr std::uint8_t oneByteEach = 1;
constexpr std::uint8_t hasRuns = 2;
constexpr std::uint8_t hasCount = 4;

constexpr std::uint8_t emptyRun = 1;
constexpr std::size_t longestEmptyRun = 255;
constexpr std::size_t shortestEmptyRun = 3;  // a shorter one takes no fewer bytes than its cells

/// Most bytes that one cell can take: text, the length of its run and its look.
constexpr std::size_t bytesPerCell = 3 + 1 + HistoryLook::maximumBytes;
constexpr std::size_t bytesPerRow = 1 + 5;

struct Halves {
    std::uint64_t first;
    std::uint64_t second;
};

struct Summary {
    bool isAscii = false;  ///< or empty, one column each
    bool isDefault = false;
};

/// Most rows are ASCII. Their text is written in the pass that finds out whether they are; else it leaves rubbish
/// behind `out`.
Summary writeAsciiText(std::span<const StoredCell> cells, std::uint8_t* out) {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    for (const StoredCell& cell : cells) {
        const auto halves = std::bit_cast<Halves>(cell);
        first |= halves.first;
        second |= halves.second;
        *out++ = static_cast<std::uint8_t>(cell.text);
    }
    const auto all = std::bit_cast<StoredCell>(Halves{first, second});
    const std::uint32_t looks = (all.text & StoredCell::lookMask) | all.foreground | all.background | all.extra;
    return {.isAscii = (all.text & ~StoredCell::lookMask) < 0x80, .isDefault = looks == 0};
}

std::size_t emptyRunAt(std::span<const StoredCell> cells, std::size_t index) {
    const std::size_t end = std::min(cells.size(), index + longestEmptyRun);
    std::size_t at = index;
    while (at < end && cells[at].isEmpty() && !cells[at].isRightHalf())
        ++at;
    return at - index;
}

std::uint8_t* writeCode(std::uint32_t code, std::uint8_t* out) {
    if (code < 0x80 && code != emptyRun) {
        *out++ = static_cast<std::uint8_t>(code);
    } else if (code < 0x4000) {
        *out++ = static_cast<std::uint8_t>(0x80 | code >> 8);
        *out++ = static_cast<std::uint8_t>(code);
    } else {
        *out++ = static_cast<std::uint8_t>(0xC0 | code >> 16);
        *out++ = static_cast<std::uint8_t>(code >> 8);
        *out++ = static_cast<std::uint8_t>(code);
    }
    return out;
}

std::uint8_t* writeWide(std::uint32_t code, std::uint8_t* out) {
    *out++ = static_cast<std::uint8_t>(0xE0 | code >> 16);
    *out++ = static_cast<std::uint8_t>(code >> 8);
    *out++ = static_cast<std::uint8_t>(code);
    return out;
}

std::uint8_t* writeText(std::span<const StoredCell> cells, std::uint8_t* out, Packed& packed) {
    for (std::size_t index = 0; index < cells.size();) {
        const StoredCell& cell = cells[index];
        const std::uint32_t code = cell.text & StoredCell::codeMask;
        if (cell.isWide() && index + 1 < cells.size() && cells[index + 1].isRightHalf()) {
            packed.hasWide = true;
            out = writeWide(code, out);
            index += 2;
        } else if (const std::size_t run = emptyRunAt(cells, index); run >= shortestEmptyRun) {
            *out++ = emptyRun;
            *out++ = static_cast<std::uint8_t>(run);
            index += run;
        } else {
            out = writeCode(cell.isWide() || cell.isRightHalf() ? 0 : code, out);
            ++index;
        }
    }
    return out;
}

std::uint8_t* writeRuns(std::span<const StoredCell> cells, std::uint8_t* out, Packed& packed) {
    for (std::size_t start = 0; start < cells.size();) {
        std::size_t end = start + 1;
        while (end < cells.size() && HistoryLook::isSame(cells[start], cells[end]))
            ++end;
        packed.hasPayload |= cells[start].payload().code != 0;
        out = HistoryLook::writeVarint(static_cast<std::uint32_t>(end - start), out);
        out = HistoryLook::write(cells[start], out);
        start = end;
    }
    return out;
}

/// What one step of the text stands for: a character, or `repeat` empty cells.
struct Step {
    std::uint32_t code = 0;
    std::uint32_t repeat = 1;
    bool isWide = false;
};

const std::uint8_t* readStep(const std::uint8_t* in, Step& step) {
    const std::uint32_t lead = *in++;
    step = {};
    if (lead == emptyRun) {
        step.repeat = *in++;
    } else if (lead < 0x80) {
        step.code = lead;
    } else if (lead < 0xC0) {
        step.code = (lead & 0x3F) << 8 | *in++;
    } else {
        step.isWide = lead >= 0xE0;
        step.code = (lead & 0x1F) << 16 | static_cast<std::uint32_t>(in[0]) << 8 | in[1];
        in += 2;
    }
    return in;
}

/// The parts of a row's head.
struct Head {
    std::uint8_t flags = 0;
    std::uint32_t count = 0;
    const std::uint8_t* text = nullptr;
};

Head readHead(const std::uint8_t* row, std::uint32_t expected) {
    Head head{.flags = *row, .count = expected, .text = row + 1};
    if ((head.flags & hasCount) != 0) head.text = HistoryLook::readVarint(head.text, head.count);
    return head;
}

const std::uint8_t* readText(const Head& head, StoredCell* out) {
    const std::uint8_t* in = head.text;
    StoredCell* const end = out + head.count;
    if ((head.flags & oneByteEach) != 0) {
        while (out < end)
            *out++ = {*in++, 0, 0, 0};
        return in;
    }
    Step step;
    while (out < end) {
        in = readStep(in, step);
        if (step.isWide) {
            *out++ = {step.code | StoredCell::wide, 0, 0, 0};
            *out++ = {StoredCell::rightHalf, 0, 0, 0};
        } else {
            for (std::uint32_t count = 0; count < step.repeat; ++count)
                *out++ = {step.code, 0, 0, 0};
        }
    }
    return in;
}

void readRuns(const std::uint8_t* in, std::uint32_t cells, StoredCell* out) {
    StoredCell look;
    for (std::uint32_t covered = 0; covered < cells;) {
        std::uint32_t length = 0;
        in = HistoryLook::read(HistoryLook::readVarint(in, length), look);
        covered += length;
        for (; length > 0; --length, ++out) {
            *out = {out->text | look.text, look.foreground, look.background, look.extra};
        }
    }
}

/// The widths of a row's characters, one after the other.
class Widths {
 public:
    explicit Widths(const Head& head) : in_(head.text) {}

    std::uint32_t next() {
        if (left_ == 0) {
            in_ = readStep(in_, step_);
            left_ = step_.repeat;
        }
        --left_;
        return step_.isWide ? 2 : 1;
    }

 private:
    const std::uint8_t* in_;
    Step step_;
    std::uint32_t left_ = 0;
};

}  // namespace

Packed encode(std::span<const StoredCell> cells, std::uint32_t expected, std::vector<std::uint8_t>& scratch) {
    const std::size_t most = bytesPerRow + cells.size() * bytesPerCell;
    if (scratch.size() < most) scratch.resize(most);
    std::uint8_t* const head = scratch.data();
    std::uint8_t* end = head + 1;
    *head = oneByteEach;
    if (cells.size() != expected) {
        *head |= hasCount;
        end = HistoryLook::writeVarint(static_cast<std::uint32_t>(cells.size()), end);
    }
    Packed packed;
    const Summary summary = writeAsciiText(cells, end);
    if (summary.isAscii) {
        end += cells.size();
    } else {
        *head &= static_cast<std::uint8_t>(~oneByteEach);
        end = writeText(cells, end, packed);
    }
    if (!summary.isDefault) {
        *head |= hasRuns;
        end = writeRuns(cells, end, packed);
    }
    packed.bytes = {head, end};
    return packed;
}

void decode(const std::uint8_t* row, std::uint32_t expected, std::vector<StoredCell>& out) {
    const Head head = readHead(row, expected);
    const std::size_t start = out.size();
    out.resize(start + head.count);
    const std::uint8_t* const runs = readText(head, out.data() + start);
    if ((head.flags & hasRuns) != 0) readRuns(runs, head.count, out.data() + start);
}

std::uint32_t cellsThatFit(const std::uint8_t* row, std::uint32_t expected, std::uint32_t from, std::uint32_t room) {
    Widths widths(readHead(row, expected));
    std::uint32_t at = 0;
    while (at < from)
        at += widths.next();
    const std::uint32_t start = at;
    while (at < expected) {
        const std::uint32_t width = widths.next();
        if (at - start + width > room) break;
        at += width;
    }
    return at - start;
}

std::uint32_t rowsTaken(const std::uint8_t* row, std::uint32_t expected, std::uint32_t from, std::uint32_t cols,
                        std::uint32_t& column) {
    Widths widths(readHead(row, expected));
    std::uint32_t at = 0;
    while (at < from)
        at += widths.next();
    std::uint32_t rows = 0;
    while (at < expected) {
        const std::uint32_t width = widths.next();
        if (column + width > cols) {
            ++rows;
            column = 0;
        }
        column += width;
        at += width;
    }
    return rows;
}

}  // namespace orvane::HistoryCodec
