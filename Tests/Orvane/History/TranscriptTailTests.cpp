#include "Orvane/History/TranscriptTail.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using Change = TranscriptTail::Change;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TranscriptTailTest : public ::testing::Test {
 protected:
    void append(const std::string& text) { std::ofstream(tail.path(), std::ios::app) << text; }

    TemporaryFolder folder;
    TranscriptTail tail{folder.path("transcript.jsonl")};
};

TEST_F(TranscriptTailTest, GivesWholeLinesAndReadsOnlyWhatIsNew) {
    EXPECT_EQ(tail.check(), Change::gone);
    append("one\ntw");
    EXPECT_EQ(tail.check(), Change::grown);
    EXPECT_THAT(tail.lines(), ElementsAre("one"));
    EXPECT_EQ(tail.check(), Change::none);
    append("o");
    EXPECT_EQ(tail.check(), Change::none) << "no line is whole that was not";
    append("\n\nthree\n");
    EXPECT_EQ(tail.check(), Change::grown);
    EXPECT_THAT(tail.lines(), ElementsAre("one", "two", "", "three"));
    EXPECT_EQ(tail.bytesRead(), std::filesystem::file_size(tail.path()));
    std::filesystem::remove(tail.path());
    EXPECT_EQ(tail.check(), Change::gone);
    EXPECT_EQ(tail.lines().size(), 4U);
}

TEST_F(TranscriptTailTest, NoticesThatTheFileIsAnother) {
    append("one\ntwo\n");
    tail.check();
    folder.write("transcript.jsonl", "1\n");
    EXPECT_EQ(tail.check(), Change::replaced) << "cut";
    EXPECT_THAT(tail.lines(), ElementsAre("1"));
    folder.write("other", "a\nb\nand longer\n");
    std::filesystem::rename(folder.path("other"), tail.path());
    EXPECT_EQ(tail.check(), Change::replaced);
    EXPECT_THAT(tail.lines(), ElementsAre("a", "b", "and longer"));
}

TEST_F(TranscriptTailTest, KeepsTheEndOfALongFile) {
    constexpr std::size_t kept = TranscriptTail::keptBytes;
    append(std::string(3 * kept, 'x') + "\nlast\n");
    EXPECT_EQ(tail.check(), Change::grown);
    EXPECT_THAT(tail.lines(), ElementsAre("last")) << "the line that begins before what is kept is left out";
    EXPECT_LE(tail.bytesRead(), kept);
    append(std::string(2 * kept, 'y'));
    tail.check();
    EXPECT_THAT(tail.lines(), IsEmpty());
    append("\n");
    tail.check();
    EXPECT_THAT(tail.lines(), IsEmpty()) << "its beginning was left out";
    append("short\n");
    EXPECT_EQ(tail.check(), Change::grown);
    EXPECT_THAT(tail.lines(), ElementsAre("short"));
    for (int i = 0; i < 30; ++i) {
        append(std::string(kept / 10, 'z') + "\n");
        tail.check();
    }
    EXPECT_THAT(tail.lines(), ::testing::SizeIs(9));
    EXPECT_THAT(tail.lines(), ::testing::Each(::testing::SizeIs(kept / 10)));
}

}  // namespace
}  // namespace orvane
