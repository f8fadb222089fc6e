#include "TerminalEmulator/Buffer/TabStops.h"

#include <algorithm>

namespace orvane {

void TabStops::setup(int index, int width) {
    int from = 0;
    if (index < 0) {
        clearAll();
    } else {
        from = std::min(index, cols());
        std::fill(stops_.begin() + from + (isSet(from) ? 1 : 0), stops_.end(), false);
        if (!isSet(from)) from = previous(from);
    }
    if (width <= 0) return;
    for (; from < cols(); from += width)
        set(from);
}

void TabStops::set(int col) {
    if (isColumn(col)) stops_[static_cast<std::size_t>(col)] = true;
}

void TabStops::clear(int col) {
    if (isColumn(col)) stops_[static_cast<std::size_t>(col)] = false;
}

int TabStops::next(int col) const {
    const int last = std::max(0, cols() - 1);
    do {
        ++col;
    } while (col < last && !isSet(col));
    return std::clamp(col, 0, last);
}

int TabStops::previous(int col) const {
    col = std::min(col, cols());
    do {
        --col;
    } while (col > 0 && !isSet(col));
    return std::max(col, 0);
}

}  // namespace orvane
