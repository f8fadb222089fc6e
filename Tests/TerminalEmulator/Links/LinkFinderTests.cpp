#include "TerminalEmulator/Links/LinkFinder.h"

#include <gtest/gtest.h>

#include <random>

#include "TerminalEmulator/Buffer/BufferNotation.h"
#include "TerminalEmulator/Buffer/PayloadHolder.h"
#include "TerminalEmulator/Links/ExplicitLink.h"

namespace orvane::testing {
namespace {

struct Screen {
    explicit Screen(std::u32string_view text, int cols = 40) : buffer(cols, 12, 8, 100) {
        buffer.fillViewportRows();
        write(text);
    }

    ClusterTable clusters;
    PayloadHolder payloads;
    Buffer buffer;
    LinkFinder finder{buffer, clusters};

    void write(std::u32string_view text, std::string_view payload = {}) {
        const auto marksNothing = [](PayloadSet&) {};
        const Pen pen({}, payload.empty() ? TinyAtom{} : payloads.hold(payload, marksNothing));
        type(buffer, text, pen);
    }

    std::optional<LinkMatch> at(int row, int col) const {
        return finder.link({row, col}, LinkMode::explicitAndImplicit);
    }

    /// Every link once, with its parts: "text row:start-end row:start-end". Fails when cells disagree about a link.
    std::vector<std::string> links() const {
        std::vector<std::string> found;
        std::vector<std::vector<bool>> seen(static_cast<std::size_t>(buffer.count()),
                                            std::vector<bool>(static_cast<std::size_t>(buffer.cols())));
        for (int row = 0; row < buffer.count(); ++row) {
            for (int col = 0; col < buffer.cols(); ++col) {
                const auto match = at(row, col);
                if (!match) continue;
                EXPECT_EQ(match->row, row);
                EXPECT_TRUE(match->range.contains(col)) << match->text;
                const std::string text = describe(*match);
                if (std::ranges::find(found, text) == found.end()) found.push_back(text);
                for (const RowRange& part : match->rowRanges) {
                    for (int inside = part.cols.startCol; inside < part.cols.endCol; ++inside)
                        EXPECT_EQ(describe(at(part.row, inside).value_or(LinkMatch{})), text);
                }
            }
        }
        return found;
    }

