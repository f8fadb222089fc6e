#pragma once

#include <string>
#include <vector>

#include "OrvaneShell/View/ViewContext.h"

/// What the view says of its keys, drawn or as plain lines.
namespace orvane::ViewHints {

/// Those that always work, as many as so many columns have room for.
std::string normal(const ViewContext& view, int cols);
/// Those that work at this moment.
std::string now(const ViewContext& view, int cols);
/// What somebody reads who starts it for the first time, four lines.
std::vector<std::string> welcome(const ViewContext& view);

}  // namespace orvane::ViewHints
