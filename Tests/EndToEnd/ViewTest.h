#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "EndToEnd/HostTest.h"

namespace orvane {

/// What shells and scripted agents find in sessions: a prompt, and a `claude` on the path.
class ViewTest : public HostTest {
 protected:
    ViewTest() {
        environment["SHELL"] = "/bin/sh";
        environment["PS1"] = "ready> ";
        folder.write(".bash_profile", "PATH=" + folder.path("bin") + ":/usr/bin:/bin\nPS1='ready> '\n");
        // Its mark of an output without a line end stays on the screen when the size changes right then, as it does
        // when a session's pane gets its place.
        folder.write(".zshrc", "PROMPT='ready> '\nunsetopt PROMPT_SP\n");
        folder.write(".zprofile", "PATH=" + folder.path("bin") + ":/usr/bin:/bin\n");
        // Who has started it before is not welcomed again.
        std::filesystem::create_directories(folder.path("config/Orvane"));
        folder.write("config/Orvane/preferences.json", R"({"view.welcomed":true})");
        std::filesystem::create_directory(folder.path("bin"));
        std::filesystem::create_symlink(ORVANE_SCRIPTED_AGENT, folder.path("bin/claude"));
        environment["ORVANE_TEST_SCENARIO"] = std::string(ORVANE_SOURCE_DIR) + "/Tests/Agents/Scenarios/claude.agent";
    }

    std::string newSession(std::vector<std::string> words) {
        words.insert(words.begin(), "new");
        return orvane(words)->output.substr(0, 8);
    }
};

}  // namespace orvane
