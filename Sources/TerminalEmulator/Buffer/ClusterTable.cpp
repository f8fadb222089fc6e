#include "TerminalEmulator/Buffer/ClusterTable.h"

#include <algorithm>
#include <functional>

#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {
namespace {

bool isScalar(std::int32_t code) {
    return code > 0 && code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
}

bool isTrail(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Length in bytes of the first scalar. The table holds well-formed UTF-8 only in so far as its callers give it such;
/// what is not is cut somewhere, never read past its end.
std::size_t firstLength(std::string_view text) {
    std::size_t length = std::min<std::size_t>(1, text.size());
    while (length < text.size() && isTrail(text[length]))
        ++length;
    return length;
}

char32_t decode(std::string_view bytes) {
    if (bytes.empty()) return U' ';
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return lead;
    char32_t scalar = lead >= 0xF0 ? lead & 0x07U : lead >= 0xE0 ? lead & 0x0FU : lead & 0x1FU;
    for (const char byte : bytes.substr(1))
        scalar = (scalar << 6) | (static_cast<unsigned char>(byte) & 0x3FU);
    return scalar;
}

std::size_t scalarCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char byte) { return !isTrail(byte); }));
}

}  // namespace

std::int32_t ClusterTable::joined(std::int32_t code, char32_t scalar) {
    // Multiplied, the numbers spread over the upper bits (Knuth, volume 3, section 6.4).
    const std::uint32_t spread = (static_cast<std::uint32_t>(code) * 0x9E3779B1U) ^ (scalar * 0x85EBCA6BU);
    Joined& known = joined_[(spread >> 16) % joined_.size()];
    if (known.result != 0 && known.code == code && known.scalar == scalar) return known.result;
    std::string whole = text(code);
    if (scalarCount(whole) >= maximumScalars) return code;
    appendUtf8(scalar, whole);
    const std::int32_t result = charToIndex(whole);
    // The base scalar stands for a cluster that got no handle; after a reset it would get one.
    if (result >= firstHandle) known = {code, scalar, result};
    return result;
}

std::int32_t ClusterTable::charToIndex(std::string_view text) {
    const std::size_t first = firstLength(text);
    if (first == 0) return 0;
    const auto base = static_cast<std::int32_t>(decode(text.substr(0, first)));
    if (!isScalar(base)) return 0;
    if (first == text.size()) return base;
    std::size_t length = first;
    for (std::size_t count = 1; count < maximumScalars && length < text.size(); ++count) {
        length += firstLength(text.substr(length));
    }
    const std::string_view cluster = text.substr(0, length);
    if (const std::int32_t known = find(cluster); known != 0) return known;
    if (ends_.size() == maximumClusters || nextHandle_ > lastHandle) return base;
    return add(cluster);
}

std::string_view ClusterTable::indexToChar(std::int32_t handle) const {
    if (handle < firstKnown_ || handle >= nextHandle_) return {};
    return textAt(static_cast<std::size_t>(handle - firstKnown_));
}

void ClusterTable::appendText(std::int32_t code, std::string& out) const {
    if (isScalar(code)) {
        appendUtf8(static_cast<char32_t>(code), out);
        return;
    }
    const std::string_view cluster = indexToChar(code);
    out += cluster.empty() ? " " : cluster;
}

std::string ClusterTable::text(std::int32_t code) const {
    std::string out;
    appendText(code, out);
    return out;
}

char32_t ClusterTable::baseScalar(std::int32_t code) const {
    if (isScalar(code)) return static_cast<char32_t>(code);
    const std::string_view cluster = indexToChar(code);
    return decode(cluster.substr(0, firstLength(cluster)));
}

char32_t ClusterTable::lastScalar(std::int32_t code) const {
    if (isScalar(code)) return static_cast<char32_t>(code);
    const std::string_view cluster = indexToChar(code);
    std::size_t start = cluster.empty() ? 0 : cluster.size() - 1;
    while (start > 0 && isTrail(cluster[start]))
        --start;
    return decode(cluster.substr(start));
}

void ClusterTable::reset() {
    texts_ = {};
    ends_ = {};
    slots_ = {};
    joined_ = {};
    firstKnown_ = nextHandle_;
}

std::size_t ClusterTable::bytesInUse() const {
    return texts_.capacity() + (ends_.capacity() + slots_.capacity()) * sizeof(std::uint32_t);
}

std::int32_t ClusterTable::find(std::string_view text) const {
    if (slots_.empty()) return 0;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = std::hash<std::string_view>{}(text)&mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
        if (textAt(slots_[slot] - 1) == text) return firstKnown_ + static_cast<std::int32_t>(slots_[slot] - 1);
    }
    return 0;
}

std::int32_t ClusterTable::add(std::string_view text) {
    texts_ += text;
    ends_.push_back(static_cast<std::uint32_t>(texts_.size()));
    if (ends_.size() * 2 > slots_.size()) {
        rehash(std::max<std::size_t>(64, slots_.size() * 2));
    } else {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = std::hash<std::string_view>{}(text)&mask;
        while (slots_[slot] != 0)
            slot = (slot + 1) & mask;
        slots_[slot] = static_cast<std::uint32_t>(ends_.size());
    }
    return nextHandle_++;
}

std::string_view ClusterTable::textAt(std::size_t index) const {
    const std::uint32_t start = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(texts_).substr(start, ends_[index] - start);
}

void ClusterTable::rehash(std::size_t slots) {
    slots_.assign(slots, 0);
    const std::size_t mask = slots - 1;
    for (std::size_t index = 0; index < ends_.size(); ++index) {
        std::size_t slot = std::hash<std::string_view>{}(textAt(index))&mask;
        while (slots_[slot] != 0)
            slot = (slot + 1) & mask;
        slots_[slot] = static_cast<std::uint32_t>(index + 1);
    }
}

}  // namespace orvane
