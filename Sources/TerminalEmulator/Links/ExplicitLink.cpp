#include "TerminalEmulator/Links/ExplicitLink.h"

#include <algorithm>
#include <cstdint>
#include <map>

#include "TerminalEmulator/LogicalLine.h"

namespace orvane {
namespace {

/// Which cells belong to the link of one of them.
class LinkCells {
 public:
    LinkCells(const Buffer& buffer, std::uint16_t code, const Hyperlink& link)
        : buffer_(buffer), code_(code), link_(link) {}

    bool contains(Position at) {
        const std::uint16_t code = buffer_.row(at.row).at(at.col).payload().code;
        if (code == code_ || code == 0 || link_.id.empty()) return code == code_;
        const auto [known, isNew] = isSame_.try_emplace(code, false);
        if (isNew) {
            const std::string* target = TinyAtom{code}.target();
            known->second = target != nullptr && Hyperlink::parsed(*target) == link_;
        }
        return known->second;
    }

    /// The stretch of a row round a cell that belongs to the link.
    ColumnRange stretchAround(Position at) {
        ColumnRange cols{at.col, at.col + 1};
        while (cols.startCol > 0 && contains({at.row, cols.startCol - 1}))
            --cols.startCol;
        while (cols.endCol < buffer_.cols() && contains({at.row, cols.endCol}))
            ++cols.endCol;
        return cols;
    }

    /// All stretches of the rows near by.
    std::vector<RowRange> allStretches(int middleRow) {
        std::vector<RowRange> parts;
        const int last = std::min(buffer_.count() - 1, middleRow + maximumExplicitLinkRows);
        for (int row = std::max(0, middleRow - maximumExplicitLinkRows); row <= last; ++row) {
            for (int col = 0; col < buffer_.cols(); ++col) {
                if (!contains({row, col})) continue;
                parts.push_back({row, stretchAround({row, col})});
                col = parts.back().cols.endCol;
            }
        }
        return parts;
    }

    /// The stretch round a cell and what continues it in wrapped rows.
    std::vector<RowRange> joinedStretches(const RowRange& middle) {
        std::vector<RowRange> parts{middle};
        for (int left = maximumExplicitLinkRows; left > 0; --left) {
            const RowRange& first = parts.front();
            if (first.cols.startCol > 0 || first.row == 0 || !buffer_.row(first.row).isWrapped) break;
            const Position above{first.row - 1, LogicalLine::textCols(buffer_, first.row - 1) - 1};
            if (!contains(above)) break;
            parts.insert(parts.begin(), {above.row, stretchAround(above)});
        }
        for (int left = maximumExplicitLinkRows; left > 0; --left) {
            const RowRange& last = parts.back();
            if (!LogicalLine::continuesBelow(buffer_, last.row)) break;
            const Position below{last.row + 1, 0};
            if (last.cols.endCol < LogicalLine::textCols(buffer_, last.row) || !contains(below)) break;
            parts.push_back({below.row, stretchAround(below)});
        }
        return parts;
    }

 private:
    const Buffer& buffer_;
    std::uint16_t code_;
    Hyperlink link_;
    std::map<std::uint16_t, bool> isSame_;  ///< by code of a payload
};

}  // namespace

std::optional<Hyperlink> Hyperlink::parsed(std::string_view payload) {
    const std::size_t end = payload.find(';');
    if (end == std::string_view::npos || end + 1 == payload.size()) return std::nullopt;
    Hyperlink link{.uri = payload.substr(end + 1)};
    std::string_view params = payload.substr(0, end);
    while (!params.empty()) {
        const std::string_view param = params.substr(0, params.find(':'));
        if (param.starts_with("id=")) link.id = param.substr(3);
        params.remove_prefix(std::min(params.size(), param.size() + 1));
    }
    return link;
}

std::optional<LinkMatch> explicitLink(const Buffer& buffer, Position at) {
    const TinyAtom payload = buffer.row(at.row).at(at.col).payload();
    const std::string* target = payload.target();
    if (target == nullptr) return std::nullopt;
    const std::optional<Hyperlink> link = Hyperlink::parsed(*target);
    if (!link) return std::nullopt;
    LinkCells cells(buffer, payload.code, *link);
    const RowRange part{at.row, cells.stretchAround(at)};
    return LinkMatch{
        .text = std::string(link->uri),
        .row = at.row,
        .range = part.cols,
        .isExplicit = true,
        .rowRanges = link->id.empty() ? cells.joinedStretches(part) : cells.allStretches(at.row),
    };
}

}  // namespace orvane
