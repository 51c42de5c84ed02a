#include "ui/print/text_pages.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <algorithm>

#include "core/codepage.h"
#include "print/job/footer.h"
#include "print/produce/canvas.h"
#include "ui/print/rich_document.h"

namespace zv {

namespace {

/// The footer's place below the bottom margin.
constexpr int kFooterGapTwips = 360;
constexpr int kFooterPoints = 6;

}  // namespace

TextPages::TextPages(RichText rich, PaperMargins margins, std::optional<TextFooter> footer)
    : rich_(std::move(rich)), margins_(margins), footer_(std::move(footer)) {}

TextPages::~TextPages() = default;

void TextPages::layOut(QPaintDevice& device, QSize paper, PaperMargins printable) {
  device_ = &device;
  paper_ = paper;
  const int dpiX = device.logicalDpiX(), dpiY = device.logicalDpiY();
  const int left = printable.left + twipsToDevice(margins_.left, dpiX);
  const int top = printable.top + twipsToDevice(margins_.top, dpiY);
  const int right = printable.right + twipsToDevice(margins_.right, dpiX);
  const int bottom = printable.bottom + twipsToDevice(margins_.bottom, dpiY);
  area_ = QRect(left, top, std::max(1, paper.width() - left - right),
                std::max(1, paper.height() - top - bottom));
  if (html_) {
    document_ = std::make_unique<QTextDocument>();
    document_->documentLayout()->setPaintDevice(&device);
    document_->setDocumentMargin(0);
    document_->setUndoRedoEnabled(false);
    document_->setHtml(QString::fromStdString(windows1252ToUtf8(*html_)));
  } else {
    document_ = textDocumentOf(rich_, device);
  }
  if (defaultTabTwips_ > 0) {
    QTextOption option = document_->defaultTextOption();
    option.setTabStopDistance(defaultTabTwips_ * kLayoutUnitsPerInch / 1440.0);
    document_->setDefaultTextOption(option);
  }
  document_->setPageSize(QSizeF(area_.width(), area_.height()));
}

int TextPages::pageCount() const {
  if (!document_ || (rich_.text.empty() && !html_)) return 0;
  return document_->pageCount();
}

std::vector<PaperSheet> TextPages::plan(const PageSelection& selection) const {
  return planPaper(0, pageCount(), selection, FormLayout{});
}

void TextPages::paintSheet(QPainter& painter, const PaperSheet& sheet) const {
  for (const PlacedPage& page : sheet)
    paintPage(painter, page.index);
}

void TextPages::paintPage(QPainter& painter, int index) const {
  if (!document_) return;
  const double height = area_.height();
  painter.save();
  painter.translate(area_.left(), area_.top() - index * height);
  QAbstractTextDocumentLayout::PaintContext context;
  context.clip = QRectF(0, index * height, area_.width(), height);
  painter.setClipRect(context.clip);
  document_->documentLayout()->draw(&painter, context);
  painter.restore();
  if (!footer_) return;
  const std::string text = footerText(footer_->sheetName, footer_->date, index + 1);
  QFont font(QStringLiteral("Arial"));
  font.setBold(true);
  font.setPixelSize(std::max(1, device_->logicalDpiY() * kFooterPoints / 72));
  QFontMetricsF metrics(font, device_);
  const QString footer = QString::fromStdString(windows1252ToUtf8(text));
  const double y =
      std::min<double>(area_.bottom() + 1 + twipsToDevice(kFooterGapTwips, device_->logicalDpiY()),
                       paper_.height() - metrics.height());
  painter.save();
  painter.setFont(font);
  painter.setPen(Qt::black);
  painter.drawText(
      QPointF(area_.right() + 1 - metrics.horizontalAdvance(footer), y + metrics.ascent()), footer);
  painter.restore();
}

}  // namespace zv
