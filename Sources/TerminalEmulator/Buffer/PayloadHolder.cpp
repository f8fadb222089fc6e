#include "TerminalEmulator/Buffer/PayloadHolder.h"

namespace orvane {

void PayloadSet::insert(std::uint16_t code) {
    if (code == 0) return;
    if (code >= has_.size()) has_.resize(code + std::size_t{1});
    has_[code] = true;
}

void PayloadSet::erase(std::uint16_t code) {
    if (code < has_.size()) has_[code] = false;
}

PayloadHolder::~PayloadHolder() {
    collect([](PayloadSet&) {});
}

TinyAtom PayloadHolder::hold(std::string_view text, const Mark& markInUse) {
    // No collection makes these fit.
    if (text.empty() || text.size() > TinyAtom::maximumTextLength) return {};
    if (const TinyAtom atom = holdOnce(text); atom.code != 0) return atom;
    if (refusalsLeft_ > 0) {
        --refusalsLeft_;
        return {};
    }
    collect(markInUse);
    const TinyAtom atom = holdOnce(text);
    if (atom.code == 0) refusalsLeft_ = refusalsBetweenCollections;
    return atom;
}

void PayloadHolder::collect(const Mark& markInUse) {
    PayloadSet inUse;
    markInUse(inUse);
    for (std::size_t index = 1; index < held_.limit(); ++index) {
        const auto code = static_cast<std::uint16_t>(index);
        if (!held_.contains(code) || inUse.contains(code)) continue;
        held_.erase(code);
        TinyAtom::release(code);
    }
}

TinyAtom PayloadHolder::holdOnce(std::string_view text) {
    const TinyAtom atom = TinyAtom::lookup(text);
    if (held_.contains(atom.code)) TinyAtom::release(atom.code);  // one hold for each terminal
    held_.insert(atom.code);
    return atom;
}

}  // namespace orvane
