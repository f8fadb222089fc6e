#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// The languages every text exists in.
enum class Language { en, fr, es, pt, zhHans, ja, de };

template <>
struct RawValues<Language> {
    static constexpr std::array table = {
        rawValueOf(Language::en, "en"), rawValueOf(Language::fr, "fr"),         rawValueOf(Language::es, "es"),
        rawValueOf(Language::pt, "pt"), rawValueOf(Language::zhHans, "zhHans"), rawValueOf(Language::ja, "ja"),
        rawValueOf(Language::de, "de"),
    };
};

/// The language of a POSIX locale name such as "pt_BR.UTF-8"; none for "C", "POSIX", an empty name and languages that
/// we have no texts in.
std::optional<Language> languageOfLocale(std::string_view locale);

/// The language to speak: the preference (a raw value of `Language`) when it names one, else that of LC_ALL, else that
/// of LANG, else English. LC_ALL, when it is set at all, hides LANG as it does everywhere.
Language chooseLanguage(std::string_view preference, std::string_view lcAll, std::string_view lang);

/// Whether a count takes the singular text. French and Portuguese use it for 0 as well; Chinese and Japanese have one
/// form, which stands under both keys.
bool takesSingular(Language language, long long count);

}  // namespace orvane
