#include "ScriptedAgent/ScenarioParser.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <optional>

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {
namespace {

constexpr int deepestInclude = 8;

std::optional<int> numberOf(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) return {};
    return value;
}

/// What a line of the scenario came to: nothing, or what is wrong with it.
using Fault = std::optional<std::string>;

template <typename Value>
Fault choose(Value& value, std::string_view word, std::initializer_list<std::pair<std::string_view, Value>> known) {
    std::string names;
    for (const auto& [name, meaning] : known) {
        if (name == word) {
            value = meaning;
            return {};
        }
        names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return "“" + std::string(word) + "” is none of: " + names;
}

template <typename Number>
Fault readNumber(Number& value, std::string_view word) {
    const auto number = numberOf(word);
    if (!number) return "“" + std::string(word) + "” is no number";
    value = Number(*number);
    return {};
}

class Parser {
 public:
    std::expected<void, ScenarioError> readFile(const std::string& path, int depth) {
        std::ifstream file(path);
        if (!file) return std::unexpected(ScenarioError{{path, 0}, "cannot be read"});
        std::string line;
        for (int number = 1; std::getline(file, line); ++number) {
            place_ = {path, number};
            if (std::string_view rest = trimmed(line); takeWord(rest) == "include") {
                const std::string folder = path.substr(0, path.rfind('/') + 1);
                if (depth == deepestInclude) return std::unexpected(ScenarioError{place_, "includes itself"});
                if (auto read = readFile(folder + std::string(rest), depth + 1); !read) return read;
                continue;
            }
            if (Fault fault = readLine(line)) return std::unexpected(ScenarioError{place_, *fault});
        }
        return {};
    }

    Scenario scenario;

 private:
    enum class Escapes : std::uint8_t { replaced, kept };
    using Handler = std::function<Fault(std::string_view)>;

    Fault readLine(std::string_view line) {
        const std::string_view content = trimmed(line);
        if (content.empty() || content.starts_with('#')) return {};
        if (content[0] == '|' || content[0] == '?' || content[0] == '!') return readRow(line);
        std::string_view rest = content;
        const std::string_view word = takeWord(rest);
        if (line[0] != ' ' && line[0] != '\t') return readSetting(word, rest);
        if (state_ == nullptr) return "“" + std::string(word) + "” stands in no state";
        return reaction_ ? readAction(word, rest) : readProperty(word, rest);
    }

    Fault readRow(std::string_view line) {
        if (rows_ == nullptr) return "a row stands below a text, write, append or run";
        line.remove_prefix(line.find_first_not_of(" \t"));
        const std::size_t bar = line.find('|');
        if (bar == std::string_view::npos) return "a row begins with |";
        Row row{.conditions = conditionsOf(line.substr(0, bar)), .place = place_};
        const std::string_view text = line.substr(bar + 1);
        row.text = escapes_ == Escapes::kept ? std::string(text) : unescaped(text);
        row.isGap = text == "{gap}";
        rows_->push_back(std::move(row));
        return {};
    }

    /// As in ?queue!typed: with a queue, and nothing typed.
    static std::vector<Condition> conditionsOf(std::string_view text) {
        std::vector<Condition> conditions;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of("?!", 1), text.size());
            conditions.push_back({.wants = text[0] == '?' ? Condition::Wants::value : Condition::Wants::none,
                                  .name = std::string(text.substr(1, end - 1))});
            text.remove_prefix(end);
        }
        return conditions;
    }

    Fault readSetting(std::string_view word, std::string_view rest) {
        rows_ = nullptr;
        state_ = nullptr;
        reaction_ = false;
        Scenario& all = scenario;
        const std::map<std::string_view, Handler> settings = {
            {"screen",
             [&](auto value) {
                 return choose<Screen>(all.screen, value, {{"main", Screen::main}, {"alternate", Screen::alternate}});
             }},
            {"moves",
             [&](auto value) {
                 return choose<Moves>(all.moves, value,
                                      {{"absolute", Moves::absolute}, {"from-home", Moves::fromHome}});
             }},
            {"streams",
             [&](auto value) {
                 return choose<Streams>(all.streams, value, {{"words", Streams::words}, {"rows", Streams::rows}});
             }},
            {"open", [&](auto value) { return collect(all.open, value); }},
            {"close", [&](auto value) { return collect(all.close, value); }},
            {"frame-begin", [&](auto value) { return collect(all.frameBegin, value); }},
            {"frame-finish", [&](auto value) { return collect(all.frameFinish, value); }},
            {"newline", [&](auto value) { return all.newlineKeys = split(value, ' '), Fault(); }},
            {"paste", [&](auto value) { return readPaste(value); }},
            {"received", [&](auto value) { return all.received = value, Fault(); }},
            {"lost-returns", [&](auto value) { return all.lostReturns = value, checkNumber(value); }},
            {"let", [&](auto value) { return readVariable(value); }},
            {"argument", [&](auto value) { return readArgument(value); }},
            {"answer", [&](auto value) { return readAnswer(value); }},
            {"positional",
             [&](auto value) {
                 return choose<Positional>(all.positional, value,
                                           {{"ignored", Positional::ignored}, {"prompt", Positional::prompt}});
             }},
            {"cycle", [&](auto value) { return readCycle(value); }},
            {"text", [&](auto value) { return beginText(value); }},
            {"state", [&](auto value) { return beginState(value); }},
        };
        const auto found = settings.find(word);
        if (found == settings.end()) return "“" + std::string(word) + "” is no setting";
        return found->second(rest);
    }

    /// More of the same; without a value it begins anew, which is how a variant replaces what it includes.
    static Fault collect(std::string& bytes, std::string_view value) {
        if (value.empty()) bytes.clear();
        bytes += unescaped(value);
        return {};
    }

    Fault readPaste(std::string_view rest) {
        PasteRule rule;
        if (Fault fault = readNumber(rule.lines, takeWord(rest))) return fault;
        if (Fault fault = readNumber(rule.characters, takeWord(rest))) return fault;
        rule.shown = rest;
        scenario.paste = std::move(rule);
        return {};
    }

    Fault readVariable(std::string_view rest) {
        const std::string name(takeWord(rest));
        if (takeWord(rest) != "=") return "let NAME = VALUE";
        scenario.variables[name] = unescaped(rest);
        return {};
    }

    Fault readArgument(std::string_view rest) {
        const std::string option(takeWord(rest));
        const std::string name(takeWord(rest));
        if (name.empty() || !rest.empty()) return "argument OPTION NAME";
        scenario.arguments[option] = {.variable = name};
        scenario.variables.emplace(name, "");
        return {};
    }

    Fault readAnswer(std::string_view rest) {
        const std::string option(takeWord(rest));
        Argument argument;
        if (Fault fault = readNumber(argument.status, takeWord(rest))) return fault;
        argument.answer = unescaped(rest);
        scenario.arguments[option] = std::move(argument);
        return {};
    }

    Fault readCycle(std::string_view rest) {
        const std::string name(takeWord(rest));
        Cycle cycle;
        if (Fault fault = readNumber(cycle.period, takeWord(rest))) return fault;
        for (const std::string& glyph : split(rest, ' '))
            cycle.glyphs.push_back(unescaped(glyph));
        if (cycle.period.count() < 10 || rest.empty()) return "cycle NAME MILLISECONDS GLYPH…, at least 10 ms";
        scenario.cycles[name] = std::move(cycle);
        return {};
    }

    Fault beginText(std::string_view name) {
        if (name.empty()) return "text NAME";
        rows_ = &scenario.texts[std::string(name)];
        rows_->clear();
        escapes_ = Escapes::replaced;
        return {};
    }

    Fault beginState(std::string_view rest) {
        const std::string name(takeWord(rest));
        if (name.empty()) return "state NAME, or state NAME : BASE";
        state_ = &scenario.states[name];
        state_->place = place_;
        placeInState_ = 0;
        if (rest.empty()) return {};
        if (takeWord(rest) != ":" || rest.empty()) return "state NAME : BASE";
        state_->base = rest;
        return {};
    }

    Fault readProperty(std::string_view word, std::string_view rest) {
        State& state = *state_;
        if (word == "on") return beginReaction(rest);
        if (word == "view") return state.view = rest, Fault();
        if (word == "title") return state.title = unescaped(rest), Fault();
        if (word == "guard") return state.guard = rest, checkNumber(rest);
        if (word == "typing")
            return choose<Typing>(state.typing, rest, {{"lost", Typing::lost}, {"taken", Typing::taken}});
        if (word == "cursor")
            return choose<Cursor>(state.cursor, rest, {{"hidden", Cursor::hidden}, {"shown", Cursor::shown}});
        if (word == "choices") {
            if (Fault fault = readNumber(state.choices, takeWord(rest))) return fault;
            if (rest.empty()) return {};
            return choose<Choosing>(state.choosing, rest, {{"one", Choosing::one}, {"many", Choosing::many}});
        }
        return "“" + std::string(word) + "” is no property of a state";
    }

    /// A number such as of milliseconds, or the variable that holds it.
    static Fault checkNumber(std::string_view text) {
        if (text.starts_with('{') && text.ends_with('}')) return {};
        int number = 0;
        return readNumber(number, text);
    }

    Fault beginReaction(std::string_view rest) {
        using Kind = Trigger::Kind;
        Trigger trigger;
        if (Fault fault = choose<Kind>(trigger.kind, takeWord(rest),
                                       {{"enter", Kind::enter},
                                        {"key", Kind::key},
                                        {"prompt", Kind::prompt},
                                        {"choose", Kind::choose},
                                        {"after", Kind::after},
                                        {"signal", Kind::signal}}))
            return fault;
        if ((trigger.kind == Kind::enter) != rest.empty()) return "on enter, on KIND WHAT";
        if (trigger.kind == Kind::after) {
            if (Fault fault = checkNumber(rest)) return fault;
        }
        trigger.what = rest;
        // What a variant declares goes before what it includes.
        state_->reactions.insert(state_->reactions.begin() + placeInState_, {.trigger = std::move(trigger)});
        ++placeInState_;
        reaction_ = true;
        rows_ = nullptr;
        return {};
    }

    Fault readAction(std::string_view word, std::string_view rest) {
        if (word == "on") return beginReaction(rest);
        using enum Verb;
        Action action{.place = place_};
        if (Fault fault = choose<Verb>(
                action.verb, word,
                {{"go", go},         {"again", again},     {"print", print},     {"say", say},     {"stream", stream},
                 {"more", more},     {"clear", clear},     {"discard", discard}, {"queue", queue}, {"dequeue", dequeue},
                 {"unsay", unsay},   {"restore", restore}, {"let", let},         {"send", send},   {"write", write},
                 {"append", append}, {"remove", remove},   {"run", run},         {"exit", exit},   {"ignore", ignore}}))
            return fault;
        if (Fault fault = readOperands(action, rest)) return fault;
        auto& actions = state_->reactions[placeInState_ - 1].actions;
        actions.push_back(std::move(action));
        const bool takesRows =
            actions.back().verb == write || actions.back().verb == append || actions.back().verb == run;
        rows_ = takesRows ? &actions.back().rows : nullptr;
        escapes_ = Escapes::kept;
        return {};
    }

    static Fault readOperands(Action& action, std::string_view rest) {
        using enum Verb;
        switch (action.verb) {
            case exit:
                return readNumber(action.status, rest);
            case say:
            case send:
                return action.text = unescaped(rest), Fault();
            case stream:
            case more:
                if (Fault fault = readNumber(action.period, takeWord(rest))) return fault;
                return action.text = unescaped(rest), Fault();
            case let:
                action.name = takeWord(rest);
                if (takeWord(rest) != "=") return "let NAME = VALUE";
                return action.text = unescaped(rest), Fault();
            case go:
            case print:
            case write:
            case append:
            case remove:
            case run:
                if (rest.empty()) return "a name is missing";
                return action.name = rest, Fault();
            case again:
            case clear:
            case unsay:
            case discard:
            case queue:
            case dequeue:
            case restore:
            case ignore:
                return rest.empty() ? Fault() : "“" + std::string(rest) + "” is too much";
        }
        return {};
    }

    Rows* rows_ = nullptr;
    Escapes escapes_ = Escapes::replaced;
    State* state_ = nullptr;
    bool reaction_ = false;
    std::ptrdiff_t placeInState_ = 0;
    Place place_;
};

}  // namespace

std::expected<Scenario, ScenarioError> parseScenario(const std::string& path) {
    Parser parser;
    if (auto read = parser.readFile(path, 0); !read) return std::unexpected(read.error());
    if (auto checked = checkScenario(parser.scenario, path); !checked) return std::unexpected(checked.error());
    return std::move(parser.scenario);
}

}  // namespace orvane::scripted
