#include "ui/select_item_dialog.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "core/engine_context.h"
#include "rules/selection/apply_rules.h"
#include "rules/selection/rule_library.h"
#include "rules/selection/take_item.h"
#include "ui/frame_geometry.h"
#include "ui/list_rows.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

/// Paints a row of the offer with its cost right-aligned behind the name.
class OfferedRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    const QString cost = index.data(SelectItemDialog::kCostRole).toString();
    if (cost.isEmpty()) return;
    painter->save();
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->setPen(selected ? option.palette.highlightedText().color()
                             : option.palette.text().color());
    painter->drawText(option.rect.adjusted(0, 0, -4, 0), Qt::AlignRight | Qt::AlignVCenter, cost);
    painter->restore();
  }
};

constexpr int kIndentBlanks = 4;  // a member of a group stands this far in per depth

// The rule sets of the sheet as a list of choices; OK stores the sheet's choice. True when it
// changed.
bool chooseSheetRuleSets(FileInfo& sheet, QWidget* parent) {
  ApplyRulesModel model(selectionRules(), sheet);
  QDialog dialog(parent);
  dialog.setWindowTitle(QObject::tr("Apply Rules"));
  auto* layout = new QVBoxLayout(&dialog);
  auto* list = new QListWidget;
  list->setObjectName("ruleSets");
  auto fill = [&] {
    list->clear();
    for (const RuleSetChoice& choice : model.choices()) {
      auto* entry = new QListWidgetItem(fromSystemText(choice.label), list);
      entry->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
      entry->setCheckState(choice.on ? Qt::Checked : Qt::Unchecked);
      entry->setToolTip(fromSystemText(choice.rules));
    }
  };
  fill();
  QObject::connect(list, &QListWidget::itemChanged, &dialog, [&](QListWidgetItem* entry) {
    int row = list->row(entry);
    if (row < 0 || static_cast<std::size_t>(row) >= model.choices().size()) return;
    bool on = entry->checkState() == Qt::Checked;
    if (model.choices()[static_cast<std::size_t>(row)].on == on) return;
    model.toggle(static_cast<std::size_t>(row));
    // A choice turns others off or on: show them all as they now stand.
    QSignalBlocker quiet(list);
    fill();
  });
  layout->addWidget(list);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return false;
  return model.apply(sheet);
}

}  // namespace

SelectItemDialog::SelectItemDialog(std::unique_ptr<ItemSelection> selection, CaretOf caret,
                                   Taken taken, std::optional<WindowRect>* rect, QWidget* parent)
    : QDialog(parent),
      selection_(std::move(selection)),
      caret_(std::move(caret)),
      taken_(std::move(taken)),
      rect_(rect) {
  setObjectName("selectItemDialog");
  setWindowTitle(fromSystemText(selection_->list().name.str()));
  auto* layout = new QVBoxLayout(this);

  auto* top = new QHBoxLayout;
  top->addWidget(new QLabel(tr("Category:")));
  category_ = new QComboBox;
  category_->setObjectName("category");
  for (const std::string& name : selection_->categoryChoices())
    category_->addItem(fromSystemText(name));
  category_->setCurrentText(fromSystemText(selection_->currentCategory()));
  top->addWidget(category_, 1);
  if (engine().preferences.applyRules) {
    auto* rules = new QPushButton(tr("&Rules..."));
    rules->setObjectName("rules");
    rules->setAutoDefault(false);
    connect(rules, &QPushButton::clicked, this, &SelectItemDialog::chooseRuleSets);
    top->addWidget(rules);
  }
  layout->addLayout(top);

  rows_ = new QListWidget;
  rows_->setObjectName("items");
  rows_->setSelectionMode(QAbstractItemView::SingleSelection);
  rows_->setItemDelegate(new OfferedRowDelegate(rows_));
  layout->addWidget(rows_, 1);

  auto* searchRow = new QHBoxLayout;
  search_ = new QLineEdit;
  search_->setObjectName("search");
  search_->setPlaceholderText(tr("Find"));
  auto* next = new QPushButton(tr("&Next"));
  auto* previous = new QPushButton(tr("&Previous"));
  next->setAutoDefault(false);
  previous->setAutoDefault(false);
  searchRow->addWidget(search_, 1);
  searchRow->addWidget(next);
  searchRow->addWidget(previous);
  layout->addLayout(searchRow);

  auto* buttons = new QDialogButtonBox;
  add_ = buttons->addButton(tr("&Add"), QDialogButtonBox::AcceptRole);
  add_->setObjectName("add");
  add_->setDefault(true);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  layout->addWidget(buttons);

  connect(category_, &QComboBox::currentIndexChanged, this, &SelectItemDialog::chooseCategory);
  connect(rows_, &QListWidget::itemActivated, this, [this] { takeCurrent(); });
  connect(add_, &QPushButton::clicked, this, [this] { takeCurrent(); });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  connect(next, &QPushButton::clicked, this, [this] { find(true); });
  connect(previous, &QPushButton::clicked, this, [this] { find(false); });
  connect(search_, &QLineEdit::textEdited, this, [this] { find(true); });

  fillRows();
  // Typing goes to the search field at once; the arrow keys there still move through the rows.
  search_->installEventFilter(this);
  search_->setFocus();
  resize(360, 420);
  if (rect_ != nullptr && rect_->has_value()) placeWindow(*this, *rect_, availableScreenArea());
}

