#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <random>
#include <sstream>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Workspace/PaneMetrics.h"
#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "OrvaneCore/Workspace/PaneTemplate.h"
#include "Support/PaneEdits.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

std::vector<double> numbers(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<double>(stream), {}};
}

/// The tree after an edit, a verb and what it needs: names of panes and contents, an axis, a side, an area. What comes
/// in is called n.
std::optional<PaneNode> after(const PaneNode& node, const std::string& edit) {
    std::istringstream stream(edit);
    const std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
    const auto pane = [&](std::size_t word) { return leaf(words.at(word)[0]); };
    const auto shown = [&](std::size_t word) { return content(words.at(word)[0]); };
    const auto axis = [&] { return *fromRawValue<PaneAxis>(words.at(2)); };
    const auto zone = [&] { return *fromRawValue<PaneDropZone>(words.at(3)); };
    const auto area = [&] { return PaneSize{std::stod(words.at(2)), std::stod(words.at(3))}; };
    const Uuid n = leaf('n');
    const std::map<std::string, std::function<std::optional<PaneNode>()>> verbs = {
        {"shares", [&] { return node.updatingFractions(node.id(), numbers(edit.substr(7))); }},
        {"insert", [&] { return node.inserting(content('n'), n, pane(1), axis(), words.at(3) == "before"); }},
        {"split", [&] { return node.splitting(pane(1), axis()); }},
        {"remove", [&] { return node.removing(pane(1)); }},
        {"assign", [&] { return node.assigningContent(shown(1), pane(2)); }},
        {"clear", [&] { return node.clearing(shown(1)); }},
        {"template", [&] { return node.template_({shown(1)}); }},
        {"place", [&] { return PanePlacement::placing(content('n'), node, pane(1), area(), n).tree; }},
        {"into", [&] { return PanePlacement::placingInLeaf(pane(1), content('n'), node, pane(2), {}, n).tree; }},
        {"move", [&] { return PaneMove::moving(shown(1), pane(2), zone(), node, n); }},
        {"layout", [&] { return PaneLayout::applying(tree(words.at(1)), node).tree; }}};
    return verbs.at(words.at(0))();
}

