// What people and scripts do with agents in terminals, with scripted agents in the place of the real ones.

#include <gmock/gmock.h>

#include <algorithm>
#include <boost/json.hpp>
#include <fstream>

#include "EndToEnd/HostTest.h"
#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Runs as `claude` and so on. Hooks run what --settings says, as the real one does.
constexpr const char* agentScript = R"sh(#!/bin/sh
name=${0##*/}
: ${AGENT:=$HOME/$name}
export ORVANE_TEST_SCENARIO="$SCENARIOS/${SCENARIO:-$name}.agent"
export ORVANE_TEST_SCENARIO_SET="received=$AGENT${SETTINGS:+
$SETTINGS}"
echo $$ > "$AGENT.pid"
for word in "$@"; do
    [ "$option" = --settings ] && export HOOKS="$word"
    option=$word
done
[ -n "$HOOKS" ] && ORVANE_TEST_SCENARIO_SET="$ORVANE_TEST_SCENARIO_SET
hook=$HOME/bin/hook"
[ -n "$ELSEWHERE" ] && HOME=$ELSEWHERE
exec "$SCRIPTED_AGENT" "$@"
)sh";

constexpr const char* hookScript = R"sh(#!/bin/sh
input=$(cat)
name=$(printf %s "$input" | sed 's/.*"hook_event_name":"\([A-Za-z]*\)".*/\1/')
case $input in *'"source":"clear"'*) matcher='"matcher":"clear",' ;; esac
command=$(printf %s "$HOOKS" | grep -o "\"$name\":\[{$matcher\"hooks\":\[{\"type\":\"command\",\"command\":\"[^}]*")
eval "$(printf %s "$command" | sed 's/.*"command":"//; s/"$//; s/\\"/"/g')"
)sh";

class AgentVerbsTest : public HostTest {
 protected:
    struct Agent {
        std::string id;
        std::string file;  ///< of the prompts it gets
    };

    AgentVerbsTest() {
        environment["SCENARIOS"] = std::string(ORVANE_SOURCE_DIR) + "/Tests/Agents/Scenarios";
        environment["SCRIPTED_AGENT"] = ORVANE_SCRIPTED_AGENT;
        std::filesystem::create_directory(folder.path("bin"));
        for (const char* profile : {".bash_profile", ".zprofile"})
            folder.write(profile, "PATH=" + folder.path("bin") + ":/usr/bin:/bin\n");
        for (const char* name : {"claude", "codex", "gemini", "own"})
            writeProgram(name, agentScript);
        writeProgram("hook", hookScript);
        orvane({"open", "."});
    }

    void writeProgram(const std::string& name, const std::string& text) const {
        std::filesystem::permissions(folder.write("bin/" + name, text), std::filesystem::perms::owner_all);
    }

    /// A session whose agent has drawn its composer. Settings are NAME=VALUE.
    Agent begin(const std::string& kind, const std::string& settings = "") {
        const Agent agent = beginUnready(kind, settings);
        EXPECT_TRUE(until(agent, [](const JSONObject& status) { return status.contains("draft"); })) << kind;
        return agent;
    }

    Agent beginUnready(const std::string& kind, const std::string& settings = "") {
        const std::string file = folder.path(kind + "." + std::to_string(++agents_));
        const std::string program = kind == "custom" ? "own" : kind;
        const std::string command = "env AGENT=" + file + " SETTINGS='" + settings + "' " + program;
        const auto made = orvane({"new", kind, "--command", command});
        EXPECT_EQ(made->status(), 0) << made->errors;
        return {.id = made->output.substr(0, 8), .file = file};
    }

    /// The prompts that an agent got, in their order.
    static std::vector<std::string> received(const Agent& agent) {
        std::vector<std::string> prompts;
        std::ifstream file(agent.file);
        for (std::string line; std::getline(file, line);)
            prompts.emplace_back(Json::parse(line).value_or("broken").as_string());
        return prompts;
    }

    bool untilReceived(const Agent& agent, const std::string& prompt) {
        return loop.runUntil([&] { return std::ranges::count(received(agent), prompt) > 0; });
    }

    JsonValue status(const Agent& agent) {
        return Json::parse(orvane({"status", agent.id, "--json"})->output).value_or(JsonValue());
    }

