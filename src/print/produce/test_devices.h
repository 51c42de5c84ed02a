#pragma once
// Devices without a platform: fixed-width text metrics, and a canvas that records each call as
// a line of text. They make page production and drawing exact in tests and the benchmark.

#include <string>
#include <vector>

#include "print/produce/canvas.h"

namespace zv {

/// Every character is `charWidth` twips wide and every font's line `lineHeight` twips high, on a
/// device of `ppi` pixels per inch.
class FixedWidthMetrics : public TextMetrics {
 public:
  FixedWidthMetrics(int charWidth, int lineHeight, int ppi = 1440)
      : charWidth_(charWidth), lineHeight_(lineHeight), ppi_(ppi) {}
  PixelsPerInch pixelsPerInch() const override { return {ppi_, ppi_}; }
  int textWidth(const DeviceFont&, std::string_view text) override {
    return static_cast<int>(text.size()) * twipsToDevice(charWidth_, ppi_);
  }
  int fontHeight(const DeviceFont&) override { return twipsToDevice(lineHeight_, ppi_); }

 private:
  int charWidth_;
  int lineHeight_;
  int ppi_;
};

/// Records each drawing call: "pen 5 0", "brush FFFFFF", "rect 0 0 100 50", "line 0 0 10 0",
/// "text 10 20 0 'abc'", "picture 0 0 10 10", and so on.
class RecordingCanvas : public Canvas {
 public:
  std::vector<std::string> calls;
  /// The size pictureSize reports for any bytes that are not empty.
  std::pair<int, int> pictureSizeToReport{100, 50};

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

  /// The texts drawn, in order.
  std::vector<std::string> texts() const;
};

}  // namespace zv
