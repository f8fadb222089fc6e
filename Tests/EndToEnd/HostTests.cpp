// The executable as people and scripts use it: real processes, real files in a folder of the test.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <boost/json.hpp>
#include <csignal>
#include <filesystem>

#include "EndToEnd/HostTest.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "Platform/LineClient.h"
#include "Platform/LineServer.h"
#include "Platform/UnixSocket.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST_F(HostTest, ANewUsersFirstCommands) {
    const auto early = orvane({"list"});
    EXPECT_EQ(early->status(), 3);
    EXPECT_THAT(early->errors, HasSubstr("orvane open PATH"));
    EXPECT_THAT(early->output, IsEmpty());

    const auto opened = orvane({"open", "."});
    EXPECT_EQ(opened->status(), 0) << opened->errors;
    const auto id = Uuid::parse(opened->output.substr(0, 36));
    ASSERT_TRUE(id.has_value()) << opened->output;
    EXPECT_EQ(opened->output, id->lowerText() + "\n");
    EXPECT_EQ(orvane({"list", "--json"})->output, "[]\n");
    EXPECT_EQ(
        orvane({"projects", "--json"})->output,
        Json::write(boost::json::array{
            {{"id", id->lowerText()}, {"name", "project"}, {"path", folder.path("project")}, {"branch", nullptr}}}) +
            "\n");
    EXPECT_THAT(orvane({})->output, HasSubstr(folder.path("project")));
    EXPECT_EQ(orvane({"quit"})->status(), 0);
    EXPECT_EQ(seen().state, InstanceLock::State::free);                 // quit waits for the end
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("run/orvane")));  // no socket is left
    EXPECT_THAT(folder.read("config/Orvane/preferences.json"), HasSubstr("project_add"));
    EXPECT_THAT(orvane({})->output, HasSubstr(id->lowerText().substr(0, 8)));  // and everything is found again
}

TEST_F(HostTest, ProgramsRunInSessions) {
    orvane({"open", "."});
    const auto made = orvane({"new", "shell", "--title", "mine", "--cols", "50", "--rows", "9"});
    ASSERT_EQ(made->status(), 0) << made->errors;
    const std::string id = made->output.substr(0, 8);
    const auto shows = [&](const std::string& text) {
        return loop.runUntil([&] { return orvane({"screen", id, "--scrollback"})->output.contains(text); });
    };
    EXPECT_EQ(orvane({"type", id, R"(PS1=; echo "<$((40+2))>"; stty size; pwd\r)"})->status(), 0);
    EXPECT_TRUE(shows("<42>\n9 50\n" + folder.path("project") + "\n"));
    EXPECT_EQ(orvane({"resize", id, "60x12"})->status(), 0);
    EXPECT_EQ(shell("printf 'stty size\\r' | $0 type " + id + " -")->status(), 0);
    EXPECT_TRUE(shows("12 60\n"));
    EXPECT_THAT(orvane({"screen", id, "--json"})->output, HasSubstr(R"("cols":60)"));
    EXPECT_THAT(orvane({"list"})->output, HasSubstr("mine"));

    const std::string ended = orvane({"new", "custom", "--command", "printf over; exit 3"})->output.substr(0, 8);
    EXPECT_TRUE(loop.runUntil([&] { return orvane({"list"})->output.contains("failed (3)"); }));
    EXPECT_THAT(orvane({"screen", ended})->output, HasSubstr("over"));
    const auto refused = [&](std::vector<std::string> words, int status) {
        EXPECT_EQ(orvane(words)->status(), status) << words[0] << " " << words[1];
    };
    refused({"type", ended, "x"}, 1);
    refused({"type", id, "\\q"}, 2);
    refused({"resize", id, "12"}, 2);
    refused({"new", "spaceship"}, 2);
    refused({"new", "shell", "--cwd", "/nonexistent"}, 1);
    refused({"new", "shell", "--project", "none"}, 1);
    refused({"screen", "zzz"}, 1);

    const pid_t child = [&] {
        const auto list = Json::parse(orvane({"list", "--json"})->output);
        return static_cast<pid_t>(JSONObject(list->as_array().front()).integer("pid", 0));
    }();
    ASSERT_GT(child, 1);
    EXPECT_EQ(orvane({"quit", "--force"})->status(), 0);
    EXPECT_NE(kill(child, 0), 0) << "the shell is left behind";
}

