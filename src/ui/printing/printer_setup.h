#pragma once
// The printer that pages are measured on before the print dialog: the default printer, or, where
// no printer is installed, the print dialog's Print to File as a PDF beside the sheet.

#include <QPrinter>
#include <QSize>
#include <memory>

#include "print/job/print_plan.h"

namespace zv::ui {

/// A high-resolution, full-page printer for the default printer in the orientation asked.
/// Without any printer installed it prints to the PDF file `pdfName`. Null after "No default
/// printer has been selected. Make sure you select a default printer in your Printer Settings."
/// (printers are installed but none is the default) or "Unable to create DC for %s".
std::unique_ptr<QPrinter> defaultPrinter(bool landscape, const QString& pdfName);

/// Turns the printer's pages to the orientation asked; false after "Unable to set landscape
/// mode on printer.".
bool forceOrientation(QPrinter& printer, bool landscape);

/// The whole paper, in device units.
QSize paperPixels(const QPrinter& printer);

/// Where the printable area begins inside the paper's edges, in device units.
PaperMargins printableOffsets(const QPrinter& printer);

/// What decides the metrics of a printer: pages measured on one printer are produced again for
/// another that differs in any of these.
struct PrinterIdentity {
  QString name;
  int outputFormat = 0;
  int resolution = 0;
  QSize paper;
  friend bool operator==(const PrinterIdentity&, const PrinterIdentity&) = default;
};
PrinterIdentity identityOf(const QPrinter& printer);

}  // namespace zv::ui
