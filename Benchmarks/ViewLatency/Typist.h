#pragma once

#include <random>
#include <vector>

#include "ViewLatency/Window.h"

namespace orvane::benchmark {

/// Types at an uneven, quick pace, the same each time.
class Typist {
 public:
    /// Adds the microseconds from each key to its echo.
    [[nodiscard]] Measured<void> type(Window& window, int keys, std::vector<double>& times) {
        for (int key = 0; key < keys; ++key) {
            if (auto paused = window.readFor(std::chrono::microseconds(pause_(random_))); !paused) return paused;
            const auto time = window.press();
            if (!time) return Failure(time.error());
            times.push_back(*time);
        }
        return {};
    }

 private:
    std::mt19937 random_{20310407};
    std::uniform_int_distribution<int> pause_{5'000, 30'000};
};

}  // namespace orvane::benchmark
