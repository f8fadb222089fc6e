#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OrvaneCore/History/HistoryQuery.h"
#include "OrvaneCore/History/SessionRecord.h"
#include "OrvaneCore/Support/Calendar.h"
#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// The conversations that agents keep on disk, and how one is taken up again.
namespace SessionHistory {

using Provider = TranscriptProvider;

/// Of a transcript only its two ends are read: bytes, and of those at most so many lines.
inline constexpr std::size_t headByteCap = 192000;
inline constexpr std::size_t tailByteCap = 64000;
inline constexpr std::size_t headLineCap = 300;
inline constexpr std::size_t tailLineCap = 300;
/// In characters.
inline constexpr std::size_t titleLimit = 72;
inline constexpr std::size_t previewLimit = 280;

/// What is told of a file apart from its lines.
struct Transcript {
    std::string path;
    Provider provider = Provider::claude;
    Date modifiedAt;
    std::size_t byteSize = 0;
    /// Of the folder that it lies in; what the transcript itself tells counts more.
    std::optional<std::string> projectPathHint;
};

/// The conversation that a transcript tells, from the lines of both its ends in file order, which may overlap; none
/// when nobody asked anything in it.
std::optional<SessionRecord> record(const Transcript& transcript, std::span<const std::string_view> head,
                                    std::span<const std::string_view> tail);
inline std::optional<SessionRecord> record(std::string fromTranscriptAt, std::span<const std::string_view> head,
                                           std::span<const std::string_view> tail, Provider provider, Date modifiedAt,
                                           std::size_t byteSize, std::optional<std::string> projectPathHint) {
    return record({.path = std::move(fromTranscriptAt),
                   .provider = provider,
                   .modifiedAt = modifiedAt,
                   .byteSize = byteSize,
                   .projectPathHint = std::move(projectPathHint)},
                  head, tail);
}

/// What was asked, each thing once, in the order in which it was asked first.
std::vector<std::string> prompts(std::span<const std::string_view> head, std::span<const std::string_view> tail,
                                 Provider provider);

/// The records that the query finds, the best first; all that pass its filters, the newest first, when it has no words.
/// Whoever searches the same records again keeps a `HistorySearch`.
std::vector<SessionRecord> search(const std::vector<SessionRecord>& records, const HistoryQuery& query);

enum class SortField { title, project, provider, lastActivity, messages };

struct Sort {
    SortField field = SortField::lastActivity;
    bool ascending = false;

    bool operator==(const Sort&) const = default;

    static const Sort byRecency;
};
inline constexpr Sort Sort::byRecency{};

/// The order that people expect of a field: names and titles from a to z, the others from much to little.
Sort naturalSort(SortField field);

/// Equal ones by recency. Titles and projects compare without regard to case.
std::vector<SessionRecord> sorted(std::vector<SessionRecord> records, Sort by);

struct Day {
    Date day;
    std::vector<SessionRecord> records;
};
/// By the day of the last activity; the newest day first, and the newest record of a day.
std::vector<Day> groupByDay(std::vector<SessionRecord> records, const Calendar& calendar);

/// The shell command that goes on with the conversation; none for a blank id. The id is one word of it, whatever it
/// holds.
std::optional<std::string> resumeCommand(Provider provider, std::string_view id);
inline std::optional<std::string> resumeCommand(const SessionRecord& record) {
    return resumeCommand(record.provider, record.id);
}

/// The id that a command line resumes: the word behind "--resume" or behind the bare word "resume"; none when there is
/// no such word or it is an option.
std::optional<std::string> resumeIdentifier(std::string_view inCommand);

}  // namespace SessionHistory

template <>
struct RawValues<SessionHistory::SortField> {
    static constexpr std::array table = {
        rawValueOf(SessionHistory::SortField::title, "title"),
        rawValueOf(SessionHistory::SortField::project, "project"),
        rawValueOf(SessionHistory::SortField::provider, "provider"),
        rawValueOf(SessionHistory::SortField::lastActivity, "lastActivity"),
        rawValueOf(SessionHistory::SortField::messages, "messages"),
    };
};

}  // namespace orvane
