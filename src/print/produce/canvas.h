#pragma once
// What page production needs of a device: text metrics in device units (pixels per inch, the
// advance of a text in a font, a font's height) and a canvas to draw on. The desktop program
// implements both over a QPainter; tests use fixed-width metrics and a recording canvas.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/host.h"
#include "print/model/print_template.h"

namespace zv {

/// A font as a template names it, with its height in device units.
struct DeviceFont {
  std::string face;
  int height = 0;  ///< device units
  std::uint16_t charStyle = 0;
  std::uint8_t pitchFamily = 0;
  std::uint8_t charset = 0;
  bool operator==(const DeviceFont&) const = default;
};

struct DevicePoint {
  int x = 0;
  int y = 0;
  bool operator==(const DevicePoint&) const = default;
};

struct Pen {
  int width = 1;  ///< device units; 0 draws the thinnest line the device has
  std::uint32_t colour = 0;
};

class TextMetrics {
 public:
  virtual ~TextMetrics() = default;
  virtual PixelsPerInch pixelsPerInch() const = 0;
  /// The advance of `text` in `font`, device units.
  virtual int textWidth(const DeviceFont& font, std::string_view text) = 0;
  /// The font's own line height (ascent plus descent), device units.
  virtual int fontHeight(const DeviceFont& font) = 0;
};

class Canvas {
 public:
  virtual ~Canvas() = default;
  /// The pen of the following outlines and lines; none draws no outline.
  virtual void setPen(std::optional<Pen> pen) = 0;
  /// The fill of the following shapes; none leaves them hollow.
  virtual void setBrush(std::optional<std::uint32_t> colour) = 0;
  virtual void rectangle(const Rect32& rect) = 0;
  /// A rectangle with rounded corners; the corner sizes are the diameters of their ellipses.
  virtual void roundRect(const Rect32& rect, int cornerWidth, int cornerHeight) = 0;
  virtual void ellipse(const Rect32& rect) = 0;
  virtual void polygon(const std::vector<DevicePoint>& points) = 0;
  virtual void line(DevicePoint from, DevicePoint to) = 0;
  /// A filled rectangle in `colour`, with no outline.
  virtual void fillRect(const Rect32& rect, std::uint32_t colour) = 0;
  /// Text whose cell's top left corner (in the text's own direction) is at `origin`, turned
  /// counter-clockwise by `rotation` tenths of a degree.
  virtual void text(DevicePoint origin, std::string_view text, const DeviceFont& font,
                    std::uint32_t colour, int rotation) = 0;
  /// The pixel size of an encoded picture (PNG, JPEG, GIF, BMP or DIB); none if it can't be read.
  virtual std::optional<std::pair<int, int>> pictureSize(std::string_view bytes) = 0;
  /// Draws an encoded picture stretched to `rect`; false if it can't be read.
  virtual bool picture(const Rect32& rect, std::string_view bytes) = 0;
};

/// Twips to device units at `ppi`, rounded to the nearest unit.
inline int twipsToDevice(int twips, int ppi) {
  long long scaled = static_cast<long long>(twips) * ppi;
  return static_cast<int>(scaled >= 0 ? (scaled + 720) / 1440 : -((-scaled + 720) / 1440));
}

/// The template's text properties as a device font.
DeviceFont fontFor(const TextProperties& properties, PixelsPerInch ppi);

}  // namespace zv
