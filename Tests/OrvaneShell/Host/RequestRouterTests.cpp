#include "OrvaneShell/Host/RequestRouter.h"

#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <filesystem>

#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/ServicesFixture.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Keeps what it is sent.
class RecordingConnection final : public LineServer::Connection {
 public:
    void reply(std::string_view line) override {
        lines.emplace_back(line);
        if (std::exchange(isStreaming, false) && close) std::exchange(close, nullptr)();
    }
    void beginStream() override { isStreaming = true; }
    void stream(std::string_view line) override { lines.emplace_back(line); }
    void onInput(std::function<void(std::string_view line)>) override {}
    std::vector<FileDescriptor> takeDescriptors() override { return {}; }
    void onClose(std::function<void()> callback) override { close = std::move(callback); }

    std::vector<std::string> lines;
    bool isStreaming = false;
    std::function<void()> close;
};

class RequestRouterTest : public testing::ServicesFixture {
 protected:
    /// The reply to one line; every request must get exactly one.
    JsonValue replyTo(const std::string& line) {
        const auto connection = std::make_shared<RecordingConnection>();
        router.handle(connection, line);
        EXPECT_TRUE(loop.runUntil([&] { return !connection->lines.empty(); })) << line;
        EXPECT_EQ(connection->lines.size(), 1U) << line;
        return Json::parse(connection->lines.at(0)).value();
    }

    JsonValue ask(const std::string& verb, boost::json::object arguments = {}) {
        return replyTo(Json::write({{"verb", verb}, {"arguments", std::move(arguments)}}));
    }

    /// The result of a request that must succeed.
    JsonValue result(const std::string& verb, boost::json::object arguments = {}) {
        const JsonValue reply = ask(verb, std::move(arguments));
        EXPECT_TRUE(reply.at("ok").get_bool()) << Json::write(reply);
        return reply.get_object().contains("result") ? reply.at("result") : JsonValue();
    }

    /// "code: message" of a request that must be refused.
    std::string refusal(const std::string& verb, boost::json::object arguments = {}) {
        const JsonValue reply = ask(verb, std::move(arguments));
        EXPECT_FALSE(reply.at("ok").get_bool()) << Json::write(reply);
        const JSONObject error = JSONObject(reply).object("error");
        return error.string("code") + ": " + error.string("message");
    }

    std::string open(const std::string& name) {
        std::filesystem::create_directories(folder.path(name));
        return JSONObject(result("open", {{"path", folder.path(name)}})).string("id");
    }

    std::vector<std::string> projectNames() {
        std::vector<std::string> names;
        const JsonValue rows = result("projects");
        for (const JsonValue& row : rows.get_array())
            names.push_back(JSONObject(row).string("name"));
        return names;
    }

    int stops = 0;
    RequestRouter router{
        {.store = *store, .agents = agents, .tools = *tools, .history = *history, .preferences = preferences},
        {},
        [this] { ++stops; }};
};

TEST_F(RequestRouterTest, AnswersWhatIsNoRequestWithAnError) {
    const std::string deep(100000, '[');
    for (const std::string& line :
         {std::string(), std::string("nonsense"), std::string("[]"), std::string("{\"verb\":"), std::string("\xff\xfe"),
          std::string("{\"verb\":\"list\"} x"), deep}) {
        const JsonValue reply = replyTo(line);
        EXPECT_EQ(JSONObject(reply).object("error").string("code"), "malformed") << line.substr(0, 40);
    }
    for (const char* line : {"{}", R"({"verb":7})", R"({"verb":"nosuch"})", R"({"verb":"help"})"}) {
        EXPECT_EQ(JSONObject(replyTo(line)).object("error").string("code"), "unknownVerb") << line;
    }
    const JsonValue french = replyTo(R"({"verb":"nosuch","language":"fr"})");
    EXPECT_THAT(JSONObject(french).object("error").string("message"), HasSubstr("nosuch"));
    EXPECT_NE(french, replyTo(R"({"verb":"nosuch","language":"klingon"})"));
}

