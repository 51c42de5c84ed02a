#pragma once
// A list as the user sees it, in a list window or in a dialog's `list` field: an optional header
// line, the rows (items with their name, cost and level columns; sublists that open and close),
// and the total line with its prompt. The commands of a list run here on the caret row and the
// selected rows: Select Item, Delete, Modify (level entry), Add 1 and Subtract 1, Move Up and
// Move Down, Show Requirements.

#include <QAbstractListModel>
#include <QListView>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QWidget>
#include <memory>
#include <vector>

#include "core/list_info.h"
#include "ui/list_rows.h"
#include "ui/select_item_dialog.h"
#include "ui/type_ahead.h"

class QMenu;

namespace zv::ui {

class SheetView;
class SelectItemDialog;

/// The rows of a list for a Qt view; each row's data is the item it shows.
class ListRowsModel : public QAbstractListModel {
  Q_OBJECT
 public:
  explicit ListRowsModel(ListInfo& list, QObject* parent = nullptr);
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Item* itemAt(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  /// Fills the rows afresh from the list.
  void reload();
  /// Opens or closes the sublist of `row`; false when the row isn't a sublist.
  bool toggle(int row);
  ListInfo& list() const { return list_; }

 private:
  ListInfo& list_;
  ListRows rows_;
};

/// Draws a row: tree lines, the sublist box, the name (cut with "..."), cost and level.
class ListRowDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

class ListPanel : public QWidget {
  Q_OBJECT
 public:
  ListPanel(SheetView& view, ListInfo& list, QWidget* parent = nullptr);
  ~ListPanel() override;

  ListInfo& list() const { return list_; }
  QListView* rowsView() const { return rows_; }
  ListRowsModel* model() const { return model_; }
  /// The text of the total line as shown: the prompt and the total.
  QString totalLineText() const;

  /// The rows and the total again, after a change; the selected items stay selected.
  void refresh();
  /// Runs a command of the list on the caret row; false for one it doesn't serve.
  bool runCommand(int command);
  /// Whether the menus enable a command of the list for the rows selected now.
  bool commandEnabled(int command) const;

  /// The item of the caret row; null when there is none.
  Item* caretItem() const;
  /// The selected items, top to bottom.
  std::vector<Item*> selectedItems() const;
  /// Selects the visible rows `first` to `last` and puts the caret on `first`.
  void selectRows(int first, int last);
  /// Makes an item the only selected row, with the caret on it.
  void selectItem(const Item* item);
  /// The pop-up of the list's commands (the right button's menu): the list entries of the Tools
  /// menu, each enabled as the menus would enable it for the rows selected now.
  std::unique_ptr<QMenu> commandsPopup();
  /// The Select Item dialog while it is open.
  SelectItemDialog* selectItemDialog() const { return selectDialog_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void layoutParts();
  void openSelection(bool masterList);
  void deleteSelected();
  void modifyCaret();
  /// Notes (1117): the caret item's notes in a box titled by its name; a changed text marks the
  /// sheet changed.
  void editNotes();
  /// Sort (1100): asks for the sort's choices and sorts the caret's chain; the caret goes to the
  /// first row.
  void sortCaretChain();
  void stepCaret(int step);
  void moveCaret(int direction);
  void showRequirements();
  /// A double click at `point` of the rows: an empty place selects an item, a sublist's box
  /// opens or closes it, any other row is modified.
  void doubleClickAt(QPoint point);
  /// A printable key: the type-ahead moves the caret to the next row whose name begins with the
  /// keys typed since the selection last changed.
  void typeAheadKey(char key);
  int lineHeight() const;
  int headerHeight() const;
  int totalHeight() const;

  SheetView& view_;
  ListInfo& list_;
  ListRowsModel* model_ = nullptr;
  QListView* rows_ = nullptr;
  int altIndex_ = 0;
  bool inDialog_ = false;  ///< a dialog's `list` field rather than a list window
  QPointer<SelectItemDialog> selectDialog_;
  TypeAhead typeAhead_;
  bool typing_ = false;  ///< the type-ahead itself is moving the selection
};

}  // namespace zv::ui
