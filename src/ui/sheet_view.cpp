#include "ui/sheet_view.h"

#include <QApplication>
#include <QTimer>
#include <algorithm>

#include "core/strfmt.h"
#include "core/undo.h"
#include "ui/dialog_window.h"
#include "ui/engine_edits.h"
#include "ui/list_panel.h"
#include "ui/sheet_subwindow.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

constexpr int kDefaultListWidth = 200;
constexpr int kDefaultListHeight = 300;
constexpr int kEdgeMargin = 20;
// A coordinate the file leaves unset (65535 read as a 16-bit value).
constexpr int kUnsetCoordinate = -1;

// A stored place within 20 pixels of the far edges of the area is pulled back in.
QPoint keptInside(QPoint place, QSize size, QSize area) {
  int x = place.x();
  int y = place.y();
  if (x > area.width() - kEdgeMargin) x = std::max(0, area.width() - size.width());
  if (y > area.height() - kEdgeMargin) y = std::max(0, area.height() - size.height());
  return {std::max(0, x), std::max(0, y)};
}

}  // namespace

SheetView::SheetView(std::unique_ptr<FileInfo> sheet, QMdiArea& area, FieldPreferences preferences,
                     QObject* parent)
    : QObject(parent), sheet_(std::move(sheet)), area_(area) {
  fieldContext_.preferences = preferences;
  fieldContext_.memory = &acceptance_;
  fieldContext_.beep = [] { QApplication::beep(); };
}

SheetView::~SheetView() {
  closing_ = true;
  // The windows go before the record they show.
  // A window that Qt hasn't deleted yet goes with its view, which its fields refer to.
  for (const OpenWindow& entry : liveWindows())
    delete entry.window.data();
  windows_.clear();
}

void SheetView::show() {
  QMdiSubWindow* main = openWindow(SheetWindowKind::Dialog, 0);
  for (std::size_t i = 1; i < sheet_->dlgs.size(); ++i) {
    if (sheet_->dlgs[i]->open()) openWindow(SheetWindowKind::Dialog, static_cast<int>(i));
  }
  for (std::size_t i = 0; i < sheet_->lists.size(); ++i) {
    if (sheet_->lists[i]->open()) openWindow(SheetWindowKind::List, static_cast<int>(i));
  }
  if (main != nullptr) area_.setActiveSubWindow(main);
}

std::vector<SheetView::OpenWindow> SheetView::liveWindows() const {
  std::vector<OpenWindow> live;
  for (const OpenWindow& entry : windows_) {
    if (!entry.window.isNull()) live.push_back(entry);
  }
  return live;
}

QMdiSubWindow* SheetView::windowOf(SheetWindowKind kind, int index) const {
  for (const OpenWindow& entry : liveWindows()) {
    if (entry.kind == kind && entry.index == index) return entry.window;
  }
  return nullptr;
}

std::vector<QMdiSubWindow*> SheetView::windows() const {
  std::vector<QMdiSubWindow*> result;
  if (QMdiSubWindow* main = mainWindow()) result.push_back(main);
  for (const OpenWindow& entry : liveWindows()) {
    if (entry.window != mainWindow()) result.push_back(entry.window);
  }
  return result;
}

DialogWindow* SheetView::dialogWindow(int index) const {
  QMdiSubWindow* window = windowOf(SheetWindowKind::Dialog, index);
  return window != nullptr ? qobject_cast<DialogWindow*>(window->widget()) : nullptr;
}

std::vector<ListPanel*> SheetView::listPanels() const {
  std::vector<ListPanel*> panels;
  for (const OpenWindow& entry : liveWindows()) {
    QWidget* widget = entry.window->widget();
    if (auto* panel = qobject_cast<ListPanel*>(widget)) panels.push_back(panel);
    if (auto* dialog = qobject_cast<DialogWindow*>(widget)) {
      for (ListPanel* panel : dialog->listPanels())
        panels.push_back(panel);
    }
  }
  return panels;
}

ListPanel* SheetView::panelOf(const ListInfo& list) const {
  for (ListPanel* panel : listPanels()) {
    if (&panel->list() == &list) return panel;
  }
  return nullptr;
}

ListPanel* SheetView::showList(const ListInfo& list) {
  for (std::size_t i = 0; i < sheet_->lists.size(); ++i) {
    if (sheet_->lists[i].get() == &list) openWindow(SheetWindowKind::List, static_cast<int>(i));
  }
  for (std::size_t i = 0; i < sheet_->dlgs.size(); ++i) {
    for (const auto& field : sheet_->dlgs[i]->items) {
      if (field->listField.get() == &list) openWindow(SheetWindowKind::Dialog, static_cast<int>(i));
    }
  }
  return panelOf(list);
}

bool SheetView::undo() {
  commitPendingEdit();
  if (!undoCanUndo(*sheet_)) return false;
  bool undone = undoPop(*sheet_);
  for (const OpenWindow& entry : liveWindows()) {
    if (auto* dialog = qobject_cast<DialogWindow*>(entry.window->widget())) dialog->refreshFields();
  }
  refreshAfterEdit();
  refreshTitles();
  return undone;
}

QMdiSubWindow* SheetView::openWindow(SheetWindowKind kind, int index) {
  std::size_t count = kind == SheetWindowKind::Dialog ? sheet_->dlgs.size() : sheet_->lists.size();
  if (index < 0 || static_cast<std::size_t>(index) >= count) return nullptr;
  QMdiSubWindow* window = windowOf(kind, index);
  if (window == nullptr) window = createWindow(kind, index);
  if (window->isMinimized()) window->showNormal();
  area_.setActiveSubWindow(window);
  return window;
}

