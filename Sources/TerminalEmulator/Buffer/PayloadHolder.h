#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/TinyAtom.h"

namespace orvane {

/// A set of payload handles: those that cells still show, or those that a terminal holds.
class PayloadSet {
 public:
    void insert(std::uint16_t code);
    void erase(std::uint16_t code);
    bool contains(std::uint16_t code) const { return code < has_.size() && has_[code]; }
    std::size_t limit() const { return has_.size(); }  ///< above every code in the set

 private:
    std::vector<bool> has_;
};

/// The payload handles that one terminal holds, and their garbage collection. Handles of other terminals are never
/// touched; the destructor gives all back.
class PayloadHolder {
 public:
    /// Marks every handle that a cell of the terminal, its history or its pen still has.
    using Mark = std::function<void(PayloadSet&)>;

    PayloadHolder() = default;
    ~PayloadHolder();
    PayloadHolder(const PayloadHolder&) = delete;
    PayloadHolder& operator=(const PayloadHolder&) = delete;

    /// The handle of a text, kept until a collection finds it unused. With none left the unused ones are collected
    /// first; 0 when that does not help. After a collection that frees nothing the next 1,024 refusals do without one,
    /// so that a flood of links costs no walk over the history each.
    TinyAtom hold(std::string_view text, const Mark& markInUse);

    /// Releases what `markInUse` does not mark.
    void collect(const Mark& markInUse);

 private:
    static constexpr int refusalsBetweenCollections = 1024;

    TinyAtom holdOnce(std::string_view text);

    PayloadSet held_;
    int refusalsLeft_ = 0;
};

}  // namespace orvane
