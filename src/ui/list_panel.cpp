#include "ui/list_panel.h"

#include <QContextMenuEvent>

#include <QMenu>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "core/host.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/text.h"
#include "rules/value/edit.h"
#include "rules/lists/list_ops.h"
#include "rules/lists/list_sort.h"
#include "rules/lists/list_undo.h"
#include "rules/lists/place_item.h"
#include "rules/requirements/prereq_dialog.h"
#include "ui/command_table.h"
#include "ui/field_geometry.h"
#include "ui/list_commands.h"
#include "ui/list_summary.h"
#include "ui/select_item_dialog.h"
#include "ui/sheet_view.h"
#include "ui/sort_dialog.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {
/// The tab stop of the notes box, in pixels.
constexpr qreal kNotesTabStop = 32;
}  // namespace

namespace {

constexpr int kIndentPerDepth = 16;
constexpr int kTreeLineOffset = 12;
constexpr int kTreeStub = 8;
constexpr int kBoxSize = 9;
constexpr int kBoxGap = 4;
constexpr int kBoxHitMargin = 8;  // a double click this far right of a sublist's box still toggles
constexpr int kLargeStep = 5;     // Add 1 and Subtract 1 with Shift held

bool isLastSibling(const Item& item) {
  if (item.parent != nullptr)
    return !item.parent->children.empty() && item.parent->children.back().get() == &item;
  return item.list != nullptr && !item.list->items.empty() &&
         item.list->items.back().get() == &item;
}

// A text cut to what fits in `width`, with "..." added.
QString fitted(const QString& text, const QFontMetrics& metrics, int width) {
  if (metrics.horizontalAdvance(text) <= width) return text;
  QString cut = text;
  while (!cut.isEmpty() && metrics.horizontalAdvance(cut + "...") > width)
    cut.chop(1);
  return cut + "...";
}

void drawTreeLines(QPainter& painter, const QRect& rect, const Item& item) {
  if (item.depth <= 0) return;
  int middle = rect.top() + rect.height() / 2;
  int x = rect.left() + (item.depth - 1) * kIndentPerDepth + kTreeLineOffset;
  painter.drawLine(x, rect.top(), x, isLastSibling(item) ? middle : rect.bottom());
  painter.drawLine(x, middle, x + kTreeStub, middle);
  // The lines of the enclosing levels go on past this row while their sublists have more rows.
  for (const Item* above = item.parent; above != nullptr && above->depth > 0;
       above = above->parent) {
    if (isLastSibling(*above)) continue;
    int ax = rect.left() + (above->depth - 1) * kIndentPerDepth + kTreeLineOffset;
    painter.drawLine(ax, rect.top(), ax, rect.bottom());
  }
}

void drawBox(QPainter& painter, const QRect& box, bool open) {
  painter.drawRect(box.adjusted(0, 0, -1, -1));
  int middle = box.top() + box.height() / 2;
  painter.drawLine(box.left() + 2, middle, box.right() - 2, middle);
  if (!open) {
    int centre = box.left() + box.width() / 2;
    painter.drawLine(centre, box.top() + 2, centre, box.bottom() - 2);
  }
}

}  // namespace

ListRowsModel::ListRowsModel(ListInfo& list, QObject* parent)
    : QAbstractListModel(parent), list_(list) {
  rows_.fill(list_);
}

int ListRowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ListRowsModel::data(const QModelIndex& index, int role) const {
  Item* item = itemAt(index.row());
  if (item == nullptr) return {};
  if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
    return fromSystemText(rowCells(*item).name);
  return {};
}

void ListRowsModel::reload() {
  beginResetModel();
  rows_.fill(list_);
  endResetModel();
}

bool ListRowsModel::toggle(int row) {
  Item* sublist = itemAt(row);
  if (sublist == nullptr || !sublist->isSublist()) return false;
  // Rows change with drawing held, so the view repaints once.
  beginResetModel();
  rows_.toggle(static_cast<std::size_t>(row));
  endResetModel();
  return true;
}

void ListRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  const auto* model = static_cast<const ListRowsModel*>(index.model());
  const Item* item = model->itemAt(index.row());
  if (item == nullptr) return;
  painter->save();
  const QPalette& colours = option.palette;
  bool selected = option.state.testFlag(QStyle::State_Selected);
  bool focused = option.state.testFlag(QStyle::State_Active) && option.widget != nullptr &&
                 option.widget->hasFocus();
  QColor text = colours.color(QPalette::Text);
  if (selected) {
    painter->fillRect(option.rect, focused ? colours.color(QPalette::Highlight)
                                           : colours.color(QPalette::Button));
    text = focused ? colours.color(QPalette::HighlightedText) : colours.color(QPalette::ButtonText);
  } else if (!item->inTotal()) {
    QColor grey = colours.color(QPalette::Disabled, QPalette::Text);
    if (grey != colours.color(QPalette::Base)) text = grey;
  }
  painter->setPen(colours.color(QPalette::Mid));
  drawTreeLines(*painter, option.rect, *item);
  painter->setPen(text);

  int x = option.rect.left() + item->depth * kIndentPerDepth + 4;
  if (item->isSublist()) {
    QRect box(x, option.rect.top() + (option.rect.height() - kBoxSize) / 2, kBoxSize, kBoxSize);
    drawBox(*painter, box, item->open());
    x += kBoxSize + kBoxGap;
  }
  QFontMetrics metrics(option.font);
  int charWidth = std::max(1, metrics.averageCharWidth());
  RowCells cells = rowCells(*item);
  int right = option.rect.right() - 4;
  int levelWidth = cells.hasLevel ? 8 * charWidth : 0;
  int costWidth = 7 * charWidth;
  QRect levelRect(right - levelWidth, option.rect.top(), levelWidth, option.rect.height());
  QRect costRect(levelRect.left() - costWidth, option.rect.top(), costWidth, option.rect.height());
  QRect nameRect(x, option.rect.top(), std::max(0, costRect.left() - x - charWidth),
                 option.rect.height());
  painter->setFont(option.font);
  painter->drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                    fitted(fromSystemText(cells.name), metrics, nameRect.width()));
  painter->drawText(costRect, Qt::AlignRight | Qt::AlignVCenter,
                    fitted(fromSystemText(cells.cost), metrics, costRect.width()));
  if (cells.hasLevel) {
    painter->drawText(levelRect, Qt::AlignRight | Qt::AlignVCenter,
                      fitted(fromSystemText(cells.level), metrics, levelRect.width()));
  }
  painter->restore();
}

QSize ListRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
  int height = std::max(QFontMetrics(option.font).height(), kBoxSize + 2);
  return {option.rect.width(), height};
}

ListPanel::ListPanel(SheetView& view, ListInfo& list, QWidget* parent)
    : QWidget(parent), view_(view), list_(list), inDialog_(parent != nullptr) {
  setObjectName(fromSystemText(list.name.str()));
  FontStyle style = fontStyleOf(list.font.fontSize);
  if (style.present()) {
    QFont font(fromSystemText(list.font.fontFace.str()));
    font.setPixelSize(std::max(1, fontPixelHeight(style.points, host().screenPixelsPerInch().y)));
    font.setBold(style.bold);
    font.setItalic(style.italic);
    font.setUnderline(style.underline);
    font.setStrikeOut(style.strikeOut);
    setFont(font);
    if (list.font.fontColor != 0) {
      Rgb rgb = rgbOf(list.font.fontColor);
      QPalette colours = palette();
      colours.setColor(QPalette::Text, QColor(rgb.red, rgb.green, rgb.blue));
      setPalette(colours);
    }
  }
  model_ = new ListRowsModel(list_, this);
  rows_ = new QListView(this);
  rows_->setObjectName("rows");
  rows_->setModel(model_);
  rows_->setItemDelegate(new ListRowDelegate(rows_));
  rows_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  rows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  rows_->setUniformItemSizes(true);
  rows_->setFrameStyle(listHeaderText(list_, altIndex_).empty() ? QFrame::NoFrame
                                                                : QFrame::StyledPanel);
  rows_->installEventFilter(this);
  rows_->viewport()->installEventFilter(this);
  if (model_->rowCount() > 0) rows_->setCurrentIndex(model_->index(0));
  connect(rows_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (!typing_) typeAhead_.clear();
  });
  list_.window = this;
  layoutParts();
}

