#include "ui/list_panel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

#include "core/host.h"
#include "ui/command_table.h"
#include "ui/field_geometry.h"
#include "ui/sheet_view.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

constexpr int kIndentPerDepth = 16;
constexpr int kTreeLineOffset = 12;
constexpr int kTreeStub = 8;
constexpr int kBoxSize = 9;
constexpr int kBoxGap = 4;

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
    : QWidget(parent), view_(view), list_(list) {
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
  connect(rows_, &QListView::doubleClicked, this,
          [this](const QModelIndex&) { runCommand(kToolsOpenCloseSublist); });
  if (model_->rowCount() > 0) rows_->setCurrentIndex(model_->index(0));
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
  int current = rows_->currentIndex().row();
  model_->reload();
  if (model_->rowCount() > 0)
    rows_->setCurrentIndex(model_->index(std::clamp(current, 0, model_->rowCount() - 1)));
  update();
}

bool ListPanel::runCommand(int command) {
  switch (command) {
    case kToolsOpenCloseSublist: {
      int row = rows_->currentIndex().row();
      if (row < 0) return true;
      if (model_->toggle(row)) rows_->setCurrentIndex(model_->index(row));
      return true;
    }
    case kUtilitiesRecalculate:
      view_.recalculate();
      return true;
    default:
      return false;
  }
}

bool ListPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == rows_ && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      runCommand(kToolsOpenCloseSublist);
      return true;
    }
    if (key->key() == Qt::Key_Backspace) {
      Item* item = model_->itemAt(rows_->currentIndex().row());
      if (item != nullptr && item->parent != nullptr) {
        // The rows model finds the parent's row by its item.
        for (int row = 0; row < model_->rowCount(); ++row) {
          if (model_->itemAt(row) == item->parent) rows_->setCurrentIndex(model_->index(row));
        }
      }
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace zv::ui
