#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/ServicesFixture.h"
#include "OrvaneShell/View/Overlays/CopyCursor.h"
#include "OrvaneShell/View/Overlays/CopyKeys.h"
#include "OrvaneShell/View/Overlays/CopySearch.h"
#include "OrvaneShell/View/Overlays/HistorySave.h"

namespace orvane {
namespace {

class SilentDelegate final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

/// A terminal of 20 by 5 that has written the numbers up to `count`, one a row.
struct Numbers {
    explicit Numbers(int count, int scrollback = 1000)
        : terminal(delegate, {.cols = 20, .rows = 5, .scrollback = scrollback}) {
        write(1, count);
    }
    void write(int first, int last) {
        for (int number = first; number <= last; ++number)
            terminal.feed((number > 1 ? "\r\nrow " : "row ") + std::to_string(number));
    }
    std::string rowOf(const CopyCursor& cursor) const {
        return terminal.buffer()
            .row(cursor.at(terminal).row)
            .translateToString(terminal.clusters(), {.trimsRight = true});
    }
    std::string topRow() const {
        return terminal.getLine(0).translateToString(terminal.clusters(), {.trimsRight = true});
    }

    SilentDelegate delegate;
    Terminal terminal;
};

TEST(CopyCursorTest, StaysWithItsTextAndTakesTheViewAlong) {
    Numbers numbers(20, 30);
    numbers.terminal.holdView();
    CopyCursor cursor(numbers.terminal);
    EXPECT_EQ(numbers.rowOf(cursor), "row 20");
    struct Case {
        CopyMotion motion;
        const char* row;
        const char* top;
    };
    const std::vector<Case> cases = {
        {CopyMotion::top, "row 16", "row 16"},        {CopyMotion::up, "row 15", "row 15"},
        {CopyMotion::bottom, "row 19", "row 15"},     {CopyMotion::middle, "row 17", "row 15"},
        {CopyMotion::pageUp, "row 13", "row 11"},     {CopyMotion::halfPageUp, "row 11", "row 9"},
        {CopyMotion::scrollUp, "row 11", "row 8"},    {CopyMotion::scrollDown, "row 11", "row 9"},
        {CopyMotion::scrollDown, "row 11", "row 10"}, {CopyMotion::scrollDown, "row 11", "row 11"},
        {CopyMotion::scrollDown, "row 12", "row 12"}, {CopyMotion::oldest, "row 1", "row 1"},
        {CopyMotion::pageUp, "row 1", "row 1"},       {CopyMotion::newest, "row 20", "row 16"},
        {CopyMotion::pageDown, "row 20", "row 16"},   {CopyMotion::halfPageUp, "row 18", "row 14"},
    };
    for (const Case& each : cases) {
        cursor.move(numbers.terminal, each.motion);
        EXPECT_EQ(numbers.rowOf(cursor), each.row) << static_cast<int>(each.motion);
        EXPECT_EQ(numbers.topRow(), each.top) << static_cast<int>(each.motion);
    }
    // Rows come in below and fall off above.
    numbers.write(21, 45);
    EXPECT_EQ(numbers.rowOf(cursor), "row 18");
    EXPECT_EQ(numbers.topRow(), "row 14");
    numbers.write(46, 70);
    EXPECT_EQ(numbers.rowOf(cursor), "row 36") << "the oldest there is";
    EXPECT_EQ(numbers.topRow(), "row 36");
}

TEST(CopyCursorTest, GoingUpAndDownKeepsTheColumnAsTheTextAllows) {
    Numbers numbers(3);
    numbers.terminal.feed("\r\nlonger than all\r\n\r\n\xE6\x96\x87\xE5\xAD\x97\xE6\x96\x87\xE5\xAD\x97");
    CopyCursor cursor(numbers.terminal);
    cursor.place(numbers.terminal, {3, 9});
    const auto cols = [&](CopyCursor::Columns columns) {
        std::string all;
        for (const CopyMotion motion :
             {CopyMotion::down, CopyMotion::down, CopyMotion::up, CopyMotion::up, CopyMotion::up}) {
            cursor.move(numbers.terminal, motion, columns);
            all += std::to_string(cursor.at(numbers.terminal).col) + " ";
        }
        return all;
    };
    EXPECT_EQ(cols(CopyCursor::Columns::ofText), "0 6 0 9 4 ");
    cursor.place(numbers.terminal, {3, 9});
    EXPECT_EQ(cols(CopyCursor::Columns::all), "9 9 9 9 9 ");
    cursor.place(numbers.terminal, {3, 5});
    cursor.move(numbers.terminal, CopyMotion::down);
    cursor.move(numbers.terminal, CopyMotion::down, CopyCursor::Columns::all);
    EXPECT_EQ(cursor.at(numbers.terminal).col, 4) << "no half of a wide character";
}

TEST(CopyKeysTest, LettersAndArrowsMeanTheSameAndModifiersOthers) {
    const auto meaning = [](const KeyEvent& key) { return copyKey(key); };
    const KeyEvent up{.name = KeyName::up};
    EXPECT_EQ(meaning(up), meaning({.character = 'k'}));
    EXPECT_NE(meaning({.character = 'g'}), meaning({.character = 'G'}));
    EXPECT_EQ(meaning({.character = 'G'}), meaning({.character = 'g', .modifiers = {.shift = true}}));
    EXPECT_NE(meaning({.character = 'v'}), meaning({.character = 'v', .modifiers = {.control = true}}));
    for (const KeyEvent& key :
         {KeyEvent{.character = 'x'}, {.character = 'k', .modifiers = {.alt = true}}, {.name = KeyName::f5}})
        EXPECT_FALSE(meaning(key).has_value());
}

class CopySearchTest : public testing::ServicesFixture {
 protected:
    /// What the search row shows in so many columns.
    std::string row(int cols) {
        Canvas canvas(cols, 1);
        CanvasPen pen(canvas, {0, 0, cols, 1});
        search.paintRow(view, pen, canvas, {0, 0, cols, 1});
        EXPECT_TRUE(canvas.cursor.has_value());
        std::string text;
        for (const StoredCell& cell : canvas.row(0))
            if (!cell.isRightHalf()) text += cell.isEmpty() ? " " : canvas.clusters().text(cell.code());
        return text;
    }
    /// Where hits are marked in the rows of the terminal: "^" the current one, "_" others.
    std::string marks() {
        Canvas canvas(20, 5);
        CanvasPen pen(canvas, {0, 0, 20, 5});
        search.paintHits(pen, {0, 0, 20, 5}, numbers.terminal);
        std::string all;
        for (int y = 0; y < 5; ++y) {
            std::string line;
            for (const StoredCell& cell : canvas.row(y)) {
                const auto style = cell.unpack().attribute.style;
                const bool isHit = (style & ViewStyle::underline) != ViewStyle::none;
                line += !isHit ? ' ' : (style & ViewStyle::inverse) != ViewStyle::none ? '^' : '_';
            }
            all += line.substr(0, line.find_last_not_of(' ') + 1) + "|";
        }
        return all;
    }
    void type(std::string_view text) {
        for (const char letter : text)
            search.key(view, numbers.terminal, cursor, {.character = static_cast<char32_t>(letter)});
    }
    void press(KeyName name) { search.key(view, numbers.terminal, cursor, {.name = name}); }
    void toggle(char32_t letter) {
        search.key(view, numbers.terminal, cursor, {.character = letter, .modifiers = {.alt = true}});
    }
    int cursorRow() const { return cursor.at(numbers.terminal).row; }