ListPanel::~ListPanel() {
  if (list_.window == this) list_.window = nullptr;
}

int ListPanel::lineHeight() const {
  return std::max(QFontMetrics(font()).height(), kBoxSize + 2);
}

int ListPanel::headerHeight() const {
  return listHeaderText(list_, altIndex_).empty() ? 0 : lineHeight() + 2;
}

int ListPanel::totalHeight() const {
  return hasTotalLine(list_) ? lineHeight() + lineHeight() / 2 : 0;
}

void ListPanel::layoutParts() {
  int top = headerHeight();
  rows_->setGeometry(0, top, width(), std::max(0, height() - top - totalHeight()));
}

void ListPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layoutParts();
}

QString ListPanel::totalLineText() const {
  if (!hasTotalLine(list_)) return {};
  return fromSystemText(list_.listPrompt.str()) + " " + fromSystemText(totalText(list_));
}

void ListPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window));
  painter.setPen(palette().color(QPalette::WindowText));
  int line = lineHeight();
  int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  std::string header = listHeaderText(list_, altIndex_);
  if (!header.empty()) {
    QRect strip(5, 0, std::max(0, width() - 5 - scrollBar), line + 2);
    painter.drawText(strip, Qt::AlignLeft | Qt::AlignVCenter, fromSystemText(header));
  }
  if (hasTotalLine(list_)) {
    int top = height() - line - line / 4;
    int right = width() - 4 - (header.empty() ? 0 : scrollBar);
    QRect strip(4, top, std::max(0, right - 4), line);
    painter.drawText(strip, Qt::AlignLeft | Qt::AlignVCenter,
                     fromSystemText(list_.listPrompt.str()));
    painter.drawText(strip, Qt::AlignRight | Qt::AlignVCenter, fromSystemText(totalText(list_)));
  }
}

void ListPanel::refresh() {
  std::vector<Item*> selected = selectedItems();
  Item* caret = caretItem();
  int current = rows_->currentIndex().row();
  model_->reload();
  int count = model_->rowCount();
  if (count > 0) {
    int caretRow = -1;
    for (int row = 0; row < count && caret != nullptr; ++row) {
      if (model_->itemAt(row) == caret) caretRow = row;
    }
    if (caretRow < 0) caretRow = std::clamp(current, 0, count - 1);
    rows_->selectionModel()->setCurrentIndex(model_->index(caretRow),
                                             QItemSelectionModel::NoUpdate);
    QItemSelection keep;
    for (int row = 0; row < count; ++row) {
      if (std::find(selected.begin(), selected.end(), model_->itemAt(row)) != selected.end())
        keep.select(model_->index(row), model_->index(row));
    }
    if (keep.isEmpty()) keep.select(model_->index(caretRow), model_->index(caretRow));
    rows_->selectionModel()->select(keep, QItemSelectionModel::ClearAndSelect);
  }
  update();
}

Item* ListPanel::caretItem() const {
  int row = rows_->currentIndex().row();
  return row >= 0 && row < model_->rowCount() ? model_->itemAt(row) : nullptr;
}

std::vector<Item*> ListPanel::selectedItems() const {
  std::vector<int> rows;
  for (const QModelIndex& index : rows_->selectionModel()->selectedRows())
    rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  std::vector<Item*> items;
  for (int row : rows) {
    if (row < model_->rowCount()) items.push_back(model_->itemAt(row));
  }
  return items;
}

void ListPanel::selectRows(int first, int last) {
  int count = model_->rowCount();
  if (count == 0 || first < 0) return;
  first = std::min(first, count - 1);
  last = std::clamp(last, first, count - 1);
  rows_->selectionModel()->setCurrentIndex(model_->index(first), QItemSelectionModel::NoUpdate);
  rows_->selectionModel()->select(QItemSelection(model_->index(first), model_->index(last)),
                                  QItemSelectionModel::ClearAndSelect);
  rows_->scrollTo(model_->index(first));
}

