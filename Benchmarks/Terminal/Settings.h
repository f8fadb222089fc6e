#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Terminal/Geometry.h"

namespace orvane::benchmark {

struct Settings {
    std::vector<Geometry> geometries = {{.cols = 80, .rows = 25}, {.cols = 200, .rows = 50}};
    int repetitions = 5;
    std::size_t bytes = 4'000'000;  ///< of a workload
    int logLines = 100'000;         ///< for the memory and the reflow
    int pathological = 100'000;     ///< events of a pathological input at its shorter length
    std::string only;

    bool selects(std::string_view name) const { return name.find(only) != std::string_view::npos; }
};

}  // namespace orvane::benchmark