    bool until(const Agent& agent, const std::function<bool(const JSONObject&)>& condition) {
        const bool holds = loop.runUntil([&] {
            const JsonValue now = status(agent);
            return now.is_object() && condition(JSONObject(now));
        });
        if (!holds) ADD_FAILURE() << Json::write(status(agent)) << "\n" << orvane({"screen", agent.id})->output;
        return holds;
    }
    bool untilStatus(const Agent& agent, const std::string& name) {
        return until(agent, [&](const JSONObject& status) { return status.string("status") == name; });
    }
    bool untilHeldBy(const Agent& agent, const std::string& name) {
        return until(agent, [&](const JSONObject& status) { return status.string("heldBy") == name; });
    }
    bool untilShown(const Agent& agent, const std::string& text) {
        return loop.runUntil([&] { return orvane({"screen", agent.id})->output.contains(text); });
    }
    /// The states of the prompts that were not delivered.
    std::vector<std::string> promptStates(const Agent& agent) {
        std::vector<std::string> states;
        const JsonValue now = status(agent);
        for (const JsonValue& prompt : now.at("prompts").as_array())
            states.push_back(JSONObject(prompt).string("state"));
        return states;
    }

    /// Runs the verb and expects its exit status.
    std::shared_ptr<Invocation> run(int status, std::vector<std::string> words) {
        auto done = orvane(words);
        EXPECT_EQ(done->status(), status) << ::testing::PrintToString(words) << done->output << done->errors;
        return done;
    }
    void send(const Agent& agent, const std::string& prompt) { run(0, {"send", agent.id, prompt}); }

    /// What waits for the model goes on.
    void goOn(const Agent& agent) const {
        std::ifstream file(agent.file + ".pid");
        pid_t pid = 0;
        file >> pid;
        EXPECT_EQ(kill(pid, SIGUSR1), 0);
    }

 private:
    int agents_ = 0;
};

class EachAgentTest : public AgentVerbsTest, public ::testing::WithParamInterface<const char*> {
 protected:
    std::string kind() const { return GetParam(); }
    /// A prompt that makes it ask whether it may run a command.
    std::string asking() const { return kind() == "codex" ? "fake:esc" : "fake:bash"; }
};
INSTANTIATE_TEST_SUITE_P(Kinds, EachAgentTest, ::testing::Values("claude", "codex", "gemini"),
                         [](const auto& kind) { return std::string(kind.param); });

std::string repeated(const std::string& text, std::size_t length) {
    std::string all;
    while (all.size() < length)
        all += text;
    all.resize(length);
    return all;
}

TEST_P(EachAgentTest, GetsEachPromptOnceAndWhole) {
    const Agent agent = begin(kind());
    const std::vector<std::string> prompts = {
        "Good morning",
        repeated("a text that no row can hold, ", 700),
        repeated("twenty thousand characters, ", 20000) + "é",
        "Many lines:\n\n    - one\n    - two é漢🙂\n\tand a tab\nlast",
        repeated("line\n", 300) + "end",
        "fake:slow",
        "while it works",
        asking(),
        "behind the question",
        "not into the draft",
        "  /looks like a command, is a path/",
    };
    for (std::size_t at = 0; at < 5; ++at) {
        send(agent, prompts[at]);
        EXPECT_TRUE(untilReceived(agent, prompts[at])) << prompts[at] << orvane({"screen", agent.id})->output;
    }
    send(agent, prompts[5]);
    EXPECT_TRUE(untilStatus(agent, "working"));
    send(agent, prompts[6]);
    EXPECT_TRUE(untilHeldBy(agent, "working"));
    EXPECT_TRUE(untilReceived(agent, prompts[5]));
    goOn(agent);
    EXPECT_TRUE(untilReceived(agent, prompts[6]));

    send(agent, prompts[7]);
    EXPECT_TRUE(untilStatus(agent, "waiting"));
    send(agent, prompts[8]);
    EXPECT_TRUE(untilHeldBy(agent, "dialog"));
    run(0, {"approve", agent.id});
    EXPECT_TRUE(untilReceived(agent, prompts[8]));

    run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"});
    run(0, {"type", agent.id, "half a draft"});
    EXPECT_TRUE(until(agent, [](const JSONObject& status) { return status.string("draft") == "half a draft"; }));
    send(agent, prompts[9]);
    EXPECT_TRUE(untilHeldBy(agent, "draft"));
    run(0, {"type", agent.id, R"(\x15)"});
    EXPECT_TRUE(untilReceived(agent, prompts[9]));
    EXPECT_EQ(run(0, {"send", agent.id, prompts[10], "--wait", "--timeout", "20"})->output, "idle\n");
    EXPECT_THAT(received(agent), ElementsAreArray(prompts));
    EXPECT_THAT(promptStates(agent), IsEmpty());
}

