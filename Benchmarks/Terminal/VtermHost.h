#pragma once

#include <vterm.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Terminal/Geometry.h"

namespace orvane::benchmark {

/// The peer: libvterm with its screen layer, in a host that keeps what scrolls out of the screen, as every terminal
/// built on it has to. It asks for no more than that: nothing is drawn, and damage is merged as far as it goes.
class VtermHost {
 public:
    explicit VtermHost(Geometry geometry);
    VtermHost(const VtermHost&) = delete;
    VtermHost& operator=(const VtermHost&) = delete;

    void feed(std::string_view bytes);
    /// As `OrvaneHost::screenText`.
    std::vector<std::string> screenText() const;

 private:
    using Line = std::vector<VTermScreenCell>;
    struct Free {
        void operator()(VTerm* vterm) const { vterm_free(vterm); }
    };

    static const VTermScreenCallbacks callbacks;

    void write(std::string_view bytes);
    int push(int cols, const VTermScreenCell* cells);
    int pop(int cols, VTermScreenCell* cells);

    Geometry geometry_;
    std::string cut_;  ///< the beginning of a character whose end is still to come
    std::unique_ptr<VTerm, Free> vterm_;
    VTermScreen* screen_;
    std::vector<Line> history_;  ///< a ring
    std::size_t next_ = 0;       ///< where the next line goes
    std::size_t count_ = 0;
};

}  // namespace orvane::benchmark
