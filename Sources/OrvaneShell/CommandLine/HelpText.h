#pragma once

#include <string>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/Verb.h"

namespace orvane::HelpText {

/// All verbs, a line each.
std::string overview(const L10n& l10n);

/// One verb with its parameters.
std::string of(const Verb& verb, const L10n& l10n);

/// What to tell a person whose words begin no verb.
std::string unknownVerb(const std::vector<std::string>& words, const L10n& l10n);

/// Of the text that says what the verb does: "help.verb.terminal.feed".
std::string summaryKey(const Verb& verb);

/// "rename PROJECT NAME [--json]"
std::string usage(const Verb& verb);

/// The manual page, in the man(7) format.
std::string manualPage(const L10n& l10n);

}  // namespace orvane::HelpText
