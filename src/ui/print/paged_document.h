#pragma once
// What printing, the preview and the PDF export have in common: a document whose pages are
// measured on one paged device and placed on sheets of paper by a plan, each sheet drawn by a
// painter that works in that device's units.

#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QSize>
#include <functional>
#include <vector>

#include "print/job/print_plan.h"

namespace zv {

class PagedDocument {
 public:
  virtual ~PagedDocument() = default;
  /// The pages as the print dialog counts them.
  virtual int pageCount() const = 0;
  /// The sheets of paper that print `selection`.
  virtual std::vector<PaperSheet> plan(const PageSelection& selection) const = 0;
  /// The paper, in units of the device the pages were measured on.
  virtual QSize paperSize() const = 0;
  /// Draws one sheet; `painter` maps units of the measured device onto its own device.
  virtual void paintSheet(QPainter& painter, const PaperSheet& sheet) const = 0;
};

enum class PrintOutcome { Done, Stopped, Failed };

/// Draws `sheets` on `device` with `painter` (active on it), a new page between sheets.
/// `keepGoing(done, total)` is asked before each sheet; false stops the print. Failed when the
/// device refused a new page.
PrintOutcome paintSheets(QPagedPaintDevice& device, QPainter& painter,
                         const PagedDocument& document, const std::vector<PaperSheet>& sheets,
                         const std::function<bool(int done, int total)>& keepGoing = {});

/// One sheet drawn on white paper in an image `width` pixels wide, its height in the paper's
/// proportion.
QImage sheetImage(const PagedDocument& document, const PaperSheet& sheet, int width);

}  // namespace zv
