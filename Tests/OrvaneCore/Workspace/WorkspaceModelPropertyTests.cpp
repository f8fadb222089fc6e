#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "OrvaneCore/Workspace/WorkspaceModel.h"
#include "Support/PaneTrees.h"

namespace orvane::testing {
namespace {

/// A user without a plan. Ids that nothing has come up now and then. What is picked depends on the seed alone, though
/// the model makes ids of its own: all picks go by place.
class RandomUser {
 public:
    explicit RandomUser(std::uint32_t seed) : random_(seed) {}

    int below(std::size_t limit) { return std::uniform_int_distribution(0, static_cast<int>(limit) - 1)(random_); }

    template <typename Item>
    Uuid oneOf(const std::vector<Item>& items, Uuid Item::* id) {
        return items.empty() || below(20) == 0 ? content('?')
                                               : items[static_cast<std::size_t>(below(items.size()))].*id;
    }

    Uuid anyProject(const WorkspaceModel& model) { return oneOf(model.projects, &Project::id); }
    Uuid anySurface(const WorkspaceModel& model) {
        const auto metas = model.surfaceMetas.find(anyProject(model));
        return metas == model.surfaceMetas.end() ? content('?') : oneOf(metas->second, &SurfaceMeta::id);
    }
    Uuid anyLeaf(const WorkspaceModel& model) {
        const auto tree = model.surfaceTrees.find(anySurface(model));
        if (tree == model.surfaceTrees.end()) return content('?');
        const auto leaves = tree->second.leafIDs();
        return leaves[static_cast<std::size_t>(below(leaves.size()))];
    }
    Uuid anySession() { return content(static_cast<char>('a' + below(12))); }
    Uuid anyContent(const WorkspaceModel& model) { return below(2) == 0 ? anySession() : anySurface(model); }
    SurfaceMeta anyTab() {
        const auto kind = static_cast<SurfaceKind>(below(8));
        return {.id = Uuid::random(), .kind = kind, .isPreview = !ownsPaneTree(kind) && below(3) == 0};
    }

    void step(WorkspaceModel& model) {
        const PaneSize area{static_cast<double>(below(3000)), static_cast<double>(below(2000))};
        const auto target = below(2) == 0 ? std::nullopt : std::optional(anyLeaf(model));
        const auto zone = static_cast<PaneDropZone>(below(5));
        const std::function<void()> steps[] = {
            [&] { model.openSurface(anyProject(model), anyTab()); },
            [&] { model.placeSession(anySession(), anyProject(model), target, area); },
            [&] { model.movePane(anyContent(model), anyLeaf(model), zone, anySurface(model)); },
            [&] { model.removePane(anyLeaf(model)); },
            [&] { model.closeSurface(anySurface(model)); },
            [&] { model.addProject("/" + std::to_string(below(4))); },
            [&] { below(5) == 0 ? model.removeProject(anyProject(model)) : model.selectProject(anyProject(model)); },
            [&] { model.activateSurface(anySurface(model)); },
            [&] { model.moveSurface(anySurface(model), anySurface(model)); },
            [&] { model.hideFromPane(anyLeaf(model)); },
            [&] { model.selectSession(anySession(), anyProject(model)); },
            [&] { model.clearSession(anySession()); },
            [&] { model.focusPane(anyLeaf(model)); },
            [&] { model.focusPane(anySurface(model), below(7) - 3); },
            [&] { model.splitPane(anyLeaf(model), static_cast<PaneAxis>(below(2))); },
            [&] { model.applyLayout(PaneLayout::all[static_cast<std::size_t>(below(5))].build(), anySurface(model)); },
            [&] { model = below(10) == 0 ? WorkspaceModel::restoring(model.saved(), "W") : model; }};
        const auto pick = static_cast<std::size_t>(below(std::size(steps) + 6));
        steps[pick < std::size(steps) ? pick : pick % 6 % 5]();  // the first five come more often
    }

