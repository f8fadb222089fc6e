#include "OrvaneShell/View/Input/InputDecoder.h"

#include <gtest/gtest.h>

#include "InputText.h"

namespace orvane {
namespace {

using namespace testing;

/// What is typed, and the events. Bars within the bytes of a row cannot be written: none needs one.
const auto inputs = lineTable<2>(R"(
    # characters
    aB1                          | a, B, 1
    \x01\x1a\x00\x0a             | C-a, C-z, C-Space, C-j
    \x1c\x1d\x1e\x1f             | C-\, C-], C-^, C-_
    \x7f\x08\t\r                 | Backspace, Backspace, Tab, Enter
    \xc3\xa4\xe2\x82\xac         | ä, €
    \xf0\x9f\x98\x80             | 😀
    \xc3a\x80\xf0\x9f\r          | �, a, �, �, Enter
    \xc3\xc3\xa4\xff             | �, ä, �
    # Alt
    \ex\eX\e^                    | M-x, M-X, M-^
    \e\r\e\x7f\e\x03\e\t         | M-Enter, M-Backspace, C-M-c, M-Tab
    \e\xc3\xb6                   | M-ö
    \e[\r\eO\x7f\e]\x03          | M-[, Enter, M-O, Backspace, M-], C-c
    \e                           | Escape
    \e\e                         | Escape, Escape
    \e\ex                        | Escape, M-x
    \e\e[A                       | M-Up
    \e\e\eOA                     | Escape, M-Up
    \e\e[I                       | Escape, focus
    \e[                          | M-[
    \e\e]                        | Escape, M-]
    \eP                          | M-P
    # cursor and function keys of xterm
    \e[A\eOB\e[C\eOD\e[H\eOF     | Up, Down, Right, Left, Home, End
    \e[1;2A\e[1;5D\e[1;8H        | S-Up, C-Left, C-M-S-Home
    \eO5C\eO1;3D\e[3B            | C-Right, M-Left, M-Down
    \e[2~\e[3;5~\e[5~\e[6;2~     | Insert, C-Delete, PageUp, S-PageDown
    \e[1~\e[4~\e[7~\e[8~         | Home, End, Home, End
    \eOP\eOQ\eOR\eOS\e[15~\e[24~ | F1, F2, F3, F4, F5, F12
    \e[11~\e[14~\e[25~\e[34~     | F1, F4, F13, F20
    \e[1;2P\e[1;5R\e[R\e[24;6~   | S-F1, C-F3, F3, C-S-F12
    \e[Z\e[1;5Z                  | S-Tab, C-S-Tab
    \eOM\eOp\eOy\eOk\e[E         | keypad(57414), keypad(57399), keypad(57408), keypad(57413), keypad(57427)
    # modifyOtherKeys
    \e[27;2;13~\e[27;5;9~        | S-Enter, C-Tab
    \e[27;5;97~\e[27;6;65~       | C-a, C-S-a
    # rxvt and the Linux console
    \e[a\eOd\e[3$\e[3^\e[3@      | S-Up, C-Left, S-Delete, C-Delete, C-S-Delete
    \e[[A\e[[E\e\e[[B            | F1, F5, M-F2
    # enhanced keyboards
    \e[97;5u\e[13;2u\e[27u       | C-a, S-Enter, Escape
    \e[97:65;2u                  | A
    \e[1089::99;5u               | C-с base=c
    \e[97;1:3u\e[1;1:2A\e[3;5:3~ | a release, Up repeat, C-Delete release
    \e[97;;97u\e[0;;228:246u     | a text=a, \x00 text=äö
    \e[57376u\e[57398u\e[57400u  | F13, F35, keypad(57400)
    \e[57441;2u\e[97;201u        | S-functional(57441), D-a caps num
    \e[57427~\e[57428;17u        | keypad(57427), functional(57428) hyper
    # mouse
    \e[<0;1;1M\e[<0;5;3m         | left press 0,0, left release 4,2
    \e[<64;10;2M\e[<67;10;2M     | wheelUp press 9,1, wheelRight press 9,1
    \e[<34;3;4M\e[<35;3;4M       | right motion 2,3, none motion 2,3
    \e[<20;3;4M\e[<9;400;120M    | C-S-left press 2,3, M-middle press 399,119
    \e[M !!\e[M#!!               | left press 0,0, left release 0,0
    \e[M"\xff\x80                | right press 222,95
    \e[34;7;9M\e[35;7;9M         | right press 6,8, right release 6,8
    \e[<128;1;1M\e[<0;0;1M       | other, other
    # focus and answers
    \e[I\e[O                     | focus, blur
    \e[?62;4;22c\e[?2026;2$y     | attributes(62,4,22), mode(2026,2)
    \e[?5u\e[20;5R\e[?1;5R       | flags(5), cursor(20,5), cursor(1,5)
    \e]11;rgb:1e1e/ffff/0000\e\\ | background(30,255,0)
    \e[?997;2n                   | scheme(2)
    \e[?997;1n                   | scheme(1)
    \e[?996n                     | reply(996)
    \e]11;rgba:ff/80/00/ff\x07   | background(255,128,0)
    \e]10;rgb:0/0/0\x07\e[>0;1c  | reply(), reply(0,1)
    \eP>!term(1)\e\\\e[8;24;80t  | reply(), reply(8,24,80)
    # what nobody knows, and what has no end
    \e[99~\e[1;2;3A\e[55296u     | other, other, other
    \e[1;\x03                    | other, C-c
    \e[1;\e[A                    | other, Up
    \e]11;rgb\ra                 | other, Enter, a
    \e]11;rgb\e[A                | other, Up
    \e]11;\e                     | other, Escape
    \e[M a                       | other
    # pastes
    \e[200~a\tb\e[201~c          | <paste[a\x09b]>, c
    \e[200~\e[201~               | <paste[]>
    \e[200~\e[A\e[20\e[201~      | <paste[\x1b[A\x1b[20]>
    \e[200~x\xc3\e[201~          | <paste[x\xef\xbf\xbd]>
    \e[200~\r\e[201~\e[201~      | <paste[\x0d]>, other
)");

/// Pieces of one paste as one event: how it is cut is not told.
std::vector<InputEvent> joined(const std::vector<InputEvent>& events) {
    std::vector<InputEvent> whole;
    for (const InputEvent& event : events) {
        const auto* const piece = std::get_if<PasteEvent>(&event);
        auto* const before = whole.empty() ? nullptr : std::get_if<PasteEvent>(&whole.back());
        if (piece == nullptr || before == nullptr || before->isLast) {
            whole.push_back(event);
        } else {
            before->text += piece->text;
            before->isLast = piece->isLast;
        }
    }
    return whole;
}

TEST(InputDecoderTests, everyFormOfInputIsUnderstoodHoweverItIsCut) {
    for (const auto& [typed, expected] : inputs) {
        const std::string bytes = bytesOf(typed);
        const auto whole = decodedInput({bytes});
        // A NUL is what a key without character writes itself as.
        const std::string wanted = expected.find("\\x00") == std::string::npos
                                       ? expected
                                       : std::string(expected).replace(expected.find("\\x00"), 4, 1, '\0');
        EXPECT_EQ(inputText(whole), wanted) << typed;
        std::vector<std::string_view> single;
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            single.push_back(std::string_view(bytes).substr(at, 1));
            const std::string_view view = bytes;
            EXPECT_EQ(joined(decodedInput({view.substr(0, at), view.substr(at)})), whole) << typed << " cut at " << at;
        }
        EXPECT_EQ(joined(decodedInput(single)), whole) << typed;
    }
}

TEST(InputDecoderTests, keysKeepTheBytesTheyCameWith) {
    for (const auto& [typed, expected] : inputs) {
        const std::string bytes = bytesOf(typed);
        std::string told;
        bool hasOnlyKeys = true;
        for (const InputEvent& event : decodedInput({bytes})) {
            if (const auto* const key = std::get_if<KeyEvent>(&event)) {
                told += key->bytes;
            } else {
                hasOnlyKeys = false;
            }
        }
        if (hasOnlyKeys) {
            EXPECT_EQ(told, bytes) << typed;
        }
    }
}

TEST(InputDecoderTests, aSlowLineMayCutASequenceButALostEndDoesNotEatWhatFollows) {
    std::vector<InputEvent> events;
    InputDecoder decoder;
    const auto sink = [&](const InputEvent& event) { events.push_back(event); };
    decoder.feed("\x1b[1;", sink);
    decoder.flush(sink);
    EXPECT_TRUE(decoder.isPending());
    decoder.feed("5A", sink);
    decoder.feed("\x1b]11;rgb:", sink);
    for (int count = 0; count < InputDecoder::patience; ++count)
        decoder.flush(sink);
    EXPECT_FALSE(decoder.isPending());
    decoder.feed("x", sink);
    EXPECT_EQ(inputText(events), "C-Up, other, x");
}

TEST(InputDecoderTests, whatHasNoEndIsBoundedAndAPasteIsNot) {
    const std::string long_(100'000, '1');
    for (const std::string& bytes : {"\x1b[" + long_ + "A", "\x1b]" + long_ + "\x07", "\x1bO" + long_ + "A"}) {
        const auto events = decodedInput({bytes, "x"});
        ASSERT_EQ(inputText(events), "other, x");
        EXPECT_EQ(std::get<KeyEvent>(events[0]).bytes.size(), InputDecoder::longestSequence);
    }
    std::size_t size = 0;
    InputDecoder decoder;
    const auto sink = [&](const InputEvent& event) { size += std::get<PasteEvent>(event).text.size(); };
    decoder.feed("\x1b[200~", sink);
    for (std::size_t count = 1; count <= 50; ++count) {
        decoder.feed(long_, sink);
        ASSERT_EQ(size, count * long_.size()) << "what came is told at once";
    }
    EXPECT_FALSE(decoder.isPending());
}

TEST(InputDecoderTests, piecesOfAPasteKeepCharactersAndLineEndsWhole) {
    std::vector<InputEvent> events;
    InputDecoder decoder;
    const auto sink = [&](const InputEvent& event) { events.push_back(event); };
    for (const std::string_view piece : {"\x1b[200~a\r", "\nb\xc3", "\xa4\x1b[20", "1x\x1b[2", "01~y"})
        decoder.feed(piece, sink);
    EXPECT_EQ(inputText(events), R"(<paste[a], paste[\x0d\x0ab], paste[\xc3\xa4], paste[\x1b[201x], paste[]>, y)");
}

}  // namespace
}  // namespace orvane
