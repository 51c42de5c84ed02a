#include "ui/list_summary.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/value/categories.h"
#include "ui/text_codec.h"

namespace zv::ui {

ListSummary summarizeList(const ListInfo& list) {
  std::vector<Item*> items;
  items.reserve(list.items.size());
  for (const auto& item : list.items)
    items.push_back(item.get());
  std::vector<CategoryTotal> totals = categoryTotals(items);
  std::sort(totals.begin(), totals.end(), [](const CategoryTotal& a, const CategoryTotal& b) {
    return compareIgnoringCase(a.category, b.category) < 0;
  });
  ListSummary summary;
  long counted = 0;
  for (const CategoryTotal& total : totals) {
    summary.rows.push_back(
        strprintf("%d\t%s (%s)", total.count, total.category, formatFloat(total.cost)));
    counted += total.count;
  }
  const long listed = static_cast<long>(items.size());
  if (counted < listed)
    summary.rows.push_back(strprintf("%ld\t(In no category)", listed - counted));
  summary.countLine =
      strprintf("%ld items in %d categories", listed, static_cast<int>(totals.size()));
  return summary;
}

void showListSummary(QWidget* parent, FileInfo& sheet, ListInfo& list) {
  QDialog dialog(parent);
  dialog.setObjectName("listSummaryDlg");
  auto* layout = new QVBoxLayout(&dialog);
  auto* lists = new QComboBox(&dialog);
  lists->setObjectName("lists");
  const std::vector<ListInfo*> all = sheet.allLists();
  for (ListInfo* each : all)
    lists->addItem(fromSystemText(each->name.str()));
  auto* rows = new QListWidget(&dialog);
  rows->setObjectName("summary");
  auto* count = new QLabel(&dialog);
  count->setObjectName("count");
  layout->addWidget(lists);
  layout->addWidget(rows, 1);
  layout->addWidget(count);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  layout->addWidget(buttons);
  auto show = [&](int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= all.size()) return;
    const ListInfo& shown = *all[static_cast<std::size_t>(index)];
    const ListSummary summary = summarizeList(shown);
    rows->clear();
    for (const std::string& row : summary.rows)
      rows->addItem(fromSystemText(row));
    count->setText(fromSystemText(summary.countLine));
    dialog.setWindowTitle(fromSystemText(shown.name.str()));
  };
  const auto at = std::find(all.begin(), all.end(), &list);
  const int current = at != all.end() ? static_cast<int>(at - all.begin()) : 0;
  lists->setCurrentIndex(current);
  show(current);
  QObject::connect(lists, &QComboBox::currentIndexChanged, &dialog, show);
  dialog.resize(320, 300);
  dialog.exec();
}

}  // namespace zv::ui
