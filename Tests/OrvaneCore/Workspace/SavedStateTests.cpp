#include "OrvaneCore/Workspace/SavedState.h"

#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "Support/PaneTrees.h"

namespace orvane::testing {
namespace {

/// The id "…-0000000000NN" with the two digits given.
std::string idText(const std::string& digits) {
    return "00000000-0000-4000-8000-0000000000" + digits;
}
const auto id = [](const std::string& digits) { return *Uuid::parse(idText(digits)); };

SavedState read(const std::string& text) {
    const auto state = SavedState::decode(Json::parse(text).value_or(nullptr));
    EXPECT_TRUE(state) << text;
    return state.value_or(SavedState());
}

SavedState full() {
    SavedState state;
    state.projects = {{.id = id("01"), .name = "one", .path = "/p/one", .colorIndex = 13},
                      {.id = id("0A"), .name = "two", .path = "/p/two", .customColorHex = "A0B1C2"}};
    state.templates = {{.id = id("21"), .name = "mine", .node = tree("h(A,v(B,C))")}};
    state.usageCounts = {{"claude", 7}, {"", 0}};
    state.knownSlashCommands = {{"claude", {"/help", "/clear"}}, {"codex", {}}};
    state.selectedProjectID = id("0A");
    state.collapsedProjects = {id("01"), id("0A")};
    const SurfaceMeta chat{.id = id("32"),
                           .kind = SurfaceKind::chat,
                           .title = "chat",
                           .payload = idText("99"),
                           .isAutoTitle = true,
                           .worktreePath = "/w",
                           .worktreeBranch = "b",
                           .chatHistory = {{"/t", "claude", Date{1e9}}},
                           .chatModelMarks = {{Date{1e9}, "a", "b"}, {Date{1e9}, std::nullopt, "c"}},
                           .chatNotes = {{Date{1e9}, "note \"quoted\""}}};
    state.surfaces = {
        {{id("01"), {{SurfaceMeta::workspace("W"), tree("h(a,B)"), leaf('b')}, {.meta = chat}}}, {id("0A"), {}}}};
    state.activeSurfaces = {{id("01"), id("32")}};
    state.layouts = {{id("01"), tree("h(A,B)")}};
    state.restorable = {
        {id("01"), {{.kind = SessionKind::claude, .command = "claude --resume 'x'", .visibleSlot = 1}, {}}}};
    return state;
}

TEST(SavedStateTest, goesThroughItsTextUnchanged) {
    const SavedState state = full();
    const std::string text = Json::write(state.encode());
    EXPECT_EQ(read(text), state);
    EXPECT_NE(text.find("\"" + idText("0A") + "\":[]"), std::string::npos) << "ids are written in upper case";
    std::string lower = text;
    for (std::size_t at = 0; (at = lower.find(idText("0A"), at)) != std::string::npos;)
        lower.replace(at, 36, id("0A").lowerText());
    EXPECT_NE(lower, text);
    EXPECT_EQ(read(lower), state);
}

TEST(SavedStateTest, needsOnlyProjectsAndKeepsMembersOfOtherBuilds) {
    for (const char* text : {"{}", "[]", "null", R"({"projects":{}})", R"({"surfaces":{}})"})
        EXPECT_EQ(SavedState::decode(*Json::parse(text)), std::nullopt) << text;
    EXPECT_EQ(read(R"({"projects":[],"templates":7,"usageCounts":[],"knownSlashCommands":"x","selectedProjectID":{},
                       "collapsedProjects":{},"surfaces":[],"activeSurfaces":null,
                       "layouts":{"x":1},"restorable":7})"),
              SavedState());
    const std::string text = R"({"future":{"a":[1,null]},"later":7,"projects":[]})";
    EXPECT_EQ(read(text).surfaces, std::nullopt) << "an old file has no surfaces";
    const JsonValue written = read(text).encode();
    for (const char* key : {"future", "later"})
        EXPECT_EQ(written.at(key), Json::parse(text)->at(key)) << key;
    EXPECT_FALSE(written.as_object().contains("surfaces"));
}

TEST(SavedStateTest, skipsOrRepairsDamagedEntries) {
    const SavedState state = read(fmt::format(R"({{
        "projects":[{{"id":"{0}","name":"n","path":"/p"}},{{"id":"{0}","name":"n","path":"/p"}},7,{{"name":"lost"}},
                    {{"id":"{0}","path":"/q/","colorIndex":"x","customColorHex":"red"}}],
        "usageCounts":{{"a":1,"b":"2","c":-3,"d":4.0}},
        "knownSlashCommands":{{"a":["/x",7],"b":"/y"}},
        "collapsedProjects":["x",7,"{0}"],
        "surfaces":{{"nobody":[],"{0}":[{{"meta":{{"id":"{1}","kind":"terminal"}},"node":{{"leaf":7}}}},
            {{"meta":{{"id":"{1}","kind":"chat","payload":7,"chatNotes":[7,{{"text":"t"}}]}}}},
            {{"meta":{{"id":"{0}","kind":"hologram"}}}},{{"meta":7}},{{}},7]}},
        "layouts":{{"{0}":{{"leaf":7}},"x":{{"leaf":{{"id":"{1}"}}}}}},
        "restorable":{{"x":[{{"kind":"shell"}}],"{0}":[{{"kind":"hologram"}},7,{{"kind":"codex"}}]}},
        "activeSurfaces":{{"x":"y","{0}":7}}}})",
                                              idText("01"), idText("31")));
    ASSERT_EQ(state.projects.size(), 2U);
    EXPECT_EQ(state.projects[1], (Project{.id = state.projects[1].id, .name = "q", .path = "/q/"}));
    EXPECT_NE(state.projects[1].id, id("01"));
    EXPECT_EQ(state.usageCounts, (std::map<std::string, std::int64_t>{{"a", 1}, {"d", 4}}));
    EXPECT_EQ(state.knownSlashCommands, (std::map<std::string, std::vector<std::string>>{{"a", {"/x"}}}));
    EXPECT_EQ(state.collapsedProjects, std::set{id("01")});
    const auto& strip = state.surfaces->at(id("01"));
    ASSERT_EQ(state.surfaces->size() + strip.size(), 3U);
    EXPECT_EQ(strip[0].node, std::nullopt);
    EXPECT_NE(strip[1].meta.id, strip[0].meta.id);
    EXPECT_EQ(strip[1].meta.chatNotes, (std::vector<ChatNote>{{.text = "t"}}));
    EXPECT_TRUE(state.activeSurfaces.empty());
    EXPECT_TRUE(state.layouts.empty());
    ASSERT_EQ(state.restorable.size(), 1U);
    EXPECT_EQ(state.restorable.at(id("01")), std::vector<RestorableSession>{{.kind = SessionKind::codex}});
}

