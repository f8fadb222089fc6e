#pragma once

#include <vector>

namespace orvane {

/// The columns at which tabs stop.
class TabStops {
 public:
    TabStops(int cols, int width) : stops_(static_cast<std::size_t>(cols)) { setup(-1, width); }

    /// With -1 every `width`-th column from 0 on and no others. Else the stops before `index` stay, and from the last
    /// of them (or `index`, when it is one) on there is one every `width` columns. A width of 0 sets nothing more.
    void setup(int index, int width);
    /// New columns get no stops.
    void resize(int cols) { stops_.resize(static_cast<std::size_t>(cols)); }

    bool isSet(int col) const { return isColumn(col) && stops_[static_cast<std::size_t>(col)]; }
    void set(int col);
    void clear(int col);
    void clearAll() { stops_.assign(stops_.size(), false); }

    /// The first stop to the right, else the last column.
    int next(int col) const;
    /// The first stop to the left, else 0.
    int previous(int col) const;

 private:
    int cols() const { return static_cast<int>(stops_.size()); }
    bool isColumn(int col) const { return col >= 0 && col < cols(); }

    std::vector<bool> stops_;
};

}  // namespace orvane