void ListPanel::selectItem(const Item* item) {
  for (int row = 0; row < model_->rowCount(); ++row) {
    if (model_->itemAt(row) == item) selectRows(row, row);
  }
}

bool ListPanel::commandEnabled(int command) const {
  return listCommandEnabled(command, list_, selectedItems(),
                            static_cast<std::size_t>(model_->rowCount()));
}

bool ListPanel::runCommand(int command) {
  switch (command) {
    case kToolsOpenCloseSublist: {
      int row = rows_->currentIndex().row();
      if (row < 0) return true;
      if (model_->toggle(row)) {
        selectRows(row, row);
      } else {
        modifyCaret();
      }
      return true;
    }
    case kToolsModify:
      modifyCaret();
      return true;
    case kToolsNotes:
      editNotes();
      return true;
    case kToolsSort:
      sortCaretChain();
      return true;
    case kToolsListSummary:
      if (commandEnabled(command)) showListSummary(this, view_.sheet(), list_);
      return true;
    case kToolsSelectItem:
    case kToolsSelectFromMasterList:
      if (commandEnabled(command)) openSelection(command == kToolsSelectFromMasterList);
      return true;
    case kEditClear:
    case kToolsDeleteItem:
      deleteSelected();
      return true;
    case kEditSelectAll:
      if (model_->rowCount() > 0) selectRows(0, model_->rowCount() - 1);
      return true;
    case kToolsAdd1:
    case kToolsSubtract1:
      stepCaret(command == kToolsAdd1 ? 1 : -1);
      return true;
    case kToolsMoveUp:
    case kToolsMoveDown:
      moveCaret(command == kToolsMoveUp ? -1 : 1);
      return true;
    case kToolsShowRequirements:
      showRequirements();
      return true;
    case kEditUndo:
      view_.undo();
      return true;
    case kUtilitiesRecalculate:
      view_.recalculate();
      return true;
    default:
      return false;
  }
}

void ListPanel::openSelection(bool masterList) {
  if (selectDialog_) {
    selectDialog_->raise();
    selectDialog_->activateWindow();
    return;
  }
  view_.commitPendingEdit();
  auto selection = std::make_unique<ItemSelection>();
  SelectionRequest request;
  request.sheet = &view_.sheet();
  request.list = &list_;
  request.cursor = caretItem();
  request.masterList = masterList;
  if (!selection->open(request) || !selection->checkItemsLeft()) return;
  std::optional<WindowRect>* rect =
      view_.appSettings != nullptr ? &view_.appSettings->selectItemDlgRect : nullptr;
  auto* dialog = new SelectItemDialog(
      std::move(selection), [this] { return caretItem(); },
      [this](Item* placed) {
        view_.refreshAfterEdit();
        view_.refreshTitles();
        selectItem(placed);
      },
      rect, this);
  dialog->setWindowFlag(Qt::Dialog);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // While it is open the sheet stays as the dialog found it, apart from what it adds.
  dialog->setWindowModality(Qt::ApplicationModal);
  selectDialog_ = dialog;
  // The keys go back to the rows, where the items taken stand selected.
  connect(dialog, &QDialog::finished, this, [this] { rows_->setFocus(); });
  dialog->show();
}

void ListPanel::deleteSelected() {
  std::vector<Item*> items = selectedItems();
  if (items.empty()) return;
  view_.commitPendingEdit();
  FileInfo& sheet = view_.sheet();
  const AppSettings* settings = view_.appSettings;
  bool confirm = settings == nullptr || settings->confirmMultipleDeletions;
  if (items.size() > 1 && confirm &&
      askQuestion(kConfirmDeletionTitle, confirmDeletionText(items.size()), ButtonSet::YesNo,
                  Button::Yes) != Button::Yes) {
    return;
  }
  bool keepAssociated = false;
  bool asks = std::any_of(items.begin(), items.end(),
                          [&](Item* item) { return asksAboutAutomaticChildren(sheet, *item); });
  if (asks) {
    Button answer = askQuestion(kDeleteAssociatedTitle, kDeleteAssociatedText,
                                ButtonSet::YesNoCancel, Button::Yes);
    if (answer == Button::Cancel) return;
    keepAssociated = answer == Button::No;
  }
  long maxUndo = settings != nullptr ? settings->maxUndo : kDefaultMaxUndo;
  DeleteOutcome outcome = deleteItems(sheet, list_, items, keepAssociated, maxUndo);
  view_.refreshAfterEdit();
  view_.refreshTitles();
  if (outcome.deleted && outcome.row >= 0) selectRows(outcome.row, outcome.row);
}

