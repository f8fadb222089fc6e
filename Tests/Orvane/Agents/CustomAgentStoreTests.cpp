#include "Orvane/Agents/CustomAgentStore.h"

#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <filesystem>

#include "Orvane/StoreFixture.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class CustomAgentStoreTest : public testing::StoreFixture {
 protected:
    /// A store over the file that is there now, as the next start has it.
    std::unique_ptr<CustomAgentStore> reopened(const std::string& file = "agents.json") {
        auto opened = std::make_unique<CustomAgentStore>(
            loop, queue, preferences, folder.path(file),
            [this](const SystemError& error) { problems.push_back(error.message()); });
        opened->load();
        return opened;
    }

    std::vector<std::string> keptFiles() const {
        std::vector<std::string> names = folder.names();
        std::erase_if(names, [](const std::string& name) { return !name.starts_with("agents.json.corrupt-"); });
        return names;
    }

    std::vector<std::string> problems;
};

AgentSpec spec(const std::string& name, const std::string& command = "run") {
    return {.id = {},
            .name = name,
            .command = command,
            .symbol = "",
            .colorHex = "",
            .busyPatterns = {},
            .waitingPatterns = {}};
}

TEST_F(CustomAgentStoreTest, whatWasChangedIsFoundByTheNextStart) {
    int changes = 0;
    const auto watching = agents.changed.subscribe([&] { ++changes; });
    AgentSpec described = spec("  My\nagent ", " run --fast ");
    described.colorHex = "#a1b2c3";
    described.busyPatterns = {"", R"([\d]+%)", "thinking"};
    const auto first = agents.add(described);
    const auto second = agents.add(spec("Other"));
    ASSERT_TRUE(first && second);
    AgentSpec edited = *agents.spec(*second);
    edited.name = "OTHER";  // its own name does not count as taken
    edited.waitingPatterns = {"y/n"};
    EXPECT_TRUE(agents.edit(edited).has_value());
    const auto third = agents.add(spec("Third"));
    agents.remove(*third);
    agents.remove(*third);
    AgentSpec gone = spec("Third");
    gone.id = *third;
    EXPECT_TRUE(agents.edit(gone).has_value());
    edited.name = "my AGENT\t";
    EXPECT_EQ(agents.edit(edited).error(), CustomAgentStore::Error(AgentSpec::ValidationError::duplicateName));
    EXPECT_EQ(agents.add(edited).error(), CustomAgentStore::Error(AgentSpec::ValidationError::duplicateName));
    EXPECT_EQ(changes, 5);
    ASSERT_TRUE(agents.flush().has_value());

    const auto next = reopened();
    EXPECT_EQ(next->specs(), agents.specs());
    ASSERT_THAT(next->specs(), SizeIs(2));
    const AgentSpec& kept = next->specs()[0];
    EXPECT_EQ(kept.name, "My agent");
    EXPECT_EQ(kept.command, "run --fast");
    EXPECT_EQ(kept.colorHex, "A1B2C3");
    EXPECT_THAT(kept.busyPatterns, ElementsAre(R"([\d]+%)", "thinking"));
    EXPECT_EQ(next->specs()[1].name, "OTHER");
    EXPECT_THAT(keptFiles(), IsEmpty());
    EXPECT_EQ(preferences.counts("usage.features").at("custom_agent_add"), 3);
}

TEST_F(CustomAgentStoreTest, aFileThatIsNotTakenOverWholeIsKeptBesideTheNewOne) {
    const std::string good = R"({"id":"0123ABCD-89EF-4A6B-8C7D-FEDCBA987654","name":"one","command":"1"})";
    const std::pair<std::string, std::size_t> cases[] = {
        {"[{\"name\": \"half", 0}, {"{}", 0}, {"", 0}, {"[" + good + ",{\"name\":\"no command\"}]", 1}};
    for (const auto& [content, understood] : cases) {
        folder.write("agents.json", content);
        const auto opened = reopened();
        EXPECT_THAT(opened->specs(), SizeIs(understood)) << content;
        EXPECT_THAT(keptFiles(), IsEmpty()) << "nothing is overwritten yet: " << content;
        ASSERT_TRUE(opened->add(spec("new")) && opened->add(spec("newer")));
        ASSERT_TRUE(opened->flush().has_value());
        ASSERT_THAT(keptFiles(), SizeIs(1)) << content;
        EXPECT_EQ(folder.read(keptFiles().front()), content);
        EXPECT_EQ(reopened()->specs(), opened->specs());
        std::filesystem::remove(folder.path(keptFiles().front()));
    }
    folder.write("agents.json", "broken, and then deleted by its owner");
    const auto opened = reopened();
    std::filesystem::remove(folder.path("agents.json"));
    ASSERT_TRUE(opened->add(spec("new")) && opened->flush().has_value());
    EXPECT_EQ(reopened()->specs(), opened->specs());
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CustomAgentStoreTest, aWriteThatFailsIsToldAndTheListGoesOnInMemory) {
    const auto opened = reopened("missing/agents.json");
    ASSERT_TRUE(opened->add(spec("one")).has_value());
    EXPECT_FALSE(opened->flush().has_value());
    ASSERT_TRUE(opened->add(spec("two")).has_value());
    EXPECT_FALSE(opened->flush().has_value());
    loop.runPosted();
    EXPECT_THAT(opened->specs(), SizeIs(2));
    EXPECT_THAT(problems, ElementsAre(HasSubstr("missing")));
    std::filesystem::create_directory(folder.path("missing"));
    EXPECT_TRUE(opened->flush().has_value());
    EXPECT_EQ(reopened("missing/agents.json")->specs(), opened->specs());

    // A folder stands where the file should be: its name cannot be had, and what is in it must not go.
    std::filesystem::create_directories(folder.path("agents.json/inside"));
    problems.clear();
    const auto blocked = reopened();
    ASSERT_TRUE(blocked->add(spec("one")) && blocked->add(spec("two")));
    EXPECT_FALSE(blocked->flush().has_value());
    EXPECT_THAT(problems, SizeIs(1));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("agents.json/inside")));
    std::filesystem::remove_all(folder.path("agents.json"));
    EXPECT_TRUE(blocked->flush().has_value());
    EXPECT_EQ(reopened()->specs(), blocked->specs());
}

TEST_F(CustomAgentStoreTest, aSessionKeepsTheAgentThatWasRemoved) {
    const Uuid home = project();
    const auto id = agents.add(spec("Mine", "printf hello; sleep 1000"));
    ASSERT_TRUE(id.has_value());
    const auto start = [&] {
        return store->createSession({.kind = SessionKind::custom, .project = home, .customAgent = *id});
    };
    const SessionController* session = start();
    ASSERT_NE(session, nullptr);
    agents.remove(*id);
    EXPECT_EQ(session->title(), "Mine");
    EXPECT_EQ(session->identity().agentSpec->command, "printf hello; sleep 1000");
    // What was saved may name an agent that is gone.
    const SessionController* orphan = start();
    ASSERT_NE(orphan, nullptr);
    EXPECT_EQ(orphan->title(), "custom");
}

}  // namespace
}  // namespace orvane
