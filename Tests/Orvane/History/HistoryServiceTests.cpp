#include "Orvane/History/HistoryService.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "Orvane/History/TranscriptEnds.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/SerialQueue.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class HistoryServiceTest : public ::testing::Test {
 protected:
    std::shared_ptr<HistoryService> makeService() {
        return std::make_shared<HistoryService>(HistoryService::Services{.loop = loop,
                                                                         .pool = pool,
                                                                         .fileQueue = queue,
                                                                         .home = folder.path(),
                                                                         .indexPath = folder.path("history.json")});
    }

    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        folder.write(name, text);
    }

    static std::string claude(const std::string& prompt, const std::string& more = "") {
        return R"({"type":"user","message":{"role":"user","content":")" + prompt + R"("}})" + "\n" + more;
    }

    void refresh(HistoryService& service) {
        bool isDone = false;
        service.refresh([&] { isDone = true; });
        ASSERT_TRUE(loop.runUntil([&] { return isDone; }));
    }

    static std::vector<std::string> titles(const std::vector<SessionRecord>& records) {
        std::vector<std::string> titles;
        for (const SessionRecord& record : records)
            titles.push_back(record.title + " in " + record.projectPath);
        std::ranges::sort(titles);
        return titles;
    }

    TemporaryFolder folder;
    ManualMainLoop loop;
    BackgroundPool pool{2};
    SerialQueue queue{pool};
};

TEST_F(HistoryServiceTest, findsTheConversationsOfAllAgents) {
    write(".claude/projects/-w-site/a.jsonl", claude("claude"));
    write(".claude/projects/-w-site/deeper/b.jsonl", claude("not a session"));
    write(".claude/projects/-w-site/notes.txt", claude("no transcript"));
    write(".claude/projects/plain/empty.jsonl", "");
    std::filesystem::create_directories(folder.path(".claude/projects/-w-site/folder.jsonl"));
    ASSERT_EQ(mkfifo(folder.path(".claude/projects/-w-site/pipe.jsonl").c_str(), 0600), 0);
    write(".codex/sessions/2026/11/21/rollout-x.jsonl",
          R"({"type":"session_meta","payload":{"id":"c","cwd":"/w/codex"}})"
          "\n"
          R"({"type":"event_msg","payload":{"type":"user_message","message":"codex"}})");
    write(".gemini/tmp/site/.project_root", "/w/gemini\n");
    write(".gemini/tmp/site/chats/session-1.jsonl", R"({"id":"1","type":"user","content":"gemini"})");
    write(".gemini/tmp/site/chats/other.jsonl", R"({"id":"1","type":"user","content":"no session"})");
    const auto service = makeService();
    refresh(*service);
    EXPECT_THAT(titles(service->records()),
                ElementsAre("claude in /w/site", "codex in /w/codex", "gemini in /w/gemini"));
    EXPECT_EQ(service->filesRead(), 4U);
    EXPECT_THAT(service->projectOptions(),
                ElementsAre(HistoryService::ProjectOption{.path = "/w/codex", .name = "codex", .count = 1},
                            HistoryService::ProjectOption{.path = "/w/gemini", .name = "gemini", .count = 1},
                            HistoryService::ProjectOption{.path = "/w/site", .name = "site", .count = 1}));
}

TEST_F(HistoryServiceTest, readsAgainOnlyWhatChanged) {
    for (int number = 0; number < 100; ++number)
        write(".claude/projects/-w/" + std::to_string(number) + ".jsonl", claude("n" + std::to_string(number)));
    write(".claude/projects/-w/meta.jsonl", "{}\n");
    {
        const auto first = makeService();
        refresh(*first);
        EXPECT_EQ(first->records().size(), 100U);
        EXPECT_EQ(first->filesRead(), 101U);
        refresh(*first);
        EXPECT_EQ(first->filesRead(), 0U) << "nothing changed";
    }
    const auto service = makeService();
    refresh(*service);
    EXPECT_EQ(service->filesRead(), 0U) << "a warm start";
    EXPECT_EQ(service->records().size(), 100U);
    write(".claude/projects/-w/7.jsonl", claude("seven, changed"));
    std::filesystem::remove(folder.path(".claude/projects/-w/8.jsonl"));
    refresh(*service);
    EXPECT_EQ(service->filesRead(), 1U);
    EXPECT_EQ(service->records().size(), 99U);
    EXPECT_THAT(titles(service->records()), ::testing::Contains("seven, changed in /w"));
    folder.write("history.json", "{ damaged");
    const auto damaged = makeService();
    refresh(*damaged);
    EXPECT_EQ(damaged->records().size(), 99U);
}

