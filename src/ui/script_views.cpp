#include "ui/script_views.h"

#include <QApplication>
#include <QMdiSubWindow>

#include "rules/lists/visible_rows.h"
#include "ui/dialog_window.h"
#include "ui/list_panel.h"
#include "ui/sheet_view.h"

namespace zv::ui {

int ScriptViewsOfFrame::selectedRow(const ListInfo& list) {
  for (QMdiSubWindow* window : area_.subWindowList()) {
    SheetView* view = sheetViewOf(window);
    if (view == nullptr) continue;
    ListPanel* panel = view->panelOf(list);
    if (panel == nullptr) continue;
    Item* caret = panel->caretItem();
    if (caret == nullptr) return -1;
    const int row = rowOfItem(panel->list(), caret);
    return row < 0 ? -1 : row + 1;
  }
  return -1;
}

std::optional<std::string> ScriptViewsOfFrame::focusedField() {
  for (QWidget* widget = QApplication::focusWidget(); widget != nullptr;
       widget = widget->parentWidget()) {
    const QVariant position = widget->property(kFieldPositionProperty);
    if (!position.isValid()) continue;
    for (QWidget* owner = widget->parentWidget(); owner != nullptr; owner = owner->parentWidget()) {
      if (auto* dialog = qobject_cast<DialogWindow*>(owner)) {
        const auto at = static_cast<std::size_t>(position.toInt());
        if (at < dialog->dialog().items.size()) return dialog->dialog().items[at]->varName;
        return std::nullopt;
      }
    }
  }
  return std::nullopt;
}

std::optional<std::string> ScriptViewsOfFrame::activeWindow() {
  QMdiSubWindow* window = area_.activeSubWindow();
  if (window == nullptr) return std::nullopt;
  if (auto* dialog = qobject_cast<DialogWindow*>(window->widget())) {
    return std::string(std::string_view(dialog->dialog().name));
  }
  if (auto* panel = qobject_cast<ListPanel*>(window->widget())) {
    return std::string(std::string_view(panel->list().name));
  }
  return std::nullopt;
}

}  // namespace zv::ui