TEST_F(HostTest, AgentsOfTheUsersOwnRunAndOutliveTheHost) {
    orvane({"open", "."});
    EXPECT_THAT(orvane({"agents"})->output, HasSubstr("goose session"));
    const std::string script = folder.write("my-agent", "#!/bin/sh\necho \"at your service, $1\"\nexec sleep 1000\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const auto added =
        orvane({"agents", "add", "Mine", "--command", script + " master", "--busy", "[abc]+", "--busy=x,y"});
    ASSERT_EQ(added->status(), 0) << added->errors;
    const std::string agent = added->output.substr(0, 8);
    EXPECT_EQ(orvane({"agents", "add", "aider"})->status(), 0);
    EXPECT_EQ(orvane({"agents", "edit", agent, "--color", "#6fcf97", "--waiting", "(y|n)"})->status(), 0);

    const auto made = orvane({"new", "custom", "--agent", "mine"});
    ASSERT_EQ(made->status(), 0) << made->errors;
    const std::string id = made->output.substr(0, 8);
    EXPECT_TRUE(loop.runUntil([&] { return orvane({"screen", id})->output.contains("at your service, master\n"); }));
    EXPECT_THAT(orvane({"list"})->output, HasSubstr("  Mine  "));

    const std::tuple<std::vector<std::string>, int, const char*> refused[] = {
        {{"new", "custom", "--agent", "nobody"}, 1, "There are: Mine, aider"},
        {{"new", "shell", "--agent", "mine"}, 2, "--agent"},
        {{"agents", "nosuch"}, 2, "add, edit, remove"},
        {{"agents", "--nosuch"}, 2, "“--nosuch”"},
        {{"agents", "edit", "mine"}, 2, "--waiting"},
        {{"agents", "edit", "mine", "--busy", "(open"}, 1, "“(open”"},
        {{"agents", "add", "bad", "--command", "x\xff"}, 2, "not valid UTF-8"},
        {{"agents", "add", "MINE", "--command", "x"}, 1, "already"},
    };
    for (const auto& [words, status, message] : refused) {
        const auto run = orvane(words);
        EXPECT_EQ(run->status(), status) << ::testing::PrintToString(words);
        EXPECT_THAT(run->errors, HasSubstr(message));
    }
    EXPECT_EQ(orvane({"agents", "remove", "AIDER"})->status(), 0);
    EXPECT_EQ(orvane({"quit", "--force"})->status(), 0);

    orvane({});
    EXPECT_EQ(orvane({"agents", "--json"})->output,
              Json::write(boost::json::array{{{"id", added->output.substr(0, 36)},
                                              {"name", "Mine"},
                                              {"command", script + " master"},
                                              {"symbol", ""},
                                              {"colorHex", "6FCF97"},
                                              {"busyPatterns", {"[abc]+", "x,y"}},
                                              {"waitingPatterns", boost::json::array{"(y|n)"}}}}) +
                  "\n");
    EXPECT_THAT(orvane({"agents"})->output, HasSubstr(agent + "  Mine  6FCF97  3         " + script + " master\n"));
    EXPECT_THAT(orvane({"help", "agents", "add"})->output, HasSubstr("[--busy PATTERN]…"));
}

TEST_F(HostTest, WhatCannotBeLaunchedIsRefusedAndLeavesNoSession) {
    orvane({"open", "."});
    std::filesystem::create_directory(folder.path("gone"));
    orvane({"open", folder.path("gone")});
    std::filesystem::remove(folder.path("gone"));
    const auto vanished = orvane({"new", "shell", "--project", "gone"});
    EXPECT_EQ(vanished->status(), 1);
    EXPECT_EQ(vanished->errors, "There is no folder " + folder.path("gone") + "\n");
    std::filesystem::create_directory(folder.path("gone"));
    EXPECT_EQ(orvane({"new", "shell", "--project", "gone"})->status(), 0);

    // An argument can have as many bytes as the longest command, which leaves no room for what Claude is told.
    const auto tooLong = orvane({"new", "claude", "--command", "claude " + std::string(131'060, 'x')});
    EXPECT_EQ(tooLong->status(), 1);
    EXPECT_THAT(tooLong->errors, HasSubstr("at most 131071 bytes"));
    auto client = LineClient::connect(seen().record.socketPath);
    ASSERT_TRUE(client.has_value());
    const auto reply = client->request(R"({"verb":"new","arguments":{"kind":"custom","command":"a\u0000b"}})");
    EXPECT_THAT(reply.value_or(""), HasSubstr("zero byte"));
    EXPECT_EQ(Json::parse(orvane({"list", "--json"})->output)->as_array().size(), 1U);
}

TEST_F(HostTest, ToolsAreFoundAndInstalledInTheUsersShell) {
    const std::string bin = folder.path("bin");
    std::filesystem::create_directory(bin);
    // Which shell it is depends on the computer.
    for (const char* profile : {".bash_profile", ".zprofile"})
        folder.write(profile, "echo Welcome\nPATH=" + bin + ":/usr/bin:/bin\n");
    folder.write("bin/npm", "#!/bin/sh\nprintf '10%%\\r100%%\\nadded 1 package\\n'\n[ -e " + bin + "/go ] || exit 1\n" +
                                "printf '#!/bin/sh\\necho codex-cli 1.2\\n' > " + bin + "/codex\nchmod +x " + bin +
                                "/codex\n");
    std::filesystem::permissions(bin + "/npm", std::filesystem::perms::owner_all);
    const auto codexRow = [&] {
        const auto list = Json::parse(orvane({"tools", "--json"})->output);
        return list ? Json::write(list->at(1)) : "no JSON";
    };
    EXPECT_EQ(codexRow(), R"({"auth":"notConnected","id":"codex","name":"Codex","state":"missing"})");
    EXPECT_THAT(orvane({"tools"})->output, HasSubstr("To install Codex: orvane tools install codex"));

    const auto failed = orvane({"tools", "install", "codex"});
    EXPECT_EQ(failed->status(), 1);
    EXPECT_THAT(failed->output, HasSubstr("100%\nadded 1 package\n"));
    EXPECT_EQ(failed->errors, "The installation failed.\n");
    folder.write("bin/go", "");
    const auto done = orvane({"tools", "install", "codex"});
    EXPECT_EQ(done->status(), 0) << done->errors;
    EXPECT_THAT(done->output, HasSubstr("100%\nadded 1 package\nThe installation is done.\n"));
    EXPECT_THAT(done->output, HasSubstr("codex-cli 1.2  " + bin + "/codex\n"));
    EXPECT_THAT(orvane({"tools"})->output, HasSubstr("To sign in to Codex: codex login"));
    EXPECT_THAT(codexRow(), HasSubstr(R"("state":"installed","version":"codex-cli 1.2")"));
    EXPECT_EQ(orvane({"tools", "install", "npm"})->status(), 2);
    EXPECT_EQ(orvane({"tools", "install"})->status(), 2);
    EXPECT_EQ(orvane({"tools", "nosuch"})->status(), 2);

    // Whoever follows may go; the installation does not.
    std::filesystem::remove(bin + "/codex");
    folder.write("bin/npm", "#!/bin/sh\necho begun\nuntil [ -e " + bin + "/end ]; do sleep 0.01; done\necho > " + bin +
                                "/ended\nexit 1\n");
    const auto follower = start({"tools", "install", "codex"});
    ASSERT_TRUE(loop.runUntil([&] { return follower->output.contains("begun"); }));
    ASSERT_TRUE(follower->child->signal(SIGINT));
    ASSERT_TRUE(loop.runUntil([&] { return follower->end.has_value(); }));
    folder.write("bin/end", "");
    EXPECT_TRUE(loop.runUntil([&] { return std::filesystem::exists(bin + "/ended"); }));
}

TEST_F(HostTest, WrongUsageIsToldInTheUsersLanguage) {
    const struct {
        std::vector<std::string> words;
        int status;
        const char* message;
    } cases[] = {
        {{"nosuch"}, 2, "“nosuch”"},         {{"open"}, 2, "PATH is missing"},  {{"list", "--what"}, 2, "“--what”"},
        {{"list", "more"}, 2, "“more”"},     {{"help", "nosuch"}, 2, "nosuch"}, {{"rename", "a"}, 2, "NAME"},
        {{"layout", "--save"}, 2, "--save"}, {{"quit"}, 3, "No Orvane host"},
    };
    for (const auto& each : cases) {
        const auto run = orvane(each.words);
        EXPECT_EQ(run->status(), each.status) << each.words[0];
        EXPECT_THAT(run->errors, HasSubstr(each.message)) << each.words[0];
        EXPECT_THAT(run->output, IsEmpty()) << each.words[0];
    }
    environment["LANG"] = "de_DE.UTF-8";
    EXPECT_THAT(orvane({"open"})->errors, HasSubstr("PATH fehlt"));
    std::filesystem::create_directories(folder.path("config/Orvane"));
    folder.write("config/Orvane/preferences.json", R"({"language":"fr"})");
    EXPECT_THAT(orvane({"open"})->errors, HasSubstr("Il manque PATH"));
    EXPECT_THAT(orvane({"open", "/no/such/place"})->errors, HasSubstr("n’existe pas"));
}

TEST_F(HostTest, PathsMeanTheSameFolderHoweverTheyAreTyped) {
    const std::string project = folder.path("project");
    std::filesystem::create_directory(project + "/below");
    std::filesystem::create_directory_symlink(project, folder.path("link"));
    const auto opened = orvane({"open", folder.path("link")});
    ASSERT_EQ(opened->status(), 0) << opened->errors;
    const std::string in = "cd '" + folder.path("link") + "' && ";
    for (const char* line :
         {"\"$0\" rename . here", "\"$0\" rename ./below/.. here", "\"$0\" layout --project ../link/"}) {
        const auto run = shell(in + line);
        EXPECT_EQ(run->status(), 0) << line << run->errors;
    }
    EXPECT_EQ(shell(in + "\"$0\" open .")->output, opened->output);

    const auto unset = orvane({"open", ""});
    EXPECT_EQ(unset->status(), 2);
    EXPECT_THAT(unset->errors, HasSubstr("PATH is missing"));
    EXPECT_THAT(shell("cd below && rmdir ../below && \"$0\" open .")->errors, HasSubstr("There is no folder"));
    std::filesystem::create_directory(folder.path("bad\xff"));
    std::filesystem::create_directory_symlink(folder.path("bad\xff"), folder.path("to-bad"));
    for (const char* name : {"bad\xff", "to-bad"}) {
        const auto bad = orvane({"open", folder.path(name)});
        EXPECT_EQ(bad->status(), 1) << name;
        EXPECT_THAT(bad->errors, HasSubstr("not valid UTF-8")) << name;
    }
}

TEST_F(HostTest, OutputThatCannotBeWrittenIsAnErrorAndGoesNowhereElse) {
    // A host that a command without standard descriptors starts comes up like any other.
    EXPECT_EQ(shell("exec \"$0\" open . <&- >&- 2>&-")->status(), 1);
    ASSERT_TRUE(hostRuns());
    for (const char* line : {"\"$0\" list >&-", "\"$0\" list >/dev/full", "\"$0\" --help >/dev/full"}) {
        const auto run = shell(line);
        EXPECT_EQ(run->status(), 1) << line;
        EXPECT_THAT(run->errors, HasSubstr("could not be written")) << line;
    }
}

TEST_F(HostTest, OfManyStartedAtOnceOneStays) {
    std::vector<std::shared_ptr<Invocation>> starts;
    for (int count = 0; count < 8; ++count)
        starts.push_back(start({"host"}));
    const auto ended = [&] {
        return std::ranges::count_if(starts, [](const auto& run) { return run->end.has_value(); });
    };
    ASSERT_TRUE(loop.runUntil([&] { return ended() == 7; }, 60s));
    ASSERT_TRUE(hostRuns());
    for (const auto& run : starts) {
        if (run->end) {
            EXPECT_EQ(run->status(), 0) << run->errors;
        } else {
            EXPECT_EQ(run->child->pid(), hostProcess());
        }
    }
    EXPECT_EQ(orvane({"list", "--json"})->output, "[]\n");
}

TEST_F(HostTest, TheWordForAStarterGoesToNobodyElse) {
    // Started in the background by other means, here with the descriptor of the word free.
    const auto host = startProgram({"/bin/sh", "-c", "exec \"$0\" host --background 3>&-", ORVANE_EXECUTABLE});
    ASSERT_TRUE(hostRuns());
    EXPECT_EQ(orvane({"list"})->status(), 0);
    EXPECT_EQ(orvane({"quit"})->status(), 0);
    EXPECT_TRUE(loop.runUntil([&] { return host->end.has_value(); }));
}

TEST_F(HostTest, AKilledHostLeavesNothingThatStopsTheNext) {
    ASSERT_EQ(orvane({"open", "."})->status(), 0);
    const pid_t first = hostProcess();
    loop.advance(1s);
    const std::string projects = orvane({"projects", "--json"})->output;
    // What was answered may still be on its way to the disk; a second start must not wait for it.
    ASSERT_TRUE(loop.runUntil([&] { return !folder.read("data/Orvane/state.json").empty(); }));
    ASSERT_EQ(kill(first, SIGKILL), 0);
    ASSERT_TRUE(loop.runUntil([&] { return seen().state == InstanceLock::State::free; }));
    EXPECT_EQ(orvane({"projects"})->status(), 3);
    EXPECT_EQ(orvane({})->status(), 0);
    EXPECT_NE(hostProcess(), first);
    EXPECT_EQ(orvane({"projects", "--json"})->output, projects);
}

TEST_F(HostTest, ACommandThatMeetsAnEndingHostAsksTheNext) {
    std::filesystem::create_directories(folder.path("data/Orvane"));
    auto lock = InstanceLock::acquire(folder.path("data/Orvane/host.lock"));
    ASSERT_TRUE(lock && *lock);
    const std::string path = folder.path("run/socket");
    auto ending = UnixSocket::listenAt(path);
    ASSERT_TRUE(ending && (*lock)->publish({.processId = getpid(), .socketPath = path}));
    const auto list = start({"list", "--json"});
    pollfd waiting{.fd = ending->number(), .events = POLLIN, .revents = 0};
    ASSERT_EQ(poll(&waiting, 1, 20000), 1);
    // The connection is never taken: the host ends, and a new one stands up in its place.
    ending->close();
    LineServer server(
        loop,
        {.onRequest = [](const auto& client, std::string_view) { client->reply(R"({"ok":true,"result":[]})"); },
         .faultReply = [](LineServer::Fault) { return std::string(); }},
        {});
    auto next = UnixSocket::listenAt(path);
    ASSERT_TRUE(next);
    server.serve(std::move(*next));
    EXPECT_TRUE(loop.runUntil([&] { return list->end.has_value(); }));
    EXPECT_EQ(list->output, "[]\n") << list->errors;
}

TEST_F(HostTest, ALostSocketIsMadeAnew) {
    ASSERT_EQ(orvane({"open", "."})->status(), 0);
    const pid_t host = hostProcess();
    std::filesystem::remove(seen().record.socketPath);
    EXPECT_EQ(orvane({"list"})->status(), 0);
    std::filesystem::remove_all(folder.path("run/orvane"));
    EXPECT_EQ(orvane({"list"})->status(), 0);
    // The runtime folder itself goes when the login session ends.
    std::filesystem::remove_all(folder.path("run"));
    EXPECT_EQ(orvane({"list"})->status(), 0);
    EXPECT_THAT(seen().record.socketPath, HasSubstr(folder.path("tmp")));
    EXPECT_EQ(hostProcess(), host);
}

TEST_F(HostTest, ALostLockIsTakenAgain) {
    ASSERT_EQ(orvane({"open", "."})->status(), 0);
    const std::string projects = orvane({"projects", "--json"})->output;
    const pid_t host = hostProcess();
    for (const char* lost : {"data/Orvane/host.lock", "data"}) {
        std::filesystem::remove_all(folder.path(lost));
        ASSERT_TRUE(loop.runUntil([&] { return hostProcess() == host; })) << lost;
        EXPECT_EQ(orvane({"projects", "--json"})->output, projects);
    }
    EXPECT_EQ(orvane({"quit"})->status(), 0);
    EXPECT_EQ(orvane({})->status(), 0);
    EXPECT_EQ(orvane({"projects", "--json"})->output, projects);
}

TEST_F(HostTest, SignalsStopTheHostAsItsKindAsks) {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        const auto host = start({"host"});
        ASSERT_TRUE(hostRuns());
        ASSERT_EQ(kill(hostProcess(), signal), 0);
        ASSERT_TRUE(loop.runUntil([&] { return host->end.has_value(); })) << signal;
        EXPECT_EQ(host->status(), 0) << host->errors;
    }
    ASSERT_EQ(orvane({"open", "."})->status(), 0);
    const pid_t background = hostProcess();
    EXPECT_EQ(getsid(background), background);  // of no terminal
    ASSERT_EQ(kill(background, SIGHUP), 0);
    EXPECT_EQ(orvane({"list"})->status(), 0);
    EXPECT_EQ(hostProcess(), background);
}

TEST_F(HostTest, BadClientsDoNoHarm) {
    ASSERT_EQ(orvane({"open", "."})->status(), 0);
    const std::string socket = seen().record.socketPath;
    const auto silent = UnixSocket::connectTo(socket);
    ASSERT_TRUE(silent.has_value());
    auto client = LineClient::connect(socket);
    ASSERT_TRUE(client.has_value());
    const auto codeOf = [&](const std::string& line) {
        const auto reply = client->request(line);
        const auto json = reply ? Json::parse(*reply) : std::nullopt;
        return json ? JSONObject(*json).object("error").string("code") : reply ? *reply : reply.error().message();
    };
    EXPECT_EQ(codeOf("this is no JSON"), "malformed");
    EXPECT_EQ(codeOf(std::string(10 << 20, 'x')), "tooLong");
    EXPECT_EQ(codeOf(R"({"verb":"list"})"), "");
    // One that writes and leaves without reading.
    for (int count = 0; count < 50; ++count) {
        const auto rude = UnixSocket::connectTo(socket);
        ASSERT_TRUE(rude.has_value());
        const std::string line = "{\"verb\":\"projects\"}\n";
        send(rude->number(), line.data(), line.size(), MSG_NOSIGNAL);
    }
    EXPECT_EQ(orvane({"list"})->status(), 0);
}

TEST_F(HostTest, AFolderThatCannotBeUsedIsAClearError) {
    folder.write("data", "a file where a folder is needed");
    const auto host = orvane({"host"});
    EXPECT_EQ(host->status(), 1);
    EXPECT_THAT(host->errors, HasSubstr(folder.path("data")));
    const auto opened = orvane({"open", "."});
    EXPECT_EQ(opened->status(), 1);
    EXPECT_THAT(opened->errors, HasSubstr(folder.path("data")));
}

}  // namespace
}  // namespace orvane
