#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/TomlCursor.h"

namespace orvane {

/// What stands on both sides of "=".
struct TomlMember {
    std::vector<std::string> key;
    JsonValue value;

    /// Reads one, `depth` levels below the table it is written in, or none when no well-formed one begins here.
    static std::optional<TomlMember> read(TomlCursor& cursor, std::size_t depth);

    /// Adds it to a table, with the tables that its key names. Fails, and changes nothing, where something stands
    /// already.
    bool insert(boost::json::object& table) &&;
};

/// The table with this key, made when it is missing; null when something else stands there.
boost::json::object* tomlSubtable(boost::json::object& table, const std::string& key);

}  // namespace orvane
