#pragma once

#include <expected>
#include <functional>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/ControlClient.h"
#include "OrvaneShell/CommandLine/Verb.h"
#include "Platform/Environment.h"

namespace orvane {

/// What the client's half of a verb works with: the terminal it was typed in, and the way to the host.
class ClientContext {
 public:
    ClientContext(Environment environmentValue, L10n texts, std::string folder, std::ostream& results,
                  std::ostream& complaints)
        : environment(std::move(environmentValue)),
          l10n(texts),
          workingDirectory(std::move(folder)),
          output(results),
          errors(complaints) {}

    Environment environment;
    L10n l10n;
    /// Empty when it was deleted.
    std::string workingDirectory;
    /// Where results go, and where everything said to a person goes.
    std::ostream& output;
    std::ostream& errors;
    /// Whether a person can be asked something.
    bool isInteractive = false;
    /// Reads a line that a person types; empty at the end of input.
    std::function<std::string()> readAnswer;
    /// Fills the room from the standard input and gives back how much came: less at its end alone.
    std::function<std::size_t(std::span<char> room)> readInput;

    /// All of the standard input, up to its end.
    std::string allInput() const;

    /// Asks the host and gives its result to `print`. Returns the exit status; a refusal is told in one line.
    int ask(std::string_view verb, boost::json::object arguments, const std::function<void(const JsonValue&)>& print,
            HostStart start = HostStart::never);

    /// The same for a request whose answer is a stream without an end: every line goes to the output until the host
    /// ends.
    int follow(std::string_view verb, const boost::json::object& arguments);

    /// The same for a request that streams lines, however long it takes, and then ends with a result or a refusal.
    int askStreaming(std::string_view verb, const boost::json::object& arguments,
                     const std::function<void(const JSONObject&)>& printLine,
                     const std::function<void(const JsonValue&)>& print, HostStart start = HostStart::never);

    /// What was typed, as the arguments of a request, by the names of the parameters. The exit status once it was told
    /// that something is no text: JSON is, so bytes that are none would arrive as others.
    std::expected<boost::json::object, int> requestOf(const Arguments& arguments) const;

    /// For an exchange that a verb leads itself: the connection, made if there is none, or the exit status once the
    /// reason was told; the line of a request; and the exit status of a refusal, which it tells.
    std::expected<LineClient*, int> connect(HostStart start);
    void disconnect() { connection_.reset(); }
    std::string requestLine(std::string_view verb, const boost::json::object& arguments) const;
    int explain(const JSONObject& error);
    /// Tells that the host gave no answer, and gives the connection up.
    int hostGone(const SystemError& error);
    /// Whether a request that ended so was read by nobody and had no effect: the next host may take it, or there is
    /// none. A host that is about to end may be met `attempts` times before its socket is gone.
    static bool wasUnread(const SystemError& error);
    static constexpr int attempts = 5;

    /// What was typed for a project: a path ("/…", ".", "./…", "..", "../…") as projects are registered, absolute and
    /// with links resolved; ids and names as they are.
    std::string projectText(const std::string& typed) const;

    /// Prints a result as one line of JSON.
    void printJson(const JsonValue& value);

 private:
    std::expected<std::string, int> exchange(const std::string& line, HostStart start, LineClient::Wait wait);
    static void printResult(const JSONObject& reply, const std::function<void(const JsonValue&)>& print);
    bool confirms(const JSONObject& details);

    std::unique_ptr<LineClient> connection_;
};

}  // namespace orvane
