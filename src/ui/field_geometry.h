#pragma once
// The arithmetic of a dialog's look: font heights and styles, colours, the size rules of fields
// and dialogs. Coordinates come from the sheet reader already in screen pixels.

#include <cstdint>

namespace zv::ui {

/// The style bits and point size of a stored font size (low byte the points, 0x100 bold, 0x200
/// italic, 0x400 underline, 0x800 strikeout; below 1 means no font of its own).
struct FontStyle {
  int points = 0;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  bool present() const { return points > 0; }
};
FontStyle fontStyleOf(std::int16_t fontSize);

/// The font's height in device pixels: the point size times the vertical pixels per inch,
/// divided by 72 in integer division (the system stores it negated).
int fontPixelHeight(int points, int pixelsPerInchY);

/// The red, green and blue of a 0x00BBGGRR colour.
struct Rgb {
  int red = 0;
  int green = 0;
  int blue = 0;
};
Rgb rgbOf(std::uint32_t colour);

/// An edit field at least two lines tall (twice the character height plus 8) is multi-line.
bool isMultiLineEdit(int height, int charHeight);
/// A list field is at least one character plus 9 pixels tall.
int listFieldHeight(int height, int charHeight);

/// The client size of a dialog: a stored width below 1 stands for 200 by 100.
struct ClientSize {
  int width = 0;
  int height = 0;
};
ClientSize dialogClientSize(int width, int height);

/// The font a field uses: `fontIndex` if not 0, else the result of its font expression, bounded
/// to 0..count. 0 is the dialog's own font.
int resolveFontIndex(int fontIndex, int expressionResult, int fontCount);

}  // namespace zv::ui
