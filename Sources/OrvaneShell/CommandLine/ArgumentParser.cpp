#include "OrvaneShell/CommandLine/ArgumentParser.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <deque>

namespace orvane {

namespace {

std::string bareName(std::string_view name) {
    name.remove_prefix(std::min(name.find_first_not_of('-'), name.size()));
    std::string bare(name);
    std::ranges::transform(bare, bare.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return bare;
}

/// Where the library puts one parameter.
struct Slot {
    const Parameter* parameter;
    std::string value;
    bool flag = false;
    CLI::Option* option = nullptr;
};

/// The library takes the next word for the value that "--option=" lacks, so an empty value goes in as a word.
std::vector<std::string> withEmptyValues(const std::vector<std::string>& words, const std::deque<Slot>& slots) {
    std::vector<std::string> result;
    const auto end = std::ranges::find(words, "--");
    for (auto word = words.begin(); word != words.end(); ++word) {
        const bool isEmptyOption = word < end && std::ranges::any_of(
                                                     slots,
                                                     [&](const Slot& slot) {
                                                         return slot.parameter->takesValue() &&
                                                                *word == std::string(slot.parameter->name) + "=";
                                                     });
        result.push_back(isEmptyOption ? word->substr(0, word->size() - 1) : *word);
        if (isEmptyOption) result.emplace_back();
    }
    return result;
}

/// Of a verb that takes the rest of the line: where that begins, the "--" before it not counted.
std::size_t restStart(const Verb& verb, const std::vector<std::string>& words) {
    const auto takesValue = [&](const std::string& word) {
        return std::ranges::any_of(verb.parameters, [&](const Parameter& parameter) {
            return parameter.takesValue() && word == parameter.name;
        });
    };
    std::size_t at = 0;
    while (at < words.size() && words[at].starts_with('-') && words[at] != "--")
        at += takesValue(words[at]) ? 2 : 1;
    return std::min(at, words.size());
}

std::expected<Arguments, std::string> parseWithRest(const Verb& verb, const Parameter& rest,
                                                    const std::vector<std::string>& words, const L10n& l10n) {
    std::size_t start = restStart(verb, words);
    Verb options = verb;
    std::erase_if(options.parameters, [](const Parameter& each) { return each.kind == Parameter::Kind::rest; });
    auto arguments = parseArguments(options, {words.begin(), words.begin() + static_cast<std::ptrdiff_t>(start)}, l10n);
    if (!arguments) return arguments;
    if (start < words.size() && words[start] == "--") ++start;
    arguments->rest.assign(words.begin() + static_cast<std::ptrdiff_t>(start), words.end());
    if (arguments->rest.empty()) return std::unexpected(l10n.text("usage.missing", rest.name));
    return arguments;
}

}  // namespace

std::expected<Arguments, std::string> parseArguments(const Verb& verb, const std::vector<std::string>& words,
                                                     const L10n& l10n) {
    const auto rest = std::ranges::find(verb.parameters, Parameter::Kind::rest, &Parameter::kind);
    if (rest != verb.parameters.end()) return parseWithRest(verb, *rest, words, l10n);
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    std::deque<Slot> slots;
    for (const Parameter& parameter : verb.parameters) {
        Slot& slot = slots.emplace_back(Slot{.parameter = &parameter});
        const std::string name(parameter.isNamed() ? parameter.name : bareName(parameter.name));
        slot.option =
            parameter.kind == Parameter::Kind::flag ? app.add_flag(name, slot.flag) : app.add_option(name, slot.value);
        // Of an option given twice the last counts: scripts append to what they were handed. A list of the library's
        // own would take further words, and split what stands in brackets.
        if (parameter.takesValue()) slot.option->take_last();
    }
    try {
        const auto separated = withEmptyValues(words, slots);
        app.parse(std::vector<std::string>(separated.rbegin(), separated.rend()));
    } catch (const CLI::ArgumentMismatch&) {
        return std::unexpected(l10n.text("usage.valueMissing", words.back()));
    } catch (const CLI::Error& error) {
        return std::unexpected(l10n.text("usage.notUnderstood", error.what()));
    }
    const std::vector<std::string> extras = app.remaining();
    const auto unexpected = std::ranges::find_if(extras, [](const std::string& word) { return word != "--"; });
    if (unexpected != extras.end()) return std::unexpected(l10n.text("usage.unexpected", *unexpected));

    Arguments arguments;
    for (const Slot& slot : slots) {
        const std::string name = bareName(slot.parameter->name);
        if (slot.flag) arguments.flags.insert(name);
        const bool wasGiven = slot.option->count() > 0;
        if (slot.parameter->kind == Parameter::Kind::required && !wasGiven) {
            return std::unexpected(l10n.text("usage.missing", slot.parameter->name));
        }
        if (slot.parameter->kind == Parameter::Kind::flag || !wasGiven) continue;
        if (slot.parameter->kind == Parameter::Kind::repeated) {
            arguments.lists[name] = slot.option->results();
        } else {
            arguments.values[name] = slot.value;
        }
    }
    return arguments;
}

}  // namespace orvane
