#include "ui/sheet_subwindow.h"

#include <QCloseEvent>
#include <algorithm>

namespace zv::ui {

namespace {

std::int16_t clamp16(int value) {
  return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

}  // namespace

SheetSubWindow::SheetSubWindow(SheetView& view, SheetWindowKind kind, int index)
    : view_(view), kind_(kind), index_(index) {
  setAttribute(Qt::WA_DeleteOnClose);
}

void SheetSubWindow::closeEvent(QCloseEvent* event) {
  if (isMainDialog() && !view_.closing()) {
    // Closing the main dialog closes the document; the view closes this window itself.
    event->ignore();
    view_.requestClose();
    return;
  }
  view_.windowClosed(kind_, index_);
  QMdiSubWindow::closeEvent(event);
}

void SheetSubWindow::moveEvent(QMoveEvent* event) {
  QMdiSubWindow::moveEvent(event);
  recordPlace();
}

void SheetSubWindow::resizeEvent(QResizeEvent* event) {
  QMdiSubWindow::resizeEvent(event);
  recordPlace();
}

void SheetSubWindow::recordPlace() {
  if (view_.closing() || isMinimized() || isMaximized()) return;
  FileInfo& sheet = view_.sheet();
  auto at = static_cast<std::size_t>(index_);
  if (kind_ == SheetWindowKind::List && at < sheet.lists.size()) {
    Rect16& loc = sheet.lists[at]->loc;
    loc.x = clamp16(x());
    loc.y = clamp16(y());
    loc.width = clamp16(width());
    loc.height = clamp16(height());
  } else if (kind_ == SheetWindowKind::Dialog && at < sheet.dlgs.size()) {
    DlgInfo& dialog = *sheet.dlgs[at];
    dialog.x = clamp16(x());
    dialog.y = clamp16(y());
  }
}

}  // namespace zv::ui
