#include "Orvane/Workspace/UsageTally.h"

#include <string>

#include "Platform/PreferencesStore.h"

namespace orvane {

namespace {

constexpr auto featuresKey = "usage.features";
constexpr auto peaksKey = "usage.peaks";

}  // namespace

void UsageTally::raise(std::string_view feature) {
    if (feature.empty()) return;
    auto counts = preferences_.counts(featuresKey);
    ++counts[std::string(feature)];
    preferences_.setCounts(featuresKey, counts);
}

void UsageTally::recordPeak(std::string_view measure, std::int64_t value) {
    auto peaks = preferences_.counts(peaksKey);
    const auto [peak, isNew] = peaks.try_emplace(std::string(measure), value);
    if (!isNew && peak->second >= value) return;
    peak->second = value;
    preferences_.setCounts(peaksKey, peaks);
}

}  // namespace orvane
