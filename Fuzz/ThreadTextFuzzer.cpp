#include <algorithm>
#include <string>
#include <vector>

#include "Fuzzing.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/ThreadText.h"

namespace {

using namespace orvane;
using fuzzing::require;
using TranscriptFeed::Entry;
using TranscriptFeed::Role;

bool steers(char byte) {
    return (byte >= 0 && byte < ' ' && byte != '\n' && byte != '\t') || byte == '\x7f';
}

void check(const std::string& text) {
    require(Text::isValidUtf8(text), "what is printed is text");
    require(std::ranges::none_of(text, steers), "no control character is printed");
    for (std::size_t at = text.find('\xC2'); at != std::string::npos; at = text.find('\xC2', at + 1))
        require(static_cast<unsigned char>(text[at + 1]) >= 0xA0, "nor one of the upper half");
}

}  // namespace

/// Pieces behind NUL bytes: each begins with its role and tells text, tool and target alike.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<Entry> entries;
    for (std::string_view rest = fuzzing::asText(data, size); !rest.empty();) {
        const std::string piece(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
        if (piece.empty()) continue;
        Entry& entry = entries.emplace_back();
        entry.role = RawValues<Role>::table[static_cast<unsigned char>(piece[0]) % RawValues<Role>::table.size()].first;
        entry.text = piece.substr(1);
        if (piece.size() % 2 == 0) entry.tool = piece.size() % 4 == 0 ? "Task" : piece;
        entry.target = piece;
        if (entry.role == Role::user) entry.attachments = {{.name = piece, .path = piece}};
    }
    const ThreadText::Heading heading{.title = entries.empty() ? "" : entries[0].text, .projectPath = "/p"};
    for (const auto form : {ThreadText::Form::plain, ThreadText::Form::markdown}) {
        for (const auto tools : {ThreadText::Tools::folded, ThreadText::Tools::unfolded})
            check(ThreadText::text(heading, entries, {.form = form, .tools = tools}));
    }
    return 0;
}
