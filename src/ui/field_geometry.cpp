#include "ui/field_geometry.h"

#include <algorithm>

namespace zv::ui {

FontStyle fontStyleOf(std::int16_t fontSize) {
  FontStyle style;
  if (fontSize < 1) return style;
  auto bits = static_cast<std::uint16_t>(fontSize);
  style.points = bits & 0xFF;
  style.bold = (bits & 0x100) != 0;
  style.italic = (bits & 0x200) != 0;
  style.underline = (bits & 0x400) != 0;
  style.strikeOut = (bits & 0x800) != 0;
  return style;
}

int fontPixelHeight(int points, int pixelsPerInchY) {
  return points * pixelsPerInchY / 72;
}

Rgb rgbOf(std::uint32_t colour) {
  return {static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
          static_cast<int>((colour >> 16) & 0xFF)};
}

bool isMultiLineEdit(int height, int charHeight) {
  return height >= 2 * charHeight + 8;
}

int listFieldHeight(int height, int charHeight) {
  return std::max(height, charHeight + 9);
}

ClientSize dialogClientSize(int width, int height) {
  if (width < 1) return {200, 100};
  return {width, height};
}

int resolveFontIndex(int fontIndex, int expressionResult, int fontCount) {
  int index = fontIndex != 0 ? fontIndex : expressionResult;
  return std::clamp(index, 0, std::max(0, fontCount));
}

}  // namespace zv::ui
