#include "OrvaneCore/History/HistorySearch.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/TextWords.h"

namespace orvane {

namespace {

void replaceAll(std::string& text, std::string_view what, std::string_view by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

/// In Turkish and Azeri the dot makes another letter: "I" is "ı", "İ" is "i" (Unicode CaseFolding.txt, status T).
std::string foldedIn(std::string_view locale, std::string_view text) {
    const bool isTurkic = locale.starts_with("tr") || locale.starts_with("az");
    if (!isTurkic) return Text::folded(text);
    std::string dotted(text);
    replaceAll(dotted, "I", "ı");
    replaceAll(dotted, "İ", "i");
    return Text::folded(dotted);
}

}  // namespace

struct HistorySearch::Words {
    explicit Words(std::string text) : folded(std::move(text)), each(textWords(folded)) {
        for (const std::string& word : each)
            needles.emplace_back(word);
        if (each.size() > 1) phrase.emplace(folded);
    }
    // The needles look into the words.
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;
    ~Words() = default;

    std::string folded;
    std::vector<std::string> each;
    std::vector<Needle> needles;
    /// All of them, when they are more than one.
    std::optional<Needle> phrase;
};

HistorySearch::HistorySearch(const std::vector<SessionRecord>& records, std::string_view locale) : records_(&records) {
    entries_.reserve(records.size());
    for (const SessionRecord& record : records)
        append(record, locale);
    texts_.shrink_to_fit();
    byRecency_.resize(records.size());
    std::iota(byRecency_.begin(), byRecency_.end(), 0U);
    std::ranges::stable_sort(byRecency_, std::ranges::greater(),
                             [&](std::uint32_t index) { return records[index].lastActivityAt; });
}

void HistorySearch::append(const SessionRecord& record, std::string_view locale) {
    const auto place = [this] { return static_cast<std::uint32_t>(texts_.size()); };
    Entry entry{};
    entry.title = place();
    // Records of more than four gigabytes of text: the rest is found by its filters only.
    if (texts_.size() < std::numeric_limits<std::int32_t>::max()) {
        texts_ += foldedIn(locale, record.title);
        entry.project = place();
        texts_ += foldedIn(locale, record.projectName() + ' ' + record.projectPath);
        entry.preview = place();
        texts_ += foldedIn(locale, record.preview);
    } else {
        entry.project = entry.preview = place();
    }
    entry.end = place();
    entries_.push_back(entry);
}

int HistorySearch::score(const Entry& entry, const Words& words) const {
    const std::string_view title = between(entry.title, entry.project);
    const std::string_view project = between(entry.project, entry.preview);
    const std::string_view preview = between(entry.preview, entry.end);
    int total = 0;
    for (const Needle& word : words.needles) {
        if (word.isIn(title)) {
            total += 3;
        } else if (word.isIn(project)) {
            total += 2;
        } else if (word.isIn(preview)) {
            total += 1;
        } else {
            return 0;
        }
    }
    if (!words.phrase) return total;
    if (words.phrase->isIn(title)) return total + 4;
    return words.phrase->isIn(preview) ? total + 1 : total;
}

std::vector<std::size_t> HistorySearch::find(const HistoryQuery& query, const std::stop_token& stop) const {
    constexpr std::size_t recordsBetweenLooks = 256;
    const Words words(std::string(Text::trimmed(foldedIn(query.locale, query.text))));
    struct Match {
        int score;
        std::uint32_t index;
    };
    std::vector<Match> matches;
    for (std::size_t place = 0; place < byRecency_.size(); ++place) {
        if (place % recordsBetweenLooks == 0 && stop.stop_requested()) return {};
        const std::uint32_t index = byRecency_[place];
        if (!query.passesFilters((*records_)[index])) continue;
        const int points = words.each.empty() ? 0 : score(entries_[index], words);
        if (points > 0 || words.each.empty()) matches.push_back({.score = points, .index = index});
    }
    // Stable, so that equally good ones stay in the order of their recency.
    std::ranges::stable_sort(matches, std::ranges::greater(), &Match::score);
    std::vector<std::size_t> found;
    found.reserve(matches.size());
    for (const Match& match : matches)
        found.push_back(match.index);
    return found;
}

std::size_t HistorySearch::byteSize() const {
    return texts_.capacity() + entries_.capacity() * sizeof(Entry) + byRecency_.capacity() * sizeof(std::uint32_t);
}

}  // namespace orvane
