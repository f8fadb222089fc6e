#pragma once

#include <boost/json/object.hpp>

#include "OrvaneCore/History/SessionRecord.h"

namespace orvane {

/// A past conversation as scripts get it.
boost::json::object conversationJson(const SessionRecord& record);

}  // namespace orvane
