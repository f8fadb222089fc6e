#include "Support/Report.h"

#include <fmt/format.h>

#include <cstdio>
#include <utility>

#include "Support/Statistics.h"

namespace orvane::benchmark {

namespace {

std::string aimOf(const Figure& figure) {
    const auto told = [&](std::string_view relation, double limit, bool isMet) {
        return fmt::format("aim {} {:g} {}  {}", relation, limit, figure.unit, isMet ? "met" : "not met");
    };
    if (figure.atMost) return told("<=", *figure.atMost, figure.value <= *figure.atMost);
    if (figure.atLeast) return told(">=", *figure.atLeast, figure.value >= *figure.atLeast);
    return {};
}

}  // namespace

void report(const Figure& figure) {
    fmt::print("{:<44} {:<34} {:<8} {}\n", figure.name, figure.values, figure.unit, aimOf(figure));
    std::fflush(stdout);  // the next figure may take seconds
}

void reportMilliseconds(std::string name, const std::vector<double>& samples) {
    const Summary summed = summary(samples);
    report({.name = std::move(name),
            .values = fmt::format("min {:.3f}  median {:.3f}", summed.minimum, summed.median),
            .unit = "ms"});
}

}  // namespace orvane::benchmark
