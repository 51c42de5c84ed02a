#pragma once
// The window of one dialog of a sheet: its fields at their places, in their fonts and colours,
// each tied to its variable. Typed values are stored when the field loses the focus; values that
// the engine changes appear in the fields through the variables' change callbacks.

#include <QColor>
#include <QFont>
#include <QWidget>
#include <vector>

#include "core/fileinfo.h"

namespace zv::ui {

class SheetView;
class ListPanel;

/// The property under which each control keeps its field's position in the dialog; the
/// control's identifier is 10000 plus it.
inline constexpr const char* kFieldPositionProperty = "zvFieldPosition";

class DialogWindow : public QWidget {
  Q_OBJECT
 public:
  DialogWindow(SheetView& view, int dialogIndex, QWidget* parent = nullptr);
  ~DialogWindow() override;

  DlgInfo& dialog() const { return dialog_; }
  int dialogIndex() const { return dialogIndex_; }
  /// The control of a field found by its variable name (ignoring case); null when none.
  QWidget* controlFor(std::string_view varName) const;
  /// The list panels of the dialog's `list` fields.
  std::vector<ListPanel*> listPanels() const;

  /// Stores the value of the field being edited, if it was modified.
  void commitPendingEdit();
  bool hasPendingEdit() const;
  /// Every field shows its variable's present value again.
  void refreshFields();
  /// Shows a field's present value, puts the focus in it and selects its text (Undo of its
  /// value brings it forward this way).
  void focusField(const DlgItem& item);
  /// The dialog's client size.
  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Field {
    DlgItem* item = nullptr;
    QWidget* control = nullptr;
    bool modified = false;
    bool defaultFontShowing = false;
  };

  void createFields();
  QWidget* createControl(DlgItem& item, int position);
  QWidget* createEdit(DlgItem& item, Field& field);
  QWidget* createCombo(DlgItem& item);
  void commit(Field& field);
  void showValue(Field& field);
  void applyDefaultFont(Field& field);
  QFont fieldFont(const DlgItem& item, QColor& colour) const;
  Field* fieldOf(const QObject* control);
  void watchVariable(Field& field);

  SheetView& view_;
  int dialogIndex_;
  DlgInfo& dialog_;
  QFont dialogFont_;
  QColor background_;
  std::vector<Field> fields_;
  bool committing_ = false;
};

}  // namespace zv::ui
