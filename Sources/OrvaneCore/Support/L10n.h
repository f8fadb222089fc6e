#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

#include "OrvaneCore/Support/Language.h"

namespace orvane {

/// The texts of one language. Placeholders are `%d` (a whole number) and `%@` (a text), filled from left to right, or
/// `%2$@` where a language needs another order; `%%` is a percent sign.
struct L10n {
    Language language = Language::en;

    /// What fills a placeholder. The text is only looked at during the call.
    struct Argument {
        std::variant<long long, std::string_view> value;

        template <std::integral Number>
        Argument(Number number) : value(static_cast<long long>(number)) {}
        template <std::convertible_to<std::string_view> Text>
        Argument(const Text& text) : value(std::string_view(text)) {}
    };

    /// The text of a dotted key. A key that no table has gives the key itself, so that it is seen and not lost.
    template <typename... Arguments>
    std::string text(std::string_view key, const Arguments&... arguments) const {
        return format(key, {Argument(arguments)...});
    }

    /// The text under `key.one` or `key.other`, as the count asks; the count is the first argument.
    template <typename... Arguments>
    std::string plural(std::string_view key, long long count, const Arguments&... arguments) const {
        return format(pluralKey(key, count), {Argument(count), Argument(arguments)...});
    }

 private:
    std::string pluralKey(std::string_view key, long long count) const;
    std::string format(std::string_view key, std::initializer_list<Argument> arguments) const;
};

}  // namespace orvane