TEST_F(HistoryServiceTest, publishesTheRowsOfTheNewestWish) {
    for (int number = 0; number < 250; ++number)
        write(".claude/projects/-w/" + std::to_string(number) + ".jsonl",
              claude(number % 2 == 0 ? "even login" : "odd", R"({"timestamp":"2025-01-01T10:00:00Z"})"));
    const auto service = makeService();
    int changes = 0;
    const Registration subscription = service->changed.subscribe([&] { ++changes; });
    service->refresh();
    EXPECT_TRUE(service->indexing());
    ASSERT_TRUE(loop.runUntil([&] { return service->totalMatches() == 250; }));
    EXPECT_FALSE(service->indexing());
    EXPECT_GT(changes, 1);
    EXPECT_EQ(service->rows().size(), 100U);
    service->loadMore();
    ASSERT_TRUE(loop.runUntil([&] { return service->rows().size() == 200; }));
    EXPECT_EQ(service->rows().front().whenLabel, "1 Jan");

    service->setSearchText("odd");
    service->setSearchText("nothing");
    service->setSearchText("LOGIN");
    ASSERT_TRUE(loop.runUntil([&] { return service->totalMatches() == 125; }));
    EXPECT_EQ(service->rows().front().record.title, "even login");
    service->setProviderFilter({TranscriptProvider::gemini, TranscriptProvider::codex});
    ASSERT_TRUE(loop.runUntil([&] { return service->totalMatches() == 0; }));
    EXPECT_THAT(service->rows(), IsEmpty());
}

TEST_F(HistoryServiceTest, itsEndInTheMiddleOfAWalkLeavesNothingBehind) {
    for (int number = 0; number < 300; ++number)
        write(".claude/projects/-w/" + std::to_string(number) + ".jsonl", claude("x"));
    auto service = makeService();
    service->refresh([&] { ADD_FAILURE() << "told after the end"; });
    service.reset();
    loop.runPosted();
}

TEST_F(HistoryServiceTest, readsOnlyTheEndsOfATranscript) {
    const std::string path = folder.path("large.jsonl");
    const std::string head = claude("first");
    const std::string tail = "\n" + claude("last");
    constexpr off_t size = 300 << 20;
    {
        std::ofstream(path, std::ios::binary) << head;
        ASSERT_EQ(truncate(path.c_str(), size - static_cast<off_t>(tail.size())), 0);
        std::ofstream(path, std::ios::binary | std::ios::app) << tail;
    }
    TranscriptEnds ends;
    const auto file = ends.read(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->byteSize, size);
    EXPECT_EQ(std::string(ends.head().front()) + "\n", head);
    EXPECT_THAT(ends.tail(), ElementsAre(claude("last").substr(0, claude("last").size() - 1)));
    EXPECT_EQ(SessionHistory::prompts(ends.head(), ends.tail(), TranscriptProvider::claude),
              (std::vector<std::string>{"first", "last"}));

    std::string lines;
    for (int line = 0; line < 1000; ++line)
        lines += std::to_string(line) + "\n";
    ASSERT_TRUE(ends.read(folder.write("many", lines)));
    EXPECT_EQ(ends.head().size(), SessionHistory::headLineCap);
    EXPECT_EQ(ends.tail().front(), "700");
    EXPECT_EQ(ends.tail().back(), "999");
    ASSERT_TRUE(ends.read(folder.write("few", "a\nb")));
    EXPECT_THAT(ends.head(), ElementsAre("a", "b"));
    EXPECT_THAT(ends.tail(), IsEmpty());
    EXPECT_FALSE(ends.read(folder.path("none")));
    EXPECT_FALSE(ends.read(folder.path()));
}

}  // namespace
}  // namespace orvane