    static std::string describe(const LinkMatch& match) {
        std::string text = match.text;
        for (const RowRange& part : match.rowRanges) {
            text += " " + std::to_string(part.row) + ":" + std::to_string(part.cols.startCol) + "-" +
                    std::to_string(part.cols.endCol);
        }
        return text;
    }
};

TEST(LinkFinderTests, AddressesEndWhereAReaderWouldEndThem) {
    const std::vector<std::pair<std::u32string_view, std::string_view>> cases = {
        {U"see https://a.b/c?d=e&f#g, then", "https://a.b/c?d=e&f#g"},
        {U"(https://a.b/c_(d)).", "https://a.b/c_(d)"},
        {U"[x](https://a.b/c) y", "https://a.b/c"},
        {U"[https://a.b/c]more", "https://a.b/c"},
        {U"<https://a.b>", "https://a.b"},
        {U"\"https://a.b/\"", "https://a.b/"},
        {U"'https://a.b/c'd", "https://a.b/c"},
        {U"**https://a.b/c**", "https://a.b/c"},
        {U"HTTP://A.B/...", "HTTP://A.B/"},
        {U"https://[::1]:80/x!", "https://[::1]:80/x"},
        {U"https://a.b/(", "https://a.b/"},
        {U"看https://例.jp/道。次", "https://例.jp/道"},
        {U"file:///etc/hosts:", "file:///etc/hosts"},
        {U"mailto:a@b.c;", "mailto:a@b.c"},
        {U"ssh://git@h:22/~x/y.git", "ssh://git@h:22/~x/y.git"},
        {U"git+ssh://h/x", "git+ssh://h/x"},
        {U"ftp://h", "ftp://h"},
        {U"a|https://a.b|c", "https://a.b"},
        {U"/usr/bin/env ./x ~/y", ""},
        {U"www.a.b a.b a@b.c", ""},
        {U"https:// https://. mailto:x", ""},
        {U"xhttps://a.b", ""},
        {U"mailto:x.mailto:y mailto:a@b.c", "mailto:a@b.c"},
        {U"javascript:alert(1) data:x", ""},
    };
    for (const auto& [typed, text] : cases) {
        const Screen screen(typed);
        std::vector<std::string> found = screen.links();
        for (std::string& link : found)
            link.resize(link.find(' '));
        EXPECT_EQ(found, text.empty() ? std::vector<std::string>{} : std::vector{std::string(text)});
        EXPECT_FALSE(screen.finder.link({0, 15}, LinkMode::explicitOnly));
    }
}

TEST(LinkFinderTests, RowsOfOneAddressAreJoined) {
    using Links = std::vector<std::string>;
    const std::vector<std::pair<std::u32string_view, Links>> cases = {
        // Twenty columns. Wrapped by the terminal.
        {U"go https://a.b/cdefghijklm/nop now", {"https://a.b/cdefghijklm/nop 0:3-20 1:0-10"}},
        {U"012 https://a.b/cde一 x", {"https://a.b/cde一 0:4-19 1:0-2"}},
        {U"│ https://a.b/cdefghijk", {"https://a.b/cdefghijk 0:2-20 1:0-3"}},
        // By a program.
        {U"https://a.b/cdefghij\nklmnop/q", {"https://a.b/cdefghijklmnop/q 0:0-20 1:0-8"}},
        {U"  https://a.b/cdefg\n  hij/klmnopqrst\n  uv1", {"https://a.b/cdefghij/klmnopqrst 0:2-19 1:2-16"}},
        {U"  https://a.b/cdefg\n  hij/klmnopqrstuv\n  w1 and on",
         {"https://a.b/cdefghij/klmnopqrstuvw1 0:2-19 1:2-18 2:2-4"}},
        {U"● https://a.b/cdefg\n  hij?k=l", {"https://a.b/cdefghij?k=l 0:2-19 1:2-9"}},
        {U"1. x https://a.b/cde\n   f/g.", {"https://a.b/cdef/g 0:5-20 1:3-6"}},
        {U"│ https://a.b/cdef │\n│ gh/ij            │", {"https://a.b/cdefgh/ij 0:2-18 1:2-7"}},
        {U"│https://a.b/│ab\n│cde/f       │cd", {"https://a.b/cde/f 0:1-13 1:1-6"}},
        {U"https://a.b/c?u=abcd\n1&v=https://d.e/fghi\njk/l",
         {"https://a.b/c?u=abcd1&v=https://d.e/fghijk/l 0:0-20 1:0-20 2:0-4"}},
        // Not the same address.
        {U"https://a.b/cdefghij\nhttps://d.e/f", {"https://a.b/cdefghij 0:0-20", "https://d.e/f 1:0-13"}},
        {U"https://a.b/cdefghij\nwww.d.e/f", {"https://a.b/cdefghij 0:0-20"}},
        {U"https://a.b/cdefghij\nThen we go on", {"https://a.b/cdefghij 0:0-20"}},
        {U"https://a.b/cdefghij\nand/or more", {"https://a.b/cdefghij 0:0-20"}},
        {U"https://a.b/cdefghij\nDone.", {"https://a.b/cdefghij 0:0-20"}},
        {U"https://a.b/cdefghi.\n12 files", {"https://a.b/cdefghi 0:0-19"}},
        {U"(https://a.b/cdefgh)\nx/y1", {"https://a.b/cdefgh 0:1-19"}},
        {U"https://a.b/cdef\nghi/j", {"https://a.b/cdef 0:0-16"}},
        {U"  https://a.b/cdefgh\nij/kl", {"https://a.b/cdefgh 0:2-20"}},
        {U"- https://a.b/cdefgh\n- ij/kl", {"https://a.b/cdefgh 0:2-20"}},
        {U"/no/address/here/abc\ndef/ghi", {}},
        {U"│ https://a.b/cdef │\n╰──────────────────╯", {"https://a.b/cdef 0:2-18"}},
        {U"│ https://a.b/cdef │\n│ gh/ij     │ kl    ", {"https://a.b/cdef 0:2-18"}},
    };
    for (const auto& [typed, links] : cases)
        EXPECT_EQ(Screen(typed, 20).links(), links);
}

TEST(LinkFinderTests, AllCellsOfALinkTellTheSameLink) {
    const std::vector<std::u32string_view> pieces = {U"https://", U"a.b", U"/", U"c1", U"(", U")",  U".",
                                                     U" ",        U"一",  U"x", U"\n", U"│", U"● ", U"  "};
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        std::u32string text;
        for (int left = 40; left > 0; --left)
            text += pieces[random() % pieces.size()];
        SCOPED_TRACE(seed);
        (void)Screen(text, 8 + static_cast<int>(random() % 6)).links();  // expects it itself
    }
}

TEST(LinkFinderTests, TheRowsThatAreJoinedAreBounded) {
    Screen screen(U"https://a.b/");
    screen.write(std::u32string(100'000, U'x'));
    const auto match = screen.at(0, 0);
    ASSERT_FALSE(match);  // the head has fallen off
    Screen high(U"https://a.b/", 2);
    high.write(std::u32string(200, U'1'));
    const auto near = high.at(0, 0);
    ASSERT_TRUE(near);
    EXPECT_EQ(near->rowRanges.size(), 65U);
}

TEST(LinkFinderTests, MarkedCellsOfOneLinkBelongTogether) {
    using Links = std::vector<std::string>;
    Screen screen(U"a ", 10);
    screen.write(U"https://x.y wrapped一", ";https://u.v/;w");
    screen.write(U" b\n");
    screen.write(U"one", "id=1;file:///f");
    screen.write(U" ");
    screen.write(U"two", "a=b:id=1;file:///f");
    screen.write(U"\n");
    screen.write(U"one", "id=2;file:///f");
    screen.write(U" ");
    screen.write(U"bad", "nothing");
    screen.write(U"bad", "id=3;");
    screen.write(U"\n");
    screen.write(U"one", "id=1;file:///f");
    EXPECT_EQ(screen.links(),
              (Links{"https://u.v/;w 0:2-10 1:0-10 2:0-3", "file:///f 3:0-3 3:4-7 5:0-3", "file:///f 4:0-3"}));
    EXPECT_TRUE(screen.finder.link({0, 3}, LinkMode::explicitOnly)->isExplicit);
    EXPECT_FALSE(screen.at(-1, 0) || screen.at(0, 10) || screen.at(99, 0));
}

}  // namespace
}  // namespace orvane::testing
