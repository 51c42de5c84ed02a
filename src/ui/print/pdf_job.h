#pragma once
// The PDF export that the desktop program's File > Export PDF and `zarvelin-cli print --pdf`
// share: the pages of a template print, made on a PDF writer of the paper in the template's
// orientation, written through a temporary file. Needs QtGui only, so it runs with the offscreen
// platform and no display.

#include <QPageSize>
#include <QPdfWriter>
#include <memory>
#include <string>

#include "core/record_types.h"
#include "print/job/form_setup.h"
#include "print/produce/draw_object.h"
#include "print/produce/page_production.h"
#include "ui/print/paged_document.h"

class QBuffer;

namespace zv {

/// The resolution pages are measured and drawn at in a PDF, the same as a printer's high
/// resolution output to a file, so that a PDF breaks its lines where the preview does.
inline constexpr int kPdfResolution = 1200;

/// The paper of a PDF: A4, or US Letter where the locale measures in inches.
QPageSize defaultPaper();

/// A PDF writer onto memory: `paper` in the orientation asked, no margins, kPdfResolution.
class PdfTarget {
 public:
  PdfTarget(const QPageSize& paper, bool landscape, const std::string& title);
  ~PdfTarget();
  QPdfWriter& writer() { return *writer_; }
  /// The paper in device units.
  QSize paper() const;
  /// Draws every sheet of `document` (one copy of all pages), then writes the PDF to `path`
  /// through a temporary file. False after "Could not print %s" or "Error writing file %s".
  bool write(const PagedDocument& document, const std::string& path);

 private:
  std::unique_ptr<QBuffer> buffer_;
  std::unique_ptr<QPdfWriter> writer_;
};

/// Produces the template's pages for the sheet on a PDF of `paper` (orientation and placement
/// from `margins`) and writes it to `pdfPath`. False after the failure was shown; no file is
/// left then.
bool exportPdf(PrintTemplate& tmpl, FileInfo& sheet, const ProductionSettings& production,
               const DrawSettings& drawing, const FormMargins& margins, const std::string& pdfPath,
               const QPageSize& paper);

}  // namespace zv
