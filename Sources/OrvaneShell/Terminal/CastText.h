#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace orvane {

/// Writes what a terminal receives as asciicast, version 2: a header, then one JSON array a line of the seconds since
/// the beginning, the kind of event and its data. Players and web pages show such files.
class CastText {
 public:
    using Time = std::chrono::duration<double>;

    static std::string header(int cols, int rows);
    /// Output, cut anywhere: the beginning of a character waits for its end. Bytes that are no UTF-8 become U+FFFD.
    std::string output(Time time, std::string_view bytes);
    static std::string resize(Time time, int cols, int rows);
    /// A place that players offer to go to.
    static std::string marker(Time time, std::string_view label);
    /// What still waits at the end.
    std::string finish(Time time);

 private:
    std::string unfinished_;
};

}  // namespace orvane
