#include "TerminalEmulator/Buffer/TinyAtom.h"

#include <deque>
#include <unordered_map>
#include <vector>

namespace orvane {
namespace {

struct Slot {
    std::string text;
    std::size_t holds = 0;
};

struct Table {
    std::deque<Slot> slots{1};  ///< by code; a deque, so that the keys below stay where they are
    std::unordered_map<std::string_view, std::uint16_t> codes;
    std::vector<std::uint16_t> free;
    std::size_t textBytes = 0;

    std::uint16_t freeCode() {
        if (!free.empty()) {
            const std::uint16_t code = free.back();
            free.pop_back();
            return code;
        }
        if (slots.size() > TinyAtom::maximumHandles) return 0;
        slots.emplace_back();
        return static_cast<std::uint16_t>(slots.size() - 1);
    }
};

Table& table() {
    static Table shared;
    return shared;
}

}  // namespace

TinyAtom TinyAtom::lookup(std::string_view text) {
    Table& all = table();
    if (const auto found = all.codes.find(text); found != all.codes.end()) {
        ++all.slots[found->second].holds;
        return {found->second};
    }
    if (text.empty() || text.size() > maximumTextLength || all.textBytes + text.size() > maximumTextBytes) return {};
    const std::uint16_t code = all.freeCode();
    if (code == 0) return {};
    Slot& slot = all.slots[code];
    slot = {.text = std::string(text), .holds = 1};
    all.codes.emplace(slot.text, code);
    all.textBytes += text.size();
    return {code};
}

void TinyAtom::release(std::uint16_t code) {
    Table& all = table();
    if (code >= all.slots.size() || all.slots[code].holds == 0) return;
    Slot& slot = all.slots[code];
    if (--slot.holds > 0) return;
    all.codes.erase(slot.text);
    all.textBytes -= slot.text.size();
    slot.text = {};
    all.free.push_back(code);
}

const std::string* TinyAtom::target() const {
    const Table& all = table();
    if (code >= all.slots.size() || all.slots[code].holds == 0) return nullptr;
    return &all.slots[code].text;
}

}  // namespace orvane
