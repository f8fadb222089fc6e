#pragma once

#include <span>
#include <string>
#include <string_view>

#include "OrvaneShell/CommandLine/Verb.h"

namespace orvane {

/// Every verb there is, in the order of the help.
std::span<const Verb> verbTable();

/// Null when there is no such verb.
const Verb* verbNamed(std::string_view name);

/// The verb that the words begin with: the one whose name are the first two, else the one whose name is the first. That
/// is none when further verbs begin so and a word follows that it could not take ("agents nosuch").
const Verb* verbOf(std::span<const std::string> words);

/// The second words of the verbs for people that begin with this one: "feed, run" for "terminal". Empty for one that
/// begins none.
std::string secondWords(std::string_view firstWord);

}  // namespace orvane
