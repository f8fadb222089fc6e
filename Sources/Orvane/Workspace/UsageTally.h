#pragma once

#include <cstdint>
#include <string_view>

namespace orvane {

class PreferencesStore;

/// The private tally of what is used and how much at once. It never leaves the machine.
class UsageTally {
 public:
    /// The preferences outlive the tally.
    explicit UsageTally(PreferencesStore& preferences) : preferences_(preferences) {}

    /// Counts one use of a feature; an empty word is none.
    void raise(std::string_view feature);
    /// Keeps the highest value that a measure has had.
    void recordPeak(std::string_view measure, std::int64_t value);

 private:
    PreferencesStore& preferences_;
};

}  // namespace orvane
