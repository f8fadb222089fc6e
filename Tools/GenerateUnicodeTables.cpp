// Reads the Unicode character database and writes the two-stage table that
// Sources/TerminalEmulator/Unicode/UnicodeTable.h describes.

#include <fmt/format.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TerminalEmulator/Unicode/UnicodeTable.h"

namespace {

namespace UnicodeTable = orvane::UnicodeTable;

constexpr std::uint32_t codePointCount = 0x110000;

[[noreturn]] void fail(const std::string& message) {
    std::cerr << "GenerateUnicodeTables: " << message << '\n';
    std::exit(EXIT_FAILURE);
}

/// The code point that the text begins with, and what follows it.
std::pair<std::uint32_t, std::string_view> codePointOf(std::string_view text) {
    std::uint32_t codePoint = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), codePoint, 16);
    if (error != std::errc() || codePoint >= codePointCount) fail(fmt::format("no code point: {}", text));
    return {codePoint, text.substr(end - text.data())};
}

/// Of "0300..036F" or "00AD".
std::pair<std::uint32_t, std::uint32_t> rangeOf(std::string_view text) {
    const auto [first, rest] = codePointOf(text);
    const std::uint32_t last = rest.starts_with("..") ? codePointOf(rest.substr(2)).first : first;
    if (first > last) fail(fmt::format("no range of code points: {}", text));
    return {first, last};
}

struct CodePoint {
    std::string_view category = "Cn";
    bool combines = false;
    bool isWide = false;
    bool isEmojiPresentation = false;
    bool isEmojiModifier = false;
    bool isEmojiModifierBase = false;
    bool isExtendedPictographic = false;
    bool isVariationBase = false;
    bool isVariationSelector = false;
    bool isIgnorable = false;
    bool isPrepended = false;
    bool isTrailingJamo = false;
};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> fieldsOf(std::string_view line) {
    line = line.substr(0, line.find('#'));
    std::vector<std::string> fields;
    while (!trimmed(line).empty()) {
        const std::size_t end = line.find(';');
        fields.emplace_back(trimmed(line.substr(0, end)));
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return fields;
}

class Database {
 public:
    explicit Database(std::string folder) : folder_(std::move(folder)) {
        readCategories();
        readWidths();
        readFlags("PropList.txt", {{"Variation_Selector", &CodePoint::isVariationSelector},
                                   {"Prepended_Concatenation_Mark", &CodePoint::isPrepended}});
        readFlags("DerivedCoreProperties.txt", {{"Default_Ignorable_Code_Point", &CodePoint::isIgnorable}});
        readFlags("HangulSyllableType.txt", {{"V", &CodePoint::isTrailingJamo}, {"T", &CodePoint::isTrailingJamo}});
        readFlags("emoji/emoji-data.txt", {{"Emoji_Presentation", &CodePoint::isEmojiPresentation},
                                           {"Emoji_Modifier", &CodePoint::isEmojiModifier},
                                           {"Emoji_Modifier_Base", &CodePoint::isEmojiModifierBase},
                                           {"Extended_Pictographic", &CodePoint::isExtendedPictographic}});
        readVariationBases();
    }

    const CodePoint& at(std::uint32_t codePoint) const { return codePoints_[codePoint]; }

 private:
    /// Calls with the fields of each line that has at least `fieldCount`. A file without any is not what we think.
    void read(const std::string& name, std::size_t fieldCount,
              const std::function<void(const std::vector<std::string>&)>& take) const {
        std::ifstream file(folder_ + "/" + name);
        std::size_t lineCount = 0;
        for (std::string line; std::getline(file, line);) {
            const auto fields = fieldsOf(line);
            if (fields.size() < fieldCount) continue;
            take(fields);
            ++lineCount;
        }
        if (lineCount == 0) fail("nothing to read in " + folder_ + "/" + name);
    }

    void set(std::uint32_t first, std::uint32_t last, auto CodePoint::* member, auto value) {
        for (std::uint32_t codePoint = first; codePoint <= last; ++codePoint)
            codePoints_[codePoint].*member = value;
    }

    void readCategories() {
        std::uint32_t rangeStart = 0;
        read("UnicodeData.txt", 4, [&](const std::vector<std::string>& fields) {
            const std::uint32_t last = codePointOf(fields[0]).first;
            // Ideographs and the like take two lines: "<CJK Ideograph, First>" and "<CJK Ideograph, Last>".
            const std::uint32_t first = fields[1].ends_with(", Last>") ? rangeStart : last;
            rangeStart = last;
            set(first, last, &CodePoint::category, std::string_view(*categories_.insert(fields[2]).first));
            set(first, last, &CodePoint::combines, fields[3] != "0");
        });
    }

    void readWidths() {
        // Unassigned code points of these are wide where the file says nothing (Annex 11, section 4).
        constexpr std::pair<std::uint32_t, std::uint32_t> wideByDefault[] = {
            {0x3400, 0x4DBF}, {0x4E00, 0x9FFF}, {0xF900, 0xFAFF}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD}};
        for (const auto& [first, last] : wideByDefault)
            set(first, last, &CodePoint::isWide, true);
        read("EastAsianWidth.txt", 2, [&](const std::vector<std::string>& fields) {
            const auto [first, last] = rangeOf(fields[0]);
            set(first, last, &CodePoint::isWide, fields[1] == "W" || fields[1] == "F");
        });
    }

    void readFlags(const std::string& name, const std::map<std::string, bool CodePoint::*>& members) {
        read(name, 2, [&](const std::vector<std::string>& fields) {
            const auto member = members.find(fields[1]);
            if (member == members.end()) return;
            const auto [first, last] = rangeOf(fields[0]);
            set(first, last, member->second, true);
        });
    }

    void readVariationBases() {
        // "0023 FE0E  ; text style;"
        read("emoji/emoji-variation-sequences.txt", 2, [&](const std::vector<std::string>& fields) {
            const std::uint32_t codePoint = codePointOf(fields[0]).first;
            set(codePoint, codePoint, &CodePoint::isVariationBase, true);
        });
    }

    std::string folder_;
    std::set<std::string> categories_;
    std::vector<CodePoint> codePoints_ = std::vector<CodePoint>(codePointCount);
};

