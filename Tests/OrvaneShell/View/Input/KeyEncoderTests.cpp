#include "OrvaneShell/View/Input/KeyEncoder.h"

#include <gtest/gtest.h>

#include "InputText.h"
#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

using namespace testing;

/// What a program has switched on, in words: "cursor", "keypad", "lnm", "flags=N", "other=N".
struct Program {
    TerminalModes modes;
    KeyboardModeState keyboard;
    KeyModifierOptions options;

    explicit Program(std::string_view words) {
        modes.applicationCursor = words.contains("cursor");
        modes.applicationKeypad = words.contains("keypad");
        modes.lineFeedMode = words.contains("lnm");
        keyboard.flags = number(words, "flags=");
        options.values[4] = number(words, "other=");
    }
    std::string encode(const KeyEvent& event) const { return encodeKey(event, modes, keyboard, options); }

 private:
    static int number(std::string_view words, std::string_view name) {
        const std::size_t at = words.find(name);
        return at == std::string_view::npos ? 0 : std::stoi(std::string(words.substr(at + name.size())));
    }
};

TEST(KeyEncoderTests, aProgramIsToldAKeyInTheFormItAskedFor) {
    const auto rows = lineTable<3>(R"(
        # as it came                | of what was typed | to the program
                                    | \x01              | \x01
                                    | \eX               | \x1bX
                                    | \x08              | \x08
                                    | \xc3\xa4\e\xc3\xa4 | \xc3\xa4\x1b\xc3\xa4
                                    | \xff              | \xff
        # cursor and function keys take this terminal's form
                                    | \eOA\e[H          | \x1b[A\x1b[H
        cursor                      | \e[A\eOH\e[1;5A   | \x1bOA\x1bOH\x1b[1;5A
                                    | \e[[A\e[a\e[11~   | \x1bOP\x1b[1;2A\x1bOP
                                    | \e[3$\e[7~\e[25~  | \x1b[3;2~\x1b[H\x1b[25~
                                    | \e\e[A\e[Z        | \x1b[1;3A\x1b[Z
                                    | \eOM\eOp          | \x0d0
        keypad                      | \eOM\eOp          | \x1bOM\x1bOp
        keypad                      | \e[57399u\e[57414u | 0\x0d
        lnm                         | \r                | \x0d\x0a
        # enhanced keys for a program that knows none
                                    | \e[97;5u\e[97;3u\e[97;7u   | \x01\x1ba\x1b\x01
                                    | \e[97:65;2u\e[49:33;4u     | A\x1b!
                                    | \e[1089::99;5u\e[1089::99;3u | \x03\x1b\xd1\x81
                                    | \e[13;2u\e[13;3u\e[13;5u   | \x1b\x0d\x1b\x0d\x0d
                                    | \e[27u\e[127;5u\e[127;3u\e[9;2u | \x1b\x08\x1b\x7f\x1b[Z
                                    | \e[49;5u\e[50;5u\e[47;5u\e[32;5u | 1\x00\x1f\x00
                                    | \e[97;9u\e[57441u\e[97;1:3u | 
                                    | \e[97;1:2u\e[1;1:2B        | a\x1b[B
                                    | \e[57376;2u\e[13;5~        | \x1b[25;2~\x1b[1;5R
                                    | \e[0;;228u\e[99~           | \xc3\xa4
        # modifyOtherKeys
        other=1                     | \x01\ex\e[13;2u\e[9;5u     | \x01\x1bx\x1b[27;2;13~\x1b[27;5;9~
        other=1                     | \e[49;5u\e[97;5u\e[Z       | \x1b[27;5;49~\x01\x1b[Z
        other=2                     | \x01\ex\e[97;6u\e\x7f      | \x1b[27;5;97~\x1b[27;3;120~\x1b[27;6;65~\x1b[27;3;127~
        other=2                     | aA\r\e[97;2u\e[1;5A        | aA\x0dA\x1b[1;5A
        # progressive enhancements, from a terminal without
        flags=1                     | a\r\t\x7fA        | a\x0d\x09\x7fA
        flags=1                     | \e                | \x1b[27u
        flags=1                     | \x01\ex\eX        | \x1b[97;5u\x1b[120;3u\x1b[120;4u
        flags=1 cursor              | \eOA\eOP\eOR      | \x1b[A\x1b[P\x1b[13~
        flags=1                     | \e[Z\e\r\x00      | \x1b[9;2u\x1b[13;3u\x1b[32;5u
        flags=1 other=2             | \x01              | \x1b[97;5u
        flags=8                     | A\r               | \x1b[97;2u\x1b[13u
        flags=31                    | A\x01             | \x1b[97:65;2;65u\x1b[97;5u
        flags=2                     | \x01\e            | \x01\x1b
        # releases and repeats for those alone who asked
        flags=1                     | \e[97;5:3u\e[97;5:2u\e[57441u  | \x1b[97;5u
        flags=3                     | \e[97;5:3u\e[97;5:2u           | \x1b[97;5:3u\x1b[97;5:2u
        flags=3                     | \e[13;1:3u\e[97;1:2u\e[97;1:3u | a\x1b[97;1:3u
        flags=11                    | \e[13;1:3u\e[57441;2:3u        | \x1b[13;1:3u\x1b[57441;2:3u
        flags=2                     | \e[1;1:3A                      | \x1b[1;1:3A
    )");
    for (const auto& [program, typed, expected] : rows) {
        std::string bytes;
        for (const InputEvent& event : decodedInput({bytesOf(typed)}))
            bytes += Program(program).encode(std::get<KeyEvent>(event));
        EXPECT_EQ(TypedBytes::write(bytes), expected) << program << " " << typed;
    }
}

std::vector<KeyEvent> allKeys() {
    std::vector<KeyEvent> keys;
    for (int name = std::to_underlying(KeyName::enter); name <= std::to_underlying(KeyName::keypadBegin); ++name)
        keys.push_back({.name = static_cast<KeyName>(name)});
    for (const char32_t number : {57358U, 57361U, 57363U, 57428U, 57440U, 57441U, 57454U})
        keys.push_back({.name = KeyName::functional, .character = number});
    for (char32_t character = U' '; character < U'\x7f'; ++character) {
        if (lowerCase(character) == character) keys.push_back({.character = character});
    }
    keys.push_back({.character = U'ä'});
    keys.push_back({.character = U'с', .baseCharacter = U'c'});
    keys.push_back({.character = U'1', .shiftedCharacter = U'!'});
    keys.push_back({.character = U'😀'});
    return keys;
}

/// What comes back of a key that a program is told; nothing for one that it is not told.
std::optional<KeyEvent> roundTrip(const KeyEvent& event, const Program& program) {
    const std::string bytes = program.encode(event);
    if (bytes.empty()) return {};
    const auto events = decodedInput({bytes});
    EXPECT_EQ(events.size(), 1U) << TypedBytes::write(bytes);
    if (events.size() != 1 || !std::holds_alternative<KeyEvent>(events[0])) return KeyEvent{.name = KeyName::other};
    auto back = std::get<KeyEvent>(events[0]);
    EXPECT_EQ(std::exchange(back.bytes, ""), bytes);
    return back;
}

TEST(KeyEncoderTests, withEveryEnhancementEveryKeyComesBackExactly) {
    for (KeyEvent key : allKeys()) {
        for (int modifiers = 1; modifiers <= 256; ++modifiers) {
            for (const auto action : {KeyEvent::Action::press, KeyEvent::Action::repeat, KeyEvent::Action::release}) {
                KeyEvent event = key;
                event.action = action;
                event.modifiers = KeyTable::modifiersOf(modifiers);
                if (!event.modifiers.shift) event.shiftedCharacter = 0;
                const char32_t upper = upperCase(event.character);
                if (event.modifiers.shift && upper != event.character && event.character < 57344)
                    event.shiftedCharacter = upper;
                // F3 and the like have letters; they say nothing of text. The others tell what they type.
                if (KeyTable::letterOf(event.name) == '\0') event.text = typedText(event);
                const auto back = roundTrip(event, Program("flags=31"));
                ASSERT_TRUE(back.has_value()) << inputText(event);
                ASSERT_EQ(*back, event) << inputText(event) << " as " << inputText(*back);
            }
        }
    }
}

/// With fewer enhancements the same key comes back, though some of what is beside it does not.
TEST(KeyEncoderTests, withFewerEnhancementsKeysComeBackWithTheirModifiers) {
    for (const char* const flags : {"flags=1", "flags=5"}) {
        for (KeyEvent event : allKeys()) {
            for (int modifiers = 1; modifiers <= 64; ++modifiers) {
                event.modifiers = KeyTable::modifiersOf(modifiers);
                const auto back = roundTrip(event, Program(flags));
                if (!back) continue;
                EXPECT_EQ(typedText(*back), typedText(event)) << inputText(event);
                if (!typedText(event).empty()) continue;
                EXPECT_EQ(back->name, event.name) << inputText(event);
                EXPECT_EQ(back->character, event.character) << inputText(event);
                EXPECT_EQ(back->modifiers, event.modifiers) << inputText(event);
            }
        }
    }
}

/// Whether the key has legacy bytes that no other key shares.
bool hasLegacyForm(const KeyEvent& event) {
    const KeyModifiers& held = event.modifiers;
    const bool isLetter = event.character >= U'a' && event.character <= U'z';
    switch (event.name) {
        case KeyName::character:
            // Ctrl-H, Ctrl-I and Ctrl-M are Backspace, Tab and Enter.
            return !held.super && (!held.control || (isLetter && !held.shift && event.character != U'h' &&
                                                     event.character != U'i' && event.character != U'm'));
        case KeyName::enter:
        case KeyName::backspace:
            return !held.shift && !held.control && !held.super;
        case KeyName::tab:
            return !held.control && !held.super && !(held.shift && held.alt);
        case KeyName::escape:
            return held.isNone();
        default:
            return event.name <= KeyName::f24;
    }
}

TEST(KeyEncoderTests, inTheLegacyFormKeysComeBackWhereItCanTellThem) {
    for (const char* const modes : {"", "cursor"}) {
        for (KeyEvent event : allKeys()) {
            for (int modifiers = 1; modifiers <= 16; ++modifiers) {
                event.modifiers = KeyTable::modifiersOf(modifiers);
                if (!hasLegacyForm(event)) continue;
                KeyEvent wanted = event;
                wanted.shiftedCharacter = wanted.baseCharacter = 0;
                if (event.name == KeyName::character) {
                    wanted.character = typedCharacter(event);
                    wanted.modifiers.shift = false;
                }
                const auto back = roundTrip(event, Program(modes));
                ASSERT_TRUE(back.has_value()) << inputText(event);
                EXPECT_EQ(*back, wanted) << inputText(event) << " as " << inputText(*back);
            }
        }
    }
}

TEST(KeyEncoderTests, aTerminalTellsWhatItsProgramSwitchedOn) {
    RecordingDelegate delegate;
    Terminal terminal(delegate);
    const auto encode = [&] {
        const KeyEvent event{.character = U'a', .modifiers = {.control = true}};
        return encodeKey(event, terminal.modes(), terminal.keyboardMode(), terminal.keyModifiers());
    };
    EXPECT_EQ(encode(), "\x01");
    terminal.feed("\x1b[>4;2m");
    EXPECT_EQ(encode(), "\x1b[27;5;97~");
    terminal.feed("\x1b[>1u");
    EXPECT_EQ(encode(), "\x1b[97;5u");
}

}  // namespace
}  // namespace orvane
