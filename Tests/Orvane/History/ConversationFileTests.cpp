#include "Orvane/History/ConversationFile.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using TranscriptFeed::Entry;

class ConversationFileTest : public ::testing::Test {
 protected:
    static std::string recorded(const std::string& name) {
        std::ifstream file(std::string(ORVANE_SOURCE_DIR) + "/Tests/Recordings/Transcripts/" + name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::vector<Entry> entriesOf(const std::string& text, TranscriptProvider provider,
                                 const std::string& name = "c.jsonl") {
        folder.write(name, text);
        return ConversationFile::entries(folder.path(name), provider, 1000).value();
    }

    TemporaryFolder folder;
};

/// What is read while the file is written stands in it later too; of a call the end may still be to come.
TEST_F(ConversationFileTest, ShowsNothingWrongOfAFileThatIsBeingWritten) {
    const std::pair<const char*, TranscriptProvider> files[] = {
        {"claude-interactive-perm.jsonl", TranscriptProvider::claude},
        {"codex-exec-bashfail.jsonl", TranscriptProvider::codex}};
    for (const auto& [name, provider] : files) {
        const std::string text = recorded(name);
        const std::vector<Entry> whole = entriesOf(text, provider);
        ASSERT_GT(whole.size(), 2U);
        for (std::size_t size = 0; size < text.size(); size += 997) {
            const std::vector<Entry> some = entriesOf(text.substr(0, size), provider);
            ASSERT_LE(some.size(), whole.size());
            for (std::size_t place = 0; place < some.size(); ++place) {
                Entry now = some[place];
                if (now.tool) {
                    now.role = whole[place].role;
                    now.text = whole[place].text;
                }
                EXPECT_EQ(now.encode(), whole[place].encode()) << name << " cut at " << size;
            }
        }
    }
}

TEST_F(ConversationFileTest, GivesTheSameLinesInBlocksOfAnySize) {
    const std::string text = recorded("claude-interactive-main.jsonl") + "\n\nthe last one";
    folder.write("c", text);
    std::size_t longest = 0;
    std::vector<std::string> expected;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        longest = std::max(longest, line.size());
        if (!line.empty()) expected.push_back(line);
    }
    for (const std::size_t size : {longest + 2, text.size(), std::size_t{1} << 20}) {
        std::vector<std::string> lines;
        const auto done = ConversationFile::readLines(folder.path("c"), size, [&](ConversationFile::Lines some) {
            lines.insert(lines.end(), some.begin(), some.end());
            return true;
        });
        EXPECT_TRUE(done.has_value());
        EXPECT_TRUE(lines == expected) << size;
    }
}

/// Such as one with a picture: who called what stands at its ends.
TEST_F(ConversationFileTest, KeepsTheEndsOfALineThatIsLongerThanABlock) {
    const std::string call =
        R"({"type":"assistant","message":{"content":[{"type":"tool_use","id":"1","name":"Write","input":{"file_path":"/a","content":")";
    const std::string prompt = R"({"type":"user","message":{"content":"Hello"}})";
    const std::string text = call + std::string(3 * ConversationFile::blockBytes, 'x') +
                             R"("}}]},"timestamp":"2026-01-01T00:00:00Z"})" + "\n" + prompt + "\n";
    const auto entries = entriesOf(text, TranscriptProvider::claude);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].tool, "Write");
    EXPECT_EQ(entries[0].target, "/a");
    EXPECT_EQ(entries[0].at, Date::parseIso8601("2026-01-01T00:00:00Z"));
    EXPECT_EQ(entries[1].text, "Hello");
}

TEST_F(ConversationFileTest, ReadsOldDocumentsAndTellsWhatCannotBeRead) {
    const auto entries = entriesOf(R"({"sessionId":"s","messages":[
        {"id":"1","type":"user","content":"Hello"},
        {"id":"2","type":"gemini","content":"Hi","toolCalls":[{"id":"t","name":"read_file","args":{"path":"/a"},"status":"success"}]}]})",
                                   TranscriptProvider::gemini, "session-1.json");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].text, "Hello");
    EXPECT_EQ(entries[2].target, "/a");
    for (const std::string& path : {folder.path("missing"), folder.path("")}) {
        const auto none = ConversationFile::entries(path, TranscriptProvider::claude, 10);
        ASSERT_FALSE(none.has_value());
        EXPECT_THAT(none.error().message(), ::testing::HasSubstr(path));
    }
}

}  // namespace
}  // namespace orvane
