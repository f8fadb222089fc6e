#pragma once

#include <string>
#include <vector>

#include "OrvaneShell/View/ViewContext.h"

/// What the view says of its keys, drawn or as plain lines.
namespace orvane::ViewHints {

/// Those that always work.
std::string normal(const ViewContext& view);
/// Those that work at this moment.
std::string now(const ViewContext& view);
/// What somebody reads who starts it for the first time, four lines.
std::vector<std::string> welcome(const ViewContext& view);

}  // namespace orvane::ViewHints
