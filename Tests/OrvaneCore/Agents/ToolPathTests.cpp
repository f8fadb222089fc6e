#include <gtest/gtest.h>

#include <map>
#include <set>

#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/LoginEnvironment.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "Support/ShellRun.h"

namespace orvane {
namespace {

using Folders = std::vector<std::string>;

TEST(ToolPathRescueTest, looksIntoTheNewestVersionFirst) {
    const std::map<std::string, Folders> listed = {
        {"/h/.nvm/versions/node", {"v9.11.2", "alias", "v10.0.0", "v22.3.0-rc.1", "v22.3.0", "v22.10", "22.3.0.1"}},
        {"/h/.local/share/fnm/node-versions", {"v8.1", "v99999999999999999999.1"}}};
    const auto folders = ToolPathRescue::candidates("/h/", [&](const std::string& folder) {
        const auto found = listed.find(folder);
        return found == listed.end() ? Folders() : found->second;
    });
    Folders expected;
    for (const char* version : {"v22.10", "22.3.0.1", "v22.3.0", "v22.3.0-rc.1", "v10.0.0", "v9.11.2", "alias"})
        expected.push_back("/h/.nvm/versions/node/" + std::string(version) + "/bin");
    for (const char* version : {"v99999999999999999999.1", "v8.1"})
        expected.push_back("/h/.local/share/fnm/node-versions/" + std::string(version) + "/installation/bin");
    for (const char* folder : {"/h/.volta/bin", "/h/.bun/bin", "/h/Library/pnpm", "/h/.local/share/pnpm",
                               "/h/.yarn/bin", "/h/.npm-global/bin", "/h/.local/bin", "/opt/homebrew/bin",
                               "/home/linuxbrew/.linuxbrew/bin", "/h/.linuxbrew/bin", "/usr/local/bin"})
        expected.push_back(folder);
    EXPECT_EQ(folders, expected);
}

TEST(ToolPathRescueTest, addsOnlyHostsThatThePathLacks) {
    const std::set<std::string> programs = {"/a/codex", "/c/gemini", "/c/claude", "/d/npm"};
    const auto isExecutable = [&](const std::string& path) { return programs.contains(path); };
    EXPECT_EQ(ToolPathRescue::hosting({"/c", "/b", "/a", "/c", "/d"}, isExecutable), (Folders{"/c", "/a"}));
    EXPECT_EQ(ToolPathRescue::missing({"/a", "/b", "/c"}, "/b:/a/x:/cc"), (Folders{"/a", "/c"}));

    const EnvironmentEntries environment = {"PATHS=/x", "PATH=/bin", "A=PATH=", "B"};
    EXPECT_EQ(ToolPathRescue::appending({}, environment), environment);
    EXPECT_EQ(ToolPathRescue::appending({"/a", "/b"}, environment)[1], "PATH=/bin:/a:/b");
    EXPECT_EQ(ToolPathRescue::appending({"/a"}, {"A=1"}),
              (EnvironmentEntries{"A=1", "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/a"}));
    EXPECT_EQ(ToolPathRescue::appending({"/a"}, {"PATH="}),
              (EnvironmentEntries{"PATH=/usr/bin:/bin:/usr/sbin:/sbin:/a"}));
}

TEST(ToolPathRescueTest, preludeWorksInAShell) {
    EXPECT_EQ(ToolPathRescue::shellPrelude({}), "");
    EXPECT_EQ(ToolPathRescue::shellPrelude({"/a b", "/it's"}),
              R"(for ov_d in '/a b' '/it'\''s'; do case ":$PATH:" in *":$ov_d:"*) ;; *) PATH="$PATH:$ov_d";; esac; )"
              "done; export PATH; unset ov_d; ");
    const std::string prelude = ToolPathRescue::shellPrelude({"/a b", "/bin", "/it's", "/$x*"});
    EXPECT_EQ(outputOfBash("PATH=/usr/bin:/bin; " + prelude + R"(echo "$PATH${ov_d-}")"),
              "/usr/bin:/bin:/a b:/it's:/$x*\n");
}

TEST(LaunchShellTest, isZshOrElseTheUsersOwnIfItIsKnown) {
    for (const auto& [login, present, chosen] :
         std::vector<std::tuple<std::string, std::set<std::string>, std::string>>{
             {"/opt/bash", {"/bin/zsh", "/opt/bash"}, "/bin/zsh"},
             {"/opt/zsh", {"/opt/zsh"}, "/opt/zsh"},
             {"/opt/bash", {"/opt/bash"}, "/opt/bash"},
             {"/opt/bash", {}, "/bin/bash"},
             {"bash", {"bash"}, "/bin/bash"},
             {"/usr/bin/fish", {"/usr/bin/fish"}, "/bin/bash"},
             {"", {}, "/bin/bash"}})
        EXPECT_EQ(LaunchShell::choose(login, [&](const auto& path) { return present.contains(path); }), chosen);
}

TEST(LoginEnvironmentTest, readsWhatAShellPrints) {
    const std::string output = outputOfBash("echo 'Hi A=1'; export X=$'two\\nlines' Y==; unset Z; " +
                                            std::string(LoginEnvironment::script) + "; printf 'Bye=1'");
    const auto entries = LoginEnvironment::parse(output);
    ASSERT_TRUE(entries);
    EXPECT_EQ(EnvironmentList::value(*entries, "X"), "two\nlines");
    EXPECT_EQ(EnvironmentList::value(*entries, "Y"), "=");
    for (const char* name : {"A", "Bye", "Z", ""})
        EXPECT_EQ(EnvironmentList::value(*entries, name), std::nullopt) << name;
}

TEST(LoginEnvironmentTest, takesNothingThatIsNoVariable) {
    using namespace std::string_literals;
    const std::string marker = "\0OV-ENV\0"s;
    EXPECT_EQ(LoginEnvironment::parse("A=1\0banner"s + marker + "B=2\0\0=x\0none\0C=\xC3\0D=\0"s),
              (EnvironmentEntries{"B=2", "D="}));
    for (const std::string& output : {""s, "A=1\0"s, "OV-ENV\0A=1\0"s, marker, marker + "A=1"s,
                                      marker + "A=1\0"s + std::string(LoginEnvironment::maximumOutputSize, 'x')})
        EXPECT_EQ(LoginEnvironment::parse(output), std::nullopt) << output.substr(0, 20);
    EXPECT_EQ(LoginEnvironment::rescued({"PATH=/a:/b", "A=1"}, {"/b", "/c"}),
              (EnvironmentEntries{"PATH=/a:/b:/c", "A=1"}));
    EXPECT_EQ(LoginEnvironment::rescued({"PATH=/a:/b"}, {"/a"}), (EnvironmentEntries{"PATH=/a:/b"}));
}

}  // namespace
}  // namespace orvane
