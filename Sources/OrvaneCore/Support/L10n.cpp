#include "OrvaneCore/Support/L10n.h"

#include <algorithm>
#include <optional>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/TextTable.h"

namespace orvane {

namespace {

std::string_view lookUp(Language language, std::string_view key) {
    const auto table = textTable();
    const auto entry = std::ranges::lower_bound(table, key, {}, &TextEntry::key);
    if (entry == table.end() || entry->key != key) return key;
    const std::string_view text = entry->texts[static_cast<std::size_t>(language)];
    return text.empty() ? entry->texts[static_cast<std::size_t>(Language::en)] : text;
}

/// A placeholder at the front of a text: "%d", "%@", "%2$@" or "%%".
struct Placeholder {
    std::size_t length = 0;
    std::optional<std::size_t> position;  ///< counted from 0, when the text names it
    bool isPercentSign = false;
};

std::optional<Placeholder> placeholderAt(std::string_view text) {
    if (text.size() < 2) return std::nullopt;
    if (text[1] == '%') return Placeholder{.length = 2, .isPercentSign = true};
    Placeholder found{.length = 1};
    if (text[1] >= '1' && text[1] <= '9' && text.size() >= 4 && text[2] == '$') {
        found.position = static_cast<std::size_t>(text[1] - '1');
        found.length = 3;
    }
    const char kind = text[found.length];
    if (kind != 'd' && kind != '@') return std::nullopt;
    ++found.length;
    return found;
}

std::string textOf(const L10n::Argument& argument) {
    return std::visit(Overloaded{[](long long number) { return std::to_string(number); },
                                 [](std::string_view text) { return std::string(text); }},
                      argument.value);
}

}  // namespace

std::string L10n::pluralKey(std::string_view key, long long count) const {
    return std::string(key) + (takesSingular(language, count) ? ".one" : ".other");
}

std::string L10n::format(std::string_view key, std::initializer_list<Argument> arguments) const {
    std::string_view rest = lookUp(language, key);
    std::string result;
    std::size_t nextArgument = 0;
    while (!rest.empty()) {
        const auto plain = std::min(rest.find('%'), rest.size());
        result += rest.substr(0, plain);
        rest.remove_prefix(plain);
        if (rest.empty()) break;
        const auto placeholder = placeholderAt(rest);
        const std::size_t length = placeholder ? placeholder->length : 1;
        if (!placeholder || placeholder->isPercentSign) {
            result += '%';
            if (placeholder) rest.remove_prefix(1);
            rest.remove_prefix(1);
            continue;
        }
        const std::size_t index = placeholder->position ? *placeholder->position : nextArgument++;
        result += index < arguments.size() ? textOf(arguments.begin()[index]) : std::string(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    return result;
}

}  // namespace orvane
