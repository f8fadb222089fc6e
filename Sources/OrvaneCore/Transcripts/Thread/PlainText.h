#pragma once

#include <string>
#include <string_view>

/// What transcripts tell, made fit for a terminal, whoever wrote it.
namespace orvane::PlainText {

/// Keeps the lines of a text and takes out all that would steer a terminal.
std::string lines(std::string_view text);

/// Of a call of a tool: "Bash  make test  [failed: no rule]" on one line. What is empty is left out.
std::string call(std::string_view tool, std::string_view target, std::string_view outcome);

}  // namespace orvane::PlainText
