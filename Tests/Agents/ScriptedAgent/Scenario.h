#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvane::scripted {

using Milliseconds = std::chrono::milliseconds;

/// Where in a scenario something stands, for what is told about it.
struct Place {
    std::string file;
    int line = 0;
};

/// A row is shown only when a placeholder has a value, or has none.
struct Condition {
    enum class Wants : std::uint8_t { value, none };

    Wants wants = Wants::value;
    std::string name;
};

/// A row of a text. Placeholders such as {composer} are still in it.
struct Row {
    std::vector<Condition> conditions;  ///< all must hold
    std::string text;
    bool isGap = false;  ///< what stands below it is at the bottom of the screen
    Place place;
};
using Rows = std::vector<Row>;

enum class Verb : std::uint8_t {
    go,       ///< to another state
    again,    ///< the key that led here is handled once more, by the state that is now the current one
    print,    ///< a text, into the conversation
    say,      ///< a row, into the conversation
    stream,   ///< a row, word by word
    more,     ///< words for the row that streams
    clear,    ///< the conversation
    unsay,    ///< what this turn has put into the conversation
    discard,  ///< what the composer holds
    queue,    ///< what the composer holds, for later
    dequeue,  ///< the oldest queued prompt is entered
    restore,  ///< the queued prompts, else the last one, go back into the composer
    let,
    send,
    write,
    append,
    remove,
    run,
    exit,
    ignore,
};

struct Action {
    Verb verb = Verb::ignore;
    std::string name;  ///< of the state, text, variable or file; the command of `run`
    std::string text;
    Rows rows;  ///< the content of a file, the standard input of a command
    Milliseconds period{};
    int status = 0;
    Place place;
};

struct Trigger {
    enum class Kind : std::uint8_t { enter, key, prompt, choose, after, signal };

    Kind kind = Kind::enter;
    /// Keys, a pattern of a prompt or of a choice's number, a signal, milliseconds or a variable that holds them.
    std::string what;
};

struct Reaction {
    Trigger trigger;
    std::vector<Action> actions;
};

enum class Typing : std::uint8_t { unset, lost, taken };
enum class Cursor : std::uint8_t { unset, hidden, shown };
enum class Choosing : std::uint8_t { one, many };

/// What is not set is the base's.
struct State {
    std::string base;
    std::string view;
    std::string title;
    Typing typing = Typing::unset;
    Cursor cursor = Cursor::unset;
    int choices = 0;
    Choosing choosing = Choosing::one;
    std::string guard;  ///< milliseconds: a Return that comes earlier after the state was entered does nothing
    std::vector<Reaction> reactions;
    Place place;
};

/// Glyphs that follow each other in time, as a spinner's do.
struct Cycle {
    Milliseconds period{};
    std::vector<std::string> glyphs;
};

/// A paste of at least so many lines or characters is shown as a text in its place; 0 is no limit.
struct PasteRule {
    int lines = 0;
    int characters = 0;
    std::string shown;
};

enum class Screen : std::uint8_t { main, alternate };
enum class Moves : std::uint8_t { absolute, fromHome };
enum class Streams : std::uint8_t { words, rows };

/// What the last argument of the command line is, when it belongs to no option.
enum class Positional : std::uint8_t { ignored, prompt };

/// An argument of the command line that the agent understands.
struct Argument {
    std::string variable;  ///< takes the word that follows
    std::string answer;    ///< is printed, and the agent ends
    int status = 0;
};

struct Scenario {
    Screen screen = Screen::main;
    Moves moves = Moves::absolute;        ///< how rows of the alternate screen are reached
    Streams streams = Streams::words;     ///< what of an incomplete row is shown
    std::string open, close;              ///< bytes for the terminal, first and last
    std::string frameBegin, frameFinish;  ///< around all that is drawn at once
    std::vector<std::string> newlineKeys;
    PasteRule paste;
    std::string received;     ///< path of a file that gets every prompt; placeholders are still in it, as in the next
    std::string lostReturns;  ///< how many in the composer do nothing before one counts
    Positional positional = Positional::ignored;
    std::map<std::string, std::string> variables;
    std::map<std::string, Argument> arguments;
    std::map<std::string, Cycle> cycles;
    std::map<std::string, Rows> texts;
    std::map<std::string, State> states;
};

}  // namespace orvane::scripted
