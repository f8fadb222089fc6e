#include <algorithm>
#include <iterator>

#include "Fuzzing.h"
#include "OrvaneCore/Support/OutputLines.h"
#include "OrvaneCore/Support/Text.h"

using namespace orvane;
using fuzzing::require;

namespace {

std::vector<std::string> linesOf(std::string_view text, std::size_t split) {
    OutputLines output;
    std::vector<std::string> lines = output.append(text.substr(0, split));
    std::ranges::move(output.append(text.substr(split)), std::back_inserter(lines));
    if (auto last = output.finish()) lines.push_back(*std::move(last));
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzzing::asText(data, size);
    const std::vector<std::string> lines = linesOf(text, size);
    for (const std::string& line : lines) {
        require(Text::isValidUtf8(line), "a line is text");
        require(OutputLines::shown(line) == line, "a line steers no terminal");
    }
    if (size < OutputLines::longestLine) require(linesOf(text, size / 2) == lines, "splits change nothing");
    return 0;
}
