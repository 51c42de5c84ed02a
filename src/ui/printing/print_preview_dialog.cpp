#include "ui/printing/print_preview_dialog.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "core/messages.h"

namespace zv::ui {

namespace {
/// The gap round the paper and the depth of its shadow, in pixels.
constexpr int kGap = 12;
constexpr int kShadow = 5;
}  // namespace

PreviewDisplay::PreviewDisplay(const PagedDocument& document, QWidget* parent)
    : QWidget(parent), document_(document) {
  setObjectName("printPreviewDisplay");
  setMinimumSize(240, 320);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PreviewDisplay::showSheet(const PaperSheet& sheet) {
  sheet_ = sheet;
  render();
  update();
}

QRect PreviewDisplay::paperRect() const {
  const QSize paper = document_.paperSize();
  if (paper.isEmpty()) return {};
  const QSize room(std::max(1, width() - 2 * kGap - kShadow),
                   std::max(1, height() - 2 * kGap - kShadow));
  const QSize fitted = paper.scaled(room, Qt::KeepAspectRatio);
  return QRect(
      QPoint((width() - kShadow - fitted.width()) / 2, (height() - kShadow - fitted.height()) / 2),
      fitted);
}

void PreviewDisplay::render() {
  const QRect paper = paperRect();
  image_ = paper.isEmpty() ? QImage() : sheetImage(document_, sheet_, paper.width());
}

void PreviewDisplay::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  render();
}

void PreviewDisplay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Dark));
  const QRect paper = paperRect();
  if (paper.isEmpty()) return;
  painter.fillRect(paper.translated(kShadow, kShadow), QColor(0, 0, 0, 110));
  painter.drawImage(paper.topLeft(), image_);
  painter.setPen(QColor(80, 80, 80));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(paper.adjusted(0, 0, -1, -1));
}

PrintPreviewDialog::PrintPreviewDialog(const PagedDocument& document, const QString& heading,
                                       QWidget* parent)
    : QDialog(parent), document_(document), sheets_(document.plan(PageSelection{})) {
  setObjectName("printPreviewDlg");
  setWindowTitle(tr("Print Preview"));
  auto* layout = new QVBoxLayout(this);
  auto* headingLabel = new QLabel(heading, this);
  headingLabel->setObjectName("heading");
  layout->addWidget(headingLabel);
  display_ = new PreviewDisplay(document, this);
  layout->addWidget(display_, 1);
  auto* row = new QHBoxLayout;
  status_ = new QLabel(this);
  status_->setObjectName("status");
  row->addWidget(status_, 1);
  previous_ = new QPushButton(tr("&Previous Page"), this);
  previous_->setObjectName("previousPage");
  next_ = new QPushButton(tr("&Next Page"), this);
  next_->setObjectName("nextPage");
  auto* print = new QPushButton(tr("P&rint..."), this);
  print->setObjectName("print");
  auto* close = new QPushButton(tr("&Close"), this);
  close->setObjectName("close");
  for (QPushButton* button : {previous_, next_, print, close}) {
    button->setAutoDefault(false);
    row->addWidget(button);
  }
  layout->addLayout(row);
  connect(previous_, &QPushButton::clicked, this, [this] { showSheet(current_ - 1); });
  connect(next_, &QPushButton::clicked, this, [this] { showSheet(current_ + 1); });
  connect(print, &QPushButton::clicked, this, [this] { done(kPrint); });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  // Most of the screen's height, the paper's proportions across.
  const QSize paper = document.paperSize();
  int height = 800;
  if (QScreen* screen = QGuiApplication::primaryScreen())
    height = std::max(480, screen->availableGeometry().height() * 7 / 8);
  const int width =
      paper.height() > 0 ? std::max(520, height * paper.width() / paper.height() + 60) : 640;
  resize(width, height);
  showSheet(0);
}

void PrintPreviewDialog::showSheet(int index) {
  const int count = sheetCount();
  current_ = std::clamp(index, 0, std::max(0, count - 1));
  display_->showSheet(count > 0 ? sheets_[static_cast<std::size_t>(current_)] : PaperSheet{});
  status_->setText(
      QString::fromStdString(strprintf("%d of %d", count > 0 ? current_ + 1 : 0, count)));
  previous_->setEnabled(current_ > 0);
  next_->setEnabled(current_ + 1 < count);
}

void PrintPreviewDialog::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_PageDown:
      showSheet(current_ + 1);
      return;
    case Qt::Key_PageUp:
      showSheet(current_ - 1);
      return;
    default:
      QDialog::keyPressEvent(event);
  }
}

}  // namespace zv::ui
