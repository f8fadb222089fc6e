// What the workspace view sends to terminals of all sorts: colours, signs, and plain lines for those who listen.

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <fstream>

#include "EndToEnd/ViewTest.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Size {
    int cols;
    int rows;
};
constexpr Size smallest{60, 15};
constexpr Size large{200, 50};

/// A terminal that remembers all that it was sent.
class Outer final : public HeadlessTerminal {
 public:
    Outer(MainLoop& loop, const Size& size)
        : HeadlessTerminal(loop, loop, {.cols = size.cols, .rows = size.rows},
                           [this](std::optional<int> code) { end = code; }) {}

    void run(const Environment& environment, const std::string& folder, std::vector<std::string> words) {
        std::vector<std::string> pairs;
        for (const auto& [name, value] : environment)
            pairs.push_back(std::string(name).append("=").append(value));
        EXPECT_TRUE(process
                        .startProcess({.executable = ORVANE_EXECUTABLE,
                                       .args = std::move(words),
                                       .environment = pairs,
                                       .currentDirectory = folder})
                        .has_value());
    }
    void type(std::string_view typed) { process.send(typed); }
    std::string row(int y) const {
        return terminal.getLine(y).translateToString(terminal.clusters(), {.trimsRight = true});
    }
    std::string text() const {
        std::string all;
        for (int y = 0; y < terminal.rows(); ++y)
            all += row(y) + "\n";
        return all;
    }
    /// The foreground of the first cell with that character; nothing when no cell has it.
    std::optional<Attribute::Color> colorOf(std::string_view character) const {
        for (int y = 0; y < terminal.rows(); ++y) {
            for (int x = 0; x < terminal.cols(); ++x)
                if (terminal.getCharacter(x, y) == character) return terminal.getCharData(x, y)->attribute.fg;
        }
        return std::nullopt;
    }

    std::string bytes;
    std::optional<int> end;

 private:
    void dataReceived(std::string_view slice) override {
        bytes += slice;
        HeadlessTerminal::dataReceived(slice);
    }
};

/// The parameters of all SGR sequences that set a colour.
std::vector<std::string> colorsIn(std::string_view bytes) {
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = bytes.find("\x1b[", at)) != std::string_view::npos; at += 2) {
        const std::size_t end = bytes.find_first_not_of("0123456789;:", at + 2);
        if (end == std::string_view::npos || bytes[end] != 'm') continue;
        const std::string parameters = ";" + std::string(bytes.substr(at + 2, end - at - 2));
        for (const char* color : {";3", ";4", ";9", ";10"}) {
            const auto place = parameters.find(color);
            const std::size_t digit = place + std::string_view(color).size();
            if (place == std::string::npos || digit >= parameters.size()) continue;
            if (std::isdigit(static_cast<unsigned char>(parameters[digit])) != 0) found.push_back(parameters);
        }
    }
    return found;
}

class ViewLook : public ViewTest {
 protected:
    ViewLook() {
        environment["TERM"] = "xterm-256color";
        for (const char* name : {"TMUX", "COLORTERM", "NO_COLOR", "LC_CTYPE"})
            environment.erase(name);
    }

