#pragma once
// The requirements dialog in a window: one row for each requirement of an item, ticked when it
// holds, the "--- OR ---" and "--- THEN ---" rows between them, the note under them, and OK,
// Satisfy and Cancel. Satisfy adds what is missing and shows the rows afresh.

#include <QDialog>

#include "rules/requirements/prereq_dialog.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace zv::ui {

class RequirementsWindow : public QDialog {
  Q_OBJECT
 public:
  RequirementsWindow(RequirementsDialog& model, PlaceItem place, QWidget* parent = nullptr);

  QListWidget* rowsList() const { return rows_; }
  QPushButton* satisfyButton() const { return satisfy_; }
  /// Satisfy: tries the requirements that don't hold, then shows the rows again.
  void satisfy();

 private:
  void fillRows();

  RequirementsDialog& model_;
  PlaceItem place_;
  QListWidget* rows_ = nullptr;
  QLabel* note_ = nullptr;
  QPushButton* satisfy_ = nullptr;
};

/// Runs the window until OK or Cancel: the requirements dialog that the desktop program puts in
/// the engine context.
PrereqDialogAnswer runRequirementsWindow(RequirementsDialog& model, const PlaceItem& place);

}  // namespace zv::ui