unsigned widthOf(std::uint32_t codePoint, const CodePoint& properties) {
    constexpr std::uint32_t softHyphen = 0xAD;
    const std::string_view category = properties.category;
    if (category == "Cc" || category == "Mn" || category == "Me" || category == "Zl" || category == "Zp") return 0;
    // Signs that enclose the digits behind them, such as U+0600, are seen, and so is a soft hyphen in a terminal.
    if (category == "Cf" && codePoint != softHyphen && !properties.isPrepended) return 0;
    if (category == "Cn" && properties.isIgnorable) return 0;
    if (properties.isTrailingJamo) return 0;
    return properties.isWide || properties.isEmojiPresentation ? 2 : 1;
}

std::uint8_t bitsOf(std::uint32_t codePoint, const CodePoint& properties) {
    const unsigned width = widthOf(codePoint, properties);
    const bool joins = (width == 0 && properties.category != "Cc") || properties.combines ||
                       properties.isEmojiModifier || properties.isVariationSelector;
    return static_cast<std::uint8_t>(width | (joins ? UnicodeTable::joinsPrevious : 0) |
                                     (properties.isExtendedPictographic ? UnicodeTable::extendedPictographic : 0) |
                                     (properties.isEmojiModifierBase ? UnicodeTable::emojiModifierBase : 0) |
                                     (properties.isVariationBase ? UnicodeTable::variationBase : 0));
}

void write(const Database& database, std::ostream& output) {
    std::vector<std::size_t> blocks;
    std::vector<std::uint8_t> entries;
    std::map<std::vector<std::uint8_t>, std::size_t> placeOfBlock;
    std::vector<std::uint8_t> block;
    for (std::uint32_t codePoint = 0; codePoint < codePointCount; ++codePoint) {
        block.push_back(bitsOf(codePoint, database.at(codePoint)));
        if (block.size() < UnicodeTable::blockSize) continue;
        const auto [known, isNew] = placeOfBlock.try_emplace(block, placeOfBlock.size());
        if (isNew) entries.insert(entries.end(), block.begin(), block.end());
        blocks.push_back(known->second);
        block.clear();
    }
    if (placeOfBlock.size() > 256) fail("the table has outgrown its types");
    output << "#include \"TerminalEmulator/Unicode/UnicodeTable.h\"\n\nnamespace orvane::UnicodeTable {\n\n"
           << fmt::format("static_assert(blockSize == {});\n", UnicodeTable::blockSize)
           << fmt::format("const std::uint8_t blocks[0x110000 >> blockShift] = {{{}}};\n", fmt::join(blocks, ","))
           << fmt::format("const std::uint8_t properties[] = {{{}}};\n", fmt::join(entries, ","))
           << "\n}  // namespace orvane::UnicodeTable\n";
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) fail("usage: GenerateUnicodeTables FOLDER OUTPUT");
    std::ofstream output(arguments[2]);
    write(Database(arguments[1]), output);
    output.close();
    if (!output) fail(std::string("cannot write ") + arguments[2]);
}
