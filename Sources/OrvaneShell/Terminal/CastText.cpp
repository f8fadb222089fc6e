#include "OrvaneShell/Terminal/CastText.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/Json.h"

namespace orvane {

namespace {

std::string event(CastText::Time time, char kind, std::string_view data) {
    return fmt::format("[{:.3f}, \"{}\", {}]\n", time.count(), kind, Json::write(JsonValue(data)));
}

/// The bytes of a character by its first one; 1 for what begins none.
std::size_t lengthOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 1;
}

/// How many bytes at the end begin a character that is not whole.
std::size_t unfinishedTail(std::string_view bytes) {
    for (std::size_t size = 1; size <= std::min<std::size_t>(3, bytes.size()); ++size) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - size]);
        if ((byte & 0xC0U) == 0x80U) continue;
        return lengthOf(byte) > size ? size : 0;
    }
    return 0;
}

}  // namespace

std::string CastText::header(int cols, int rows) {
    return fmt::format("{{\"version\": 2, \"width\": {}, \"height\": {}, \"env\": {{\"TERM\": \"xterm-256color\"}}}}\n",
                       cols, rows);
}

std::string CastText::output(Time time, std::string_view bytes) {
    unfinished_ += bytes;
    std::string whole = unfinished_.substr(0, unfinished_.size() - unfinishedTail(unfinished_));
    unfinished_.erase(0, whole.size());
    return whole.empty() ? std::string() : event(time, 'o', whole);
}

std::string CastText::resize(Time time, int cols, int rows) {
    return event(time, 'r', fmt::format("{}x{}", cols, rows));
}

std::string CastText::marker(Time time, std::string_view label) {
    return event(time, 'm', label);
}

std::string CastText::finish(Time time) {
    const std::string rest = std::exchange(unfinished_, {});
    return rest.empty() ? std::string() : event(time, 'o', rest);
}

}  // namespace orvane
