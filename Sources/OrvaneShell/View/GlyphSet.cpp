#include "OrvaneShell/View/GlyphSet.h"

#include <algorithm>
#include <iterator>

#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

constexpr char32_t same = 0;

struct Replacement {
    char32_t first;
    char32_t last;
    char32_t console;  ///< `same` where the fonts have it
    char32_t ascii;
};

/// In the order of their numbers. What is not here stays on a console and is unknown in ASCII. The fonts of consoles
/// have the signs of code page 437 at best, and those for Latin letters lack its arrows and circles too.
constexpr Replacement replacements[] = {
    {0xA0, 0xA0, same, ' '},       {0xA6, 0xA6, same, '|'},       {0xAB, 0xAB, same, '<'},
    {0xAD, 0xAD, same, '-'},       {0xB1, 0xB1, same, '+'},       {0xB4, 0xB4, same, '\''},
    {0xB7, 0xB7, same, '.'},       {0xBB, 0xBB, same, '>'},       {0xD7, 0xD7, same, 'x'},
    {0xF7, 0xF7, same, '/'},       {0x2010, 0x2015, '-', '-'},    {0x2018, 0x201B, '\'', '\''},
    {0x201C, 0x201F, '"', '"'},    {0x2022, 0x2022, '*', '*'},    {0x2026, 0x2026, '.', '.'},
    {0x2039, 0x2039, '<', '<'},    {0x203A, 0x203A, '>', '>'},    {0x2190, 0x2190, '<', '<'},
    {0x2191, 0x2191, '^', '^'},    {0x2192, 0x2192, '>', '>'},    {0x2193, 0x2193, 'v', 'v'},
    {0x2212, 0x2212, '-', '-'},    {0x23B8, 0x23BF, 'L', 'L'},    {0x23F4, 0x23F4, '<', '<'},
    {0x23F5, 0x23F5, '>', '>'},    {0x23F8, 0x23F8, '=', '='},    {0x23FA, 0x23FA, '*', '*'},
    {0x2500, 0x2500, same, '-'},   {0x2501, 0x2501, 0x2500, '-'}, {0x2502, 0x2502, same, '|'},
    {0x2503, 0x2503, 0x2502, '|'}, {0x2504, 0x2505, 0x2500, '-'}, {0x2506, 0x2507, 0x2502, '|'},
    {0x2508, 0x2509, 0x2500, '-'}, {0x250A, 0x250B, 0x2502, '|'}, {0x250C, 0x254B, same, '+'},
    {0x254C, 0x254D, 0x2500, '-'}, {0x254E, 0x254F, 0x2502, '|'}, {0x2550, 0x2550, same, '-'},
    {0x2551, 0x2551, same, '|'},   {0x2552, 0x256C, same, '+'},   {0x256D, 0x256D, 0x250C, '+'},
    {0x256E, 0x256E, 0x2510, '+'}, {0x256F, 0x256F, 0x2518, '+'}, {0x2570, 0x2570, 0x2514, '+'},
    {0x2571, 0x2571, '/', '/'},    {0x2572, 0x2572, '\\', '\\'},  {0x2573, 0x2573, 'X', 'X'},
    {0x2574, 0x257F, '-', '-'},    {0x2580, 0x2580, same, '#'},   {0x2581, 0x2583, '_', '_'},
    {0x2584, 0x2584, same, '#'},   {0x2585, 0x2587, 0x2588, '#'}, {0x2588, 0x2588, same, '#'},
    {0x2589, 0x258B, 0x2588, '#'}, {0x258C, 0x258C, same, '#'},   {0x258D, 0x258E, 0x258C, '#'},
    {0x258F, 0x258F, 0x2502, '|'}, {0x2590, 0x2590, same, '#'},   {0x2591, 0x2593, same, '#'},
    {0x2594, 0x2594, '-', '-'},    {0x2595, 0x2595, 0x2502, '|'}, {0x2596, 0x259F, 0x2588, '#'},
    {0x25A0, 0x25A0, '#', '#'},    {0x25A1, 0x25A1, 'o', 'o'},    {0x25B2, 0x25B5, '^', '^'},
    {0x25B6, 0x25BB, '>', '>'},    {0x25BC, 0x25BF, 'v', 'v'},    {0x25C0, 0x25C5, '<', '<'},
    {0x25C6, 0x25C6, '#', '#'},    {0x25C7, 0x25C7, 'o', 'o'},    {0x25CB, 0x25CB, 'o', 'o'},
    {0x25CC, 0x25CC, '.', '.'},    {0x25CD, 0x25D7, '*', '*'},    {0x25E6, 0x25E6, 'o', 'o'},
    {0x2605, 0x2606, '*', '*'},    {0x2610, 0x2610, 'o', 'o'},    {0x2611, 0x2611, 'v', 'v'},
    {0x2612, 0x2612, 'x', 'x'},    {0x2713, 0x2714, 'v', 'v'},    {0x2715, 0x2718, 'x', 'x'},
    {0x2720, 0x274B, '*', '*'},    {0x276E, 0x276E, '<', '<'},    {0x276F, 0x276F, '>', '>'},
    {0x2800, 0x28FF, '*', '*'},
};

/// The letters of Latin-1 from U+00C0 on without their accents.
constexpr std::string_view latin = "AAAAAAACEEEEIIIIDNOOOOOxOUUUUYPsaaaaaaaceeeeiiiidnooooo/ouuuuypy";

const Replacement* replacementOf(char32_t character) {
    const auto* const found = std::ranges::lower_bound(replacements, character, {}, &Replacement::last);
    return found != std::end(replacements) && found->first <= character ? found : nullptr;
}

}  // namespace

char32_t glyphIn(GlyphSet glyphs, char32_t character) {
    if (glyphs == GlyphSet::all || character < 0x80) return character;
    const Replacement* replacement = replacementOf(character);
    if (glyphs == GlyphSet::console)
        return replacement == nullptr || replacement->console == same ? character : replacement->console;
    if (replacement != nullptr) return replacement->ascii;
    const auto letter = static_cast<std::size_t>(character) - 0xC0;
    return character >= 0xC0 && letter < latin.size() ? static_cast<char32_t>(latin[letter]) : U'?';
}

std::string textIn(GlyphSet glyphs, std::string_view text) {
    if (glyphs == GlyphSet::all) return std::string(text);
    std::string result;
    result.reserve(text.size());
    const auto add = [&](char32_t character) { appendUtf8(glyphIn(glyphs, character), result); };
    Utf8Decoder decoder;
    decoder.decode(text, add);
    decoder.finish(add);
    return result;
}

}  // namespace orvane
