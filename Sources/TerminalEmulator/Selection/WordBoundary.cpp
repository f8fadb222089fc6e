#include "TerminalEmulator/Selection/WordBoundary.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "TerminalEmulator/CharacterClass.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {
namespace {

enum class Kind : std::uint8_t { blank, word, single };

class WordFinder {
 public:
    WordFinder(const Buffer& buffer, const ClusterTable& clusters) : buffer_(buffer), clusters_(clusters) {}

    SelectionRange find(Position at) const {
        at.col = LogicalLine::characterCol(buffer_.row(at.row), at.col);
        const Kind kind = kindAt(at);
        Position first = at;
        Position last = at;
        if (kind != Kind::single) {
            const int rows = kind == Kind::word ? maximumWordRows : 0;
            while (const auto next = before(first, at.row - rows)) {
                if (kindAt(*next) != kind) break;
                first = *next;
            }
            while (const auto next = behind(last, at.row + rows)) {
                if (kindAt(*next) != kind) break;
                last = *next;
            }
        }
        return {first, {last.row, LogicalLine::colBehindCharacter(buffer_.row(last.row), last.col)}};
    }

 private:
    Kind kindAt(Position at) const {
        switch (characterClass(clusters_.baseScalar(buffer_.row(at.row).at(at.col).code()))) {
            case CharacterClass::blank:
                return Kind::blank;
            case CharacterClass::letter:
            case CharacterClass::pathMark:
                return Kind::word;
            case CharacterClass::punctuation:
                break;
        }
        return Kind::single;
    }

    std::optional<Position> before(Position at, int firstRow) const {
        if (at.col == 0) {
            if (at.row <= std::max(0, firstRow) || !buffer_.row(at.row).isWrapped) return std::nullopt;
            --at.row;
            at.col = LogicalLine::textCols(buffer_, at.row);
        }
        --at.col;
        return Position{at.row, LogicalLine::characterCol(buffer_.row(at.row), at.col)};
    }

    std::optional<Position> behind(Position at, int lastRow) const {
        at.col = LogicalLine::colBehindCharacter(buffer_.row(at.row), at.col);
        const LogicalLine::Below below = LogicalLine::below(buffer_, at.row);
        const bool continues = below != LogicalLine::Below::startsLine;
        const int cols = continues ? LogicalLine::textCols(buffer_.row(at.row), below) : buffer_.cols();
        if (at.col < cols) return at;
        if (!continues || at.row >= lastRow) return std::nullopt;
        return Position{at.row + 1, 0};
    }

    const Buffer& buffer_;
    const ClusterTable& clusters_;
};

}  // namespace

SelectionRange wordAt(const Buffer& buffer, const ClusterTable& clusters, Position at) {
    return WordFinder(buffer, clusters).find(at);
}

}  // namespace orvane
