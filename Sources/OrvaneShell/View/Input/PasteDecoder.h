#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane {

/// What stands between the brackets of a paste, in pieces; it holds a few bytes at most.
class PasteDecoder {
 public:
    struct Result {
        std::size_t taken = 0;  ///< all of the bytes, unless the paste ended within them
        PasteEvent event;       ///< with nothing to tell when its text is empty and it is not the last
    };

    Result feed(std::string_view bytes);

 private:
    void append(std::string_view bytes, std::string& text);
    void finish(std::string& text);

    Utf8Decoder characters_;
    std::size_t endBytes_ = 0;  ///< of the closing bracket, that have come
    bool hasReturn_ = false;    ///< a CR waits for the LF that may follow
    bool isFirst_ = true;
};

}  // namespace orvane