void ListPanel::modifyCaret() {
  Item* item = caretItem();
  if (item == nullptr) return;
  view_.commitPendingEdit();
  FileInfo& sheet = view_.sheet();
  bool byLevel = !item->isSublist() && (!item->level.empty() || item->levelSymbol != nullptr);
  if (item->isSublist() && !item->setListCost()) return;
  std::string prompt = byLevel ? list_.levelPrompt.str() : list_.costPrompt.str();
  if (prompt.empty()) prompt = byLevel ? "Level" : "Cost";
  // An item at its default has no level text of its own: the box starts at its value.
  std::string initial = !byLevel              ? formatFloat(item->cost)
                        : item->level.empty() ? valueToText(item->value)
                                              : item->level;
  std::optional<std::string> typed = host().enterValue(item->name, prompt, initial);
  if (!typed || *typed == initial) return;
  if (byLevel) {
    changeItemLevel(sheet, *item, *typed);
  } else {
    changeItemCost(sheet, *item, *typed);
  }
  view_.refreshAfterEdit();
  view_.refreshTitles();
}

void ListPanel::editNotes() {
  Item* item = caretItem();
  if (item == nullptr) return;
  view_.commitPendingEdit();
  QDialog dialog(this);
  dialog.setObjectName("itemNotes");
  dialog.setWindowTitle(fromSystemText(item->name));
  auto* layout = new QVBoxLayout(&dialog);
  auto* text = new QPlainTextEdit(&dialog);
  text->setObjectName("notes");
  text->setPlainText(fromSystemText(replaceAll(item->notes, "\r\n", "\n")));
  text->setTabStopDistance(kNotesTabStop);
  layout->addWidget(text);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout->addWidget(buttons);
  dialog.resize(360, 240);
  if (dialog.exec() != QDialog::Accepted) return;
  // The sheet keeps line ends as CR LF, as its files do.
  std::string notes = replaceAll(toSystemText(text->toPlainText()), "\n", "\r\n");
  if (notes == item->notes) return;
  item->notes = std::move(notes);
  setChanged(view_.sheet(), true);
  view_.refreshTitles();
}

void ListPanel::sortCaretChain() {
  if (!commandEnabled(kToolsSort)) return;
  view_.commitPendingEdit();
  std::optional<SortSettings> choices = askSortSettings(this, view_.settings);
  if (!choices) return;
  sortChain(view_.sheet(), list_, caretItem(), *choices);
  view_.refreshAfterEdit();
  view_.refreshTitles();
  selectRows(0, 0);
}

void ListPanel::stepCaret(int step) {
  Item* item = caretItem();
  if (item == nullptr || !commandEnabled(kToolsAdd1)) return;
  view_.commitPendingEdit();
  stepItemLevel(view_.sheet(), *item, step);
  view_.refreshAfterEdit();
  view_.refreshTitles();
}

void ListPanel::moveCaret(int direction) {
  Item* item = caretItem();
  if (item == nullptr) return;
  view_.commitPendingEdit();
  int row = moveElement(view_.sheet(), list_, *item, direction);
  view_.refreshAfterEdit();
  view_.refreshTitles();
  if (row >= 0) selectItem(item);
}

void ListPanel::showRequirements() {
  Item* item = caretItem();
  if (item == nullptr || !commandEnabled(kToolsShowRequirements)) return;
  view_.commitPendingEdit();
  RequirementsDialog dialog(view_.sheet(), &list_, *item, false);
  if (!dialog.readable()) return;
  runRequirementsDialog(dialog, placeBehindCursor());
  view_.refreshAfterEdit();
  view_.refreshTitles();
}

