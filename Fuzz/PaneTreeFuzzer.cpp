#include <boost/json.hpp>

#include "Fuzzing.h"
#include "Support/PaneEdits.h"

using namespace orvane;
using fuzzing::require;

/// A tree as JSON, and after a zero byte what picks the edits, of which fifty are done.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = fuzzing::asText(data, size);
    const std::size_t end = std::min(input.find('\0'), size);
    const auto json = Json::parse(input.substr(0, end));
    input.remove_prefix(end);
    const testing::Below below = [&](std::size_t limit) {
        const std::size_t pick = input.empty() ? 0 : static_cast<unsigned char>(input.front()) % limit;
        input.remove_prefix(input.empty() ? 0 : 1);
        return pick;
    };
    PaneNode node = (json ? PaneNode::decode(*json) : std::nullopt).value_or(PaneNode::single());
    require(testing::faults(node).empty(), "a tree that was read is sound");
    for (int edit = 0; edit < 50 && !input.empty(); ++edit) {
        node = testing::edited(node, below);
        require(testing::faults(node).empty(), "an edited tree is sound");
    }
    require(PaneNode::decode(node.encode()) == node, "a tree reads back equal");
    return 0;
}