TEST_P(EachAgentTest, GetsAPromptThoughReturnsAreLostOrItStandsInTheComposer) {
    const Agent deaf = begin(kind(), "lost-returns=2");
    const Agent deafer = begin(kind(), "lost-returns=4");
    const Agent slow = beginUnready(kind(), "start-delay=2500");
    for (const Agent& agent : {deaf, deafer, slow})
        send(agent, "Is anybody there?");
    EXPECT_TRUE(untilReceived(deaf, "Is anybody there?"));
    EXPECT_TRUE(untilReceived(slow, "Is anybody there?"));
    EXPECT_TRUE(until(deafer, [&](const JSONObject&) { return promptStates(deafer).front() == "standing"; }));
    EXPECT_EQ(JSONObject(status(deafer)).string("draft"), "Is anybody there?");
    // Somebody sends it on.
    run(0, {"type", deafer.id, "\\r"});
    EXPECT_TRUE(until(deafer, [](const JSONObject& status) {
        return status.find("prompts")->as_array().empty() && status.string("status") == "idle";
    }));
    for (const Agent& agent : {deaf, deafer, slow}) {
        EXPECT_THAT(received(agent), ElementsAre("Is anybody there?"));
        EXPECT_THAT(promptStates(agent), IsEmpty());
    }
}

TEST_P(EachAgentTest, ThatDiesLosesNoPromptInSilence) {
    const Agent onPrompt = begin(kind());
    EXPECT_EQ(run(4, {"send", onPrompt.id, "fake:die", "--wait"})->output, "failed\n");
    EXPECT_THAT(received(onPrompt), ElementsAre("fake:die"));
    EXPECT_EQ(status(onPrompt).at("exitCode"), 3);
    EXPECT_THAT(run(1, {"send", onPrompt.id, "more"})->errors, HasSubstr("ended"));

    const auto made = run(0, {"new", kind(), "--command", "read line"});
    const Agent before{.id = made->output.substr(0, 8), .file = folder.path("none")};
    EXPECT_EQ(run(0, {"send", before.id, "into the void"})->output, "queued\n");
    send(before, "and again");
    run(0, {"type", before.id, R"(\x04)"});
    EXPECT_TRUE(untilStatus(before, "failed"));
    EXPECT_THAT(promptStates(before), ElementsAre("failed", "failed"));
    EXPECT_THAT(run(0, {"status", before.id})->output, HasSubstr("into the void"));
}

