// Sessions and the state file across the end of a host, in order and out of it.

#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <charconv>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "EndToEnd/HostTest.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "Platform/LineClient.h"

namespace orvane {
namespace {

class RestoreEndToEnd : public HostTest {
 protected:
    /// Title, folder and place of each session, sorted.
    using Rows = std::multiset<std::string>;

    Rows listed() {
        const auto list = Json::parse(orvane({"list", "--json"})->output);
        Rows rows;
        if (!list || !list->is_array()) return rows;
        for (const JsonValue& each : list->as_array()) {
            const JSONObject row(each);
            if (row.string("status") != "failed") rows.insert(row.string("title") + " " + row.string("cwd"));
        }
        return rows;
    }

    JsonValue state() const { return Json::parse(folder.read("data/Orvane/state.json")).value_or(nullptr); }

    /// "title@place" of each session that the state file has.
    Rows saved() const {
        Rows rows;
        const JsonValue document = state();
        JSONObject(document).object("restorable").forEach([&](std::string_view, const JsonValue& sessions) {
            for (const JsonValue& each : sessions.as_array()) {
                const JSONObject session(each);
                rows.insert(session.string("title") + "@" + std::to_string(session.integer("visibleSlot", -1)));
            }
        });
        return rows;
    }

    void killHost() {
        ASSERT_EQ(kill(hostProcess(), SIGKILL), 0);
        ASSERT_TRUE(loop.runUntil([&] { return seen().state == InstanceLock::State::free; }));
    }
};

TEST_F(RestoreEndToEnd, ShellsComeBackInTheirPanesAfterAQuitASignalAndAKill) {
    orvane({"open", "."});
    orvane({"layout", "grid"});
    for (const std::string name : {"a", "b", "c"}) {
        std::filesystem::create_directory(folder.path("project/" + name));
        const auto made = orvane({"new", "shell", "--title", name, "--cwd", name});
        ASSERT_EQ(made->status(), 0) << made->errors;
    }
    const Rows sessions = listed();
    const Rows places = {"a@0", "b@1", "c@2"};
    ASSERT_EQ(sessions.size(), 3U);
    ASSERT_TRUE(loop.runUntil([&] { return saved() == places; }));
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"quit", [&] { EXPECT_EQ(orvane({"quit", "--force"})->status(), 0); }},
        {"SIGTERM",
         [&] {
             ASSERT_EQ(kill(hostProcess(), SIGTERM), 0);
             ASSERT_TRUE(loop.runUntil([&] { return seen().state == InstanceLock::State::free; }));
         }},
        {"SIGKILL", [&] { killHost(); }},
    };
    for (const auto& [name, end] : ends) {
        end();
        EXPECT_EQ(saved(), places) << name;
        ASSERT_EQ(orvane({})->status(), 0);
        ASSERT_TRUE(loop.runUntil([&] { return listed() == sessions; })) << name;
        EXPECT_EQ(saved(), places) << name;
    }
    const auto list = Json::parse(orvane({"list", "--json"})->output);
    for (const JsonValue& each : list->as_array()) {
        const std::string id = JSONObject(each).string("id");
        EXPECT_EQ(orvane({"type", id, R"(echo "<$((40+2))>"; pwd\r)"})->status(), 0);
        const std::string cwd = JSONObject(each).string("cwd");
        EXPECT_TRUE(loop.runUntil([&] {
            const std::string screen = orvane({"screen", id})->output;
            return screen.contains("<42>") && screen.contains(cwd);
        })) << cwd;
    }
    orvane({"close", JSONObject(list->as_array().front()).string("id")});
    EXPECT_TRUE(loop.runUntil([&] { return saved().size() == 2; })) << "what was closed stays away, after a kill too";
}

/// How often the host is killed. ORVANE_KILLS=200 for a long run by hand.
int kills() {
    constexpr int inShortRun = 12;
    const std::string text = variable(currentEnvironment(), "ORVANE_KILLS");
    int count = inShortRun;
    std::from_chars(text.data(), text.data() + text.size(), count);
    return count;
}

TEST_F(RestoreEndToEnd, AKillAtAnyMomentLeavesAStateThatWasSaved) {
    orvane({"open", "."});
    ASSERT_EQ(orvane({"new", "shell", "--title", "s"})->status(), 0);
    const auto projectOf = [](const JsonValue& state) {
        const JSONObject document(state);
        return document.array("projects").size() == 1 ? JSONObject(document.array("projects")[0]).string("name") : "";
    };
    ASSERT_TRUE(loop.runUntil([&] { return saved().size() == 1; }));
    // Long and of changing length, so that a name that was cut or mixed with another is not one of them.
    const auto nameOf = [](int edit) {
        return std::string(static_cast<std::size_t>(edit * 37 % 3000), 'x') + std::to_string(edit);
    };
    std::map<std::string, int> edits = {{projectOf(state()), 0}};
    int edit = 0;
    int kept = 0;
    int changes = 0;
    std::mt19937 random(7);
    std::uniform_int_distribution<int> wait(0, 40'000);
    for (int round = 0; round < kills(); ++round) {
        ASSERT_TRUE(hostRuns());
        auto client = LineClient::connect(seen().record.socketPath);
        ASSERT_TRUE(client.has_value());
        const std::jthread killer([process = hostProcess(), time = std::chrono::microseconds(wait(random))] {
            std::this_thread::sleep_for(time);
            kill(process, SIGKILL);
        });
        bool isAnswered = true;
        while (isAnswered) {
            ++edit;
            edits[nameOf(edit)] = edit;
            const JsonValue request{{"verb", "rename"},
                                    {"arguments", {{"project", folder.path("project")}, {"name", nameOf(edit)}}}};
            const auto reply = client->request(Json::write(request));
            isAnswered = reply.has_value();
            if (isAnswered) {
                ASSERT_TRUE(reply->contains("\"ok\":true")) << *reply;
            }
        }
        ASSERT_TRUE(loop.runUntil([&] { return seen().state == InstanceLock::State::free; }));
        const auto found = edits.find(projectOf(state()));
        ASSERT_NE(found, edits.end()) << "round " << round << ": " << folder.read("data/Orvane/state.json");
        EXPECT_GE(found->second, kept) << "round " << round << ": an older state came back";
        changes += found->second > kept ? 1 : 0;
        kept = found->second;
        EXPECT_EQ(saved(), Rows{"s@0"}) << "round " << round;
        ASSERT_EQ(orvane({})->status(), 0);
    }
    EXPECT_GT(changes, kills() / 4) << "hardly a kill met a state in the making";
    EXPECT_TRUE(loop.runUntil([&] { return listed().size() == 1; })) << "and after all that the session is back";
    EXPECT_EQ(orvane({"rename", ".", "end"})->status(), 0);
    EXPECT_EQ(orvane({"quit", "--force"})->status(), 0);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("data/Orvane")))
        EXPECT_TRUE(std::set<std::string>({"state.json", "host.lock", "agents.json"}).contains(entry.path().filename()))
            << entry.path() << " is left of a write that was killed";
}

}  // namespace
}  // namespace orvane
