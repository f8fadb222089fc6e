#pragma once

#include <string_view>

namespace orvane {

/// The rows in which agents name the keys that work.
namespace KeyHints {

/// Whether a row names the keys of a dialog: "Enter to confirm · Esc to cancel", "enter select · esc back", "Press
/// enter to continue". What a composer may have below it ("? for shortcuts", "esc to interrupt") is no such row.
bool decides(std::string_view row);

/// Whether a row names the key that interrupts a turn, also where a narrow screen cuts it: "esc to inter…".
bool interrupts(std::string_view row);

}  // namespace KeyHints

}  // namespace orvane
