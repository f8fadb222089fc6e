#include "OrvaneShell/View/Painting/SidebarPainter.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/Texts/SessionTexts.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/SessionMark.h"

namespace orvane {

namespace {

int widthOf(std::string_view text) {
    return static_cast<int>(Text::displayWidth(text));
}

/// A text at the left, cut where a shorter one at the right begins.
void paintPair(CanvasPen& pen, const CellRect& row, std::string_view left, const Attribute& leftLook,
               std::string_view right, const Attribute& rightLook) {
    const int rightCols = std::min(widthOf(right), std::max(0, row.cols / 2));
    const int gap = right.empty() ? 0 : 1;
    pen.text(row.x, row.y, left, leftLook, std::max(0, row.cols - rightCols - gap));
    pen.text(row.right() - rightCols, row.y, right, rightLook, rightCols);
}

}  // namespace

void SidebarPainter::keepSelectionInSight(const ViewContext& view, int room) {
    const auto selected = view.store.workspace().selectedSessionID;
    const int last = std::max(0, static_cast<int>(rows_.size()) - room);
    if (selected != lastSelected_) {
        lastSelected_ = selected;
        const auto at = std::ranges::find(rows_, selected, &SidebarRow::session) - rows_.begin();
        const auto row = static_cast<int>(at);
        if (selected && row < static_cast<int>(rows_.size())) first_ = std::clamp(first_, row - room + 1, row);
    }
    first_ = std::clamp(first_, 0, last);
}

void SidebarPainter::paint(const ViewContext& view, Canvas& canvas) {
    const CellRect& area = view.layout.sidebar;
    if (area.isEmpty()) return;
    rows_ = SidebarRow::of(view.store, view.now());
    keepSelectionInSight(view, area.rows);
    CanvasPen pen(canvas, {area.x, area.y, area.cols + 1, area.rows});
    pen.fill(area, ViewLook::plain);
    pen.fill(view.layout.sidebarEdge, ViewLook::dim, U'│');
    for (int i = 0; i < area.rows && first_ + i < static_cast<int>(rows_.size()); ++i) {
        const SidebarRow& row = rows_[static_cast<std::size_t>(first_) + static_cast<std::size_t>(i)];
        const SessionController* session = row.session ? view.store.session(*row.session) : nullptr;
        if (session != nullptr) {
            paintSession(view, pen, area.y + i, *session);
        } else if (row.comingBack) {
            paintComingBack(view, pen, area.y + i, *row.comingBack);
        } else if (!row.session) {
            paintProject(view, pen, area.y + i, row);
        }
    }
}

void SidebarPainter::paintProject(const ViewContext& view, CanvasPen& pen, int y, const SidebarRow& row) const {
    const WorkspaceModel& workspace = view.store.workspace();
    const Project* project = workspace.project(row.project);
    if (project == nullptr) return;
    const CellRect& area = view.layout.sidebar;
    const bool isFolded = workspace.collapsedProjects.contains(project->id);
    const bool isShown = workspace.selectedProjectID == project->id;
    const Attribute color = ViewLook::ofHex(project->colorHex(), ViewLook::Style::bold);
    const Attribute shown = ViewLook::ofHex(project->colorHex(), ViewLook::Style::bold | ViewLook::Style::underline);
    pen.text(area.x, y, isFolded ? "▸" : "▾", color);
    const auto branch = view.store.gitBranches().find(project->id);
    std::string right = branch == view.store.gitBranches().end() ? std::string() : Text::oneLine(branch->second);
    if (row.foldedCalls > 0) right = "! " + std::to_string(row.foldedCalls);
    paintPair(pen, {area.x + 2, y, area.cols - 3, 1}, Text::oneLine(project->name), isShown ? shown : ViewLook::bold,
              right, row.foldedCalls > 0 ? ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold) : ViewLook::dim);
}

void SidebarPainter::paintSession(const ViewContext& view, CanvasPen& pen, int y,
                                  const SessionController& session) const {
    const CellRect& area = view.layout.sidebar;
    const bool isSelected = view.store.workspace().selectedSessionID == session.id();
    const auto onBar = [&](const Attribute& look) { return isSelected ? ViewLook::onBar(look) : look; };
    if (isSelected) pen.fill({area.x, y, area.cols, 1}, onBar(ViewLook::plain));
    const SessionMark mark = SessionMark::of(session);
    pen.text(area.x + 2, y, mark.glyph, onBar(mark.look));
    const bool isCalling = SidebarRow::needsUser(session);
    const std::string age = SessionTexts::shortAge(view.l10n, view.now() - session.evidence().since);
    paintPair(pen, {area.x + 4, y, area.cols - 5, 1}, Text::oneLine(session.title()),
              onBar(isCalling ? ViewLook::bold : ViewLook::plain), age, onBar(ViewLook::dim));
}

void SidebarPainter::paintComingBack(const ViewContext& view, CanvasPen& pen, int y, const std::string& title) {
    const CellRect& area = view.layout.sidebar;
    const SessionMark mark = SessionMark::comingBack();
    pen.text(area.x + 2, y, mark.glyph, mark.look);
    pen.text(area.x + 4, y, Text::oneLine(title), ViewLook::dim, area.cols - 5);
}

const SidebarRow* SidebarPainter::rowAt(const ViewContext& view, int x, int y) const {
    const CellRect& area = view.layout.sidebar;
    const auto index = static_cast<std::size_t>(first_ + y - area.y);
    return area.contains(x, y) && index < rows_.size() ? &rows_[index] : nullptr;
}

}  // namespace orvane
