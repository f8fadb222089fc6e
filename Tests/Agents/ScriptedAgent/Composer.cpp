#include "ScriptedAgent/Composer.h"

#include <algorithm>

#include "ScriptedAgent/Placeholders.h"

namespace orvane::scripted {
namespace {

/// Characters of a text, each with its bytes.
std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> characters;
    for (const char byte : text) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
        if (continues && !characters.empty()) {
            characters.back() += byte;
        } else {
            characters.emplace_back(1, byte);
        }
    }
    return characters;
}

}  // namespace

void Composer::type(std::string_view text) {
    for (const std::string& character : charactersOf(text))
        pieces_.push_back({character, character});
}

void Composer::paste(const std::string& text, const PasteRule& rule) {
    const auto breaks = std::ranges::count(text, '\n');
    const auto characters = static_cast<int>(charactersOf(text).size());
    const bool isLong =
        (rule.lines > 0 && breaks + 1 >= rule.lines) || (rule.characters > 0 && characters >= rule.characters);
    if (!isLong) return type(text);
    const int number = ++pastes_;
    const std::string shown = expanded(rule.shown, [&](std::string_view name) {
        if (name == "number") return std::to_string(number);
        if (name == "breaks") return std::to_string(breaks);
        if (name == "lines") return std::to_string(breaks + 1);
        return std::to_string(characters);
    });
    pieces_.push_back({.shown = shown, .text = text});
}

void Composer::erase() {
    if (!empty()) pieces_.pop_back();
}

void Composer::eraseLine() {
    if (endsWith("\n")) return erase();
    while (!empty() && !endsWith("\n"))
        pieces_.pop_back();
}

std::string Composer::shown() const {
    std::string all;
    for (const Piece& piece : pieces_)
        all += piece.shown;
    return all;
}

std::string Composer::text() const {
    std::string all;
    for (const Piece& piece : pieces_)
        all += piece.text;
    return all;
}

}  // namespace orvane::scripted
