#pragma once
// A list as the user sees it, in a list window or in a dialog's `list` field: an optional header
// line, the rows (items with their name, cost and level columns; sublists that open and close),
// and the total line with its prompt. Selection is read-only for now.

#include <QAbstractListModel>
#include <QListView>
#include <QStyledItemDelegate>
#include <QWidget>

#include "core/list_info.h"
#include "ui/list_rows.h"

namespace zv::ui {

class SheetView;

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

  /// The rows and the total again, after a change.
  void refresh();
  /// Runs a command of the list on the caret row; false for one it doesn't serve.
  bool runCommand(int command);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void layoutParts();
  int lineHeight() const;
  int headerHeight() const;
  int totalHeight() const;

  SheetView& view_;
  ListInfo& list_;
  ListRowsModel* model_ = nullptr;
  QListView* rows_ = nullptr;
  int altIndex_ = 0;
};

}  // namespace zv::ui
