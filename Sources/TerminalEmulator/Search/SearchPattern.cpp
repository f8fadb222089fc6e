#include "TerminalEmulator/Search/SearchPattern.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>
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

using Compiled = std::unique_ptr<pcre2_code, Release<pcre2_code_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, Release<pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Release<pcre2_match_data_free>>;
using JitStack = std::unique_ptr<pcre2_jit_stack, Release<pcre2_jit_stack_free>>;

// PCRE2's match limit holds for one place in one line, so that alone a search over all lines and places could still
// take minutes. An expression is therefore compiled twice. The plain form is fast and gets a low limit; where it gives
// up, and for long lines, the metered form calls back before every item of the pattern, and those calls are paid from
// one budget for the whole search.
constexpr std::uint32_t plainMatchLimit = 500;
constexpr std::size_t longestPlainLine = 1024;
constexpr int mostPlainFailures = 16;               // then lines are not tried in the plain form first
constexpr std::int64_t meteredBudget = 20'000'000;  // some 4 ns each
constexpr std::int64_t meteredBudgetPerByte = 16;
constexpr std::int64_t bytesRunOverPerStep = 8;
constexpr std::uint32_t interpreterHeapKib = 16 * 1024;  // where the system forbids generated code
constexpr std::size_t firstJitStack = 32 * 1024;
constexpr std::size_t greatestJitStack = 1024 * 1024;

std::string messageOf(int errorCode) {
    std::array<PCRE2_UCHAR, 256> text{};
    const int length = pcre2_get_error_message(errorCode, text.data(), text.size());
    return length < 0 ? "invalid term" : std::string(reinterpret_cast<const char*>(text.data()));
}

PCRE2_SPTR bytesOf(std::string_view text) {
    return reinterpret_cast<PCRE2_SPTR>(text.data());
}

std::expected<Compiled, SearchError> compileForm(std::string_view pattern, std::uint32_t flags) {
    int errorCode = 0;
    PCRE2_SIZE offset = 0;
    Compiled code(pcre2_compile(bytesOf(pattern), pattern.size(), flags, &errorCode, &offset, nullptr));
    if (code != nullptr) return code;
    return std::unexpected(SearchError{.code = SearchError::Code::invalidTerm,
                                       .offset = std::min(offset, pattern.size()),
                                       .message = messageOf(errorCode)});
}

/// The term as an expression that means its plain text.
std::string quoted(std::string_view term) {
    std::string pattern = "\\Q";
    for (std::size_t at = 0; at < term.size(); ++at) {
        if (term.substr(at).starts_with("\\E"))
            pattern += "\\E\\\\\\Q";
        else
            pattern += term[at];
    }
    return pattern + "\\E";
}

/// Not "\b", which would want a word's character at the edge of a term such as "--all".
std::string wholeWords(std::string_view expression) {
    return "(?<!\\w)(?:" + std::string(expression) + "\\E)(?!\\w)";
}

std::uint32_t flagsFor(const SearchOptions& options) {
    std::uint32_t flags = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
    if (!options.caseSensitive) flags |= PCRE2_CASELESS;
    if (!options.regex && !options.wholeWord) return flags | PCRE2_LITERAL;
    return flags | PCRE2_UCP | PCRE2_NEVER_BACKSLASH_C;
}

SearchError limitExceeded() {
    return {.code = SearchError::Code::limitExceeded, .message = "the pattern takes too many steps"};
}

}  // namespace

struct SearchPattern::Code {
    Compiled plain;
    Compiled metered;  ///< null for plain text
    JitStack stack{pcre2_jit_stack_create(firstJitStack, greatestJitStack, nullptr)};
    MatchContext context{pcre2_match_context_create(nullptr)};
    MatchData data{pcre2_match_data_create(1, nullptr)};
    std::int64_t budget = meteredBudget;
    std::size_t position = 0;

    static int charge(pcre2_callout_block* block, void* data) {
        Code& code = *static_cast<Code*>(data);
        const std::size_t before = std::exchange(code.position, block->current_position);
        const std::size_t ranOver = block->current_position > before ? block->current_position - before : 0;
        code.budget -= 1 + static_cast<std::int64_t>(ranOver) / bytesRunOverPerStep;
        return code.budget < 0 ? PCRE2_ERROR_CALLOUT : 0;
    }
};

