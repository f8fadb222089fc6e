#include "Support/Report.h"

#include <fmt/format.h>

#include <cstdio>

namespace orvane::benchmark {

void report(const Figure& figure) {
    std::string aim;
    if (figure.atMost) {
        aim = fmt::format("aim <= {:g} {}  {}", *figure.atMost, figure.unit,
                          figure.value <= *figure.atMost ? "met" : "not met");
    }
    fmt::print("{:<44} {:<34} {:<8} {}\n", figure.name, figure.values, figure.unit, aim);
    std::fflush(stdout);  // the next figure may take seconds
}

}  // namespace orvane::benchmark
