#include "Terminal/VtermHost.h"

#include <algorithm>
#include <bit>

#include "Terminal/OrvaneHost.h"
#include "Terminal/TrimmedRight.h"

namespace orvane::benchmark {

namespace {

bool isBlank(const VTermScreenCell& cell) {
    return cell.chars[0] == 0 && VTERM_COLOR_IS_DEFAULT_BG(&cell.bg) && cell.attrs.reverse == 0;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// How many bytes at the end begin a UTF-8 character without ending it.
std::size_t lengthOfCutCharacter(std::string_view bytes) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(3, bytes.size()); ++length) {
        const char byte = bytes[bytes.size() - length];
        if (isContinuation(byte)) continue;
        const auto whole = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(byte)));
        return whole > length ? length : 0;
    }
    return 0;
}

}  // namespace

const VTermScreenCallbacks VtermHost::callbacks = {
    .sb_pushline = [](int cols, const VTermScreenCell* cells,
                      void* host) { return static_cast<VtermHost*>(host)->push(cols, cells); },
    .sb_popline = [](int cols, VTermScreenCell* cells,
                     void* host) { return static_cast<VtermHost*>(host)->pop(cols, cells); },
};

VtermHost::VtermHost(Geometry geometry)
    : geometry_(geometry),
      vterm_(vterm_new(geometry.rows, geometry.cols)),
      screen_(vterm_obtain_screen(vterm_.get())),
      history_(historyLines) {
    vterm_set_utf8(vterm_.get(), 1);
    vterm_screen_set_callbacks(screen_, &callbacks, this);
    vterm_screen_enable_altscreen(screen_, 1);
    vterm_screen_set_damage_merge(screen_, VTERM_DAMAGE_SCROLL);
    vterm_screen_reset(screen_, 1);
}

void VtermHost::write(std::string_view bytes) {
    vterm_input_write(vterm_.get(), bytes.data(), bytes.size());
}

/// libvterm 0.1 loses a character that is cut between two writes, so what is cut waits here.
void VtermHost::feed(std::string_view bytes) {
    if (!cut_.empty()) {
        const std::size_t rest = std::ranges::find_if_not(bytes, isContinuation) - bytes.begin();
        write(cut_.append(bytes.substr(0, rest)));
        bytes.remove_prefix(rest);
    }
    const std::size_t kept = lengthOfCutCharacter(bytes);
    write(bytes.substr(0, bytes.size() - kept));
    cut_ = bytes.substr(bytes.size() - kept);
    vterm_screen_flush_damage(screen_);
}

/// Without the blanks at the end: less to copy, and the memory of a short line fits it.
int VtermHost::push(int cols, const VTermScreenCell* cells) {
    const VTermScreenCell* end = cells + cols;
    while (end > cells && isBlank(end[-1]))
        --end;
    history_[next_].assign(cells, end);
    next_ = (next_ + 1) % history_.size();
    count_ = std::min(count_ + 1, history_.size());
    return 1;
}

int VtermHost::pop(int cols, VTermScreenCell* cells) {
    if (count_ == 0) return 0;
    --count_;
    next_ = (next_ + history_.size() - 1) % history_.size();
    const Line& line = history_[next_];
    const auto kept = std::min(line.size(), static_cast<std::size_t>(cols));
    VTermScreenCell blank{};
    blank.width = 1;
    std::fill(std::copy_n(line.begin(), kept, cells), cells + cols, blank);
    return 1;
}

std::vector<std::string> VtermHost::screenText() const {
    std::vector<std::string> rows;
    for (int row = 0; row < geometry_.rows; ++row) {
        const VTermRect rect{.start_row = row, .end_row = row + 1, .start_col = 0, .end_col = geometry_.cols};
        // Up to six scalars a cell.
        std::string text(static_cast<std::size_t>(geometry_.cols) * VTERM_MAX_CHARS_PER_CELL * 4, '\0');
        text.resize(vterm_screen_get_text(screen_, text.data(), text.size(), rect));
        rows.push_back(trimmedRight(std::move(text)));
    }
    return rows;
}

}  // namespace orvane::benchmark
