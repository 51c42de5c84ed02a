#pragma once
// Drawing produced pages on a paged Qt device, and the PDF export that the desktop program's
// File > Export PDF and `zarvelin-cli print --pdf` share. Needs QtGui only, so it runs with the
// offscreen platform and no display.

#include <QPageSize>
#include <QPagedPaintDevice>
#include <string>

#include "core/record_types.h"
#include "print/produce/draw_object.h"
#include "print/produce/page_production.h"

namespace zv {

/// The paper of a PDF: A4, or US Letter where the locale measures in inches.
QPageSize defaultPaper();

/// Draws the pages `first` to `last` (from 0) of `output` on `device`, `copies` times each,
/// starting a new paper page between them (forms of a template several to a sheet). `painter`
/// must be active on `device`; `measure` is the device the pages were produced for.
void paintPages(QPagedPaintDevice& device, QPainter& painter, const OutputTemplate& output,
                const FileInfo* sheet, const DrawSettings& settings, int first, int last,
                int copies);

/// Produces the template's pages for the sheet on a PDF of `paper` in the template's orientation
/// and writes it to `pdfPath` through a temporary file. False after the failure was shown; no
/// file is left then.
bool exportPdf(PrintTemplate& tmpl, FileInfo& sheet, const ProductionSettings& production,
               const DrawSettings& drawing, const std::string& pdfPath, const QPageSize& paper);

}  // namespace zv