TEST_F(RequestRouterTest, OpensFoldersAndRefusesWhatIsNone) {
    const std::string first = open("one");
    EXPECT_TRUE(Uuid::parse(first).has_value());
    EXPECT_EQ(first, Uuid::parse(first)->lowerText());
    EXPECT_EQ(open("one/../one/"), first);
    std::filesystem::create_directory_symlink(folder.path("one"), folder.path("link"));
    EXPECT_EQ(open("link"), first);
    folder.write("file", "");
    EXPECT_THAT(refusal("open", {{"path", folder.path("file")}}), HasSubstr("is a file"));
    EXPECT_THAT(refusal("open", {{"path", folder.path("file/below")}}), HasSubstr("There is no folder"));
    EXPECT_THAT(refusal("open", {{"path", folder.path("missing")}}), HasSubstr("There is no folder"));
    EXPECT_THAT(refusal("open", {{"path", "relative"}}), HasSubstr("not an absolute path"));
    EXPECT_THAT(refusal("open", {{"path", 7}}), HasSubstr("usage: "));
    EXPECT_THAT(refusal("open", {{"path", std::string("/tmp\0x", 6)}}), HasSubstr("usage: "));
    EXPECT_EQ(store->workspace().projects.size(), 1U);
}

TEST_F(RequestRouterTest, FindsProjectsByIdPathAndNameAndEditsThem) {
    const std::string a = open("alpha");
    const std::string b = open("beta");
    const std::string c = open("gamma");
    std::string upper = a;
    std::ranges::transform(upper, upper.begin(),
                           [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
    result("rename", {{"project", upper.substr(0, 13)}, {"name", " First\n\x1b[31m one "}});
    result("rename", {{"project", folder.path("beta")}, {"name", "Second"}});
    EXPECT_THAT(projectNames(), ElementsAre("First [31m one", "Second", "gamma"));
    EXPECT_THAT(refusal("rename", {{"project", "second"}, {"name", " \t"}}), HasSubstr("visible character"));
    EXPECT_THAT(refusal("rename", {{"project", "no such"}, {"name", "x"}}), HasSubstr("Nothing matches"));
    EXPECT_THAT(refusal("rename", {{"project", ""}, {"name", "x"}}), HasSubstr("Nothing matches"));
    result("rename", {{"project", c}, {"name", "SECOND"}});
    EXPECT_THAT(refusal("color", {{"project", "second"}, {"color", "1"}}), HasSubstr("more than one"));

    result("move", {{"project", c}, {"target", a}});
    EXPECT_THAT(projectNames(), ElementsAre("SECOND", "First [31m one", "Second"));
    result("color", {{"project", b}, {"color", "Red"}});
    result("color", {{"project", c}, {"color", "11"}});
    result("color", {{"project", a}, {"color", "#00ff7f"}});
    const auto& projects = store->workspace().projects;
    EXPECT_EQ(projects[0].colorIndex, 11);
    EXPECT_EQ(projects[1].customColorHex, "00FF7F");
    EXPECT_EQ(projects[2].colorIndex, 3);
    for (const char* bad : {"12", "-1", "", "#12345", "no colour", "99999999999999999999"}) {
        EXPECT_THAT(refusal("color", {{"project", a}, {"color", bad}}), HasSubstr("is not a colour")) << bad;
    }
    result("remove", {{"project", b}});
    EXPECT_THAT(projectNames(), ElementsAre("SECOND", "First [31m one"));
}

TEST_F(RequestRouterTest, ListsSessionsAsScriptsReadThem) {
    const std::string id = open("home");
    const Uuid home = *Uuid::parse(id);
    SessionController& failing = session(home, "exit 3");
    SessionController& running = session(home);
    ASSERT_TRUE(loop.runUntil([&] { return !failing.isActive(); }));
    const JsonValue expected = {{{"id", failing.id().lowerText()},
                                 {"project", id},
                                 {"kind", "shell"},
                                 {"title", "shell"},
                                 {"status", "failed"},
                                 {"exitCode", 3},
                                 {"cwd", folder.path("home")},
                                 {"pid", 0},
                                 {"attention", false}},
                                {{"id", running.id().lowerText()},
                                 {"project", id},
                                 {"kind", "shell"},
                                 {"title", "shell"},
                                 {"status", "ready"},
                                 {"cwd", folder.path("home")},
                                 {"pid", running.processId()},
                                 {"attention", false}}};
    EXPECT_EQ(Json::write(result("list")), Json::write(expected));
    EXPECT_GT(running.processId(), 1);
}

TEST_F(RequestRouterTest, AgentsAreAddedEditedAndRemoved) {
    const std::string first =
        JSONObject(result("agents add", {{"name", "GOOSE"}, {"busy", {"[0-9]+%", ""}}})).string("id");
    const std::string second =
        JSONObject(result("agents add", {{"name", "Mine"}, {"command", "run it"}, {"waiting", {"y/n"}}})).string("id");
    result("agents edit",
           {{"agent", second.substr(0, 13)}, {"color", "#a1b2c3"}, {"busy", 7}, {"waiting", {"a", "b"}}});
    result("agents edit", {{"agent", "goose"}, {"name", "Goose"}, {"busy", boost::json::array()}});
    const JsonValue expected = {{{"id", first},
                                 {"name", "Goose"},
                                 {"command", "goose session"},
                                 {"symbol", "bird"},
                                 {"colorHex", "6FB7D1"},
                                 {"busyPatterns", boost::json::array()},
                                 {"waitingPatterns", boost::json::array()}},
                                {{"id", second},
                                 {"name", "Mine"},
                                 {"command", "run it"},
                                 {"symbol", ""},
                                 {"colorHex", "A1B2C3"},
                                 {"busyPatterns", boost::json::array()},
                                 {"waitingPatterns", {"a", "b"}}}};
    const JsonValue listed = result("agents");
    EXPECT_EQ(Json::write(listed.at("agents")), Json::write(expected));
    EXPECT_EQ(listed.at("presets").get_array().size(), 5U);

    const std::pair<boost::json::object, const char*> refusedAdds[] = {
        {{{"name", " \x1b\u200B\n"}, {"command", "x"}}, "refused: A name"},
        {{{"name", "unheard of"}}, "refused: An agent needs a command"},
        {{{"name", "Aider"}, {"command", ""}}, "refused: An agent needs a command"},
        {{{"name", "mine "}, {"command", "x"}}, "There is an agent “mine” already"},
        {{{"name", "a"}, {"command", "x"}, {"color", "red"}}, "“red” is not a colour"},
        {{{"name", "a"}, {"command", "x"}, {"busy", {"ok", "(open"}}}, "“(open” is not a regular expression: missing"},
        {{{"name", "a"}, {"command", std::string("x\0y", 3)}}, "NUL"},
    };
    for (const auto& [arguments, message] : refusedAdds)
        EXPECT_THAT(refusal("agents add", arguments), HasSubstr(message));
    EXPECT_THAT(refusal("agents edit", {{"agent", "mine"}}), HasSubstr("usage: Say what"));
    EXPECT_THAT(refusal("agents edit", {{"agent", "mine"}, {"name", "GOOSE"}}), HasSubstr("already"));
    EXPECT_THAT(refusal("agents remove", {{"agent", "none"}}), HasSubstr("There are: Goose, Mine"));
    EXPECT_THAT(refusal("agents remove"), HasSubstr("There are: Goose, Mine"));

    // A name is never taken for the start of another one's id.
    result("agents edit", {{"agent", "mine"}, {"name", first.substr(0, 4)}});
    result("agents remove", {{"agent", first.substr(0, 4)}});
    EXPECT_EQ(agents.specs().at(0).name, "Goose");
    result("agents remove", {{"agent", first}});
    EXPECT_THAT(refusal("agents remove", {{"agent", first}}), HasSubstr("orvane agents add NAME"));
}

TEST_F(RequestRouterTest, ANewSessionRunsTheAgentThatIsNamed) {
    open("home");
    EXPECT_THAT(refusal("new", {{"kind", "custom"}, {"agent", "x"}}), HasSubstr("“x”. Add one with"));
    result("agents add", {{"name", "Mine"}, {"command", "run it"}});
    EXPECT_THAT(refusal("new", {{"kind", "shell"}, {"agent", "mine"}}), HasSubstr("usage: --agent goes with"));
    EXPECT_THAT(refusal("new", {{"kind", "custom"}, {"agent", "x"}}), HasSubstr("There are: Mine"));
    result("new", {{"kind", "custom"}, {"agent", "MINE"}});
    result("new", {{"kind", "custom"}, {"agent", "mine"}, {"command", "true"}, {"title", "Yours"}});
    const auto& sessions = store->sessions();
    ASSERT_EQ(sessions.size(), 2U);
    EXPECT_EQ(sessions[0]->title(), "Mine");
    EXPECT_EQ(sessions[0]->identity().agentSpec, agents.specs()[0]);
    EXPECT_EQ(sessions[1]->title(), "Yours");
    EXPECT_EQ(sessions[1]->identity().command, "true");
    EXPECT_EQ(sessions[1]->identity().agentSpec, agents.specs()[0]);
}

TEST_F(RequestRouterTest, QuitAndRemoveAskWhileSessionsAreActive) {
    const std::string id = open("home");
    const Uuid active = session(*Uuid::parse(id)).id();
    const JsonValue reply = ask("quit");
    const JSONObject error = JSONObject(reply).object("error");
    EXPECT_EQ(error.string("code"), "confirm");
    EXPECT_EQ(error.object("details").string("title"), "1 session still active");
    EXPECT_THAT(refusal("remove", {{"project", id}}), HasSubstr("confirm: 1 session of “home” is still active"));
    EXPECT_EQ(stops, 0);
    result("close", {{"id", active.lowerText().substr(0, 13)}});
    EXPECT_TRUE(store->sessions().empty());
    result("quit");
    EXPECT_EQ(stops, 1);
    session(*Uuid::parse(id));
    result("quit", {{"force", true}});
    EXPECT_EQ(stops, 2);
    result("remove", {{"project", id}, {"force", true}});
    EXPECT_TRUE(store->workspace().projects.empty());
}

TEST_F(RequestRouterTest, LayoutsAreAppliedSavedAndShown) {
    EXPECT_THAT(refusal("layout"), HasSubstr("no project yet"));
    const Uuid home = *Uuid::parse(open("home"));
    for (int count = 0; count < 3; ++count)
        session(home);
    const JsonValue applied = result("layout", {{"name", "twoColumns"}, {"save", "mine"}});
    EXPECT_EQ(applied.at("unplaced").get_array().size(), 1U);
    EXPECT_EQ(applied.at("tree").at("split").at("axis"), "horizontal");
    EXPECT_EQ(store->sessions().size(), 3U);
    result("layout", {{"name", "single"}});
    const JsonValue again = result("layout", {{"name", "mine"}});
    EXPECT_EQ(again.at("tree").at("split").at("children").get_array().size(), 2U);
    EXPECT_THAT(refusal("layout", {{"name", "nosuch"}}), HasSubstr("no layout"));
    EXPECT_THAT(refusal("layout", {{"save", "grid"}}), HasSubstr("built-in"));
    EXPECT_THAT(refusal("layout", {{"tab", "zz"}}), HasSubstr("Nothing matches"));

    const JsonValue pane = again.at("tree").at("split").at("children").at(0).at("pane").at("id");
    result("close", {{"id", pane}});
    EXPECT_EQ(store->workspace().paneCount(), 1U);
    const std::string tab = JSONObject(again).string("surface");
    result("close", {{"id", tab}});
    EXPECT_FALSE(store->workspace().surfaceTrees.contains(*Uuid::parse(tab)));
    EXPECT_EQ(store->workspace().surfaceMetas.at(home).size(), 1U);
}

TEST_F(RequestRouterTest, ToolsAreToldAndInstalledWithTheLogFirst) {
    folder.write("shell", "#!/bin/sh\nPATH=" + folder.path() + "\nfor last; do :; done\neval \"$last\"\n");
    folder.write("npm", "#!/bin/sh\necho \"$2 $3\"; echo 'no space left'; exit 1\n");
    for (const char* name : {"shell", "npm"})
        std::filesystem::permissions(folder.path(name), std::filesystem::perms::owner_all);
    EXPECT_THAT(refusal("tools install", {{"tool", "nosuch"}}), HasSubstr("usage: “nosuch” is no tool"));
    EXPECT_THAT(refusal("tools update", {{"tool", "codex"}}), HasSubstr("refused: The installation could not be"));
    const JsonValue incomplete = result("tools");
    EXPECT_EQ(incomplete.at("npm"), JsonValue());
    EXPECT_FALSE(incomplete.at("complete").get_bool());

    shell.shell = folder.path("shell");
    const JsonValue found = result("tools");
    EXPECT_EQ(found.at("npm"), true);
    EXPECT_EQ(Json::write(found.at("tools").at(1)),
              R"({"auth":"notConnected","id":"codex","name":"Codex","state":"missing"})");
    EXPECT_THAT(refusal("tools update", {{"tool", "codex"}}), HasSubstr("orvane tools install codex"));

    const auto client = std::make_shared<RecordingConnection>();
    router.handle(client, R"({"verb":"tools install","arguments":{"tool":"codex"},"language":"de"})");
    const auto late = std::make_shared<RecordingConnection>();
    ASSERT_TRUE(loop.runUntil([&] { return !client->lines.empty(); }));
    router.handle(late, R"({"verb":"tools install","arguments":{"tool":"codex"}})");
    ASSERT_TRUE(loop.runUntil([&] { return client->lines.size() == 3 && late->lines.size() == 3; }));
    EXPECT_EQ(client->lines[0], R"({"line":"-g @openai/codex"})");
    EXPECT_EQ(client->lines[1], R"({"line":"no space left"})");
    EXPECT_THAT(client->lines[2], HasSubstr("fehlgeschlagen"));
    EXPECT_EQ(late->lines[0], client->lines[0]);
    EXPECT_THAT(late->lines[2], HasSubstr("The installation failed."));
}

TEST_F(RequestRouterTest, TheViewIsOpenedByWhoeverOffersOne) {
    EXPECT_THAT(refusal("view"), HasSubstr("no view"));
    RequestRouter offering{{.store = *store,
                            .agents = agents,
                            .tools = *tools,
                            .history = *history,
                            .preferences = preferences,
                            .openView = [](HostContext& host, const JSONObject& arguments) -> Outcome {
                                EXPECT_FALSE(host.connection.expired());
                                return JsonValue{{"reason", arguments.string("project")}};
                            }},
                           {},
                           [] {}};
    const auto client = std::make_shared<RecordingConnection>();
    offering.handle(client, R"({"verb":"view","arguments":{"project":"mine"}})");
    EXPECT_THAT(client->lines, ElementsAre(R"({"ok":true,"result":{"reason":"mine"}})"));
}

TEST_F(RequestRouterTest, FollowersSeeChangesUntilTheyLeave) {
    SessionController& watched = session(project());
    const auto follower = std::make_shared<RecordingConnection>();
    router.handle(follower, R"({"verb":"events","arguments":{"follow":true}})");
    EXPECT_TRUE(follower->isStreaming);
    watched.setStatus({SessionStatus::Waiting{}}, StatusSource::screen);
    EXPECT_THAT(follower->lines, ElementsAre(Json::write({{"revision", store->remoteRevision()},
                                                          {"session", watched.id().lowerText()},
                                                          {"from", "ready"},
                                                          {"to", "waiting"}})));
    EXPECT_EQ(result("events").get_array().size(), 2U);
    follower->close();
    watched.setStatus({SessionStatus::Idle{}}, StatusSource::screen);
    EXPECT_EQ(follower->lines.size(), 1U);
}

}  // namespace
}  // namespace orvane
