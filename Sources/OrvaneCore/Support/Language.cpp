#include "OrvaneCore/Support/Language.h"

namespace orvane {

std::optional<Language> languageOfLocale(std::string_view locale) {
    const std::string_view name = locale.substr(0, locale.find_first_of("_.@-"));
    if (name == "zh") return Language::zhHans;
    return name == "zhHans" ? std::nullopt : fromRawValue<Language>(name);
}

Language chooseLanguage(std::string_view preference, std::string_view lcAll, std::string_view lang) {
    if (const auto preferred = fromRawValue<Language>(preference)) return *preferred;
    return languageOfLocale(lcAll.empty() ? lang : lcAll).value_or(Language::en);
}

bool takesSingular(Language language, long long count) {
    if (language == Language::fr || language == Language::pt) return count == 0 || count == 1;
    return count == 1;
}

}  // namespace orvane
