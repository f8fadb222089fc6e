#include "OrvaneCore/Support/Regex.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace orvane {

namespace {

template <auto release>
struct Release {
    template <typename Held>
    void operator()(Held* held) const {
        release(held);
    }
};

using CompiledPattern = std::unique_ptr<pcre2_code, Release<pcre2_code_free>>;
using CompileContext = std::unique_ptr<pcre2_compile_context, Release<pcre2_compile_context_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, Release<pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Release<pcre2_match_data_free>>;
using JitStack = std::unique_ptr<pcre2_jit_stack, Release<pcre2_jit_stack_free>>;

// How a search is kept from running away. PCRE2's own match limit starts anew at every position of the subject and
// does not count what a repeated item runs over, so that alone it allows minutes over a long text: 6.6 s were measured
// for `(\w+)\s\1[;:]` over 200 KB, and the time grows with the square. A pattern is therefore compiled twice. The plain
// form is fast and used for short subjects. The metered form calls back before every item of the pattern, which lets us
// charge all work there is; it is four times slower and takes over for long subjects and where the plain form ran into
// its limit.
constexpr std::size_t longestPlainSubject = 16 * 1024;
constexpr std::size_t plainBudget = 10'000'000;  // steps over all positions
constexpr std::uint32_t leastPlainLimit = 2'000;
constexpr std::int64_t meteredBudget = 2'000'000;  // about 4 ns each
constexpr std::int64_t meteredBudgetPerByte = 32;
constexpr std::int64_t bytesRunOverPerStep = 8;
constexpr std::uint32_t interpreterHeapKib = 16 * 1024;  // and no more depth than fits; without JIT only
constexpr std::uint32_t interpreterDepth = 250'000;
constexpr std::size_t firstJitStack = 32 * 1024;
constexpr std::size_t greatestJitStack = 4 * 1024 * 1024;

/// What is left for the metered form to spend.
struct Meter {
    std::int64_t budget = 0;
    std::size_t position = 0;

    static int charge(pcre2_callout_block* block, void* data) {
        Meter& meter = *static_cast<Meter*>(data);
        const std::size_t position = std::exchange(meter.position, block->current_position);
        const std::size_t ranOver = block->current_position > position ? block->current_position - position : 0;
        meter.budget -= 1 + static_cast<std::int64_t>(ranOver) / bytesRunOverPerStep;
        return meter.budget < 0 ? PCRE2_ERROR_CALLOUT : 0;
    }
};

/// What a match needs beside the pattern; one for each thread, because none of it may be used by two at once.
class Workspace {
 public:
    static Workspace& ofThisThread() {
        thread_local Workspace workspace;
        return workspace;
    }

    pcre2_match_context* context() { return context_.get(); }

    pcre2_match_data* data(std::uint32_t groupCount) {
        if (groupCount > dataGroups_ || data_ == nullptr) {
            dataGroups_ = std::max(groupCount, 16U);
            data_.reset(pcre2_match_data_create(dataGroups_, nullptr));
        }
        return data_.get();
    }

 private:
    Workspace() {
        pcre2_jit_stack_assign(context_.get(), nullptr, jitStack_.get());
        pcre2_set_heap_limit(context_.get(), interpreterHeapKib);
        pcre2_set_depth_limit(context_.get(), interpreterDepth);
    }

    JitStack jitStack_{pcre2_jit_stack_create(firstJitStack, greatestJitStack, nullptr)};
    MatchContext context_{pcre2_match_context_create(nullptr)};
    MatchData data_;
    std::uint32_t dataGroups_ = 0;
};

std::string messageOf(int errorCode) {
    std::array<PCRE2_UCHAR, 256> buffer{};
    const int length = pcre2_get_error_message(errorCode, buffer.data(), buffer.size());
    return length < 0 ? "invalid pattern" : std::string(reinterpret_cast<const char*>(buffer.data()));
}

std::expected<CompiledPattern, Regex::Error> compileForm(std::string_view pattern, std::uint32_t options) {
    const CompileContext context(pcre2_compile_context_create(nullptr));
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_ANYCRLF);
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    CompiledPattern code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                                       &errorCode, &errorOffset, context.get()));
    if (code == nullptr) {
        return std::unexpected(
            Regex::Error{.offset = std::min(errorOffset, pattern.size()), .message = messageOf(errorCode)});
    }
    // Where the system forbids generated code the interpreter does the same, slower.
    pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);
    return code;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

struct Regex::Code {
    CompiledPattern plain;
    CompiledPattern metered;
    std::uint32_t groupCount = 0;  ///< the whole match included
};

/// One walk over one subject. All its searches draw on one budget, so that many matches cost no more than one.
class Regex::Searcher {
 public:
    Searcher(const Code& code, std::string_view subject)
        : code_(code), subject_(subject.data() == nullptr ? std::string_view("") : subject) {
        const auto length = static_cast<std::int64_t>(std::min<std::size_t>(subject.size(), 1U << 31));
        meter_.budget = meteredBudget + meteredBudgetPerByte * length;
    }

