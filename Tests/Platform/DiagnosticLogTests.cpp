#include "Platform/DiagnosticLog.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <time.h>

#include <optional>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(DiagnosticLog, AppendsLinesInLocalTimeWithoutControlCharacters) {
    const TemporaryFolder folder;
    const char* zone = getenv("TZ");
    const std::optional<std::string> before = zone != nullptr ? std::optional<std::string>(zone) : std::nullopt;
    setenv("TZ", "XXX-02:30", 1);  // 2.5 hours east
    const WallTime time = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 23h + 7min + 5s + 42'999us;
    const DiagnosticLog log(folder.write("log", "before\n"), [&] { return time; });
    log.log("a\nb\x1b[31m\x7f \xC2\x9B \xC3\xA4");
    log.log("");
    EXPECT_EQ(folder.read("log"), "before\n01:37:05.042 a b [31m    \xC3\xA4\n01:37:05.042 \n");
    before ? setenv("TZ", before->c_str(), 1) : unsetenv("TZ");
    tzset();
}

TEST(DiagnosticLog, StaysOffWithoutAPlainFileOfOurs) {
    const TemporaryFolder folder;
    const std::string target = folder.write("target", "");
    std::filesystem::create_symlink(target, folder.path("link"));
    std::filesystem::create_hard_link(folder.write("victim", ""), folder.path("hard"));
    ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
    for (const std::string name : {"none", "link", "hard", "fifo", "."}) {
        const DiagnosticLog log(folder.path(name));
        EXPECT_FALSE(log.isOn()) << name;
        log.log("x");
    }
    EXPECT_FALSE(std::filesystem::exists(folder.path("none")));
    EXPECT_EQ(folder.read("target") + folder.read("victim"), "");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(target.c_str(), 12345, 12345), 0);
        EXPECT_FALSE(DiagnosticLog(target).isOn());
    }
}

}  // namespace
}  // namespace orvane
