#pragma once
// Window rectangles as the settings hold them ("screenPos", "selectItemDlgRect"):
// "%d %d %d %d" for x, y, width and height.

#include <optional>
#include <string>
#include <string_view>

namespace zv {

struct WindowRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const WindowRect&) const = default;
};

/// Reads four integers separated by blanks; nullopt when the text has fewer (an empty setting).
std::optional<WindowRect> parseWindowRect(std::string_view text);
/// "%d %d %d %d".
std::string formatWindowRect(const WindowRect& rect);

/// Keeps a stored rectangle reachable: x becomes 0 when negative or beyond the screen width minus
/// 40, y when negative or beyond the screen height minus 60. Width and height stand.
WindowRect clampToScreen(WindowRect rect, int screenWidth, int screenHeight);

/// parseWindowRect followed by clampToScreen.
std::optional<WindowRect> parseWindowRect(std::string_view text, int screenWidth, int screenHeight);

}  // namespace zv
