#include "TerminalEmulator/Engine/Charset.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

TEST(Charset, EachDesignatorShowsItsOwnCharacters) {
    struct Case {
        const char* designator;
        CharsetSize size;
        const char* bytes;
        std::u32string shown;
    };
    using enum CharsetSize;
    const Case cases[] = {
        {"B", of94, "#@[\\]^_`{|}~", U"#@[\\]^_`{|}~"},
        {"0", of94, "Z_`jklmnqtuvwx~", U"Z\u00A0◆┘┐┌└┼─├┤┴┬│·"},
        {"2", of94, "q", U"─"},
        {"A", of94, "#$", U"£$"},
        {"4", of94, "#@[\\]{|}~", U"£¾ĳ½|¨ƒ¼´"},
        {"C", of94, "[\\]^`{|}~", U"ÄÖÅÜéäöåü"},
        {"5", of94, "[@", U"Ä@"},
        {"R", of94, "#@[\\]{|}~", U"£à°ç§éùè¨"},
        {"9", of94, "@[\\]^`{|}~", U"àâçêîôéùèû"},
        {"K", of94, "@[\\]{|}~", U"§ÄÖÜäöüß"},
        {"Y", of94, "#@[\\]`{|}~", U"£§°çéùàòèì"},
        {"`", of94, "@[\\]^`{|}~", U"ÄÆØÅÜäæøåü"},
        {"%6", of94, "[\\]{|}", U"ÃÇÕãçõ"},
        {"Z", of94, "#@[\\]{|}", U"£§¡Ñ¿°ñç"},
        {"7", of94, "@[\\]^`{|}~", U"ÉÄÖÅÜéäöåü"},
        {"=", of94, "#@[\\]^_`{|}~", U"ùàéçêîèôäöüû"},
        {"\">", of94, "Aaxyz", U"AΑΩyz"},
        {"%=", of94, "`z", U"את"},
        {"%2", of94, "!&@[`{", U"ığİŞĞş"},
        {"&5", of94, "`a~", U"ЮАЧ"},
        {"<", of94, "!(W]", U"¡¤ŒŸ"},
        {"%5", of94, "$", U"␦"},
        {">", of94, "!Vo{~", U"⎷√∂←↓"},
        {"\"?", of94, "@AQ|", U"ϊΑΠώ"},
        {"\"4", of94, "`z@", U"את␦"},
        {"%0", of94, ".>P", U"İıĞ"},
        {"&4", of94, "@`~", U"юЮЧ"},
        {"A", of96, " !~", U"\u00A0¡þ"},
        {"B", of96, "!", U"Ą"},
        {"F", of96, "A", U"Α"},
        {"H", of96, "`", U"א"},
        {"L", of96, "0", U"А"},
        {"M", of96, "P", U"Ğ"},
    };
    for (const Case& row : cases) {
        const auto charset = charsetDesignated(row.designator, row.size);
        ASSERT_TRUE(charset) << row.designator;
        std::u32string shown;
        for (const char byte : std::string_view(row.bytes))
            shown += characterIn(*charset, byte);
        EXPECT_EQ(shown, row.shown) << row.designator;
    }
    for (const char* unknown : {"", "!", "%", "%7", "BB"})
        EXPECT_FALSE(charsetDesignated(unknown, of94)) << unknown;
    EXPECT_FALSE(charsetDesignated("0", of96));
}

}  // namespace
}  // namespace orvane