    Outcome next(std::size_t from, std::uint32_t options = 0) {
        if (plainSuffices_) {
            const auto limit = static_cast<std::uint32_t>(plainBudget / (subject_.size() + 1));
            pcre2_set_match_limit(workspace_.context(), std::max(limit, leastPlainLimit));
            pcre2_set_callout(workspace_.context(), nullptr, nullptr);
            const Outcome outcome = run(code_.plain.get(), from, options);
            if (outcome != Outcome::limitExceeded) return outcome;
            plainSuffices_ = false;  // or every further match of the walk would run into the limit first
        }
        pcre2_set_match_limit(workspace_.context(), std::numeric_limits<std::uint32_t>::max());
        pcre2_set_callout(workspace_.context(), &Meter::charge, &meter_);
        return run(code_.metered.get(), from, options);
    }

    /// What the last search found.
    Match match() const {
        Match match;
        match.groups.reserve(code_.groupCount);
        for (std::uint32_t group = 0; group < code_.groupCount; ++group)
            match.groups.push_back(groupAt(group));
        return match;
    }

 private:
    Outcome run(const pcre2_code* code, std::size_t from, std::uint32_t options) {
        if (data_ == nullptr) return Outcome::limitExceeded;  // out of memory
        meter_.position = from;
        const int result = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(subject_.data()), subject_.size(), from,
                                       options, data_, workspace_.context());
        if (result == PCRE2_ERROR_NOMATCH) return Outcome::noMatch;
        if (result < 0) return Outcome::limitExceeded;
        found_ = static_cast<std::uint32_t>(result);
        // `\K` in a group that a lookahead calls can put the start behind the end. There is no such text.
        const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data_);
        return offsets[0] > offsets[1] ? Outcome::noMatch : Outcome::match;
    }

    std::optional<Group> groupAt(std::uint32_t group) const {
        const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data_);
        const std::size_t begin = offsets[2 * group];
        const std::size_t end = offsets[2 * group + 1];
        if (group >= found_ || begin == PCRE2_UNSET || begin > end) return std::nullopt;
        return Group{.begin = begin, .end = end, .text = subject_.substr(begin, end - begin)};
    }

    const Code& code_;
    std::string_view subject_;
    Workspace& workspace_ = Workspace::ofThisThread();
    pcre2_match_data* data_ = workspace_.data(code_.groupCount);
    Meter meter_;
    bool plainSuffices_ = subject_.size() <= longestPlainSubject;
    std::uint32_t found_ = 0;
};

std::expected<Regex, Regex::Error> Regex::compile(std::string_view pattern, Options options) {
    if (pattern.size() > maximumPatternLength) {
        return std::unexpected(Error{.offset = maximumPatternLength, .message = "pattern is too long"});
    }
    if (pattern.data() == nullptr) pattern = "";
    std::uint32_t flags = PCRE2_UTF | PCRE2_UCP | PCRE2_MATCH_INVALID_UTF | PCRE2_NEVER_BACKSLASH_C;
    if (options.ignoresCase) flags |= PCRE2_CASELESS;
    if (options.multiline) flags |= PCRE2_MULTILINE;
    auto plain = compileForm(pattern, flags);
    if (!plain) return std::unexpected(std::move(plain.error()));
    auto metered = compileForm(pattern, flags | PCRE2_AUTO_CALLOUT);
    if (!metered) return std::unexpected(std::move(metered.error()));

    std::uint32_t groups = 0;
    pcre2_pattern_info(plain->get(), PCRE2_INFO_CAPTURECOUNT, &groups);
    return Regex(std::make_shared<const Code>(std::move(*plain), std::move(*metered), groups + 1));
}

std::expected<std::optional<Regex::Match>, Regex::LimitExceeded> Regex::search(std::string_view subject,
                                                                               std::size_t from) const {
    if (from > subject.size()) return std::nullopt;
    while (from > 0 && from < subject.size() && isContinuation(subject[from]))
        ++from;
    Searcher searcher(*code_, subject);
    switch (searcher.next(from)) {
        case Outcome::match:
            return searcher.match();
        case Outcome::noMatch:
            return std::nullopt;
        case Outcome::limitExceeded:
            break;
    }
    return std::unexpected(LimitExceeded{});
}

std::optional<Regex::Match> Regex::firstMatch(std::string_view subject, std::size_t from) const {
    return search(subject, from).value_or(std::nullopt);
}

Regex::Outcome Regex::test(std::string_view subject) const {
    return Searcher(*code_, subject).next(0);
}

Regex::Matches Regex::allMatches(std::string_view subject, std::size_t maximum) const {
    Matches matches;
    Searcher searcher(*code_, subject);
    std::size_t from = 0;
    std::uint32_t options = 0;
    while (matches.found.size() < maximum) {
        const Outcome outcome = searcher.next(from, options);
        matches.limitExceeded = outcome == Outcome::limitExceeded;
        if (outcome != Outcome::match) break;
        matches.found.push_back(searcher.match());
        const Group& whole = matches.found.back().whole();
        from = whole.end;
        // Behind an empty match the search goes on at the same place for anything but the empty text.
        options = whole.begin == whole.end ? PCRE2_NOTEMPTY_ATSTART : 0;
    }
    return matches;
}

}  // namespace orvane