void ListPanel::doubleClickAt(QPoint point) {
  QModelIndex index = rows_->indexAt(point);
  if (!index.isValid()) {
    runCommand(kToolsSelectItem);
    return;
  }
  selectRows(index.row(), index.row());
  Item* item = model_->itemAt(index.row());
  if (!inDialog_ && item->isSublist()) {
    int boxEdge = item->depth * kIndentPerDepth + kBoxSize + kBoxHitMargin;
    runCommand(point.x() < boxEdge ? kToolsOpenCloseSublist : kToolsModify);
    return;
  }
  runCommand(kToolsOpenCloseSublist);
}

std::unique_ptr<QMenu> ListPanel::commandsPopup() {
  auto popup = std::make_unique<QMenu>();
  popup->setObjectName("listTools");
  for (const MenuEntry& entry : toolsMenu()) {
    if (entry.command == 0) {
      popup->addSeparator();
      continue;
    }
    if (!isListCommand(entry.command)) continue;
    QAction* action = popup->addAction(fromSystemText(entry.text));
    action->setData(entry.command);
    action->setEnabled(commandEnabled(entry.command));
  }
  return popup;
}

void ListPanel::typeAheadKey(char key) {
  std::vector<std::string_view> names;
  names.reserve(static_cast<std::size_t>(model_->rowCount()));
  for (int row = 0; row < model_->rowCount(); ++row)
    names.emplace_back(model_->itemAt(row)->name);
  const int caret = rows_->currentIndex().row();
  std::optional<std::size_t> found =
      typeAhead_.type(key, names, caret >= 0 ? std::optional<std::size_t>(caret) : std::nullopt);
  if (!found) return;
  typing_ = true;
  selectRows(static_cast<int>(*found), static_cast<int>(*found));
  typing_ = false;
}

bool ListPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == rows_->viewport() && event->type() == QEvent::ContextMenu) {
    auto* menuEvent = static_cast<QContextMenuEvent*>(event);
    // The row under the pointer becomes the selection unless it is already part of it.
    QModelIndex index = rows_->indexAt(menuEvent->pos());
    if (index.isValid() && !rows_->selectionModel()->isSelected(index))
      selectRows(index.row(), index.row());
    std::unique_ptr<QMenu> popup = commandsPopup();
    if (QAction* chosen = popup->exec(menuEvent->globalPos())) runCommand(chosen->data().toInt());
    return true;
  }
  // A click below the rows leaves no caret, so that Select Item adds at the end of the list.
  if (watched == rows_->viewport() && event->type() == QEvent::MouseButtonPress &&
      !rows_->indexAt(static_cast<QMouseEvent*>(event)->position().toPoint()).isValid()) {
    rows_->selectionModel()->clear();
  }
  if (watched == rows_->viewport() && event->type() == QEvent::MouseButtonDblClick) {
    doubleClickAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    return true;
  }
  if (watched == rows_ && event->type() == QEvent::FocusOut) typeAhead_.clear();
  if (watched == rows_ && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    Qt::KeyboardModifiers modifiers = key->modifiers() & ~Qt::KeypadModifier;
    bool control = modifiers.testFlag(Qt::ControlModifier);
    bool shift = modifiers.testFlag(Qt::ShiftModifier);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      runCommand(kToolsOpenCloseSublist);
      return true;
    }
    if (key->key() == Qt::Key_Insert && modifiers == Qt::NoModifier) {
      runCommand(kToolsSelectItem);
      return true;
    }
    if (key->key() == Qt::Key_Delete && !control && !shift) {
      runCommand(kEditClear);
      return true;
    }
    if (control && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
      int step = shift ? kLargeStep : 1;
      stepCaret(key->key() == Qt::Key_Up ? step : -step);
      return true;
    }
    const std::string typed = toSystemText(key->text());
    if (!control && !modifiers.testFlag(Qt::AltModifier) && typed.size() == 1 &&
        static_cast<unsigned char>(typed[0]) >= 0x20 && typed[0] != 0x7f) {
      typeAheadKey(typed[0]);
      return true;
    }
    if (key->key() == Qt::Key_Backspace) {
      Item* item = caretItem();
      if (item != nullptr && item->parent != nullptr) selectItem(item->parent);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace zv::ui
