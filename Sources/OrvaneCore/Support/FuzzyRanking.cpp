#include "OrvaneCore/Support/FuzzyRanking.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/TextWords.h"

namespace orvane {

namespace {

constexpr std::int32_t found = 1;         ///< of any letter
constexpr std::int32_t beginning = 8;     ///< of a word
constexpr std::int32_t firstOfAll = 10;   ///< of the text: what it begins with is what it is called
constexpr std::int32_t consecutive = 5;   ///< right behind the letter before
constexpr std::int32_t gap = 2;           ///< lost for letters in between, however many
constexpr std::size_t longestText = 256;  ///< letters that are looked at
constexpr std::int32_t nowhere = std::numeric_limits<std::int32_t>::min() / 2;

bool isSeparator(char32_t code) {
    constexpr std::u32string_view separators = U" /-_.:\\,()[]·→";
    return separators.contains(code);
}

}  // namespace

FuzzyRanking::FuzzyRanking(const std::vector<std::string>& texts) {
    texts_.reserve(texts.size());
    for (const std::string& text : texts)
        texts_.push_back(lettersOf(Text::folded(text)));
}

std::vector<FuzzyRanking::Letter> FuzzyRanking::lettersOf(std::string_view text) {
    std::vector<Letter> letters;
    bool isAtStart = true;
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = 0; at < size && letters.size() < longestText;) {
        UChar32 code = 0;
        U8_NEXT_OR_FFFD(text.data(), at, size, code);  // NOLINT(bugprone-inc-dec-in-conditions): the macro
        letters.push_back({.code = static_cast<char32_t>(code),
                           .bonus = letters.empty() ? firstOfAll
                                    : isAtStart     ? beginning
                                                    : 0});
        isAtStart = isSeparator(letters.back().code);
    }
    return letters;
}

/// The best of all ways to lay the word into the text: for each of its letters, the best score with that letter at each
/// place, from the scores of the letter before.
std::optional<std::int32_t> FuzzyRanking::score(const std::vector<Letter>& text, const std::vector<Letter>& word) {
    std::vector<std::int32_t> before(text.size(), 0);
    std::vector<std::int32_t> now(text.size());
    for (std::size_t letter = 0; letter < word.size(); ++letter) {
        std::int32_t bestSoFar = letter == 0 ? gap : nowhere;  // nothing is lost before the first
        for (std::size_t place = 0; place < text.size(); ++place) {
            const bool isHere = text[place].code == word[letter].code;
            std::int32_t least = bestSoFar - gap;
            if (letter > 0 && place > 0) least = std::max(least, before[place - 1] + consecutive);
            now[place] = isHere ? least + found + text[place].bonus : nowhere;
            if (letter > 0) bestSoFar = std::max(bestSoFar, before[place]);
        }
        std::swap(before, now);
    }
    const auto best = std::ranges::max_element(before);
    return best == before.end() || *best <= 0 ? std::nullopt : std::optional(*best);
}

std::vector<std::size_t> FuzzyRanking::find(std::string_view query) const {
    std::vector<std::vector<Letter>> words;
    for (const std::string& word : textWords(Text::folded(query)))
        words.push_back(lettersOf(word));
    struct Match {
        std::int32_t score = 0;
        std::size_t place = 0;
    };
    std::vector<Match> matches;
    for (std::size_t place = 0; place < texts_.size(); ++place) {
        std::optional<std::int32_t> total = 0;
        for (const auto& word : words) {
            const auto points = score(texts_[place], word);
            total = points ? std::optional(*total + *points) : std::nullopt;
            if (!total) break;
        }
        if (total) matches.push_back({.score = *total, .place = place});
    }
    std::ranges::stable_sort(matches, std::ranges::greater(), &Match::score);
    std::vector<std::size_t> places;
    places.reserve(matches.size());
    for (const Match& match : matches)
        places.push_back(match.place);
    return places;
}

}  // namespace orvane
