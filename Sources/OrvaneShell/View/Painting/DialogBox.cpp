#include "OrvaneShell/View/Painting/DialogBox.h"

#include <algorithm>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/ViewLook.h"

namespace orvane::DialogBox {

void frame(CanvasPen& pen, const CellRect& box, std::string_view title) {
    pen.fill(box, ViewLook::plain);
    pen.fill({box.x, box.y, box.cols, 1}, ViewLook::plain, U'─');
    pen.fill({box.x, box.bottom() - 1, box.cols, 1}, ViewLook::plain, U'─');
    pen.fill({box.x, box.y, 1, box.rows}, ViewLook::plain, U'│');
    pen.fill({box.right() - 1, box.y, 1, box.rows}, ViewLook::plain, U'│');
    pen.text(box.x, box.y, "╭", ViewLook::plain);
    pen.text(box.right() - 1, box.y, "╮", ViewLook::plain);
    pen.text(box.x, box.bottom() - 1, "╰", ViewLook::plain);
    pen.text(box.right() - 1, box.bottom() - 1, "╯", ViewLook::plain);
    pen.text(box.x + 2, box.y, " " + std::string(title) + " ", ViewLook::bold, box.cols - 4);
}

CellRect paint(Canvas& canvas, std::string_view title, int cols, int rows) {
    const CellRect all{0, 0, canvas.cols(), canvas.rows()};
    CanvasPen pen(canvas, all);
    pen.restyle(all, [](Attribute look) {
        look.style = look.style | ViewLook::Style::dim;
        return look;
    });
    canvas.cursor.reset();
    CellRect box{0, 0, std::min(cols + 4, all.cols), std::min(rows + 2, all.rows)};
    box.x = (all.cols - box.cols) / 2;
    box.y = (all.rows - box.rows) / 3;
    frame(pen, box, title);
    return {box.x + 2, box.y + 1, std::max(0, box.cols - 4), std::max(0, box.rows - 2)};
}

}  // namespace orvane::DialogBox
