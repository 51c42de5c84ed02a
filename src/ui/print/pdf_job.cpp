#include "ui/print/pdf_job.h"

#include <QBuffer>
#include <QLocale>
#include <QPainter>
#include <QSaveFile>

#include "core/codepage.h"
#include "core/fileinfo.h"
#include "core/messages.h"
#include "ui/print/template_pages.h"

namespace zv {

QPageSize defaultPaper() {
  return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem
             ? QPageSize(QPageSize::Letter)
             : QPageSize(QPageSize::A4);
}

PdfTarget::PdfTarget(const QPageSize& paper, bool landscape, const std::string& title)
    : buffer_(std::make_unique<QBuffer>()) {
  buffer_->open(QIODevice::WriteOnly);
  writer_ = std::make_unique<QPdfWriter>(buffer_.get());
  writer_->setResolution(kPdfResolution);
  writer_->setPageSize(paper);
  writer_->setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  writer_->setPageMargins(QMarginsF(0, 0, 0, 0));
  writer_->setCreator(QStringLiteral("Zarvelin"));
  writer_->setTitle(QString::fromStdString(windows1252ToUtf8(title)));
}

PdfTarget::~PdfTarget() = default;

QSize PdfTarget::paper() const {
  return writer_->pageLayout().fullRectPixels(writer_->resolution()).size();
}

bool PdfTarget::write(const PagedDocument& document, const std::string& path) {
  {
    QPainter painter;
    if (!painter.begin(writer_.get())) {
      showError(strprintf("Could not print %s", path));
      return false;
    }
    paintSheets(*writer_, painter, document, document.plan(PageSelection{}));
    painter.end();
  }
  buffer_->close();
  QSaveFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::WriteOnly) || file.write(buffer_->data()) != buffer_->data().size() ||
      !file.commit()) {
    showError(strprintf("Error writing file %s", path));
    return false;
  }
  return true;
}

bool exportPdf(PrintTemplate& tmpl, FileInfo& sheet, const ProductionSettings& production,
               const DrawSettings& drawing, const FormMargins& margins, const std::string& pdfPath,
               const QPageSize& paper) {
  PdfTarget target(paper, margins.landscape, sheet.name.str());
  TemplatePages pages(tmpl, sheet, production, drawing, margins);
  if (!pages.produce(target.writer(), target.paper())) return false;
  return target.write(pages, pdfPath);
}

}  // namespace zv
