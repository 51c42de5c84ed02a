#pragma once
// The Select Item dialog: the master items that a list's category offers (members of groups
// indented), the category choice with "(All)", a search by a part of the name, the sheet's rule
// sets when ApplyRules is on, and Add, which takes the chosen row's item into the list at its
// caret. The dialog keeps its place in the setting "selectItemDlgRect".

#include <QDialog>
#include <functional>
#include <memory>
#include <optional>

#include "core/window_rect.h"
#include "rules/selection/select_item.h"

class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace zv::ui {

class SelectItemDialog : public QDialog {
  Q_OBJECT
 public:
  /// The list window's caret item (where items go; null for the end), read at each take.
  using CaretOf = std::function<Item*()>;
  /// Called with each item placed in the list.
  using Taken = std::function<void(Item* placed)>;

  /// Opens over an opened selection. `rect` is the kept rectangle of the dialog (may be null).
  SelectItemDialog(std::unique_ptr<ItemSelection> selection, CaretOf caret, Taken taken,
                   std::optional<WindowRect>* rect, QWidget* parent = nullptr);
  ~SelectItemDialog() override;

  ItemSelection& selection() { return *selection_; }
  QComboBox* categoryBox() const { return category_; }
  QListWidget* rowsList() const { return rows_; }
  /// The data of a row that holds the cost shown at its right edge (empty when none is shown).
  static constexpr int kCostRole = Qt::UserRole + 1;
  QLineEdit* searchField() const { return search_; }
  QPushButton* addButton() const { return add_; }

  /// Takes the item of the current row; true when it was placed.
  bool takeCurrent();

 protected:
  void done(int result) override;
  /// The search field passes the keys that move through rows on to the rows.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fillRows();
  void chooseCategory(int index);
  void find(bool forward);
  void chooseRuleSets();

  std::unique_ptr<ItemSelection> selection_;
  CaretOf caret_;
  Taken taken_;
  std::optional<WindowRect>* rect_ = nullptr;
  QComboBox* category_ = nullptr;
  QListWidget* rows_ = nullptr;
  QLineEdit* search_ = nullptr;
  QPushButton* add_ = nullptr;
};

}  // namespace zv::ui
