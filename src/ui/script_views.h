#pragma once
// The windows of the desktop program as scripts see them: the selected row of a list's window,
// the dialog field with the focus, the active dialog or list window ($+selectedIndex,
// $+currentField, $+currentWindow).

#include <QMdiArea>

#include "script/state/environment.h"

namespace zv::ui {

class ScriptViewsOfFrame : public script::ScriptViews {
 public:
  explicit ScriptViewsOfFrame(QMdiArea& area) : area_(area) {}
  int selectedRow(const ListInfo& list) override;
  std::optional<std::string> focusedField() override;
  std::optional<std::string> activeWindow() override;

 private:
  QMdiArea& area_;
};

}  // namespace zv::ui
