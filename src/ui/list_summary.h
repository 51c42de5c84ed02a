#pragma once
// List Summary: the items of a list counted by category with their cost totals, and the window
// that shows it for any list of the sheet.

#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/list_info.h"

class QWidget;

namespace zv::ui {

struct ListSummary {
  /// "%d\t%s (%s)" per category (count, category, cost total), sorted by category ignoring case;
  /// then "%d\t(In no category)" when the categories hold fewer items than the list.
  std::vector<std::string> rows;
  std::string countLine;  ///< "%d items in %d categories"
};

/// The summary of the elements of a list's own chain.
ListSummary summarizeList(const ListInfo& list);

/// The summary window of `list`, titled by its name; a box offers every list of the sheet (its
/// lists, then the list fields of its dialogs) and shows the one picked.
void showListSummary(QWidget* parent, FileInfo& sheet, ListInfo& list);

}  // namespace zv::ui
