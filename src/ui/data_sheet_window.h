#pragma once
// The window of a data sheet opened as a document: a line about the file (game system, title,
// level, copyright) over a tree of its categories, their items and sublists, with each item's
// level and cost. It owns the document and asks before a changed one closes.

#include <QTreeWidget>
#include <QWidget>
#include <functional>
#include <memory>

#include "formats/data_sheet_document.h"

class QLabel;

namespace zv::ui {

class DataSheetWindow : public QWidget {
  Q_OBJECT
 public:
  /// Asked before the window closes; true lets it close (the frame saves on Yes).
  using CloseQuery = std::function<bool(DataSheetWindow&)>;

  explicit DataSheetWindow(std::unique_ptr<DataSheetDocument> document, QWidget* parent = nullptr);

  DataSheetDocument& document() { return *document_; }
  const DataSheetDocument& document() const { return *document_; }
  void setCloseQuery(CloseQuery query) { closeQuery_ = std::move(query); }

  /// Shows the document as it is now: the line about the file, the tree, the title (marked
  /// "*" while the document has unsaved changes).
  void refresh();
  /// The tree of categories and items.
  QTreeWidget* tree() const { return tree_; }
  /// The line about the file.
  QLabel* summary() const { return summary_; }

 signals:
  /// The window has agreed to close; the document is still there.
  void closing(DataSheetWindow* window);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void refreshTitle();

  std::unique_ptr<DataSheetDocument> document_;
  CloseQuery closeQuery_;
  QLabel* summary_ = nullptr;
  QTreeWidget* tree_ = nullptr;
};

/// The data sheet window of a window of the frame; null for other windows.
DataSheetWindow* dataSheetWindowOf(QWidget* window);

/// The texts of one row of the tree: name, level, cost. A category or sublist shows its member
/// count after its name ("Kits (3 items)"); an item its level text, and its cost formula, or its
/// fixed cost when it has no formula and the cost isn't 0.
QStringList dataSheetRowTexts(const Item& item);

}  // namespace zv::ui