TEST(SavedStateTest, completedHasAWorkspaceForEveryProject) {
    SavedState state = full();
    state.activeSurfaces[id("01")] = id("77");
    state.activeSurfaces[id("55")] = id("32");
    state.collapsedProjects.insert(id("55"));
    state.restorable[id("55")] = {{}};
    (*state.surfaces)[id("55")] = {SavedSurface::workspace("orphan")};
    auto& strip = state.surfaces->at(id("01"));
    strip[0].focusedPane = leaf('x');
    strip[1].node = tree("a");
    strip.push_back({.meta = {.id = id("34"), .kind = SurfaceKind::maestro}});

    const SavedState done = state.completed("Arbeit");
    ASSERT_EQ(done.surfaces->size(), 2U);
    const auto& first = done.surfaces->at(id("01"));
    ASSERT_EQ(first.size(), 3U);
    EXPECT_EQ(first[0].node, strip[0].node);
    EXPECT_EQ(first[0].focusedPane, std::nullopt);
    EXPECT_EQ(text(first[1].node) + text(first[2].node), "none.") << "a chat has no panes";
    const auto& second = done.surfaces->at(id("0A"));
    ASSERT_EQ(second.size(), 1U);
    EXPECT_EQ(second[0].meta.title + text(second[0].node), "Arbeit.");
    EXPECT_EQ(done.activeSurfaces, (std::map<Uuid, Uuid>{{id("01"), first[0].meta.id}, {id("0A"), second[0].meta.id}}));
    EXPECT_EQ(done.collapsedProjects, (std::set{id("01"), id("0A")}));
    EXPECT_EQ(done.selectedProjectID, id("0A"));
    EXPECT_EQ(done.restorable, full().restorable);
    EXPECT_EQ(done.completed("again"), done);

    state.surfaces.reset();
    EXPECT_EQ(state.completed("W").surfaces->at(id("01")).front().node, state.layouts.at(id("01")));
    state.selectedProjectID = id("55");
    EXPECT_EQ(state.completed("W").surfaces->size(), 2U);
    EXPECT_EQ(state.completed("W").selectedProjectID, std::nullopt);
}

}  // namespace
}  // namespace orvane::testing
