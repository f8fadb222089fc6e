#include "OrvaneShell/CommandLine/HelpText.h"

#include <algorithm>

#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/VerbTable.h"

namespace orvane::HelpText {

namespace {

std::string summary(const Verb& verb, const L10n& l10n) {
    return l10n.text(summaryKey(verb));
}

std::string parameterForm(const Parameter& parameter) {
    std::string form(parameter.name);
    if (parameter.takesValue()) form += " " + std::string(parameter.valueName);
    return form;
}

bool isForPeople(const Parameter& parameter) {
    return !parameter.textKey.empty();
}

/// Text as roff takes it: nothing in it is a request or an escape.
std::string roff(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        if (byte == '\\') {
            result += "\\e";
        } else if (byte == '-') {
            result += "\\-";
        } else {
            if ((byte == '.' || byte == '\'') && (result.empty() || result.back() == '\n')) result += "\\&";
            result += byte;
        }
    }
    return result;
}

}  // namespace

std::string unknownVerb(const std::vector<std::string>& words, const L10n& l10n) {
    const std::string& first = words.front();
    const std::string seconds = secondWords(first);
    if (seconds.empty()) return l10n.text("usage.unknownVerb", first);
    return words.size() == 1 || words[1].starts_with('-') ? l10n.text("usage.secondWord", first, seconds)
                                                          : l10n.text("usage.notASecondWord", words[1], first, seconds);
}

std::string summaryKey(const Verb& verb) {
    std::string key = "help.verb." + std::string(verb.name);
    std::ranges::replace(key, ' ', '.');
    return key;
}

std::string usage(const Verb& verb) {
    std::string line(verb.name);
    for (const Parameter& parameter : verb.parameters) {
        if (!isForPeople(parameter)) continue;
        const std::string form = parameterForm(parameter);
        if (parameter.kind == Parameter::Kind::rest) {
            line += " -- " + form + " …";
        } else {
            line += parameter.kind == Parameter::Kind::required ? " " + form : " [" + form + "]";
            if (parameter.kind == Parameter::Kind::repeated) line += "…";
        }
    }
    return line;
}

namespace {

/// Without options and flags: a line of the overview must leave room for what the verb does.
std::string shortUsage(const Verb& verb) {
    std::string line(verb.name);
    for (const Parameter& parameter : verb.parameters) {
        if (parameter.kind == Parameter::Kind::required) line += " " + std::string(parameter.name);
        if (parameter.kind == Parameter::Kind::rest) line += " " + std::string(parameter.name) + " …";
        if (parameter.kind == Parameter::Kind::optional) line += " [" + std::string(parameter.name) + "]";
    }
    return line;
}

/// A line for each verb for people whose name begins so.
Columns verbLines(const L10n& l10n, std::string_view beginning = {}) {
    Columns columns;
    for (const Verb& verb : verbTable()) {
        if (!verb.isHidden && verb.name.starts_with(beginning)) {
            columns.add({"  " + shortUsage(verb), summary(verb, l10n)});
        }
    }
    return columns;
}

std::string asParagraph(const Columns& columns) {
    return columns.isEmpty() ? "" : "\n" + columns.text();
}

}  // namespace

std::string overview(const L10n& l10n) {
    return l10n.text("help.intro") + "\n\n" + l10n.text("help.usage", "orvane VERB …") + "\n" +
           asParagraph(verbLines(l10n)) + "\n" + l10n.text("help.status") + "\n" +
           l10n.text("help.more", "orvane help VERB") + "\n";
}

std::string of(const Verb& verb, const L10n& l10n) {
    Columns columns;
    for (const Parameter& parameter : verb.parameters) {
        if (isForPeople(parameter)) columns.add({"  " + parameterForm(parameter), l10n.text(parameter.textKey)});
    }
    return l10n.text("help.usage", "orvane " + usage(verb)) + "\n\n" + summary(verb, l10n) + "\n" +
           asParagraph(columns) + asParagraph(verbLines(l10n, std::string(verb.name) + ' '));
}

std::string manualPage(const L10n& l10n) {
    std::string page = ".TH ORVANE 1\n.SH NAME\norvane \\- " + roff(l10n.text("help.intro")) +
                       "\n.SH SYNOPSIS\n.B orvane\n.I VERB\n\\&...\n.SH VERBS\n";
    for (const Verb& verb : verbTable()) {
        if (verb.isHidden) continue;
        page += ".SS \"orvane " + roff(usage(verb)) + "\"\n" + roff(summary(verb, l10n)) + "\n";
        for (const Parameter& parameter : verb.parameters) {
            if (!isForPeople(parameter)) continue;
            page += ".TP\n.B " + roff(parameterForm(parameter)) + "\n" + roff(l10n.text(parameter.textKey)) + "\n";
        }
    }
    return page + ".SH \"EXIT STATUS\"\n" + roff(l10n.text("help.status")) + "\n";
}

}  // namespace orvane::HelpText
