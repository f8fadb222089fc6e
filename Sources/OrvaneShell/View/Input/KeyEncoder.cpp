#include "OrvaneShell/View/Input/KeyEncoder.h"

#include <utility>

#include "OrvaneShell/View/Input/EnhancedKeys.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "OrvaneShell/View/Input/LegacyKeys.h"

namespace orvane {

std::string encodeKey(const KeyEvent& event, const TerminalModes& modes, const KeyboardModeState& keyboard,
                      const KeyModifierOptions& modifierOptions) {
    if (event.name == KeyName::other) return {};
    if (keyboard.flags != 0) {
        if (auto bytes = EnhancedKeys::encode(event, keyboard.flags)) return *std::move(bytes);
    }
    constexpr std::size_t otherKeys = 4;
    const KeyEvent plain = KeyTable::withoutKeypad(event);
    if (LegacyKeys::isOtherKey(plain, modifierOptions.values[otherKeys])) return LegacyKeys::encodeOther(plain);
    return LegacyKeys::encode(event, modes);
}

}  // namespace orvane
