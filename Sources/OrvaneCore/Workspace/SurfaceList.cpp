#include "OrvaneCore/Workspace/SurfaceList.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/PaneNavigation.h"

namespace orvane::SurfaceList {

SurfaceSelection closing(const Uuid& id, std::vector<SurfaceMeta> from, const std::optional<Uuid>& active) {
    const auto closed = std::ranges::find(from, id, &SurfaceMeta::id);
    if (closed == from.end()) return {.metas = std::move(from), .active = active};
    const auto next = from.erase(closed);
    if (active != id) return {.metas = std::move(from), .active = active};
    if (from.empty()) return {};
    const Uuid successor = next == from.end() ? from.back().id : next->id;
    return {.metas = std::move(from), .active = successor};
}

std::vector<SurfaceMeta> moving(const Uuid& id, const std::optional<Uuid>& before, std::vector<SurfaceMeta> in) {
    const auto moved = std::ranges::find(in, id, &SurfaceMeta::id);
    const auto target = before ? std::ranges::find(in, *before, &SurfaceMeta::id) : in.end();
    if (moved == in.end() || moved == target || (before && target == in.end())) return in;
    if (moved < target) {
        std::rotate(moved, moved + 1, target);
    } else {
        std::rotate(target, moved, moved + 1);
    }
    return in;
}

SurfaceSelection replacingPreview(SurfaceMeta meta, std::vector<SurfaceMeta> in) {
    const Uuid id = meta.id;
    const auto preview = meta.isPreview ? std::ranges::find(in, true, &SurfaceMeta::isPreview) : in.end();
    if (preview == in.end()) {
        in.push_back(std::move(meta));
    } else {
        *preview = std::move(meta);
    }
    return {.metas = std::move(in), .active = id};
}

SurfaceSelection opening(const std::string& file, const std::string& title, std::vector<SurfaceMeta> in, Pin pin) {
    const auto open = std::ranges::find_if(
        in, [&](const SurfaceMeta& meta) { return meta.kind == SurfaceKind::file && meta.payload == file; });
    if (open == in.end()) {
        return replacingPreview({.id = Uuid::random(),
                                 .kind = SurfaceKind::file,
                                 .title = title,
                                 .payload = file,
                                 .isPreview = pin == Pin::no},
                                std::move(in));
    }
    if (pin == Pin::yes) open->isPreview = false;
    const Uuid id = open->id;
    return {.metas = std::move(in), .active = id};
}

std::optional<Uuid> at(int index, const std::vector<SurfaceMeta>& in) {
    if (index < 1 || std::cmp_greater(index, in.size())) return std::nullopt;
    return in[static_cast<std::size_t>(index) - 1].id;
}

std::optional<Uuid> neighbour(const Uuid& of, const std::vector<SurfaceMeta>& in, int offset) {
    const auto found = std::ranges::find(in, of, &SurfaceMeta::id);
    if (found == in.end()) return std::nullopt;
    const int index =
        PaneNavigation::neighbourIndex(static_cast<int>(found - in.begin()), static_cast<int>(in.size()), offset);
    return in[static_cast<std::size_t>(index)].id;
}

}  // namespace orvane::SurfaceList
