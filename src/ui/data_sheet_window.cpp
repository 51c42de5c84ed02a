#include "ui/data_sheet_window.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMdiSubWindow>
#include <QVBoxLayout>

#include "core/numbers.h"
#include "core/strfmt.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

void addRows(QTreeWidgetItem* parent, const ItemChain& chain) {
  for (const auto& item : chain) {
    auto* row = new QTreeWidgetItem(parent, dataSheetRowTexts(*item));
    if (item->isSublist()) addRows(row, item->children);
  }
}

}  // namespace

QStringList dataSheetRowTexts(const Item& item) {
  QStringList texts;
  if (item.isSublist()) {
    const int count = static_cast<int>(item.children.size());
    texts << fromSystemText(count == 1 ? item.name + " (1 item)"
                                       : strprintf("%s (%d items)", item.name, count))
          << QString();
  } else {
    texts << fromSystemText(item.name) << fromSystemText(item.level);
  }
  if (!item.formula.empty()) {
    texts << fromSystemText(item.formula);
  } else if (!item.isSublist() && item.cost != 0.0) {
    texts << fromSystemText(formatFloat(item.cost));
  } else {
    texts << QString();
  }
  return texts;
}

DataSheetWindow::DataSheetWindow(std::unique_ptr<DataSheetDocument> document, QWidget* parent)
    : QWidget(parent), document_(std::move(document)) {
  setObjectName("dataSheetWindow");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  summary_ = new QLabel(this);
  summary_->setObjectName("summary");
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  layout->addWidget(summary_);
  tree_ = new QTreeWidget(this);
  tree_->setObjectName("categories");
  tree_->setColumnCount(3);
  tree_->setHeaderLabels({tr("Name"), tr("Level"), tr("Cost")});
  tree_->setUniformRowHeights(true);
  tree_->header()->setStretchLastSection(true);
  layout->addWidget(tree_);
  refresh();
}

void DataSheetWindow::refresh() {
  const FileInfo& record = document_->record();
  std::string line = strprintf("Game system: %s    Level: %d", record.gameSystemName.str(),
                               static_cast<int>(record.level));
  if (!record.title.empty()) line = record.title + "\n" + line;
  if (!record.copyright.empty()) line += "\n" + record.copyright;
  summary_->setText(fromSystemText(line));

  tree_->clear();
  for (const auto& category : document_->root().items) {
    auto* row = new QTreeWidgetItem(tree_, dataSheetRowTexts(*category));
    QFont bold = row->font(0);
    bold.setBold(true);
    row->setFont(0, bold);
    addRows(row, category->children);
  }
  // A lone category shows its items at once; several show their names first.
  if (tree_->topLevelItemCount() == 1) tree_->topLevelItem(0)->setExpanded(true);
  tree_->resizeColumnToContents(0);
  refreshTitle();
}

void DataSheetWindow::refreshTitle() {
  setWindowTitle(fromSystemText(document_->record().name.str()) + "[*]");
  setWindowModified(document_->record().changed());
  setWindowFilePath(fromNativePath(document_->record().path.str()));
}

void DataSheetWindow::closeEvent(QCloseEvent* event) {
  if (closeQuery_ && !closeQuery_(*this)) {
    refreshTitle();
    event->ignore();
    return;
  }
  emit closing(this);
  event->accept();
}

DataSheetWindow* dataSheetWindowOf(QWidget* window) {
  if (auto* sub = qobject_cast<QMdiSubWindow*>(window)) window = sub->widget();
  return qobject_cast<DataSheetWindow*>(window);
}

}  // namespace zv::ui
