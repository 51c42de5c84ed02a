#include "ui/print/paged_document.h"

#include <algorithm>
#include <cmath>

namespace zv {

PrintOutcome paintSheets(QPagedPaintDevice& device, QPainter& painter,
                         const PagedDocument& document, const std::vector<PaperSheet>& sheets,
                         const std::function<bool(int done, int total)>& keepGoing) {
  const int total = static_cast<int>(sheets.size());
  for (int i = 0; i < total; ++i) {
    if (keepGoing && !keepGoing(i, total)) return PrintOutcome::Stopped;
    if (i > 0 && !device.newPage()) return PrintOutcome::Failed;
    document.paintSheet(painter, sheets[static_cast<std::size_t>(i)]);
  }
  if (keepGoing) keepGoing(total, total);
  return PrintOutcome::Done;
}

QImage sheetImage(const PagedDocument& document, const PaperSheet& sheet, int width) {
  const QSize paper = document.paperSize();
  width = std::max(1, width);
  const double scale = paper.width() > 0 ? static_cast<double>(width) / paper.width() : 1.0;
  const int height = std::max(1, static_cast<int>(std::lround(paper.height() * scale)));
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.scale(scale, scale);
  document.paintSheet(painter, sheet);
  painter.end();
  return image;
}

}  // namespace zv
