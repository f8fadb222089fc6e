#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

class ClientContext;
struct HostContext;

/// A parameter of a verb as people type it.
struct Parameter {
    enum class Kind {
        required,  ///< by its place, "PATH"
        optional,  ///< by its place, may be left out
        option,    ///< "--project P"; of several the last counts
        repeated,  ///< "--busy P", as often as there is something to say; all count
        flag,      ///< "--json"
        rest,      ///< the last: "COMMAND", all words behind "--" or from the first that is no option on
    };
    Kind kind = Kind::flag;
    /// "PATH", "--json"
    std::string_view name;
    /// What an option takes, for the help: "P".
    std::string_view valueName = {};
    /// Key of the text that explains it; empty for one that is not for people.
    std::string_view textKey = {};

    bool takesValue() const { return kind == Kind::option || kind == Kind::repeated; }
    /// Whether it goes by its name, and not by its place.
    bool isNamed() const { return takesValue() || kind == Kind::flag; }
};

/// The parameters of one call, by their bare lower-case names ("path", "json").
struct Arguments {
    std::map<std::string, std::string> values;
    std::set<std::string> flags;
    /// Of the repeated options that were given, in the order typed.
    std::map<std::string, std::vector<std::string>> lists;
    std::vector<std::string> rest;

    bool has(const std::string& flag) const { return flags.contains(flag); }
    /// Empty when it was not given.
    std::string value(const std::string& name) const {
        const auto found = values.find(name);
        return found == values.end() ? std::string() : found->second;
    }
};

/// Why the host did not do what was asked.
struct Refusal {
    /// What a client may act on: "refused", "usage", "confirm", "malformed", "unknownVerb", "tooLong", "tooSlow",
    /// "tooMany".
    std::string code = "refused";
    /// One line for a person, in the language of the request.
    std::string message;
    /// What comes along with "confirm": title, info, confirm, cancel.
    JsonValue details = {};
};

/// The request stays open; the handler sends lines through its connection, and may end with `HostContext::answer`. A
/// line is an object without "ok", which is what marks the answer.
struct Streaming {};

/// The answer follows through `HostContext::answer`: for what must look at the disk first, which may take its time.
struct Later {};

using Outcome = std::variant<JsonValue, Refusal, Streaming, Later>;

/// One verb of the command line: what people type, the half that runs in their terminal and the half that runs in the
/// host. The text of `HelpText::summaryKey` says what
/// it does.
struct Verb {
    /// One word, or two for those that share a subject ("terminal feed").
    std::string_view name;
    std::vector<Parameter> parameters = {};
    /// The client's half; returns the exit status.
    int (*run)(ClientContext& client, const Arguments& arguments) = nullptr;
    /// The host's half, with the arguments of the request; none for a verb that the client does alone.
    Outcome (*serve)(HostContext& host, const JSONObject& arguments) = nullptr;
    /// Left out of the help: for programs of our own.
    bool isHidden = false;
};

}  // namespace orvane
