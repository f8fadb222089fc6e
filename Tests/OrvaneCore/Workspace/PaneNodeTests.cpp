#include "OrvaneCore/Workspace/PaneNode.h"

#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Workspace/PaneTemplate.h"
#include "Support/PaneEdits.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

PaneNode columns(std::vector<double> fractions) {
    PaneNode node = tree(fractions.size() == 3 ? "h(a,b,c)" : "h(a,b)");
    std::get<PaneNode::Split>(node.value).fractions = std::move(fractions);
    return node;
}

TEST(PaneNodeTest, insertsBesideANeighbour) {
    for (const auto& [start, nextTo, axis, side, expected] : table<5>(R"(
        a | a | horizontal | after | h(0.5 a, 0.5 n) ; a | a | vertical | before | v(0.5 n, 0.5 a)
        h(a,b) | a | horizontal | after | h(0.25 a, 0.25 n, 0.5 b)
        h(a,b) | b | horizontal | before | h(0.5 a, 0.25 n, 0.25 b)
        h(a,b) | b | vertical | before | h(0.5 a, 0.5 v(0.5 n, 0.5 b))
        # the root has the axis too, but the leaf is not its own child
        h(a,v(b,c)) | c | horizontal | after | h(0.5 a, 0.5 v(0.5 b, 0.5 h(0.5 c, 0.5 n)))
        h(a,b) | x | horizontal | before | h(0.5 a, 0.5 b))")) {
        const PaneNode made = tree(start).inserting(content('n'), leaf('n'), leaf(nextTo[0]),
                                                    *fromRawValue<PaneAxis>(axis), side == "before");
        EXPECT_EQ(text(made), expected) << start << " next to " << nextTo;
        EXPECT_EQ(made.contains(leaf('n')), tree(start).contains(leaf(nextTo[0]))) << start;
    }
    const PaneNode old = tree("h(a,b)");
    EXPECT_EQ(old.inserting(content('n'), leaf('a'), leaf('b'), PaneAxis::vertical, true), old) << "id in use";
    EXPECT_EQ(text(columns({0.25, 0.5, 0.25}).splitting(leaf('b'), PaneAxis::horizontal)),
              "h(0.25 a, 0.25 b, 0.25 ., 0.25 c)");
    EXPECT_EQ(rootSplit(tree("a").splitting(leaf('a'), PaneAxis::vertical)).children.front(), tree("a"));
}

TEST(PaneNodeTest, removingCollapsesAndRenormalises) {
    EXPECT_EQ(text(columns({0.5, 0.25, 0.25}).removing(leaf('a'))), "h(0.5 b, 0.5 c)");
    EXPECT_EQ(tree("h(a,b)").removing(leaf('a')), tree("b"));
    EXPECT_EQ(tree("a").removing(leaf('a')), std::nullopt);
    EXPECT_EQ(text(tree("h(a,v(b,c))").removing(leaf('a'))), "v(0.5 b, 0.5 c)");
    const PaneNode nested = tree("v(h(a,b),h(c,d),e)");
    EXPECT_EQ(nested.removing(leaf('x')), nested);
    EXPECT_EQ(rootSplit(*nested.removing(leaf('c'))).id, nested.id());
    // Panes that were halved many times have next to no share; alone they must still fill the split.
    EXPECT_EQ(text(columns({0.00001, 0.00003, 0.99996}).removing(leaf('c'))), "h(0.25 a, 0.75 b)");
}

TEST(PaneNodeTest, assignsAndClearsContents) {
    const PaneNode twice = tree("h(a,v(b,.))").assigningContent(content('b'), leaf('a'));
    EXPECT_EQ(text(twice), "h(0.5 b, 0.5 v(0.5 b, 0.5 .))");
    EXPECT_EQ(twice.leafID(content('b')), leaf('a'));
    const PaneNode cleared = twice.clearing(content('b'));
    EXPECT_EQ(cleared.contentIDs(), std::vector<Uuid>());
    EXPECT_EQ(cleared.leafIDs(), twice.leafIDs());
    EXPECT_EQ(cleared.firstEmptyLeafID(), leaf('a'));
    EXPECT_EQ(twice.assigning(std::nullopt, leaf('x')), twice);
}

TEST(PaneNodeTest, takesOnlySharesThatFitTheSplitAndCopiesAsATemplate) {
    const PaneNode node = tree("h(a,v(b,c))");
    const Uuid inner = rootSplit(node).children[1].id();
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(text(node.updatingFractions(inner, {0.3, 0.7})), "h(0.5 a, 0.5 v(0.3 b, 0.7 c))");
    EXPECT_EQ(text(node.updatingFractions(node.id(), {1, 3})), "h(0.25 a, 0.75 v(0.5 b, 0.5 c))");
    for (const std::vector<double>& bad :
         std::vector<std::vector<double>>{{}, {1}, {0.2, 0.3, 0.5}, {0, 1}, {-1, 2}, {infinite, 1}, {NAN, 1}}) {
        EXPECT_EQ(node.updatingFractions(inner, bad), node) << ::testing::PrintToString(bad);
    }

    const PaneNode copy = node.template_({content('b')});
    EXPECT_EQ(text(copy), "h(0.5 ., 0.5 v(0.5 b, 0.5 .))");
    EXPECT_NE(copy.id(), node.id());
    EXPECT_NE(rootSplit(copy).children[1].id(), inner);
    for (const Uuid& id : node.leafIDs())
        EXPECT_FALSE(copy.contains(id)) << "a template has ids of its own";
}

