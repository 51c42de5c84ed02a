#pragma once
// A child window of the frame that shows one dialog or list of a sheet. It tells its sheet when
// it closes and keeps the place of the window in the sheet's record as it moves.

#include <QMdiSubWindow>

#include "ui/sheet_view.h"

namespace zv::ui {

class SheetSubWindow : public QMdiSubWindow {
  Q_OBJECT
 public:
  SheetSubWindow(SheetView& view, SheetWindowKind kind, int index);

  SheetView& view() const { return view_; }
  SheetWindowKind kind() const { return kind_; }
  int index() const { return index_; }
  bool isMainDialog() const { return kind_ == SheetWindowKind::Dialog && index_ == 0; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void recordPlace();

  SheetView& view_;
  SheetWindowKind kind_;
  int index_;
};

}  // namespace zv::ui
