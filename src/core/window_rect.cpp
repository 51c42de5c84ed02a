#include "core/window_rect.h"

#include <cstdint>
#include <limits>

#include "core/strfmt.h"

namespace zv {

namespace {

/// One integer in the manner of "%d": blanks, an optional sign, at least one digit.
std::optional<int> readInt(std::string_view text, size_t& at) {
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t'))
    ++at;
  bool negative = false;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) negative = text[at++] == '-';
  size_t digitsFrom = at;
  int64_t value = 0;
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
    if (value <= std::numeric_limits<int>::max()) value = value * 10 + (text[at] - '0');
    ++at;
  }
  if (at == digitsFrom) return std::nullopt;
  if (negative) value = -value;
  if (value > std::numeric_limits<int>::max()) value = std::numeric_limits<int>::max();
  if (value < std::numeric_limits<int>::min()) value = std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

}  // namespace

std::optional<WindowRect> parseWindowRect(std::string_view text) {
  size_t at = 0;
  int values[4];
  for (int& value : values) {
    std::optional<int> read = readInt(text, at);
    if (!read) return std::nullopt;
    value = *read;
  }
  return WindowRect{values[0], values[1], values[2], values[3]};
}

std::string formatWindowRect(const WindowRect& rect) {
  return strprintf("%d %d %d %d", rect.x, rect.y, rect.width, rect.height);
}

WindowRect clampToScreen(WindowRect rect, int screenWidth, int screenHeight) {
  if (rect.x < 0 || rect.x > screenWidth - 40) rect.x = 0;
  if (rect.y < 0 || rect.y > screenHeight - 60) rect.y = 0;
  return rect;
}

std::optional<WindowRect> parseWindowRect(std::string_view text, int screenWidth,
                                          int screenHeight) {
  std::optional<WindowRect> rect = parseWindowRect(text);
  if (rect) rect = clampToScreen(*rect, screenWidth, screenHeight);
  return rect;
}

}  // namespace zv