TEST_P(EachAgentTest, IsAnsweredByTheWordsOfItsQuestion) {
    const Agent agent = begin(kind());
    for (const char* verb : {"approve", "deny"})
        EXPECT_THAT(run(1, {verb, agent.id})->errors, HasSubstr("asks nothing")) << verb;
    run(1, {"answer", agent.id, "1"});
    const auto ask = [&](const std::string& prompt) {
        send(agent, prompt);
        EXPECT_TRUE(untilStatus(agent, "waiting"));
        const JsonValue seen = status(agent);
        EXPECT_GE(seen.at("request").at("options").as_array().size(), 3U) << Json::write(seen);
        return orvane({"status", agent.id})->output;
    };
    const std::string done = "printed its greeting";
    ask(asking());
    run(0, {"approve", agent.id});
    EXPECT_EQ(run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"})->output, "idle\n");
    EXPECT_THAT(orvane({"screen", agent.id})->output, HasSubstr(done));

    const std::string asked = ask(asking());
    const std::string first = kind() == "gemini" ? "Allow once" : "Yes";
    EXPECT_THAT(asked, HasSubstr("> 1. " + first));
    EXPECT_THAT(run(1, {"answer", agent.id, "9"})->errors, HasSubstr("1 " + first));
    EXPECT_THAT(run(1, {"answer", agent.id, "perhaps"})->errors, HasSubstr("1 " + first));
    run(0, {"deny", agent.id});
    EXPECT_EQ(run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"})->output, "idle\n");

    ask(asking());
    run(0, {"type", agent.id, R"(\e[B)"});
    EXPECT_TRUE(until(agent, [](const JSONObject& status) {
        const JsonValue* options = status.object("request").find("options");
        return options != nullptr && options->at(1).at("selected") == true;
    }));
    EXPECT_THAT(run(1, {"approve", agent.id})->errors, HasSubstr("2"));
    run(0, {"answer", agent.id, "1"});
    run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"});

    ask(asking());
    const JsonValue options = status(agent).at("request").at("options");
    run(0, {"answer", agent.id, std::string(options.at(1).at("label").as_string())});
    run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"});
    EXPECT_EQ(received(agent).size(), 4U);
}

TEST_P(EachAgentTest, IsInterruptedAndCleared) {
    const Agent agent = begin(kind());
    send(agent, "fake:slow");
    EXPECT_TRUE(untilReceived(agent, "fake:slow"));
    run(0, {"interrupt", agent.id});
    EXPECT_EQ(run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"})->output, "idle\n");
    // Codex gives the prompt back.
    run(0, {"type", agent.id, R"(\x15)"});
    run(0, {"clear", agent.id});
    EXPECT_TRUE(untilReceived(agent, "/clear"));
    EXPECT_TRUE(untilStatus(agent, "ready"));
    EXPECT_EQ(run(0, {"send", agent.id, "anew", "--wait", "--timeout", "20"})->output, "idle\n");
    EXPECT_THAT(received(agent), ElementsAre("fake:slow", "/clear", "anew"));
}

TEST_F(AgentVerbsTest, SettingsAreTypedAndADraftComesBack) {
    const Agent claude = begin("claude");
    const Agent gemini = begin("gemini");
    for (const Agent& agent : {claude, gemini}) {
        run(0, {"type", agent.id, "my draft"});
        EXPECT_TRUE(until(agent, [](const JSONObject& status) { return status.string("draft") == "my draft"; }));
        run(0, {"model", agent.id, "large"});
    }
    EXPECT_TRUE(untilReceived(claude, "/model large"));
    EXPECT_TRUE(untilReceived(gemini, "/model set large"));
    for (const Agent& agent : {claude, gemini}) {
        EXPECT_TRUE(until(agent, [](const JSONObject& status) {
            return status.string("draft") == "my draft" && status.string("model") == "large";
        }));
    }
    run(0, {"type", claude.id, "\\x0aof two lines"});
    EXPECT_TRUE(until(claude, [](const JSONObject& status) { return status.string("draft").contains("two lines"); }));
    run(0, {"wait", claude.id, "--until", "idle", "--timeout", "20"});
    EXPECT_THAT(run(1, {"model", claude.id, "small"})->errors, HasSubstr("what you typed"));
    run(2, {"model", claude.id, " "});
    run(0, {"mode", claude.id, "plan"});
    EXPECT_EQ(status(claude).at("mode"), "plan");
    run(1, {"mode", claude.id, "nosuch"});
    run(1, {"mode", gemini.id, "plan"});
    run(1, {"effort", gemini.id, "high"});

    // The prompt goes to the model that is asked for.
    run(0, {"type", gemini.id, R"(\x15)"});
    run(0, {"send", gemini.id, "hello", "--model", "small", "--wait", "--timeout", "20"});
    EXPECT_THAT(received(gemini), ElementsAre("/model set large", "/model set small", "hello"));
    EXPECT_THAT(received(claude), ElementsAre("/model large"));

    std::filesystem::create_directory(folder.path(".codex"));
    folder.write(".codex/models_cache.json",
                 R"({"models":[{"slug":"one","supported_reasoning_levels":[{"effort":"low"},{"effort":"high"}]},)"
                 R"({"slug":"two","supported_reasoning_levels":[{"effort":"low"},{"effort":"high"}]}]})");
    const Agent codex = begin("codex");
    run(0, {"model", codex.id, "unheard-of"});
    EXPECT_TRUE(untilReceived(codex, "/model unheard-of"));
}

TEST_F(AgentVerbsTest, WaitEndsByWhatComesFirst) {
    const Agent agent = begin("claude");
    run(0, {"wait", agent.id});
    const auto idle = run(0, {"send", agent.id, "hello", "--wait"});
    EXPECT_EQ(idle->output, "idle\n");
    EXPECT_EQ(run(0, {"send", agent.id, "fake:bash", "--wait"})->output, "waiting\n");
    EXPECT_EQ(run(0, {"wait", agent.id, "--until", "waiting"})->output, "waiting\n");
    run(0, {"deny", agent.id});
    run(0, {"wait", agent.id, "--until", "idle"});

    run(124, {"wait", agent.id, "--until", "working", "--timeout", "0.2"});
    send(agent, "fake:quiet");
    run(124, {"wait", agent.id, "--until", "idle", "--timeout", "0.2"});
    run(124, {"send", agent.id, "later", "--wait", "--timeout", "0.2"});
    const auto waiting = start({"wait", agent.id, "--until", "waiting"});
    const auto done = start({"wait", agent.id, "--until", "done"});
    EXPECT_TRUE(untilShown(agent, "Julienning"));
    goOn(agent);
    EXPECT_TRUE(untilReceived(agent, "later"));
    run(0, {"wait", agent.id, "--until", "idle"});
    send(agent, "/exit");
    EXPECT_TRUE(loop.runUntil([&] { return waiting->end && done->end; }));
    EXPECT_EQ(waiting->status(), 4);
    EXPECT_EQ(waiting->output, "done\n");
    EXPECT_EQ(done->status(), 0);

    run(4, {"wait", agent.id, "--until", "idle"});
    run(1, {"wait", "nosuch", "--until", "idle"});
    run(2, {"wait", agent.id, "--until", "nosuch"});
    run(2, {"wait", agent.id, "--until", "idle", "--timeout", "soon"});
    const Agent closed = begin("claude");
    const auto lost = start({"wait", closed.id, "--until", "waiting"});
    run(0, {"wait", closed.id, "--until", "ready"});
    run(0, {"close", closed.id});
    EXPECT_TRUE(loop.runUntil([&] { return lost->end.has_value(); }));
    EXPECT_EQ(lost->status(), 4);
    run(0, {"quit", "--force"});
    run(3, {"wait", agent.id, "--until", "idle"});
    run(3, {"send", agent.id, "hello"});
}

TEST_F(AgentVerbsTest, ClaudesFileAndHooksAreEvidence) {
    const auto source = [&](const Agent& agent) {
        return std::string(status(agent).at("evidence").at("source").as_string());
    };
    const auto eventFiles = [&] {
        const std::filesystem::recursive_directory_iterator files(folder.path("tmp"));
        return std::ranges::count_if(files, [](const auto& each) { return each.path().extension() == ".events"; });
    };
    // Its title would tell sooner.
    environment["SCENARIO"] = "claude-untitled";
    for (const std::string expected : {"statusFile", "hooks"}) {
        if (expected == "hooks")
            environment["ELSEWHERE"] = folder.path("project");  // where its files are not looked for
        run(0, {"quit", "--force"});
        EXPECT_EQ(eventFiles(), 0);
        orvane({"open", "."});
        const Agent agent{.id = run(0, {"new", "claude"})->output.substr(0, 8), .file = folder.path("claude")};
        EXPECT_TRUE(until(agent, [](const JSONObject& status) { return status.contains("draft"); }));
        EXPECT_EQ(eventFiles(), 1);
        EXPECT_EQ(run(0, {"send", agent.id, "hello", "--wait", "--timeout", "20"})->output, "idle\n");
        EXPECT_EQ(source(agent), expected);
        EXPECT_EQ(run(0, {"send", agent.id, "fake:bash", "--wait", "--timeout", "20"})->output, "waiting\n");
        run(0, {"answer", agent.id, "1"});
        run(0, {"wait", agent.id, "--until", "idle", "--timeout", "20"});
        EXPECT_EQ(source(agent), expected);
    }
}

TEST_F(AgentVerbsTest, AProgramOfOnesOwnGetsItsPromptsToo) {
    const Agent own = beginUnready("custom");
    const std::vector<std::string> prompts = {"hello", repeated("a long story ", 20000), "two\nlines"};
    for (const std::string& prompt : prompts) {
        send(own, prompt);
        EXPECT_TRUE(untilReceived(own, prompt)) << prompt;
    }
    EXPECT_THAT(received(own), ElementsAreArray(prompts));
    EXPECT_EQ(run(4, {"send", own.id, "fail now", "--wait"})->output, "failed\n");

    const std::string shell = run(0, {"new", "shell"})->output.substr(0, 8);
    EXPECT_EQ(run(0, {"send", shell, "echo $((40+2))"})->output, "delivered\n");
    EXPECT_TRUE(untilShown({.id = shell, .file = {}}, "42"));
    for (const std::vector<std::string>& words : {std::vector<std::string>{"approve", shell}, {"interrupt", shell}})
        EXPECT_THAT(run(1, words)->errors, HasSubstr("agent"));
    run(2, {"send", shell, "  "});
}

}  // namespace
}  // namespace orvane
