#include "TerminalEmulator/CharacterClass.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane {
namespace {

struct Stretch {
    char32_t first;
    char32_t last;
    CharacterClass what;
};

// Beyond ASCII all is a letter but what stands here (Unicode 15 blocks and the general categories Z and P within them).
constexpr std::array stretches = {
    Stretch{0x80, 0xA0, CharacterClass::blank},
    Stretch{0xA1, 0xA9, CharacterClass::punctuation},
    Stretch{0xAB, 0xB1, CharacterClass::punctuation},
    Stretch{0xB4, 0xB4, CharacterClass::punctuation},
    Stretch{0xB6, 0xB8, CharacterClass::punctuation},
    Stretch{0xBB, 0xBB, CharacterClass::punctuation},
    Stretch{0xBF, 0xBF, CharacterClass::punctuation},
    Stretch{0xD7, 0xD7, CharacterClass::punctuation},
    Stretch{0xF7, 0xF7, CharacterClass::punctuation},
    Stretch{0x1680, 0x1680, CharacterClass::blank},
    Stretch{0x2000, 0x200A, CharacterClass::blank},
    Stretch{0x2010, 0x2027, CharacterClass::punctuation},
    Stretch{0x2028, 0x202F, CharacterClass::blank},
    Stretch{0x2030, 0x205E, CharacterClass::punctuation},
    Stretch{0x205F, 0x205F, CharacterClass::blank},
    Stretch{0x2190, 0x22FF, CharacterClass::punctuation},  // arrows, operators
    Stretch{0x2300, 0x23FF, CharacterClass::punctuation},  // technical
    Stretch{0x2500, 0x25FF, CharacterClass::punctuation},  // boxes, blocks, shapes
    Stretch{0x2713, 0x2718, CharacterClass::punctuation},  // check marks
    Stretch{0x2768, 0x2775, CharacterClass::punctuation},
    Stretch{0x2794, 0x27BF, CharacterClass::punctuation},  // arrows
    Stretch{0x27E6, 0x27FF, CharacterClass::punctuation},
    Stretch{0x2983, 0x2998, CharacterClass::punctuation},
    Stretch{0x3000, 0x3000, CharacterClass::blank},
    Stretch{0x3001, 0x3003, CharacterClass::punctuation},
    Stretch{0x3008, 0x3011, CharacterClass::punctuation},
    Stretch{0x3014, 0x301F, CharacterClass::punctuation},
    Stretch{0xE0A0, 0xE0D4, CharacterClass::punctuation},  // separators of status lines, by custom
    Stretch{0xFE30, 0xFE52, CharacterClass::punctuation},
    Stretch{0xFE54, 0xFE6B, CharacterClass::punctuation},
    Stretch{0xFF01, 0xFF0F, CharacterClass::punctuation},
    Stretch{0xFF1A, 0xFF20, CharacterClass::punctuation},
    Stretch{0xFF3B, 0xFF40, CharacterClass::punctuation},
    Stretch{0xFF5B, 0xFF65, CharacterClass::punctuation},
};

constexpr std::string_view pathMarks = "-./~?&=%+#@:\\$";

CharacterClass asciiClass(char scalar) {
    const bool isLetter = (scalar >= 'a' && scalar <= 'z') || (scalar >= 'A' && scalar <= 'Z');
    if (isLetter || (scalar >= '0' && scalar <= '9') || scalar == '_') return CharacterClass::letter;
    if (scalar <= ' ' || scalar == 0x7F) return CharacterClass::blank;
    return pathMarks.contains(scalar) ? CharacterClass::pathMark : CharacterClass::punctuation;
}

}  // namespace

CharacterClass characterClass(char32_t scalar) {
    if (scalar < 0x80) return asciiClass(static_cast<char>(scalar));
    const auto stretch = std::ranges::lower_bound(stretches, scalar, {}, &Stretch::last);
    return stretch != stretches.end() && stretch->first <= scalar ? stretch->what : CharacterClass::letter;
}

bool isFrameCharacter(char32_t scalar) {
    return scalar == U'|' || (scalar >= 0x2500 && scalar <= 0x259F) || (scalar >= 0xE0A0 && scalar <= 0xE0D4);
}

}  // namespace orvane
