#include "ScriptedAgent/Player.h"

#include <algorithm>
#include <cstdlib>
#include <ranges>
#include <utility>

#include "ScriptedAgent/Effects.h"
#include "ScriptedAgent/Placeholders.h"
#include "ScriptedAgent/Text.h"

namespace orvane::scripted {
namespace {

/// States that lead to each other without end are a mistake of the scenario.
constexpr int deepestReaction = 32;

bool contains(const std::vector<std::string>& all, std::string_view one) {
    return std::ranges::find(all, one) != all.end();
}

}  // namespace

Player::Player(const Scenario& scenario, Size size, Write write)
    : scenario_(scenario), painter_(scenario), size_(size), write_(std::move(write)), variables_(scenario.variables) {}

void Player::start(const std::string& firstPrompt, TimePoint now) {
    now_ = started_ = turn_.began = now;
    if (!firstPrompt.empty()) queue_.push_back({firstPrompt, firstPrompt});
    write_(scenario_.open);
    go("start");
    advance(now);
}

void Player::press(const Key& key, TimePoint now) {
    advance(now);
    key_ = key;
    const std::string& guard = having([](const State& state) { return !state.guard.empty(); }).guard;
    if (exitStatus_ || (key.name == "Return" && now - entered_ < duration(guard))) return;
    if (!reactToKey(key) && !choose(key)) edit(key);
    draw();
}

void Player::signal(const std::string& name, int number, TimePoint now) {
    now_ = now;
    const Reaction* reaction =
        reactionTo(Trigger::Kind::signal, [&](const Trigger& trigger) { return trigger.what == name; });
    if (reaction == nullptr) return end(128 + number);
    react(*reaction);
    draw();
}

void Player::resize(Size size, TimePoint now) {
    now_ = now;
    size_ = size;
    draw();
}

void Player::advance(TimePoint now) {
    now_ = now;
    conversation_.advance(now);
    for (const Reaction* due = nextDue();
         due != nullptr && entered_ + duration(due->trigger.what) <= now && !exitStatus_; due = nextDue()) {
        done_.insert(due);
        react(*due);
    }
    draw();
}

std::optional<TimePoint> Player::nextWake() const {
    std::optional<TimePoint> wake = conversation_.nextWord();
    const auto consider = [&](TimePoint time) {
        if (!wake || time < *wake) wake = time;
    };
    if (const Reaction* due = nextDue()) consider(entered_ + duration(due->trigger.what));
    std::vector<std::string> names = placeholdersOf(having([](const State& s) { return !s.title.empty(); }).title);
    const State& viewed = having([](const State& state) { return !state.view.empty(); });
    if (!viewed.view.empty()) {
        for (const Row& row : scenario_.texts.at(viewed.view))
            std::ranges::move(placeholdersOf(row.text), std::back_inserter(names));
    }
    for (const std::string& name : names) {
        const auto cycle = scenario_.cycles.find(name);
        const bool isSeconds = name == "seconds";
        if (cycle == scenario_.cycles.end() && !isSeconds) continue;
        const Milliseconds period = isSeconds ? Milliseconds(1000) : cycle->second.period;
        const TimePoint begin = isSeconds ? turn_.began : started_;
        consider(begin + ((now_ - begin) / period + 1) * period);
    }
    return wake;
}

const State& Player::having(const std::function<bool(const State&)>& property) const {
    static const State none;
    for (std::string name = state_; !name.empty();) {
        const State& state = scenario_.states.at(name);
        if (property(state)) return state;
        name = state.base;
    }
    return none;
}

const Reaction* Player::reactionTo(Trigger::Kind kind, const std::function<bool(const Trigger&)>& isMeant) const {
    const Reaction* found = nullptr;
    having([&](const State& state) {
        for (const Reaction& reaction : state.reactions) {
            if (reaction.trigger.kind == kind && isMeant(reaction.trigger)) return found = &reaction, true;
        }
        return false;
    });
    return found;
}

const Reaction* Player::nextDue() const {
    const Reaction* next = nullptr;
    having([&](const State& state) {
        for (const Reaction& reaction : state.reactions) {
            if (reaction.trigger.kind != Trigger::Kind::after || done_.contains(&reaction)) continue;
            if (next == nullptr || duration(reaction.trigger.what) < duration(next->trigger.what)) next = &reaction;
        }
        return false;
    });
    return next;
}

int Player::number(const std::string& text) const {
    return std::atoi(expanded(text, [this](std::string_view name) { return value(name); }).c_str());
}

void Player::go(const std::string& state) {
    conversation_.settle();
    state_ = state;
    entered_ = now_;
    selected_ = 1;
    checked_.clear();
    done_.clear();
    std::vector<const Reaction*> entering;
    having([&](const State& each) {
        for (const Reaction& reaction : std::views::reverse(each.reactions)) {
            if (reaction.trigger.kind == Trigger::Kind::enter) entering.push_back(&reaction);
        }
        return false;
    });
    // A base's come first. One that leads on to another state leaves the rest undone.
    const int visit = ++visits_;
    for (const Reaction* reaction : std::views::reverse(entering)) {
        if (visit == visits_) react(*reaction);
    }
}

void Player::react(const Reaction& reaction) {
    if (depth_ == deepestReaction) return fail("state “" + state_ + "” leads to itself without end");
    ++depth_;
    for (const Action& action : reaction.actions) {
        if (!exitStatus_) perform(action);
    }
    --depth_;
}

void Player::perform(const Action& action) {
    const auto lookup = [this](std::string_view name) { return value(name); };
    switch (action.verb) {
        case Verb::go:
            return go(action.name);
        case Verb::again:
            if (!reactToKey(key_) && !choose(key_)) edit(key_);
            return;
        case Verb::print:
            return print(action.name);
        case Verb::say:
            return conversation_.add(expanded(action.text, lookup));
        case Verb::stream:
            return conversation_.stream(expanded(action.text, lookup), action.period, now_);
        case Verb::more:
            return conversation_.streamMore(expanded(action.text, lookup), action.period, now_);
        case Verb::clear:
            conversation_.clear();
            return write_(painter_.clear());
        case Verb::unsay:
            return conversation_.takeBack();
        case Verb::discard:
            return composer_.clear();
        case Verb::queue:
            return queuePrompt();
        case Verb::dequeue: {
            if (queue_.empty()) return;
            Prompt next = std::move(queue_.front());
            queue_.pop_front();
            return enter(std::move(next));
        }
        case Verb::restore:
            return restorePrompt();
        case Verb::let:
            variables_[action.name] = expanded(action.text, lookup);
            return;
        case Verb::send:
            return write_(expanded(action.text, lookup));
        case Verb::write:
        case Verb::append:
        case Verb::remove:
        case Verb::run:
            return outside(action);
        case Verb::exit:
            return end(action.status);
        case Verb::ignore:
            return;
    }
}

void Player::print(const std::string& text) {
    const Rows& rows = scenario_.texts.at(text);
    for (std::size_t next = 0; next < rows.size();) {
        for (std::string& row : expandedRows(rows, next, [this](auto name) { return value(name); }, size_.cols))
            conversation_.add(std::move(row));
    }
}

void Player::outside(const Action& action) {
    draw();  // what a command or a reader of the file looks at must be on the screen by then
    const auto lookup = [this](std::string_view name) { return value(name); };
    const std::string name = expanded(action.name, lookup);
    std::string content;
    for (const Row& row : action.rows)
        content += expanded(row.text, lookup) + "\n";
    Failure failure;
    if (action.verb == Verb::write) failure = writeFile(name, content);
    if (action.verb == Verb::append) failure = appendToFile(name, content);
    if (action.verb == Verb::remove) failure = removeFile(name);
    if (action.verb == Verb::run) failure = runCommand(name, content);
    if (failure) fail(action.place.file + ":" + std::to_string(action.place.line) + ": " + *failure);
}

void Player::enter(Prompt prompt) {
    const Reaction* reaction =
        reactionTo(Trigger::Kind::prompt, [&](const Trigger& trigger) { return matches(prompt.text, trigger.what); });
    if (reaction == nullptr) return;
    composer_.clear();
    conversation_.beginTurn();
    previousTurn_ = std::exchange(turn_, {.prompt = std::move(prompt), .began = now_});
    react(*reaction);
}

void Player::queuePrompt() {
    if (composer_.empty()) {
        // It was entered just now, but the turn that goes on is the one before.
        queue_.push_back(std::exchange(turn_, previousTurn_).prompt);
    } else {
        receive();
        queue_.push_back({composer_.shown(), composer_.text()});
        composer_.clear();
    }
}

void Player::restorePrompt() {
    if (queue_.empty()) queue_.push_back(turn_.prompt);
    for (const Prompt& prompt : queue_) {
        if (!composer_.empty()) composer_.type("\n");
        composer_.type(prompt.text);
    }
    queue_.clear();
}

bool Player::reactToKey(const Key& key) {
    const Reaction* reaction = reactionTo(Trigger::Kind::key, [&](const Trigger& trigger) {
        const auto keys = split(trigger.what, ' ');
        return contains(keys, "*") || contains(keys, key.name.empty() ? key.text : key.name);
    });
    if (reaction != nullptr) react(*reaction);
    return reaction != nullptr;
}

bool Player::choose(const Key& key) {
    const State& dialog = having([](const State& state) { return state.choices > 0; });
    if (dialog.choices == 0) return false;
    const int digit = key.text.size() == 1 && key.text[0] >= '1' && key.text[0] <= '9' ? key.text[0] - '0' : 0;
    if (key.name == "Up") selected_ = selected_ > 1 ? selected_ - 1 : dialog.choices;
    if (key.name == "Down") selected_ = selected_ < dialog.choices ? selected_ + 1 : 1;
    if (digit > dialog.choices) return true;
    if (digit > 0) selected_ = digit;
    if (dialog.choosing == Choosing::many && (digit > 0 || key.name == "Space")) {
        if (checked_.erase(selected_) == 0) checked_.insert(selected_);
        return true;
    }
    if (digit == 0 && key.name != "Return") return true;
    const std::string number = std::to_string(selected_);
    const Reaction* reaction =
        reactionTo(Trigger::Kind::choose, [&](const Trigger& trigger) { return matches(number, trigger.what); });
    if (reaction != nullptr) react(*reaction);
    return true;
}

void Player::edit(const Key& key) {
    if (having([](const State& state) { return state.typing != Typing::unset; }).typing != Typing::taken) return;
    if (contains(scenario_.newlineKeys, key.name)) return composer_.type("\n");
    if (key.name == "Return") return editReturn();
    if (key.name == "Backspace") return composer_.erase();
    if (key.name == "Ctrl-U") return composer_.eraseLine();
    if (key.name == "Paste") return composer_.paste(key.text, scenario_.paste);
    composer_.type(key.text);
}

void Player::editReturn() {
    if (composer_.endsWith("\\") && contains(scenario_.newlineKeys, "Backslash-Return")) {
        composer_.erase();
        return composer_.type("\n");
    }
    if (composer_.empty()) return;
    if (lostReturns_ < number(scenario_.lostReturns)) {
        ++lostReturns_;
        return;
    }
    receive();
    enter({composer_.shown(), composer_.text()});
}

/// Somebody has submitted what the composer holds.
void Player::receive() {
    const std::string file = expanded(scenario_.received, [this](std::string_view name) { return value(name); });
    if (file.empty()) return;
    if (Failure failure = appendToFile(file, "\"" + jsonEscaped(composer_.text()) + "\"\n")) fail(*failure);
}

void Player::fail(const std::string& reason) {
    if (failure_.empty()) failure_ = reason;
    end(2);
}

void Player::draw() {
    if (exitStatus_) return;
    if (const std::string bytes = painter_.paint(frame(), size_); !bytes.empty()) write_(bytes);
}

void Player::end(int status) {
    if (exitStatus_) return;
    draw();
    exitStatus_ = status;
    write_(expanded(scenario_.close, [this](std::string_view name) { return value(name); }));
}

}  // namespace orvane::scripted
