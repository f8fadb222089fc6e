#include "Orvane/Agents/HookFeedFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"
#include "OrvaneCore/Support/Json.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

class HookFeedFileTest : public ::testing::Test {
 protected:
    void append(const std::string& bytes) const { std::ofstream(file->path(), std::ios::app) << bytes; }

    TemporaryFolder folder;
    std::expected<HookFeedFile, SystemError> file = HookFeedFile::create(folder.path("hooks"), "A.events");
};

TEST_F(HookFeedFileTest, readsWholeLinesAndGoesWithItsSession) {
    ASSERT_TRUE(file);
    const std::string path = file->path();
    EXPECT_EQ(file->readNew(), "");
    append("prompt\nto");
    EXPECT_EQ(file->readNew(), "prompt\n");
    EXPECT_EQ(file->readNew(), "");
    append("ol\n\nstop");
    EXPECT_EQ(file->readNew(), "tool\n\n");
    append("\n");
    EXPECT_EQ(file->readNew(), "stop\n");
    std::filesystem::resize_file(path, 0);
    append("stop\n");
    EXPECT_EQ(file->readNew(), "stop\n");
    // More than one look reads, and a line that never ends.
    std::string many;
    for (int count = 0; count < 60000; ++count)
        many += "tool\n";
    append(many);
    std::string read;
    for (int look = 0; look < 3; ++look)
        read += file->readNew();
    EXPECT_EQ(read, many);
    append(std::string(HookFeedFile::readLimit + 5, 'x') + "\nstop\n");
    for (int look = 0; look < 3; ++look)
        read = file->readNew() + read;
    EXPECT_TRUE(read.starts_with("xxxxx\nstop\n"));
    HookFeedFile moved = *std::move(file);
    EXPECT_TRUE(std::filesystem::exists(path));
    {
        const HookFeedFile last = std::move(moved);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(HookFeedFileTest, isNotHeldUpByWhatStandsInItsPlace) {
    ASSERT_TRUE(file);
    const std::string& path = file->path();
    struct stat facts{};
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600U);
    std::filesystem::remove(path);
    EXPECT_EQ(file->readNew(), "");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(file->readNew(), "");
    std::filesystem::remove(path);
    std::filesystem::create_symlink(folder.write("other", "stop\n"), path);
    EXPECT_EQ(file->readNew(), "");
    std::filesystem::remove(path);
    append("tool\n");
    EXPECT_EQ(file->readNew(), "tool\n");
    folder.write("plain", "");
    EXPECT_FALSE(HookFeedFile::create(folder.path("plain"), "A.events"));
}

TEST(ClaudeHookFeedTest, addsHooksBehindTheOthers) {
    for (const auto line : {ClaudeHookFeed::StatusLine::keep, ClaudeHookFeed::StatusLine::hide}) {
        const std::string plain = ClaudeHookFeed::settingsJson(line);
        const std::string further = ClaudeHookFeed::withFurtherHooks(plain);
        EXPECT_TRUE(further.starts_with(plain.substr(0, plain.size() - 2) + R"(,"PermissionRequest":)")) << further;
        const auto parsed = Json::parse(further);
        ASSERT_TRUE(parsed) << further;
        EXPECT_EQ(parsed->as_object().at("hooks").as_object().size(), 9U);
    }
}

}  // namespace
}  // namespace orvane
