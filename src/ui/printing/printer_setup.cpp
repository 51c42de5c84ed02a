#include "ui/printing/printer_setup.h"

#include <QPrinterInfo>

#include "core/messages.h"
#include "ui/text_codec.h"

namespace zv::ui {

std::unique_ptr<QPrinter> defaultPrinter(bool landscape, const QString& pdfName) {
  std::unique_ptr<QPrinter> printer;
  if (QPrinterInfo::availablePrinters().isEmpty()) {
    printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(pdfName);
  } else {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) {
      showError(
          "No default printer has been selected. Make sure you select a default printer in your "
          "Printer Settings.");
      return nullptr;
    }
    printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    if (!printer->isValid()) {
      showError(strprintf("Unable to create DC for %s", toSystemText(info.printerName())));
      return nullptr;
    }
  }
  printer->setFullPage(true);
  if (!forceOrientation(*printer, landscape)) return nullptr;
  return printer;
}

bool forceOrientation(QPrinter& printer, bool landscape) {
  const auto wanted = landscape ? QPageLayout::Landscape : QPageLayout::Portrait;
  if (printer.pageLayout().orientation() == wanted) return true;
  if (!printer.setPageOrientation(wanted) && landscape) {
    showError("Unable to set landscape mode on printer.");
    return false;
  }
  return true;
}

QSize paperPixels(const QPrinter& printer) {
  return printer.pageLayout().fullRectPixels(printer.resolution()).size();
}

PaperMargins printableOffsets(const QPrinter& printer) {
  const QMarginsF points = printer.pageLayout().minimumMargins();
  const double perPoint = printer.resolution() / 72.0;
  auto pixels = [&](double value) { return static_cast<int>(value * perPoint + 0.5); };
  return {pixels(points.left()), pixels(points.top()), pixels(points.right()),
          pixels(points.bottom())};
}

PrinterIdentity identityOf(const QPrinter& printer) {
  return {printer.printerName(), static_cast<int>(printer.outputFormat()), printer.resolution(),
          paperPixels(printer)};
}

}  // namespace zv::ui
