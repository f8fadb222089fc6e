#pragma once

#include <cstdint>
#include <optional>

#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// The current look in the form in which cells are stored, so that writing a character costs one "or". SGR changes it
/// field by field; nothing is packed again for each change.
class Pen {
 public:
    Pen() = default;
    explicit Pen(const Attribute& attribute, TinyAtom payload = {});

    /// A cell without character; `or` the packed code and width into its `text`.
    const StoredCell& cell() const { return cell_; }
    /// What erasing leaves: the background alone.
    StoredCell erased() const { return {0, 0, cell_.background & backgroundMask, 0}; }

    Attribute attribute() const { return cell_.unpack().attribute; }
    TinyAtom payload() const { return cell_.payload(); }
    bool isProtected() const { return cell_.isProtected(); }

    void setAttribute(const Attribute& attribute);  ///< payload and protection stay
    void resetAttribute() { cell_ = {cell_.text & StoredCell::protectedBit, 0, 0, cell_.extra & payloadMask}; }
    void setForeground(const Attribute::Color& color);
    void setBackground(const Attribute::Color& color);
    /// The same with a colour as `CellColor` packs it.
    void setForegroundBits(std::uint32_t bits) { cell_.foreground = (cell_.foreground & ~colorMask) | bits; }
    void setBackgroundBits(std::uint32_t bits) { cell_.background = (cell_.background & ~colorMask) | bits; }
    void addStyle(Attribute::CharacterStyle style) { cell_.text |= styleBits(style); }
    void removeStyle(Attribute::CharacterStyle style) { cell_.text &= ~styleBits(style); }
    void setUnderlineStyle(Attribute::UnderlineStyle style) {
        cell_.foreground = (cell_.foreground & ~underlineMask) | (static_cast<std::uint32_t>(style) << 26);
    }
    void setUnderlineColor(const std::optional<Attribute::Color>& color);
    void setPayload(TinyAtom payload) { cell_.extra = (cell_.extra & ~payloadMask) | payload.code; }
    void setIsProtected(bool isProtected) {
        cell_.text = isProtected ? cell_.text | StoredCell::protectedBit : cell_.text & ~StoredCell::protectedBit;
    }

    bool operator==(const Pen&) const = default;

 private:
    static constexpr std::uint32_t colorMask = 0x3FFFFFF;
    static constexpr std::uint32_t backgroundMask = colorMask;
    static constexpr std::uint32_t underlineMask = 7U << 26;
    static constexpr std::uint32_t payloadMask = 0xFFFF;

    static constexpr std::uint32_t styleBits(Attribute::CharacterStyle style) {
        return static_cast<std::uint32_t>(style) << 24;
    }

    StoredCell cell_;
};

}  // namespace orvane
