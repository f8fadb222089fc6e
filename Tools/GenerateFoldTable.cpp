// Works out with ICU what each code point folds to in a search and writes the two-stage table that
// Sources/OrvaneCore/Support/FoldTable.h describes.

#include <fmt/format.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned blockSize = 64;
constexpr UChar32 codePointCount = 0x110000;

[[noreturn]] void fail(const std::string& message) {
    std::cerr << "GenerateFoldTable: " << message << '\n';
    std::exit(EXIT_FAILURE);
}

class Folder {
 public:
    /// The fold of one code point, repeated until nothing changes: the case folding of a letter may carry marks of its
    /// own, and the base of a decomposition may be a capital.
    icu::UnicodeString fold(UChar32 codePoint) const {
        icu::UnicodeString text(codePoint);
        // Syllables stay whole: they are composed of what letters stand before them when the text is folded.
        if (u_getIntPropertyValue(codePoint, UCHAR_HANGUL_SYLLABLE_TYPE) >= U_HST_LV_SYLLABLE) return text;
        for (icu::UnicodeString before; before != text;) {
            before = text;
            text = onBases(canonical_.normalize(text, status_)).foldCase();
        }
        if (U_FAILURE(status_)) fail(u_errorName(status_));
        return text;
    }

 private:
    /// Drops the nonspacing marks and takes the usual width of the rest.
    icu::UnicodeString onBases(const icu::UnicodeString& text) const {
        icu::UnicodeString result;
        for (int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
            const UChar32 codePoint = text.char32At(index);
            if (u_charType(codePoint) == U_NON_SPACING_MARK) continue;
            const int type = u_getIntPropertyValue(codePoint, UCHAR_DECOMPOSITION_TYPE);
            icu::UnicodeString usual(codePoint);
            if (type == U_DT_WIDE || type == U_DT_NARROW) compatible_.getRawDecomposition(codePoint, usual);
            result += usual;
        }
        return result;
    }

    mutable UErrorCode status_ = U_ZERO_ERROR;
    const icu::Normalizer2& canonical_ = *icu::Normalizer2::getNFDInstance(status_);
    const icu::Normalizer2& compatible_ = *icu::Normalizer2::getNFKCInstance(status_);
};

class Table {
 public:
    Table() {
        const Folder folder;
        std::vector<std::uint16_t> block;
        for (UChar32 codePoint = 0; codePoint < codePointCount; ++codePoint) {
            block.push_back(U_IS_SURROGATE(codePoint) ? 0 : entryOf(codePoint, folder.fold(codePoint)));
            if (block.size() == blockSize) addBlock(std::exchange(block, {}));
        }
        if (placeOfBlock_.size() > 256 || pool_.size() > 0xFFFF) fail("the table has outgrown its types");
    }

    void write(std::ostream& output) const {
        output << "#include \"OrvaneCore/Support/FoldTable.h\"\n\nnamespace orvane::FoldTable {\n\n"
               << fmt::format("static_assert(blockSize == {});\n", blockSize)
               << fmt::format("const std::uint8_t blocks[0x110000 >> blockShift] = {{{}}};\n", fmt::join(blocks_, ","))
               << fmt::format("const std::uint16_t entries[] = {{{}}};\n", fmt::join(entries_, ","))
               << "const Fold folds[] = {";
        for (const auto& [offset, length] : folds_)
            output << fmt::format("{{{},{}}},", offset, length);
        output << "};\nconst char pool[] =";
        // Octal escapes of three digits, so that what follows can never be taken for a part of them.
        for (std::size_t index = 0; index < pool_.size(); ++index) {
            if (index % 32 == 0) output << (index == 0 ? "\n\"" : "\"\n\"");
            output << fmt::format("\\{:03o}", static_cast<unsigned char>(pool_[index]));
        }
        output << "\";\n\n}  // namespace orvane::FoldTable\n";
    }

 private:
    std::uint16_t entryOf(UChar32 codePoint, const icu::UnicodeString& fold) {
        if (fold == icu::UnicodeString(codePoint)) return 0;
        std::string text;
        fold.toUTF8String(text);
        const auto [known, isNew] = entryOfFold_.try_emplace(text, static_cast<std::uint16_t>(folds_.size()));
        if (isNew) {
            folds_.emplace_back(pool_.size(), text.size());
            pool_ += text;
        }
        return known->second;
    }

    void addBlock(const std::vector<std::uint16_t>& block) {
        const auto [known, isNew] = placeOfBlock_.try_emplace(block, placeOfBlock_.size());
        if (isNew) entries_.insert(entries_.end(), block.begin(), block.end());
        blocks_.push_back(known->second);
    }

    std::vector<std::size_t> blocks_;
    std::vector<std::uint16_t> entries_;
    std::vector<std::pair<std::size_t, std::size_t>> folds_ = {{0, 0}};  // the first stands for "itself"
    std::string pool_;
    std::map<std::string, std::uint16_t> entryOfFold_;
    std::map<std::vector<std::uint16_t>, std::size_t> placeOfBlock_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) fail("usage: GenerateFoldTable OUTPUT");
    std::ofstream output(arguments[1]);
    Table().write(output);
    output.close();
    if (!output) fail(std::string("cannot write ") + arguments[1]);
}
