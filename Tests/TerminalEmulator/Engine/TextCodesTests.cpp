#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "TerminalEmulator/Engine/Base64.h"
#include "TerminalEmulator/Engine/HeldModes.h"
#include "TerminalEmulator/Engine/Hex.h"
#include "TerminalEmulator/ProgressReport.h"

namespace orvane {
namespace {

TEST(Base64, ReadsAlsoWithoutPaddingAndNothingElse) {
    std::string bytes;
    for (int i = 0; i < 300; ++i) {
        const std::string text = Base64::encode(bytes);
        EXPECT_EQ(text.size() % 4, 0U);
        EXPECT_EQ(Base64::decode(text), bytes) << text;
        EXPECT_EQ(Base64::decode(text.substr(0, text.find('='))), bytes) << text;
        bytes += static_cast<char>(i * 37);
    }
    EXPECT_EQ(Base64::encode("foob"), "Zm9vYg==");
    EXPECT_EQ(Base64::decode("Zm9vYg="), "foob");
    for (const char* bad : {"Z", "Zm9vY", "=", "Zg===", "Zm9v=", "Zm 9v", "Z=9v", "Zm9v!", "Zm-_",
                            "\xC3\xA9"
                            "aa"})
        EXPECT_EQ(Base64::decode(bad), std::nullopt) << bad;
}

TEST(Hex, RoundTripsAndRefusesTheRest) {
    EXPECT_EQ(Hex::encode(std::string_view("Co\0\xFF", 4)), "436F00FF");
    EXPECT_EQ(Hex::decode("436f00fF"), std::string("Co\0\xFF", 4));
    for (const char* bad : {"4", "4g", "-1", "0x", " 1"})
        EXPECT_EQ(Hex::decode(bad), std::nullopt) << bad;
}

TEST(ProgressReport, IsReadWholeOrNotAtAll) {
    using enum ProgressReportState;
    using Value = std::optional<std::uint8_t>;
    struct Case {
        const char* payload;
        std::optional<ProgressReport> expected;
    };
    const Case cases[] = {
        {"4;0", ProgressReport{remove, {}}},
        {"4;0;50", ProgressReport{remove, {}}},
        {"4;1", ProgressReport{set, Value(0)}},
        {"4;1;42", ProgressReport{set, Value(42)}},
        {"4;1;999", ProgressReport{set, Value(100)}},
        {"4;1;99999999999999999999", ProgressReport{set, Value(100)}},
        {"4;2;-5", ProgressReport{error, Value(0)}},
        {"4;2", ProgressReport{error, {}}},
        {"4;3", ProgressReport{indeterminate, {}}},
        {"4;4;7", ProgressReport{pause, Value(7)}},
        {"4;1;7;more", ProgressReport{set, Value(7)}},
        {"", {}},
        {"4", {}},
        {"4;", {}},
        {"4;5", {}},
        {"4;11", {}},
        {"4;1;", {}},
        {"4;1;x", {}},
        {"4;0;x", {}},
        {"4;1;5x", {}},
        {"4;1;+-5", {}},
        {"5;1;5", {}},
        {"Build done", {}},
        {"4;1;5;\xC3\xA9", {}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(ProgressReport::parse(row.payload), row.expected) << row.payload;
}

TEST(HeldModes, KeepWhatCanChangeAndKnowNoOthers) {
    HeldModes modes;
    EXPECT_EQ(modes.privateState(8), 1);
    EXPECT_EQ(modes.privateState(1007), 2);
    EXPECT_TRUE(modes.setPrivate(1007, true));
    EXPECT_TRUE(modes.setAnsi(12, false));
    EXPECT_EQ(modes.privateState(1007), 1);
    EXPECT_EQ(modes.ansiState(12), 2);
    EXPECT_EQ(modes.privateState(12), std::nullopt);

    EXPECT_TRUE(modes.setPrivate(2027, false));
    EXPECT_TRUE(modes.setAnsi(19, true));
    EXPECT_EQ(modes.privateState(2027), 3);
    EXPECT_EQ(modes.ansiState(19), 4);

    EXPECT_FALSE(modes.setPrivate(2004, true)) << "it has an effect";
    EXPECT_FALSE(modes.setAnsi(4, true)) << "it has an effect";
    EXPECT_EQ(modes.privateState(4711), std::nullopt);
}

}  // namespace
}  // namespace orvane