TEST(PaneNodeTest, aTreeNeverNestsDeeperThanAFileMay) {
    PaneNode node = tree("a");
    for (int step = 0; step < 1200; ++step)
        node = node.splitting(leaf('a'), step % 2 == 0 ? PaneAxis::horizontal : PaneAxis::vertical);
    std::size_t deepest = 0;
    forEachSplit(node, [&](const PaneNode::Split&, std::size_t depth) { deepest = std::max(deepest, depth + 1); });
    EXPECT_EQ(deepest, PaneNode::maximumDepth);
    EXPECT_EQ(node.leafIDs().size(), 1201U);
    const PaneTemplate saved{.id = leaf('t'), .name = "deep", .node = node};
    EXPECT_TRUE(PaneTemplate::decode(saved.encode()) == saved);
    const auto json = Json::parse(Json::write(JsonArray{JsonArray{saved.encode()}}));
    ASSERT_TRUE(json);
    EXPECT_EQ(PaneTemplate::decode(json->at(0).at(0))->node.leafIDs(), node.leafIDs());
}

const std::string idA = leaf('a').upperText();
const std::string leafA = R"({"leaf":{"id":")" + idA + R"(","sessionID":")" + content('a').upperText() + R"("}})";

std::string split(const std::string& children, const std::string& more) {
    return R"({"split":{"id":"00000000-0000-4000-8000-00000000000A","axis":"horizontal","children":[)" + children +
           "]" + more + "}}";
}

TEST(PaneNodeJsonTest, writesKeyedObjects) {
    EXPECT_EQ(Json::write(tree("a").encode()), leafA);
    EXPECT_EQ(Json::write(tree("A").encode()), R"({"leaf":{"id":")" + idA + R"("}})");
    const std::string written = Json::write(tree("v(a,A)").encode());
    EXPECT_TRUE(written.starts_with(R"({"split":{"axis":"vertical","children":[{"leaf":)")) << written;
    EXPECT_NE(written.find(R"("fractions":[0.5,0.5],"id":)"), std::string::npos) << written;
}

TEST(PaneNodeJsonTest, readsWhatIsThereAndRepairsTheRest) {
    const std::string three = leafA + R"(,{"leaf":{"id":"x"}},{"leaf":{}})";
    const std::string equal = "h(0.333333 a, 0.333333 ., 0.333333 .)";
    std::vector<std::pair<std::string, std::string>> cases = {
        {leafA, "a"},
        {R"({"leaf":null,"split":)" + split(leafA + "," + leafA, "").substr(9), "h(0.5 a, 0.5 a)"},
        {split(leafA + R"(,{"leaf":{"id":null}})", R"(,"fractions":[0.25,0.75])"), "h(0.25 a, 0.75 .)"},
        {split(three, R"(,"fractions":[1,1,2])"), "h(0.25 a, 0.25 ., 0.5 .)"},
        {split(leafA + R"(,{"tabs":{}})", ""), "h(0.5 a, 0.5 .)"},
        {split(leafA + "," + split("", ""), ""), "h(0.5 a, 0.5 .)"},
        {split(split(leafA, ""), ""), "a"},
        {R"({"split":{"axis":"diagonal","children":[)" + leafA + "]}}", "none"}};
    for (const char* bad : {"[0.5,0.5]", "[1e308,1e308,1e308]", "[-1,1,1]", R"(["1",1,1])"})
        cases.emplace_back(split(three, std::string(R"(,"fractions":)") + bad), equal);
    for (const std::string& nothing : {split("", ""), split("7", ""), std::string(R"({"leaf":3})"), std::string("[]")})
        cases.emplace_back(nothing, "none");
    for (const auto& [json, expected] : cases) {
        const auto value = Json::parse(json);
        ASSERT_TRUE(value) << json;
        EXPECT_EQ(text(PaneNode::decode(*value)), expected) << json;
    }
}

TEST(PaneNodeJsonTest, givesNoIDTwice) {
    const std::string zero = R"({"leaf":{"id":"00000000-0000-0000-0000-000000000000"}})";
    const std::string inner = split(leafA + "," + zero, "");
    const auto node = PaneNode::decode(*Json::parse(split(leafA + "," + inner + "," + inner, "")));
    ASSERT_TRUE(node);
    EXPECT_EQ(faults(*node), "");
    EXPECT_EQ(node->leafIDs().front(), leaf('a')) << "the first keeps its id";
}

TEST(PaneNodeJsonTest, cutsWhatIsNestedTooDeep) {
    JsonValue json = *Json::parse(leafA);
    for (int level = 0; level < 1500; ++level) {
        JsonArray children = {*Json::parse(leafA), std::move(json)};
        json = {{"split", {{"axis", "vertical"}, {"children", std::move(children)}}}};
    }
    const auto node = PaneNode::decode(json);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->leafIDs().size(), PaneNode::maximumDepth + 1);
}

}  // namespace
}  // namespace orvane::testing
