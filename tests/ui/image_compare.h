#pragma once
// Comparing a rendered page with its reference picture within a tolerance, and leaving a picture
// of the differences behind when they are too many.

#include <QColor>
#include <QImage>
#include <QString>
#include <algorithm>
#include <cstdlib>

namespace zv::testing {

struct ImageComparison {
  bool sameSize = false;
  long differing = 0;  ///< pixels whose channels differ by more than the tolerance
  long total = 0;
  /// The reference faded, with every differing pixel in red.
  QImage diff;
  double differingShare() const { return total > 0 ? static_cast<double>(differing) / total : 1; }
};

/// Compares `actual` with `reference` pixel by pixel: a pixel differs when one of its channels
/// differs by more than `channelTolerance`.
inline ImageComparison compareImages(const QImage& actual, const QImage& reference,
                                     int channelTolerance) {
  ImageComparison result;
  result.sameSize = actual.size() == reference.size();
  if (!result.sameSize) return result;
  const QImage a = actual.convertToFormat(QImage::Format_RGB32);
  const QImage r = reference.convertToFormat(QImage::Format_RGB32);
  result.diff = QImage(r.size(), QImage::Format_RGB32);
  result.total = static_cast<long>(r.width()) * r.height();
  for (int y = 0; y < r.height(); ++y) {
    for (int x = 0; x < r.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = r.pixel(x, y);
      const int delta = std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                  std::abs(qBlue(p) - qBlue(q))});
      if (delta > channelTolerance) {
        ++result.differing;
        result.diff.setPixel(x, y, qRgb(230, 0, 0));
      } else {
        const int faded = 255 - (255 - qGray(q)) / 4;
        result.diff.setPixel(x, y, qRgb(faded, faded, faded));
      }
    }
  }
  return result;
}

}  // namespace zv::testing