SearchPattern::SearchPattern(std::unique_ptr<Code> code) : code_(std::move(code)) {}
SearchPattern::SearchPattern(SearchPattern&&) noexcept = default;
SearchPattern& SearchPattern::operator=(SearchPattern&&) noexcept = default;
SearchPattern::~SearchPattern() = default;

std::expected<SearchPattern, SearchError> SearchPattern::compile(std::string_view term, const SearchOptions& options) {
    if (term.size() > maximumTermLength) {
        return std::unexpected(SearchError{
            .code = SearchError::Code::termTooLong, .offset = maximumTermLength, .message = "the term is too long"});
    }
    const std::uint32_t flags = flagsFor(options);
    std::string pattern = options.regex || !options.wholeWord ? std::string(term) : quoted(term);
    auto plain = compileForm(pattern, flags);
    // Wrapped only once it is known to be well-formed: "a)(b" would become so.
    if (plain && options.wholeWord) plain = compileForm(pattern = wholeWords(pattern), flags);
    if (!plain) {
        plain.error().offset = std::min(plain.error().offset, term.size());  // what was put round the term is not its
        return std::unexpected(std::move(plain.error()));
    }

    auto code = std::make_unique<Code>();
    code->plain = std::move(*plain);
    pcre2_jit_compile(code->plain.get(), PCRE2_JIT_COMPLETE);
    if (options.regex) {
        auto metered = compileForm(pattern, flags | PCRE2_AUTO_CALLOUT);
        if (!metered) return std::unexpected(std::move(metered.error()));
        code->metered = std::move(*metered);
        pcre2_jit_compile(code->metered.get(), PCRE2_JIT_COMPLETE);
    }
    pcre2_jit_stack_assign(code->context.get(), nullptr, code->stack.get());
    pcre2_set_heap_limit(code->context.get(), interpreterHeapKib);
    return SearchPattern(std::move(code));
}

void SearchPattern::restart() {
    code_->budget = meteredBudget;
    plainFailures_ = 0;
}

void SearchPattern::enterLine(std::string_view line) {
    code_->budget += meteredBudgetPerByte * static_cast<std::int64_t>(line.size());
    const bool isMetered = line.size() > longestPlainLine || plainFailures_ > mostPlainFailures;
    form_ = code_->metered != nullptr && isMetered ? Form::metered : Form::plain;
}

int SearchPattern::match(Form form, std::string_view line, std::size_t from) {
    const bool isPlain = form == Form::plain;
    const bool isLimited = isPlain && code_->metered != nullptr;
    pcre2_set_match_limit(code_->context.get(),
                          isLimited ? plainMatchLimit : std::numeric_limits<std::uint32_t>::max());
    pcre2_set_callout(code_->context.get(), isPlain ? nullptr : &Code::charge, code_.get());
    code_->position = from;
    return pcre2_match((isPlain ? code_->plain : code_->metered).get(), bytesOf(line), line.size(), from,
                       PCRE2_NOTEMPTY, code_->data.get(), code_->context.get());
}

std::expected<std::optional<SearchPattern::Range>, SearchError> SearchPattern::next(std::string_view line,
                                                                                    std::size_t from) {
    if (from >= line.size()) return std::nullopt;
    int result = match(form_, line, from);
    if (result < 0 && result != PCRE2_ERROR_NOMATCH && form_ == Form::plain && code_->metered != nullptr) {
        ++plainFailures_;
        form_ = Form::metered;
        result = match(form_, line, from);
    }
    if (result == PCRE2_ERROR_NOMATCH) return std::nullopt;
    if (result < 0) return std::unexpected(limitExceeded());
    // "\K" can leave the start before the place that was asked for, or behind the end: no hit of its own.
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(code_->data.get());
    if (offsets[0] < from || offsets[0] >= offsets[1]) return std::nullopt;
    return Range{.begin = offsets[0], .end = offsets[1]};
}

}  // namespace orvane
