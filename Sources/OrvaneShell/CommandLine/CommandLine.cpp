#include "OrvaneShell/CommandLine/CommandLine.h"

#include <unistd.h>

#include <boost/json.hpp>
#include <filesystem>
#include <iostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ArgumentParser.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/HelpText.h"
#include "OrvaneShell/CommandLine/Overview.h"
#include "OrvaneShell/CommandLine/VerbTable.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"

namespace orvane {

namespace {

constexpr std::size_t largestPreferences = 16 << 20;

/// The commands read the preference of the language themselves: help must speak it with no host running.
Language clientLanguage(const Environment& environment) {
    const auto text = readWholeFile(Folders::preferencesFile(environment), largestPreferences);
    const auto preferences = text ? Json::parse(*text) : std::nullopt;
    const std::string preferred = preferences ? JSONObject(*preferences).string("language") : std::string();
    return chooseLanguage(preferred, variable(environment, "LC_ALL"), variable(environment, "LANG"));
}

/// The shell's idea of the folder, which keeps the links people came through, if it is still true.
std::string workingDirectory(const Environment& environment) {
    std::error_code error;
    std::string logical = variable(environment, "PWD");
    if (logical.starts_with('/') && std::filesystem::equivalent(logical, ".", error)) return logical;
    return std::filesystem::current_path(error).string();
}

std::string readLine() {
    std::string line;
    std::getline(std::cin, line);
    return line;
}

ClientContext makeContext() {
    const Environment environment = currentEnvironment();
    ClientContext client(environment, {clientLanguage(environment)}, workingDirectory(environment), std::cout,
                         std::cerr);
    client.isInteractive = isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
    client.readAnswer = readLine;
    client.readInput = [](std::span<char> room) {
        return static_cast<std::size_t>(std::cin.read(room.data(), std::ssize(room)).gcount());
    };
    return client;
}

int complain(ClientContext& client, const std::string& problem) {
    client.errors << Text::oneLine(problem) << '\n' << client.l10n.text("help.more", "orvane help") << '\n';
    return CommandStatus::wrongUsage;
}

int carryOut(ClientContext& client, const std::vector<std::string>& words) {
    if (words.empty()) return Overview::show(client);
    const std::string& name = words.front();
    if (name == "--help" || name == "-h") {
        client.output << HelpText::overview(client.l10n);
        return CommandStatus::done;
    }
    if (name == "--version") {
        client.output << "orvane " << ORVANE_VERSION << '\n';
        return CommandStatus::done;
    }
    // The option of a command without a verb.
    if (name == "--screen-reader") {
        std::vector<std::string> view = words;
        view.insert(view.begin(), "view");
        return carryOut(client, view);
    }
    const Verb* verb = verbOf(words);
    if (verb == nullptr || verb->run == nullptr) return complain(client, HelpText::unknownVerb(words, client.l10n));
    const std::vector<std::string> rest(words.begin() + (verb->name == name ? 1 : 2), words.end());
    if (!rest.empty() && (rest.front() == "--help" || rest.front() == "-h")) {
        client.output << HelpText::of(*verb, client.l10n);
        return CommandStatus::done;
    }
    const auto arguments = parseArguments(*verb, rest, client.l10n);
    if (!arguments) return complain(client, arguments.error());
    return verb->run(client, *arguments);
}

}  // namespace

int runCommandLine(const std::vector<std::string>& words) {
    ClientContext client = makeContext();
    const int status = carryOut(client, words);
    client.output.flush();
    if (client.output) return status;
    // What could not be written (a full disk) must not look like an answer.
    client.errors << client.l10n.text("error.outputFailed") << '\n';
    return CommandStatus::refused;
}

}  // namespace orvane