TEST(PaneTest, edits) {
    for (const auto& [start, edit, expected] : table<3>(R"(
        a | insert a horizontal after | h(0.5 a, 0.5 n) ; a | insert a vertical before | v(0.5 n, 0.5 a)
        h(a,b) | insert a horizontal after | h(0.25 a, 0.25 n, 0.5 b)
        h(a,b) | insert b horizontal before | h(0.5 a, 0.25 n, 0.25 b)
        h(a,b) | insert b vertical before | h(0.5 a, 0.5 v(0.5 n, 0.5 b))
        # the root has the axis too, but the leaf is not its own child; the id n is in use
        h(a,v(b,c)) | insert c horizontal after | h(0.5 a, 0.5 v(0.5 b, 0.5 h(0.5 c, 0.5 n)))
        h(a,b) | insert x horizontal before | h(0.5 a, 0.5 b) ; h(n,b) | insert b vertical before | h(0.5 n, 0.5 b)
        h(a,b) | split b horizontal | h(0.5 a, 0.25 b, 0.25 .) ; a | split a vertical | v(0.5 a, 0.5 .)
        h(a,b) | remove a | b ; a | remove a | none ; h(a,v(b,c)) | remove a | v(0.5 b, 0.5 c)
        h(a,b) | remove x | h(0.5 a, 0.5 b) ; h(a,v(b,.)) | assign b a | h(0.5 b, 0.5 v(0.5 b, 0.5 .))
        h(b,v(b,c)) | clear b | h(0.5 ., 0.5 v(0.5 ., 0.5 c)) ; h(a,b) | template b | h(0.5 ., 0.5 b)
        h(a,v(b,c)) | shares 1 3 | h(0.25 a, 0.75 v(0.5 b, 0.5 c)) ; h(a,b) | shares 1 | h(0.5 a, 0.5 b)
        h(a,b) | shares 0 1 | h(0.5 a, 0.5 b) ; h(a,b) | shares -1 2 | h(0.5 a, 0.5 b)
        # placing takes a free pane or halves one, unless it is too cramped or not measured yet
        h(a,v(B,C)) | place a 2000 1000 | h(0.5 a, 0.5 v(0.5 n, 0.5 .)) ; a | place a 801 281 | h(0.5 a, 0.5 n)
        h(a,b) | place b 2000 1000 | h(0.5 a, 0.25 b, 0.25 n) ; h(a,b) | place x 2000 1000 | h(0.25 a, 0.25 n, 0.5 b)
        a | place a 800.9 281 | v(0.5 a, 0.5 n) ; a | place a 800.9 280.9 | h(0.5 a, 0.5 n)
        v(a,b) | place b 0 0 | v(0.5 a, 0.5 h(0.5 b, 0.5 n)) ; h(a,B) | into a b | h(0.5 n, 0.5 .)
        h(a,B) | into x a | h(0.5 a, 0.5 n)
        # a pane is dropped, also onto itself, onto one that is gone and from the sidebar (s)
        h(a,b,c) | move a c center | h(0.5 b, 0.5 a) ; h(a,b) | move a b center | a ; h(a,B) | move a b center | a
        h(a,b) | move a b bottom | v(0.5 b, 0.5 a) ; h(a,b) | move a b trailing | h(0.5 b, 0.5 a)
        h(a,v(b,c)) | move c a top | h(0.5 v(0.5 c, 0.5 a), 0.5 b) ; h(a,b) | move a a center | h(0.5 a, 0.5 b)
        h(a,v(b,c)) | move b a leading | h(0.25 b, 0.25 a, 0.5 c) ; h(a,b) | move a a bottom | h(0.5 a, 0.5 b)
        h(a,b) | move a x leading | h(0.5 a, 0.5 b) ; a | move s a trailing | h(0.5 a, 0.5 s) ; a | move s a center | s
        h(a,B,c) | layout h(.,v(.,.)) | h(0.5 a, 0.5 v(0.5 c, 0.5 .)) ; v(h(a,b),h(C,d)) | layout . | a
        h(a,a,b) | layout h(.,.) | h(0.5 a, 0.5 b) ; A | layout h(x,y) | h(0.5 ., 0.5 .))"))
        EXPECT_EQ(text(after(tree(start), edit)), expected) << start << " " << edit;

    // Panes that were halved many times have next to no share; alone they must still fill the split.
    EXPECT_EQ(text(after(*after(tree("h(a,b,c)"), "shares 0.00001 0.00003 0.99996"), "remove c")), "h(0.25 a, 0.75 b)");
    EXPECT_EQ(text(after(*after(tree("h(a,b,c)"), "shares 1 2 1"), "split b horizontal")),
              "h(0.25 a, 0.25 b, 0.25 ., 0.25 c)");
    EXPECT_EQ(PaneLayout::applying(tree("."), tree("v(h(a,b),h(C,d))")).unplaced,
              (std::vector<Uuid>{content('b'), content('d')}));
}

TEST(PaneTest, idsStayOrAreFreshAsTheyShould) {
    const PaneNode node = tree("v(h(a,b),h(c,D),e)");
    EXPECT_EQ(after(node, "remove x"), node);
    EXPECT_EQ(after(node, "remove c")->id(), node.id());
    EXPECT_EQ(after(node, "clear a")->leafIDs(), node.leafIDs());
    EXPECT_EQ(after(node, "move a c top")->leafID(content('a')), leaf('a')) << "at an edge it is still the same pane";
    EXPECT_EQ(PanePlacement::placing(content('n'), node, leaf('a'), {}).leaf, leaf('d'));
    for (const PaneNode& copy : {node.template_({content('b')}), PaneLayout::applying(node, tree("a")).tree}) {
        EXPECT_NE(copy.id(), node.id()) << "two workspaces may share a saved layout";
        EXPECT_NE(rootSplit(copy).children[1].id(), rootSplit(node).children[1].id());
        for (const Uuid& id : node.leafIDs())
            EXPECT_FALSE(copy.contains(id));
    }
    for (const double bad : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(node.updatingFractions(node.id(), {bad, 1, 1}), node);
    for (const auto& [name, shape] : table<2>(R"(
        single | . ; twoColumns | h(0.5 ., 0.5 .) ; twoRows | v(0.5 ., 0.5 .)
        onePlusTwo | h(0.5 ., 0.5 v(0.5 ., 0.5 .)) ; grid | v(0.5 h(0.5 ., 0.5 .), 0.5 h(0.5 ., 0.5 .)))")) {
        const PaneLayout* layout = PaneLayout::named(name);
        ASSERT_NE(layout, nullptr) << name;
        EXPECT_EQ(text(layout->build()), shape);
        EXPECT_NE(L10n{Language::de}.text(layout->textKey), layout->textKey);
    }
}

TEST(PaneTest, thousandsOfSplitsNestNoDeeperThanAFileMayAndLeaveSharesAboveZero) {
    PaneNode node = tree("a");
    for (int step = 0; step < 1200; ++step)
        node = node.splitting(leaf('a'), step % 2 == 0 ? PaneAxis::horizontal : PaneAxis::vertical);
    std::size_t deepest = 0;
    forEachSplit(node, [&](const PaneNode::Split&, std::size_t depth) { deepest = std::max(deepest, depth + 1); });
    EXPECT_EQ(deepest, PaneNode::maximumDepth);
    EXPECT_EQ(node.leafIDs().size(), 1201U);
    EXPECT_EQ(faults(node), "");
    const PaneTemplate saved{.id = leaf('t'), .name = "deep", .node = node};
    EXPECT_TRUE(PaneTemplate::decode(saved.encode()) == saved);
    const auto json = Json::parse(Json::write(JsonArray{JsonArray{saved.encode()}}));
    ASSERT_TRUE(json);
    EXPECT_EQ(PaneTemplate::decode(json->at(0).at(0))->node.leafIDs(), node.leafIDs());

    for (node = tree("a"); node.leafIDs().size() < 1500;)
        node = node.splitting(leaf('a'), PaneAxis::horizontal);
    EXPECT_EQ(faults(node), "") << "every share is above zero";
    while (node.leafIDs().size() > 2)
        node = *node.removing(node.leafIDs().back());
    EXPECT_EQ(faults(node), "");
}

const std::string idA = leaf('a').upperText();
const std::string leafA = R"({"leaf":{"id":")" + idA + R"(","sessionID":")" + content('a').upperText() + R"("}})";

std::string split(const std::string& children, const std::string& more) {
    return R"({"split":{"id":"00000000-0000-4000-8000-00000000000A","axis":"horizontal","children":[)" + children +
           "]" + more + "}}";
}

TEST(PaneJsonTest, writesKeyedObjects) {
    EXPECT_EQ(Json::write(tree("a").encode()), leafA);
    EXPECT_EQ(Json::write(tree("A").encode()), R"({"leaf":{"id":")" + idA + R"("}})");
    const std::string written = Json::write(tree("v(a,A)").encode());
    EXPECT_TRUE(written.starts_with(R"({"split":{"axis":"vertical","children":[{"leaf":)")) << written;
    EXPECT_NE(written.find(R"("fractions":[0.5,0.5],"id":)"), std::string::npos) << written;
}

TEST(PaneJsonTest, readsWhatIsThereAndRepairsTheRest) {
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

TEST(PaneJsonTest, givesNoIDTwice) {
    const std::string zero = R"({"leaf":{"id":"00000000-0000-0000-0000-000000000000"}})";
    const std::string inner = split(leafA + "," + zero, "");
    const auto node = PaneNode::decode(*Json::parse(split(leafA + "," + inner + "," + inner, "")));
    ASSERT_TRUE(node);
    EXPECT_EQ(faults(*node), "");
    EXPECT_EQ(node->leafIDs().front(), leaf('a')) << "the first keeps its id";
}

TEST(PaneJsonTest, cutsWhatIsNestedTooDeep) {
    JsonValue json = *Json::parse(leafA);
    for (int level = 0; level < 1500; ++level) {
        JsonArray children = {*Json::parse(leafA), std::move(json)};
        json = {{"split", {{"axis", "vertical"}, {"children", std::move(children)}}}};
    }
    const auto node = PaneNode::decode(json);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->leafIDs().size(), PaneNode::maximumDepth + 1);
}

TEST(PaneMetricsTest, sizesRaiseSmallPanesAtTheCostOfTheLargest) {
    // Shares, then the room and the least size, then the sizes.
    for (const auto& [shares, room, expected] : table<3>(R"(
        | 100 400 | ; 0.5 0.5 | 100 400 | 50 50 ; 0.9 0.1 | 1000 400 | 600 400 ; 0.25 0.75 | 10.5 2 | 2 8.5
        0.333333333333 0.333333333333 0.333333333334 | 1000 140 | 333 333 334
        # the first of two equal givers comes first; one giver is not enough; shares beyond 1 use the room up early
        0.02 0.49 0.49 | 1000 140 | 140 370 490 ; 0.05 0.05 0.3 0.6 | 1000 240 | 240 240 280 240
        1 1 | 100 0 | 100 0 ; 0.5 0.5 | 0 140 | 0 0 ; 0.5 0.5 | 1 140 | 0 1)")) {
        const auto sizes = PaneMetrics::sizes(numbers(shares), numbers(room)[0], numbers(room)[1]);
        EXPECT_EQ(sizes, numbers(expected)) << shares << " of " << room;
    }
    const PaneNode node = tree("h(a,v(b,c))");
    EXPECT_EQ(node.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
    EXPECT_EQ(node.size(leaf('c'), {1001, 601}), (PaneSize{500, 300})) << "a divider takes a point";
    EXPECT_EQ(node.size(leaf('c'), {0, 0}), (PaneSize{0, 0}));
    EXPECT_EQ(node.size(leaf('x'), {1001, 601}), std::nullopt);
    PaneNode mismatched = node;
    std::get<PaneNode::Split>(mismatched.value).fractions = {1};
    EXPECT_EQ(mismatched.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
}

TEST(PaneDropZoneTest, findsTheNearestEdgeThatIsOffered) {
    // The point and the pane; the bands of the first are 160 wide and 120 high, the others are too small to halve.
    for (const auto& [where, expected] : table<2>(R"(
        500 250 1000 500 | center ; 159 250 1000 500 | leading ; 160 250 1000 500 | center ; 80 60 1000 500 | leading
        841 250 1000 500 | trailing ; 500 119 1000 500 | top ; 500 381 1000 500 | bottom ; 80 59 1000 500 | top
        -5 250 1000 500 | leading ; 1 250 700 500 | center ; 1 1 700 500 | top ; 1 1 700 270 | center
        0 0 0 500 | center)")) {
        const auto at = numbers(where);
        const PaneSize pane{at[2], at[3]};
        const PaneDropZone zone = resolvePaneDropZone({at[0], at[1]}, pane);
        EXPECT_EQ(rawValue(zone), expected) << where;
        const PaneRect shown = previewRect(zone, pane);
        const bool halved = shown.width * shown.height * 2 == pane.width * pane.height;
        EXPECT_EQ(halved, axis(zone).has_value() || pane.width == 0);
        EXPECT_EQ(shown.x > 0 || shown.y > 0, axis(zone).has_value() && !insertsBefore(zone)) << rawValue(zone);
    }
}

TEST(PaneNavigationTest, goesRoundTheEnds) {
    const std::array<int, 4> cases[] = {
        {0, 3, -1, 2}, {2, 3, 1, 0}, {1, 3, -7, 0}, {0, 0, 1, 0}, {2147483647, 2147483647, 2147483647, 0}};
    for (const auto& [current, count, offset, expected] : cases)
        EXPECT_EQ(PaneNavigation::neighbourIndex(current, count, offset), expected) << current << " " << offset;
}

/// The children fill the room to the point and none is squeezed below what all of them could have.
void expectFilled(const PaneNode::Split& split, const PaneSize& area) {
    const bool stacked = split.axis == PaneAxis::vertical;
    const auto count = static_cast<double>(split.children.size());
    const double available = std::max((stacked ? area.height : area.width) - (count - 1), 0.0);
    const double least = std::min(std::floor(available / count), stacked ? 140.0 : 400.0);
    double sum = 0;
    for (const PaneSize& size : PaneMetrics::childSizes(split, area)) {
        const double length = stacked ? size.height : size.width;
        EXPECT_GE(length, least);
        EXPECT_EQ(stacked ? size.width : size.height, stacked ? area.width : area.height);
        sum += length;
    }
    EXPECT_EQ(sum, available) << ::testing::PrintToString(split.fractions);
}

class PaneTreeProperty : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(PaneTreeProperty, holdsAfterEveryEdit) {
    std::mt19937 random(GetParam());
    const Below below = [&](std::size_t limit) { return random() % limit; };
    PaneNode node = PaneNode::single();
    for (int step = 0; step < 3000; ++step) {
        node = edited(node, below);
        EXPECT_EQ(faults(node), "");
        const PaneSize area{static_cast<double>(below(3000)), static_cast<double>(below(2000))};
        forEachSplit(node, [&](const PaneNode::Split& split, std::size_t) { expectFilled(split, area); });
        EXPECT_TRUE(PaneNode::decode(node.encode()) == node);
        ASSERT_FALSE(HasFailure()) << "seed " << GetParam() << " step " << step << ": " << text(node);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PaneTreeProperty, ::testing::Values(1, 20, 300));

}  // namespace
}  // namespace orvane::testing
