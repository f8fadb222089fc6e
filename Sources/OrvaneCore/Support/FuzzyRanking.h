#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Finds texts by what people type of them: some letters of each word, in order, mostly at the beginnings of words.
/// Case and accents do not count. It folds the texts once and searches them with every key.
class FuzzyRanking {
 public:
    explicit FuzzyRanking(const std::vector<std::string>& texts);

    /// Places of the texts in which each word of the query is found, the best first, equally good ones in their order;
    /// all of them for a blank query.
    std::vector<std::size_t> find(std::string_view query) const;

 private:
    /// One character of a folded text.
    struct Letter {
        char32_t code = 0;
        std::int32_t bonus = 0;  ///< for being where one begins to type
    };
    static std::vector<Letter> lettersOf(std::string_view text);
    /// Of one word; none when its letters are not there in order, or only scattered inside of words.
    static std::optional<std::int32_t> score(const std::vector<Letter>& text, const std::vector<Letter>& word);

    std::vector<std::vector<Letter>> texts_;
};

}  // namespace orvane
