#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/GlyphSet.h"
#include "OrvaneShell/View/TextCells.h"
#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/PayloadHolder.h"

namespace orvane {

/// Whether links are written; without them they are no part of a cell.
enum class FrameLinks : std::uint8_t { dropped, written };

/// Turns cells of canvases into those of frames, which stay comparable from one frame to the next whatever the canvas
/// and its table of clusters do: clusters are handles of a table of its own, and links are held, so that their handles
/// go on meaning the same.
///
/// A cell of a frame holds what can be written as it is: a printable scalar or a clean cluster, never one that would
/// join what stands before or behind it; a space instead of nothing; wide characters with both halves alike.
class FrameCells {
 public:
    /// Handles of clusters may mean something else in the next frame's canvas; a row that has some is read anew.
    enum class Content : std::uint8_t { plain, clusters };

    /// `out` has as many cells as a row of the canvas.
    Content read(const Canvas& canvas, int y, FrameLinks links, std::span<StoredCell> out);

    /// What is read from now on has these characters only.
    void setGlyphs(GlyphSet glyphs) { glyphs_ = glyphs; }

    const ClusterTable& clusters() const { return clusters_; }

    /// Forgets clusters and links that none of these cells has when there are many; clusters in them may get other
    /// handles. Between frames.
    void tidy(std::span<StoredCell> shown);

 private:
    struct Known {
        std::int32_t from = 0;
        TextCell to;
    };

    StoredCell plain(const StoredCell& cell) const;
    StoredCell fitted(const StoredCell& cell, const TextCell& character, bool isLast) const;
    TextCell cleanCluster(const ClusterTable& from, std::int32_t code);
    TextCell cleanCluster(std::string_view text);
    void hold(StoredCell& cell);

    GlyphSet glyphs_ = GlyphSet::all;
    ClusterTable clusters_;
    PayloadHolder links_;
    int holds_ = 0;  ///< since links were given back
    std::uint16_t lastHeld_ = 0;
    std::array<Known, 64> known_{};  ///< codes of the canvas, while one row is read
};

}  // namespace orvane
