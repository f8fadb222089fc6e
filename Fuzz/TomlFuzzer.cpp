#include <algorithm>
#include <boost/json.hpp>

#include "Fuzzing.h"
#include "OrvaneCore/Support/Toml.h"

using namespace orvane;
using fuzzing::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzzing::asText(data, size);
    const Toml::Document document = Toml::read(text);
    require(document.root.is_object(), "a document is a table");
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    const auto& skipped = document.skippedLines;
    require(std::ranges::is_sorted(skipped) && std::ranges::adjacent_find(skipped) == skipped.end(),
            "lines are skipped once, in their order");
    require(skipped.empty() || (skipped.front() >= 1 && skipped.back() <= lines), "what is skipped is a line");

    const std::string written = Json::write(document.root);
    require(Json::parse(written).has_value(), "what is read can be written");
    if (text.starts_with("\xEF\xBB\xBF")) return 0;
    Toml::Document shifted = Toml::read("# one line more\n" + std::string(text));
    std::ranges::for_each(shifted.skippedLines, [](std::size_t& line) { --line; });
    require(Json::write(shifted.root) == written && shifted.skippedLines == skipped, "a comment changes nothing");
    return 0;
}
