#include <gtest/gtest.h>

#include "InputText.h"
#include "OrvaneShell/View/Input/MouseForwarding.h"
#include "OrvaneShell/View/Input/PasteEncoder.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"

namespace orvane {
namespace {

using namespace testing;

TEST(PasteEncoderTests, nothingInAPasteEndsItOrActsAsAKey) {
    const auto rows = lineTable<3>(R"(
        a\tb\r\nc\rd\ne            | a\x09b\x0d\x0ac\x0dd\x0ae | a\x09b\x0dc\x0dd\x0de
        x\e[201~\x03rm\r           | x[201~rm\x0d              | x[201~rm\x0d
        \x00\x04\x7f\xc2\x9b201~\x9b | 201~\xef\xbf\xbd        | 201~\xef\xbf\xbd
        \e[20\e[201~1~             | [20[201~1~                | [20[201~1~
        \xc3\xa4\xe2\x82           | \xc3\xa4\xef\xbf\xbd      | \xc3\xa4\xef\xbf\xbd
    )");
    for (const auto& [pasted, bracketed, plain] : rows) {
        EXPECT_EQ(TypedBytes::write(encodePaste(bytesOf(pasted), PasteForm::bracketed)), bracketed) << pasted;
        EXPECT_EQ(TypedBytes::write(encodePaste(bytesOf(pasted), PasteForm::plain)), plain) << pasted;
    }
    EXPECT_EQ(pasteBegin(pasteForm({.bracketedPasteMode = true})), "\x1b[200~");
    EXPECT_EQ(pasteEnd(pasteForm({.bracketedPasteMode = true})), "\x1b[201~");
    EXPECT_EQ(pasteEnd(pasteForm({})), "");
}

TEST(MouseForwardingTests, aProgramIsToldWhatItAskedFor) {
    const auto rows = lineTable<3>(R"(
        # the program's modes | the mouse                                          | what it is told
                              | \e[<0;1;1M                                         | 
        \e[?9h                | \e[<0;1;1M\e[<0;1;1m\e[<64;1;1M                     | \x1b[M !!
        \e[?1000h             | \e[<2;3;4M\e[<2;3;4m\e[<34;3;4M                     | \x1b[M"#$\x1b[M##$
        \e[?1000;1006h        | \e[<20;3;4M\e[<0;3;4m\e[<65;1;1M                    | \x1b[<20;3;4M\x1b[<0;3;4m\x1b[<65;1;1M
        \e[?1002;1006h        | \e[<32;3;4M\e[<35;3;4M                              | \x1b[<32;3;4M
        \e[?1003;1006h        | \e[<35;3;4M\e[<66;1;1M                              | \x1b[<35;3;4M\x1b[<66;1;1M
        \e[?1003;1016h        | \e[<0;3;4M                                          | \x1b[<0;21;57M
        \e[?1003;1006h        | \e[<0;81;1M\e[<0;1;25M                              | 
    )");
    for (const auto& [modes, mouse, expected] : rows) {
        RecordingDelegate delegate;
        Terminal terminal(delegate, {.cols = 80, .rows = 24});
        terminal.feed(bytesOf(modes));
        for (const InputEvent& event : decodedInput({bytesOf(mouse)}))
            MouseForwarding::forward(std::get<MouseEvent>(event), terminal);
        EXPECT_EQ(TypedBytes::write(delegate.sent), expected) << modes << " " << mouse;
    }
}

TEST(MouseForwardingTests, theWheelMovesTheCursorOfAPagerThatKnowsNoMouse) {
    const auto rows = lineTable<3>(R"(
        \e[?1049h           | \e[<64;1;1M | \x1b[A\x1b[A\x1b[A
        \e[?1049h\e[?1h     | \e[<65;1;1M | \x1bOB\x1bOB\x1bOB
        \e[?1049h           | \e[<66;1;1M | 
        \e[?1049h           | \e[<0;1;1M  | 
        \e[?1049h\e[?1000h  | \e[<64;1;1M | 
        \e[m                | \e[<64;1;1M | 
    )");
    for (const auto& [modes, mouse, expected] : rows) {
        RecordingDelegate delegate;
        Terminal terminal(delegate, {.cols = 80, .rows = 24});
        terminal.feed(bytesOf(modes));
        const auto events = decodedInput({bytesOf(mouse)});
        const std::string keys = MouseForwarding::wheelKeys(std::get<MouseEvent>(events.at(0)), terminal);
        EXPECT_EQ(TypedBytes::write(keys), expected) << modes << " " << mouse;
    }
}

}  // namespace
}  // namespace orvane