 private:
    std::mt19937 random_;
};

/// Every project has its tabs, a workspace among them, the active one in the strip, and in the panes only surfaces of
/// its own that fit there; nothing else is kept.
void expectSound(const WorkspaceModel& model) {
    std::set<Uuid> ids;
    std::size_t treeOwners = 0;
    for (const Project& project : model.projects) {
        EXPECT_TRUE(ids.insert(project.id).second);
        const auto& metas = model.surfaceMetas.at(project.id);
        EXPECT_TRUE(std::ranges::any_of(metas, [](const auto& meta) { return meta.kind == SurfaceKind::terminal; }));
        EXPECT_LE(std::ranges::count(metas, true, &SurfaceMeta::isPreview), 1);
        const auto strip = model.visibleSurfaces(project.id);
        EXPECT_TRUE(std::ranges::count(strip, model.activeSurfaceID.at(project.id), &SurfaceMeta::id));
        for (const SurfaceMeta& meta : metas) {
            EXPECT_TRUE(ids.insert(meta.id).second) << "a surface stands in two strips";
            if (!ownsPaneTree(meta.kind)) continue;
            ++treeOwners;
            const PaneNode& panes = model.surfaceTrees.at(meta.id);
            EXPECT_TRUE(panes.contains(model.focusedPanes.at(meta.id)));
            for (const Uuid& leaf : panes.leafIDs())
                EXPECT_TRUE(ids.insert(leaf).second) << "a leaf stands in two trees";
            for (const Uuid& shown : panes.contentIDs()) {
                const SurfaceMeta* tab = model.surface(shown);
                const bool isSession = shown == content(static_cast<char>(shown.bytes()[15]));
                EXPECT_TRUE(tab != nullptr ? isPaneEmbeddable(tab->kind) : isSession);
                EXPECT_TRUE(tab == nullptr || model.projectOfSurface(shown) == project.id);
            }
        }
    }
    EXPECT_EQ(model.surfaceMetas.size(), model.projects.size());
    EXPECT_EQ(model.activeSurfaceID.size(), model.projects.size());
    EXPECT_EQ(model.surfaceTrees.size(), treeOwners);
    EXPECT_EQ(model.focusedPanes.size(), treeOwners);
}

/// The selected session is in the focused pane of the tab on the screen, unless no pane shows it.
void expectSelectionSound(const WorkspaceModel& model) {
    if (model.selectedProjectID) {
        EXPECT_NE(model.project(*model.selectedProjectID), nullptr);
    }
    if (!model.selectedSessionID || !model.paneShowing(*model.selectedSessionID)) return;
    ASSERT_TRUE(model.selectedProjectID);
    const Uuid active = model.activeSurfaceID.at(*model.selectedProjectID);
    ASSERT_TRUE(model.surfaceTrees.contains(active));
    EXPECT_EQ(model.surfaceTrees.at(active).contentID(model.focusedPanes.at(active)), model.selectedSessionID);
}

/// Projects and tabs in their order, the panes of each with the surfaces in them and the place of the focus.
std::string outline(const WorkspaceModel& model) {
    std::string result;
    for (const Project& project : model.projects) {
        result += project.path + (model.selectedProjectID == project.id ? "*\n" : "\n");
        const auto& metas = model.surfaceMetas.at(project.id);
        std::set<Uuid> kept;
        std::ranges::transform(metas, std::inserter(kept, kept.end()), &SurfaceMeta::id);
        for (const SurfaceMeta& meta : metas) {
            result += meta.id.lowerText() + (model.activeSurfaceID.at(project.id) == meta.id ? "*\n" : "\n");
            if (!ownsPaneTree(meta.kind)) continue;
            const PaneNode& panes = model.surfaceTrees.at(meta.id);
            const auto leaves = panes.leafIDs();
            const PaneNode shape = panes.template_(kept);
            const auto focus = std::ranges::find(leaves, model.focusedPanes.at(meta.id)) - leaves.begin();
            result += fmt::format("{} focus {}\n", text(shape), focus);
            for (const Uuid& shown : shape.contentIDs())
                result += shown.lowerText() + "\n";
        }
    }
    return result;
}

class WorkspaceModelProperty : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(WorkspaceModelProperty, holdsAfterEveryStep) {
    RandomUser user(GetParam());
    WorkspaceModel model;
    std::size_t mostPanes = 0;
    for (int step = 0; step < 4000; ++step) {
        user.step(model);
        expectSound(model);
        expectSelectionSound(model);
        EXPECT_EQ(outline(WorkspaceModel::restoring(model.saved(), "W")), outline(model));
        ASSERT_FALSE(HasFailure()) << "seed " << GetParam() << " step " << step << ":\n" << outline(model);
        mostPanes = std::max(mostPanes, model.paneCount());
    }
    EXPECT_GT(mostPanes, 20U) << "the user hardly did anything";
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkspaceModelProperty, ::testing::Values(1, 20, 300));

}  // namespace
}  // namespace orvane::testing
