#include "TerminalEmulator/Engine/Charset.h"

#include <algorithm>
#include <array>
#include <span>

#include "TerminalEmulator/Engine/CharsetTable.h"

namespace orvane {
namespace {

struct Designation {
    std::string_view designator;
    Charset charset;
};

// A set that has several is told by its first.
constexpr Designation designationsOf94[] = {
    {"B", Charset::ascii},
    {"1", Charset::ascii},
    {"0", Charset::decSpecialGraphics},
    {"2", Charset::decSpecialGraphics},
    {"%5", Charset::decSupplemental},
    {"<", Charset::decSupplemental},
    {">", Charset::decTechnical},
    {"A", Charset::unitedKingdom},
    {"4", Charset::dutch},
    {"C", Charset::finnish},
    {"5", Charset::finnish},
    {"R", Charset::french},
    {"f", Charset::french},
    {"Q", Charset::frenchCanadian},
    {"9", Charset::frenchCanadian},
    {"K", Charset::german},
    {"Y", Charset::italian},
    {"E", Charset::norwegianDanish},
    {"6", Charset::norwegianDanish},
    {"`", Charset::norwegianDanish},
    {"%6", Charset::portuguese},
    {"Z", Charset::spanish},
    {"H", Charset::swedish},
    {"7", Charset::swedish},
    {"=", Charset::swiss},
    {"\">", Charset::greek},
    {"%=", Charset::hebrew},
    {"%2", Charset::turkish},
    {"%3", Charset::serboCroatian},
    {"&5", Charset::russian},
    {"\"?", Charset::decGreek},
    {"\"4", Charset::decHebrew},
    {"%0", Charset::decTurkish},
    {"&4", Charset::decCyrillic},
};

constexpr Designation designationsOf96[] = {
    {"A", Charset::latin1Supplemental}, {"B", Charset::latin2Supplemental}, {"F", Charset::greekSupplemental},
    {"H", Charset::hebrewSupplemental}, {"L", Charset::latinCyrillic},      {"M", Charset::latin5Supplemental},
};

constexpr std::size_t charsetCount = static_cast<std::size_t>(Charset::latin5Supplemental) + 1;
constexpr std::size_t firstByte = 0x20;
constexpr std::size_t bytesOfSet = 0x60;

using Maps = std::array<std::array<char16_t, bytesOfSet>, charsetCount>;

consteval Maps buildMaps() {
    Maps maps{};
    for (auto& map : maps) {
        for (std::size_t i = 0; i < bytesOfSet; ++i)
            map[i] = static_cast<char16_t>(firstByte + i);
    }
    for (const CharsetTable::Run& run : CharsetTable::runs)
        std::ranges::copy(run.characters, maps[static_cast<std::size_t>(run.charset)].begin() + (run.from - firstByte));
    return maps;
}

constexpr Maps maps = buildMaps();

}  // namespace

std::optional<Charset> charsetDesignated(std::string_view designator, CharsetSize size) {
    const std::span<const Designation> designations =
        size == CharsetSize::of94 ? std::span<const Designation>(designationsOf94) : designationsOf96;
    const auto found = std::ranges::find(designations, designator, &Designation::designator);
    if (found == designations.end()) return std::nullopt;
    return found->charset;
}

CharsetDesignation designationOf(Charset charset) {
    for (const Designation& row : designationsOf96) {
        if (row.charset == charset) return {.designator = row.designator, .size = CharsetSize::of96};
    }
    return {.designator = std::ranges::find(designationsOf94, charset, &Designation::charset)->designator,
            .size = CharsetSize::of94};
}

char32_t characterIn(Charset charset, char byte) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < firstByte || code >= firstByte + bytesOfSet) return code;
    return maps[static_cast<std::size_t>(charset)][code - firstByte];
}

}  // namespace orvane
