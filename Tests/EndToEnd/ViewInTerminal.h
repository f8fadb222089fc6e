#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "EndToEnd/ViewTest.h"
#include "EndToEnd/Window.h"

namespace orvane {

class ViewInTerminal : public ViewTest {
 protected:
    std::unique_ptr<Window> open(std::vector<std::string> words = {}, int cols = 120, int rows = 30) {
        return std::make_unique<Window>(loop, environment, folder.path("project"), std::move(words), cols, rows);
    }

    ::testing::AssertionResult until(const Window& window, const std::function<bool()>& condition) {
        if (loop.runUntil(condition)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the screen shows\n" << window.text();
    }
    ::testing::AssertionResult untilShows(const Window& window, const std::string& text) {
        return until(window, [&] { return window.shows(text); }) << "wanted: " << text;
    }
    ::testing::AssertionResult untilGone(const Window& window, const std::string& text) {
        return until(window, [&] { return !window.shows(text); }) << "not wanted: " << text;
    }
};

}  // namespace orvane