QMdiSubWindow* SheetView::createWindow(SheetWindowKind kind, int index) {
  auto* window = new SheetSubWindow(*this, kind, index);
  auto at = static_cast<std::size_t>(index);
  QPoint place;
  bool placed = false;
  if (kind == SheetWindowKind::Dialog) {
    DlgInfo& dialog = *sheet_->dlgs[at];
    auto* contents = new DialogWindow(*this, index);
    window->setWidget(contents);
    dialog.window = contents;
    if (index > 0) dialog.setOpen(true);
    placed = dialog.x != kUnsetCoordinate;
    place = QPoint(dialog.x, dialog.y);
  } else {
    ListInfo& list = *sheet_->lists[at];
    auto* contents = new ListPanel(*this, list);
    window->setWidget(contents);
    list.setOpen(true);
    placed = list.loc.width > 0 && list.loc.x != kUnsetCoordinate;
    place = QPoint(list.loc.x, list.loc.y);
  }
  windows_.push_back({kind, index, window});
  area_.addSubWindow(window);
  if (kind == SheetWindowKind::List) {
    const Rect16& loc = sheet_->lists[at]->loc;
    bool sized = loc.width > 0 && loc.height > 0;
    window->resize(sized ? loc.width : kDefaultListWidth, sized ? loc.height : kDefaultListHeight);
  } else {
    window->adjustSize();
  }
  if (placed) window->move(keptInside(place, window->size(), area_.viewport()->size()));
  refreshTitles();
  window->show();
  return window;
}

void SheetView::windowClosed(SheetWindowKind kind, int index) {
  auto at = static_cast<std::size_t>(index);
  std::erase_if(windows_, [&](const OpenWindow& entry) {
    return entry.kind == kind && entry.index == index;
  });
  if (closing_) return;
  // The open flags say which windows open with the sheet next time.
  if (kind == SheetWindowKind::List && at < sheet_->lists.size()) {
    sheet_->lists[at]->setOpen(false);
    sheet_->lists[at]->window = nullptr;
  } else if (kind == SheetWindowKind::Dialog && at < sheet_->dlgs.size()) {
    sheet_->dlgs[at]->setOpen(false);
    sheet_->dlgs[at]->window = nullptr;
  }
}

void SheetView::refreshTitles() {
  std::string sheetName = sheet_->name.str();
  for (const OpenWindow& entry : liveWindows()) {
    auto at = static_cast<std::size_t>(entry.index);
    std::string title = sheetName;
    if (entry.kind == SheetWindowKind::List) {
      title = strprintf("%s: %s", sheetName, sheet_->lists[at]->name.str());
    } else if (entry.index > 0) {
      title = strprintf("%s: %s", sheetName, sheet_->dlgs[at]->name.str());
    }
    // The sheet's own window marks a sheet with unsaved changes ("name*").
    const bool main = entry.kind == SheetWindowKind::Dialog && entry.index == 0;
    entry.window->setWindowTitle(fromSystemText(title) + (main ? "[*]" : ""));
    entry.window->setWindowModified(main && sheet_->changed());
  }
}

void SheetView::commitPendingEdit() {
  for (const OpenWindow& entry : liveWindows()) {
    if (auto* dialog = qobject_cast<DialogWindow*>(entry.window->widget()))
      dialog->commitPendingEdit();
  }
}

bool SheetView::hasPendingEdit() const {
  std::vector<OpenWindow> live = liveWindows();
  return std::any_of(live.begin(), live.end(), [](const OpenWindow& entry) {
    auto* dialog = qobject_cast<DialogWindow*>(entry.window->widget());
    return dialog != nullptr && dialog->hasPendingEdit();
  });
}

void SheetView::recalculate() {
  commitPendingEdit();
  recalculateSheet(*sheet_);
  refreshEverything();
}

void SheetView::refreshEverything() {
  for (const OpenWindow& entry : liveWindows()) {
    if (auto* dialog = qobject_cast<DialogWindow*>(entry.window->widget())) dialog->refreshFields();
  }
  refreshAfterEdit();
}

void SheetView::refreshAfterEdit() {
  for (ListPanel* panel : listPanels())
    panel->refresh();
  refreshTitles();
}

void SheetView::openAllWindows() {
  for (std::size_t i = 0; i < sheet_->dlgs.size(); ++i)
    openWindow(SheetWindowKind::Dialog, static_cast<int>(i));
  for (std::size_t i = 0; i < sheet_->lists.size(); ++i)
    openWindow(SheetWindowKind::List, static_cast<int>(i));
}

void SheetView::closeSubordinateWindows() {
  for (QMdiSubWindow* window : windows()) {
    if (window != mainWindow()) window->close();
  }
}

bool SheetView::requestClose() {
  if (closing_) return true;
  commitPendingEdit();
  if (closeQuery_ && !closeQuery_(*this)) return false;
  closing_ = true;
  for (QMdiSubWindow* window : windows())
    window->close();
  emit sheetClosed(this);
  deleteLater();
  return true;
}

SheetView* sheetViewOf(QMdiSubWindow* window) {
  auto* sheetWindow = qobject_cast<SheetSubWindow*>(window);
  return sheetWindow != nullptr ? &sheetWindow->view() : nullptr;
}

}  // namespace zv::ui
