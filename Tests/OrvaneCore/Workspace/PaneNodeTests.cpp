#include "OrvaneCore/Workspace/PaneNode.h"

#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <tuple>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Workspace/PaneTemplate.h"
#include "PaneTrees.h"

namespace orvane::testing {
namespace {

PaneNode columns(std::vector<double> fractions) {
    PaneNode node = tree(fractions.size() == 3 ? "h(a,b,c)" : "h(a,b)");
    std::get<PaneNode::Split>(node.value).fractions = std::move(fractions);
    return node;
}

TEST(PaneNodeTest, insertsBesideANeighbour) {
    const std::tuple<const char*, char, PaneAxis, bool, const char*> cases[] = {
        {"a", 'a', PaneAxis::horizontal, false, "h(0.5 a, 0.5 n)"},
        {"a", 'a', PaneAxis::vertical, true, "v(0.5 n, 0.5 a)"},
        {"h(a,b)", 'a', PaneAxis::horizontal, false, "h(0.25 a, 0.25 n, 0.5 b)"},
        {"h(a,b)", 'b', PaneAxis::horizontal, true, "h(0.5 a, 0.25 n, 0.25 b)"},
        {"h(a,b)", 'b', PaneAxis::vertical, true, "h(0.5 a, 0.5 v(0.5 n, 0.5 b))"},
        // The root has the axis too, but the leaf is not its own child.
        {"h(a,v(b,c))", 'c', PaneAxis::horizontal, false, "h(0.5 a, 0.5 v(0.5 b, 0.5 h(0.5 c, 0.5 n)))"},
        {"h(a,b)", 'x', PaneAxis::horizontal, true, "h(0.5 a, 0.5 b)"},
    };
    for (const auto& [start, nextTo, axis, before, expected] : cases) {
        const PaneNode old = tree(start);
        const PaneNode made = old.inserting(content('n'), leaf('n'), leaf(nextTo), axis, before);
        EXPECT_EQ(text(made), expected) << start << " next to " << nextTo;
        EXPECT_EQ(made.contains(leaf('n')), old.contains(leaf(nextTo))) << start;
    }
    const PaneNode old = tree("h(a,b)");
    EXPECT_EQ(old.inserting(content('n'), leaf('a'), leaf('b'), PaneAxis::vertical, true), old) << "id in use";
}

TEST(PaneNodeTest, splittingKeepsTheOldPaneInFront) {
    const PaneNode old = tree("a");
    const PaneNode made = old.splitting(leaf('a'), PaneAxis::vertical);
    EXPECT_EQ(text(made), "v(0.5 a, 0.5 .)");
    EXPECT_EQ(rootSplit(made).children.front(), old);
    EXPECT_EQ(text(columns({0.25, 0.5, 0.25}).splitting(leaf('b'), PaneAxis::horizontal)),
              "h(0.25 a, 0.25 b, 0.25 ., 0.25 c)");
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
    const auto rest = columns({0.00001, 0.00003, 0.99996}).removing(leaf('c'));
    EXPECT_NEAR(rootSplit(*rest).fractions[0], 0.25, 1e-9);
    EXPECT_NEAR(rootSplit(*rest).fractions[1], 0.75, 1e-9);
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

TEST(PaneNodeTest, takesOnlySharesThatFitTheSplit) {
    const PaneNode node = tree("h(a,v(b,c))");
    const Uuid inner = rootSplit(node).children[1].id();
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(text(node.updatingFractions(inner, {0.3, 0.7})), "h(0.5 a, 0.5 v(0.3 b, 0.7 c))");
    EXPECT_EQ(text(node.updatingFractions(node.id(), {1, 3})), "h(0.25 a, 0.75 v(0.5 b, 0.5 c))");
    for (const std::vector<double>& bad :
         std::vector<std::vector<double>>{{}, {1}, {0.2, 0.3, 0.5}, {0, 1}, {-1, 2}, {infinite, 1}, {NAN, 1}}) {
        EXPECT_EQ(node.updatingFractions(inner, bad), node) << ::testing::PrintToString(bad);
    }
}

TEST(PaneNodeTest, templatesHaveFreshIDsAndOnlyPreservedContents) {
    const PaneNode node = tree("h(a,v(b,c))");
    const PaneNode copy = node.template_({content('b')});
    EXPECT_EQ(text(copy), "h(0.5 ., 0.5 v(0.5 b, 0.5 .))");
    EXPECT_NE(copy.id(), node.id());
    EXPECT_NE(rootSplit(copy).children[1].id(), rootSplit(node).children[1].id());
    for (const Uuid& id : node.leafIDs())
        EXPECT_FALSE(copy.contains(id));
}

TEST(PaneNodeTest, aTreeNeverNestsDeeperThanAFileMay) {
    PaneNode node = tree("a");
    PaneAxis axis = PaneAxis::horizontal;
    for (int step = 0; step < 1200; ++step) {
        node = node.splitting(leaf('a'), axis);
        axis = axis == PaneAxis::horizontal ? PaneAxis::vertical : PaneAxis::horizontal;
    }
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
    const std::pair<std::string, std::string> cases[] = {
        {leafA, "a"},
        {R"({"leaf":null,"split":)" + split(leafA + "," + leafA, "").substr(9), "h(0.5 a, 0.5 a)"},
        {split(leafA + R"(,{"leaf":{"id":null}})", R"(,"fractions":[0.25,0.75])"), "h(0.25 a, 0.75 .)"},
        {split(three, R"(,"fractions":[0.5,0.5])"), "h(0.333333 a, 0.333333 ., 0.333333 .)"},
        {split(three, R"(,"fractions":[1,1,2])"), "h(0.25 a, 0.25 ., 0.5 .)"},
        {split(three, R"(,"fractions":[1e308,1e308,1e308])"), "h(0.333333 a, 0.333333 ., 0.333333 .)"},
        {split(three, R"(,"fractions":[-1,1,1])"), "h(0.333333 a, 0.333333 ., 0.333333 .)"},
        {split(three, R"(,"fractions":["1",1,1])"), "h(0.333333 a, 0.333333 ., 0.333333 .)"},
        {split(leafA + R"(,{"tabs":{}})", ""), "h(0.5 a, 0.5 .)"},
        {split(leafA + "," + split("", ""), ""), "h(0.5 a, 0.5 .)"},
        {split(leafA, ""), "a"},
        {split(split(leafA, ""), ""), "a"},
        {split("", ""), "none"},
        {split("7", ""), "none"},
        {R"({"split":{"axis":"diagonal","children":[)" + leafA + "]}}", "none"},
        {R"({"leaf":3})", "none"},
        {"{}", "none"},
        {"[]", "none"},
    };
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
    std::set<Uuid> ids = {Uuid()};
    for (const Uuid& id : node->leafIDs())
        EXPECT_TRUE(ids.insert(id).second) << id.upperText();
    forEachSplit(*node, [&](const PaneNode::Split& part, std::size_t) { EXPECT_TRUE(ids.insert(part.id).second); });
    EXPECT_EQ(node->leafIDs().front(), leaf('a')) << "the first keeps its id";
}

TEST(PaneNodeJsonTest, cutsWhatIsNestedTooDeep) {
    JsonValue json = *Json::parse(leafA);
    for (int level = 0; level < 1500; ++level) {
        boost::json::object fields{{"axis", "vertical"}};
        JsonArray children;
        children.push_back(*Json::parse(leafA));
        children.push_back(std::move(json));
        fields["children"] = std::move(children);
        json = boost::json::object{{"split", std::move(fields)}};
    }
    const auto node = PaneNode::decode(json);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->leafIDs().size(), PaneNode::maximumDepth + 1);
}

}  // namespace
}  // namespace orvane::testing
