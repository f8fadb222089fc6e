#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

struct Result {
    int status = -1;
    std::string output;
};

/// What a shell gets of `orvane terminal ARGUMENTS`.
Result terminal(const std::string& arguments) {
    const std::string command = std::string(ORVANE_EXECUTABLE) + " terminal " + arguments;
    std::FILE* pipe = popen(command.c_str(), "r");
    Result result;
    std::array<char, 4096> bytes;
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), pipe))
        result.output.append(bytes.data(), count);
    result.status = WEXITSTATUS(pclose(pipe));
    return result;
}

TEST(TerminalVerbsTest, runEndsAsItsCommandDoesAndShowsItsScreen) {
    struct Case {
        std::string arguments;
        int status;
        std::string output;  ///< a part of it
    };
    const Case cases[] = {
        {"run --rows 2 -- printf 'one\\033[31mtwo'", 0, "onetwo\n\n"},
        {"run --rows 2 -- sh -c 'printf bye; exit 7'", 7, "bye"},
        {"run --rows 2 sh -c 'kill -TERM $$'", 128 + 15, ""},
        {"run --rows 2 --timeout 1 -- sh -c 'trap \"\" HUP TERM; printf slow; sleep 60'", 124, "slow"},
        {"run --rows 2 -- /nonexistent 2>&1", 125, "/nonexistent"},
        {"run --rows 2 -- no-such-program-anywhere 2>&1", 125, "no-such-program-anywhere"},
        {"run --rows 2 --record /nonexistent/file -- true 2>&1", 125, "/nonexistent/file"},
        {"run --rows 0 -- true 2>&1", 2, "0"},
        {"run --rows 2 2>&1", 2, "COMMAND"},
        {"run --cols 30 --rows 4 -- sh -c 'stty size; echo $TERM'", 0, "4 30\nxterm-256color\n"},
        {"run --cols 30 --rows 2 -- sh -c 'printf \"\\033[8;5;40t\"; sleep 0.1; stty size'", 0, "5 40"},
        {"run --json --rows 1 -- printf '\\033[1mb'", 0, R"("cells":[{"a":["bold"],"t":"b"}])"},
        {"feed --rows 1 --cols 10 --json </dev/null", 0, R"("lines":[{"cells":[],"wrapped":false}])"},
    };
    for (const Case& each : cases) {
        const Result result = terminal(each.arguments);
        EXPECT_EQ(result.status, each.status) << each.arguments << "\n" << result.output;
        EXPECT_TRUE(result.output.contains(each.output)) << each.arguments << "\n" << result.output;
    }
}

TEST(TerminalVerbsTest, aRecordingThatIsFedGivesTheSameScreen) {
    TemporaryFolder folder;
    const std::string file = folder.path() + "/raw";
    const Result run = terminal("run --json --record " + file +
                                " -- sh -c 'stty -onlcr; ls -la --color=always /; tput cup 3 4; printf é'");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(terminal("feed --json < " + file).output, run.output);

    // And one with times, whose program makes its terminal another size.
    const std::string cast = folder.path("a.cast");
    ASSERT_EQ(terminal("run --cols 30 --rows 4 --record " + cast +
                       " -- sh -c 'printf \"\\303\"; sleep 0.1; printf \"\\251\\033[8;5;40t\"'")
                  .status,
              0);
    const std::string lines = folder.read("a.cast");
    EXPECT_TRUE(lines.starts_with(R"({"version": 2, "width": 30, "height": 4)")) << lines;
    EXPECT_TRUE(lines.contains(R"("r", "40x5"])")) << lines;
    EXPECT_TRUE(lines.contains(R"("o", "é\u001b[8;5;40t"])")) << lines;
}

}  // namespace
}  // namespace orvane
