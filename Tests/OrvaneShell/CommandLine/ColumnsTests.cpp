#include "OrvaneShell/CommandLine/Columns.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(ColumnsTest, linesUpWhatIsWiderThanItsCharacters) {
    Columns columns;
    EXPECT_TRUE(columns.isEmpty());
    columns.add({"ID", "NAME", "FOLDER"});
    columns.add({"  12", "日本", "/p"});
    columns.add({"3", "e\u0301🇩🇪", "/very/long"});
    columns.add({"", "", ""});
    columns.add({"last"});
    EXPECT_EQ(columns.text(),
              "ID    NAME  FOLDER\n"
              "  12  日本  /p\n"
              "3     e\u0301🇩🇪   /very/long\n"
              "            \n"
              "last\n");
}

TEST(ColumnsTest, noCellSteersTheTerminalOrBreaksALine) {
    Columns columns;
    columns.add({"a\x1B[2J\rb", "\x1B]0;title\x07", "x"});
    columns.add({"one\ntwo\u202E", "\u009Bm\x9B\xFF", "  y\t"});
    EXPECT_EQ(columns.text(),
              "a [2J b  ]0;title  x\n"
              "one two  m\uFFFD\uFFFD         y\n");
}

}  // namespace
}  // namespace orvane
