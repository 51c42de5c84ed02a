#pragma once
// Page production's device over a QPainter: text metrics measured on the device that prints, and
// the drawing calls of a canvas. Fonts named by templates ("Times New Roman", "Arial") are found
// through fontconfig, which maps them to metric-compatible faces.

#include <QFont>
#include <QPainter>
#include <map>

#include "print/produce/canvas.h"

namespace zv {

class QtPrintDevice : public TextMetrics, public Canvas {
 public:
  /// Measures on `device`; draws with `painter` when given (which must be active on a device of
  /// the same resolution).
  explicit QtPrintDevice(QPaintDevice& device, QPainter* painter = nullptr);

  PixelsPerInch pixelsPerInch() const override { return ppi_; }
  int textWidth(const DeviceFont& font, std::string_view text) override;
  int fontHeight(const DeviceFont& font) override;

  void setPen(std::optional<Pen> pen) override;
  void setBrush(std::optional<std::uint32_t> colour) override;
  void rectangle(const Rect32& rect) override;
  void roundRect(const Rect32& rect, int cornerWidth, int cornerHeight) override;
  void ellipse(const Rect32& rect) override;
  void polygon(const std::vector<DevicePoint>& points) override;
  void line(DevicePoint from, DevicePoint to) override;
  void fillRect(const Rect32& rect, std::uint32_t colour) override;
  void text(DevicePoint origin, std::string_view text, const DeviceFont& font, std::uint32_t colour,
            int rotation) override;
  std::optional<std::pair<int, int>> pictureSize(std::string_view bytes) override;
  bool picture(const Rect32& rect, std::string_view bytes) override;

  /// The QFont of a template font at this device's resolution.
  QFont qfont(const DeviceFont& font) const;

 private:
  QPaintDevice& device_;
  QPainter* painter_;
  PixelsPerInch ppi_;
};

/// A colour 0x00BBGGRR as a QColor.
QColor colourOf(std::uint32_t colour);

}  // namespace zv