    using ViewStyle = Attribute::CharacterStyle;
    ViewContext view{viewServices(),
                     {.requestFrame = [] {}, .detach = {}, .stopHost = {}, .openProject = {}, .copy = {}}};
    Numbers numbers{30};
    CopyCursor cursor{numbers.terminal};
    CopySearch search;
};

TEST_F(CopySearchTest, TheViewGoesToTheHitWhileTypingAndBackWhenItIsGivenUp) {
    search.begin(numbers.terminal, cursor, CopySearch::Toward::older);
    type("row 2");
    EXPECT_EQ(cursorRow(), 28) << "29, the nearest above";
    EXPECT_EQ(marks(), "_____|_____|_____|^^^^^||");
    EXPECT_EQ(search.count(), "11/11") << "2 and 20 to 29";
    type("1");
    EXPECT_EQ(cursorRow(), 20);
    EXPECT_EQ(numbers.topRow(), "row 19") << "in the middle of the view";
    press(KeyName::backspace);
    EXPECT_EQ(cursorRow(), 28) << "hits count from where it began";
    type("x");
    EXPECT_EQ(cursorRow(), 29) << "back without a hit";
    EXPECT_EQ(marks(), "|||||");
    press(KeyName::backspace);
    press(KeyName::escape);
    EXPECT_FALSE(search.isTyping());
    EXPECT_EQ(cursorRow(), 29);
    EXPECT_EQ(marks(), "|||||");
    EXPECT_EQ(search.count(), "");
}

TEST_F(CopySearchTest, GoesOnRoundAndRemembersTerms) {
    search.begin(numbers.terminal, cursor, CopySearch::Toward::newer);
    type("w 3");
    EXPECT_EQ(search.count(), "1/2") << "it came round to the oldest";
    press(KeyName::enter);
    search.next(view, numbers.terminal, cursor, CopySearch::Course::on);
    EXPECT_EQ(cursorRow(), 29);
    search.next(view, numbers.terminal, cursor, CopySearch::Course::back);
    EXPECT_EQ(cursorRow(), 2);
    EXPECT_EQ(search.hitText(numbers.terminal, cursor), "w 3");
    cursor.move(numbers.terminal, CopyMotion::down);
    EXPECT_EQ(search.hitText(numbers.terminal, cursor), "") << "the cursor is elsewhere";
    search.next(view, numbers.terminal, cursor, CopySearch::Course::back);
    EXPECT_EQ(view.notice(), "");
    search.next(view, numbers.terminal, cursor, CopySearch::Course::back);
    EXPECT_EQ(cursorRow(), 29);
    EXPECT_THAT(view.notice(), ::testing::HasSubstr("came round"));
    // Another search, with the terms of those before.
    CopySearch other;
    other.begin(numbers.terminal, cursor, CopySearch::Toward::older);
    other.key(view, numbers.terminal, cursor, {.name = KeyName::up});
    other.key(view, numbers.terminal, cursor, {.name = KeyName::up});
    EXPECT_EQ(other.count(), "1/2");
    other.key(view, numbers.terminal, cursor, {.name = KeyName::down});
    EXPECT_EQ(other.count(), "") << "an empty line behind the newest";
    other.key(view, numbers.terminal, cursor, {.name = KeyName::enter});
    EXPECT_EQ(other.count(), "1/2") << "Enter alone takes the last term, too, from where the cursor is";
}

TEST_F(CopySearchTest, ABadPatternSaysWhyAndChangesNothing) {
    search.begin(numbers.terminal, cursor, CopySearch::Toward::older);
    toggle('r');
    type("ow 2[5-7]$");
    EXPECT_EQ(search.count(), "3/3");
    const std::string before = marks();
    type("(");
    EXPECT_THAT(row(120), ::testing::HasSubstr("No valid pattern: "));
    EXPECT_EQ(cursorRow(), 26);
    EXPECT_EQ(marks(), before);
    press(KeyName::enter);
    EXPECT_TRUE(search.isTyping());
    press(KeyName::backspace);
    EXPECT_THAT(row(120), ::testing::HasSubstr("3/3"));
}

TEST_F(CopySearchTest, TheRowFitsTheSmallestWindowInEveryLanguage) {
    search.begin(numbers.terminal, cursor, CopySearch::Toward::older);
    type("row");
    toggle('w');
    for (const auto& [language, name] : RawValues<Language>::table) {
        view.l10n.language = language;
        const std::string shown = row(60);
        for (const std::string& part :
             {std::string("row"), std::string("30/30"), "[" + view.l10n.text("view.search.word") + "]"})
            EXPECT_THAT(shown, ::testing::HasSubstr(part));
        // Beside them stands what calls the person at most; a prompt has less room.
        EXPECT_LE(Text::displayWidth(view.l10n.text("view.hint.history")), 57U) << shown;
        EXPECT_LE(Text::displayWidth(view.l10n.text("view.hint.selecting")), 57U) << shown;
        EXPECT_LE(Text::displayWidth(view.l10n.text("view.history.exists")), 56U) << shown;
    }
}

TEST(HistorySaveTest, TextIsOfBothScreensAndEndsWithItsLastLine) {
    Numbers numbers(7);
    numbers.terminal.feed("\r\n\r\n" + std::string(45, 'x') + "\r\nend  ");
    const std::string normal = "row 1\nrow 2\nrow 3\nrow 4\nrow 5\nrow 6\nrow 7\n\n" + std::string(45, 'x') + "\nend\n";
    EXPECT_EQ(HistorySave::text(numbers.terminal), normal);
    numbers.terminal.feed("\x1b[?1049h\x1b[Heditor");
    EXPECT_EQ(HistorySave::text(numbers.terminal), normal + "editor\n");
    Numbers empty(0);
    EXPECT_EQ(HistorySave::text(empty.terminal), "");
}

}  // namespace
}  // namespace orvane