    std::unique_ptr<Outer> open(const Size& size = large, std::vector<std::string> words = {},
                                std::string_view before = {}) {
        auto outer = std::make_unique<Outer>(loop, size);
        outer->terminal.feed(before);
        outer->run(environment, folder.path("project"), std::move(words));
        return outer;
    }
    void close(Outer& outer) {
        outer.type(
            "\x02"
            "d");
        EXPECT_TRUE(until(outer, [&] { return outer.end == 0; }));
    }
    ::testing::AssertionResult until(const Outer& outer, const std::function<bool()>& condition) {
        if (loop.runUntil(condition)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the screen shows\n" << outer.text();
    }
    ::testing::AssertionResult untilShows(const Outer& outer, const std::string& wanted) {
        return until(outer, [&] { return outer.text().contains(wanted); }) << "wanted: " << wanted;
    }
};

constexpr auto greenOnDark = Attribute::Color::ansi256(114);
constexpr auto greenOnLight = Attribute::Color::ansi256(22);

TEST_F(ViewLook, FollowsTheBackgroundOfTheTerminal) {
    for (const Size& size : {smallest, large}) {
        auto outer = open(size, {}, "\x1b]11;#fffff0\x07");
        ASSERT_TRUE(untilShows(*outer, "· shell"));
        EXPECT_TRUE(until(*outer, [&] { return outer->colorOf("─") == greenOnLight; })) << "its answer";
        outer->type("\x1b[?997;1n");
        EXPECT_TRUE(until(*outer, [&] { return outer->colorOf("─") == greenOnDark; })) << "the scheme has changed";
        EXPECT_THAT(outer->bytes, HasSubstr("\x1b[?2031h"));
        close(*outer);
        EXPECT_THAT(outer->bytes, HasSubstr("\x1b[?2031l"));
    }
}

TEST_F(ViewLook, AChosenThemeGoesBeforeTheTerminalAndNoColor) {
    std::filesystem::create_directories(folder.path("config/Orvane"));
    folder.write("config/Orvane/preferences.json", R"({"view.theme":"light"})");
    environment["NO_COLOR"] = "1";
    auto outer = open();
    EXPECT_TRUE(until(*outer, [&] { return outer->colorOf("─") == greenOnLight; }));
}

TEST_F(ViewLook, NoColorIsForTheInterfaceAndNotForPrograms) {
    environment["NO_COLOR"] = "1";
    auto outer = open();
    ASSERT_TRUE(untilShows(*outer, "─ · shell"));
    EXPECT_THAT(colorsIn(outer->bytes), ::testing::IsEmpty());
    outer->type("printf '\\033[31m\\302\\247\\033[m\\n'\r");
    ASSERT_TRUE(untilShows(*outer, "§"));
    EXPECT_EQ(outer->colorOf("§"), Attribute::Color::ansi256(1));
}

TEST_F(ViewLook, AConsoleGetsSignsThatItHasAndNoMouse) {
    environment["TERM"] = "linux";
    for (const Size& size : {smallest, large}) {
        auto outer = open(size);
        ASSERT_TRUE(untilShows(*outer, "· shell"));
        if (size.cols < 80)
            outer->type(
                "\x02"
                "b");
        ASSERT_TRUE(untilShows(*outer, "v project"));
        outer->type("\x02?");
        ASSERT_TRUE(untilShows(*outer, "┌─ All keys; the leader is C-b")) << "corners that it has";
        outer->type("q");
        EXPECT_THAT(outer->bytes, Not(HasSubstr("38;5")));
        EXPECT_THAT(outer->bytes, Not(HasSubstr("\x1b[?1002h")));
        EXPECT_THAT(outer->bytes, Not(HasSubstr("▾")));
        for (int y = 0; y < size.rows - 1; ++y)
            EXPECT_TRUE(outer->row(y).empty() || y == 0 || outer->row(y).contains("│") || outer->row(y).contains("─"))
                << "a row has lost its width: " << outer->row(y);
        close(*outer);
    }
}

TEST_F(ViewLook, ATerminalWithoutColorsAndOneWithoutUnicodeGetNone) {
    environment["TERM"] = "vt220";
    auto outer = open();
    ASSERT_TRUE(untilShows(*outer, "─ · shell"));
    outer->type("printf '\\033[1;31mR%s\\033[m\\n' ED\r");
    ASSERT_TRUE(untilShows(*outer, "RED"));
    EXPECT_THAT(colorsIn(outer->bytes), ::testing::IsEmpty());
    EXPECT_THAT(outer->bytes, HasSubstr("\x1b[1"));
    close(*outer);

    environment["LC_ALL"] = "de_DE.ISO-8859-1";
    outer = open(smallest);
    ASSERT_TRUE(untilShows(*outer, "- . shell"));
    outer->type(
        "echo Gr\xC3\xB6\xC3\x9F"
        "e\r");
    ASSERT_TRUE(untilShows(*outer, "Grose"));
    EXPECT_TRUE(std::ranges::all_of(outer->bytes, [](char byte) { return static_cast<signed char>(byte) >= 0; }));
}

class ViewHeard : public ViewLook, public ::testing::WithParamInterface<Size> {};

TEST_P(ViewHeard, AScreenReaderHearsLines) {
    auto outer = open(GetParam(), {"--screen-reader"}, "before\r\n");
    const auto hears = [&](const std::string& text) {
        return until(*outer, [&] { return outer->bytes.contains(text); }) << "wanted: " << text << "\nheard:\n"
                                                                          << outer->bytes;
    };
    ASSERT_TRUE(hears("C-b commands"));
    ASSERT_TRUE(hears("Pane “shell”, tab “1 Workspace”, project “project”\r\n"));
    ASSERT_TRUE(hears("ready> "));
    outer->bytes.clear();
    outer->type("echo one$((1+1))\r");
    ASSERT_TRUE(hears("\r\none2\r\nready> "));
    EXPECT_TRUE(outer->bytes.starts_with("echo one$((1+1))\r\none2\r\n")) << outer->bytes;

    outer->bytes.clear();
    outer->type("\x02:");
    ASSERT_TRUE(hears("Find anything\r\n> "));
    ASSERT_TRUE(hears("C-b %\r\n"));
    ASSERT_TRUE(hears("Esc leave\r\n"));
    outer->bytes.clear();
    outer->type("\x1b[B");
    ASSERT_TRUE(hears(">  split top/bottom  C-b \"\r\n"));
    EXPECT_EQ(outer->bytes, ">  split top/bottom  C-b \"\r\n") << "the choice and nothing else";
    outer->bytes.clear();
    outer->type("newtab");
    ASSERT_TRUE(hears(">  new tab"));
    outer->type("\r");
    ASSERT_TRUE(hears("tab “2 Workspace”"));
    outer->type(
        "\x02"
        "p");
    ASSERT_TRUE(hears("tab “1 Workspace”"));

    const std::string waiting = newSession({"claude", "--title", "asker"});
    outer->type(
        "\x02"
        "1");
    orvane({"send", waiting, "fake:bash"});
    ASSERT_TRUE(hears("asker: waiting for you: "));
    outer->bytes.clear();
    outer->type("\x02i");
    ASSERT_TRUE(hears("Do you want to proceed?\r\n")) << "all of the pane once more";
    close(*outer);
    EXPECT_THAT(outer->text(), HasSubstr("Agents go on"));
    EXPECT_TRUE(outer->terminal.modes().wraparound);
    EXPECT_FALSE(outer->terminal.modes().bracketedPasteMode);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ViewHeard, ::testing::Values(smallest, large));

TEST_F(ViewLook, PlainLinesComeByThePreferenceTooAndWithoutASequence) {
    std::filesystem::create_directories(folder.path("config/Orvane"));
    folder.write("config/Orvane/preferences.json", R"({"view.screenReader":true})");
    auto outer = open();
    ASSERT_TRUE(until(*outer, [&] { return outer->bytes.contains("ready> "); }));
    outer->type("echo a''b\r");
    ASSERT_TRUE(until(*outer, [&] { return outer->bytes.contains("ab\r\n"); }));
    close(*outer);
    std::string bytes = outer->bytes;
    for (const std::string_view known : {"\x1b[?2004h", "\x1b[?2004l"}) {
        for (std::size_t at = 0; (at = bytes.find(known)) != std::string::npos;)
            bytes.erase(at, known.size());
    }
    EXPECT_THAT(bytes, Not(HasSubstr("\x1b")));

    environment["TERM"] = "dumb";
    outer = open(large, {"view", "--screen-reader"});
    ASSERT_TRUE(until(*outer, [&] { return outer->bytes.contains("ready> "); }));
    close(*outer);
    EXPECT_THAT(outer->bytes, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace orvane