SelectItemDialog::~SelectItemDialog() = default;

void SelectItemDialog::fillRows() {
  rows_->clear();
  for (const OfferedRow& row : selection_->rows()) {
    QString text = QString(row.depth * kIndentBlanks, ' ') + fromSystemText(row.item->name);
    auto* entry = new QListWidgetItem(text, rows_);
    entry->setData(SelectItemDialog::kCostRole, fromSystemText(offeredCostText(*row.item)));
    if (row.item->isSublist()) {
      QFont bold = entry->font();
      bold.setBold(true);
      entry->setFont(bold);
    }
  }
  if (rows_->count() > 0) rows_->setCurrentRow(0);
  add_->setEnabled(rows_->count() > 0);
}

void SelectItemDialog::chooseCategory(int index) {
  if (index < 0) return;
  selection_->chooseCategory(toSystemText(category_->itemText(index)));
  fillRows();
}

void SelectItemDialog::find(bool forward) {
  std::string text = toSystemText(search_->text());
  if (text.empty()) return;
  std::optional<std::size_t> from;
  if (rows_->currentRow() >= 0) from = static_cast<std::size_t>(rows_->currentRow());
  // Typing searches from the current row itself; the buttons go on past it.
  if (sender() == search_ && from && *from > 0) from = *from - 1;
  if (sender() == search_ && from && *from == 0) from.reset();
  std::optional<std::size_t> found =
      forward ? selection_->findNext(text, from) : selection_->findPrevious(text, from);
  if (found) rows_->setCurrentRow(static_cast<int>(*found));
}

void SelectItemDialog::chooseRuleSets() {
  if (!chooseSheetRuleSets(selection_->sheet(), this)) return;
  selection_->refresh();
  fillRows();
}

bool SelectItemDialog::takeCurrent() {
  int row = rows_->currentRow();
  if (row < 0 || static_cast<std::size_t>(row) >= selection_->rows().size()) return false;
  selection_->setCursor(caret_ ? caret_() : nullptr);
  TakeOutcome outcome = takeItem(*selection_, static_cast<std::size_t>(row), placeBehindCursor());
  if (outcome.result != TakeResult::Taken) return false;
  if (taken_) taken_(outcome.placed);
  if (outcome.close) {
    accept();
    return true;
  }
  // Ready for the next name.
  search_->setFocus();
  search_->selectAll();
  return true;
}

bool SelectItemDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == search_ && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_PageUp:
      case Qt::Key_PageDown:
        QCoreApplication::sendEvent(rows_, event);
        return true;
      default:
        break;
    }
  }
  return QDialog::eventFilter(watched, event);
}

void SelectItemDialog::done(int result) {
  if (rect_ != nullptr) *rect_ = windowRectOf(*this);
  QDialog::done(result);
}

}  // namespace zv::ui
