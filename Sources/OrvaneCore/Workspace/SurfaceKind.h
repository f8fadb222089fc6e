#pragma once

#include <array>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What a tab of a project shows. A `terminal` surface is a workspace.
enum class SurfaceKind { terminal, chat, browser, diff, file, maestro, maestroTask, plan };

template <>
struct RawValues<SurfaceKind> {
    static constexpr std::array table = {
        rawValueOf(SurfaceKind::terminal, "terminal"),
        rawValueOf(SurfaceKind::chat, "chat"),
        rawValueOf(SurfaceKind::browser, "browser"),
        rawValueOf(SurfaceKind::diff, "diff"),
        rawValueOf(SurfaceKind::file, "file"),
        rawValueOf(SurfaceKind::maestro, "maestro"),
        rawValueOf(SurfaceKind::maestroTask, "maestroTask"),
        rawValueOf(SurfaceKind::plan, "plan"),
    };
};

/// Whether a pane of a workspace can show such a surface.
constexpr bool isPaneEmbeddable(SurfaceKind kind) {
    return kind == SurfaceKind::chat || kind == SurfaceKind::browser || kind == SurfaceKind::plan;
}

/// Whether such a surface has a pane tree of its own.
constexpr bool ownsPaneTree(SurfaceKind kind) {
    return kind == SurfaceKind::terminal || kind == SurfaceKind::maestro;
}

}  // namespace orvane
