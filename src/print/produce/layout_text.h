#pragma once
// The text engine of print boxes: lays a text out in a device rectangle, in lines and columns,
// turned by the properties' rotation, and draws it or only measures it. Lines break at blanks,
// tabs and carriage returns; a line feed alone breaks nothing.

#include <cstddef>
#include <optional>
#include <string_view>

#include "print/produce/canvas.h"

namespace zv {

struct LayoutBox {
  Rect32 rect;  ///< device units
  /// The text starts inside a paragraph: its first line starts at the left indent.
  bool midParagraph = false;
  /// Draw on the canvas; otherwise only measure.
  bool draw = false;
};

struct LayoutResult {
  /// Where the text stopped for want of room (an offset into the text); none when all of it
  /// found room.
  std::optional<std::size_t> stop;
  /// "Zero column width" was shown: nothing was laid out.
  bool failed = false;
  /// The pen's place across the lines after the last line (device units), for a text that follows.
  int position = 0;
};

/// Lays `text` out in `box`. `runState` holds the properties to start with and, afterwards,
/// those in force at the end (after the text's own @ directive lines). `canvas` may be null when
/// only measuring.
LayoutResult layoutText(TextMetrics& metrics, Canvas* canvas, std::string_view text,
                        const LayoutBox& box, TextProperties& runState);

/// The columns of a box: their count, the width of each but the last (which reaches the far
/// edge), and the gap, all in device units along the line. Zero count when the width is below 1.
struct ColumnGeometry {
  int count = 1;
  int width = 0;
  int gap = 0;
  int lineLength = 0;  ///< the whole length along the line
  int depth = 0;       ///< the whole length across the lines
};
ColumnGeometry columnGeometry(const TextProperties& properties, const Rect32& rect,
                              PixelsPerInch ppi);

/// Maps a point in the box's own frame (along the line, across the lines, from the corner where
/// the first line starts) to device coordinates.
DevicePoint boxPoint(const Rect32& rect, int rotation, int along, int across);

/// The device height of one line of the properties: `lineHeight`, else the font's own.
int lineHeightOf(TextMetrics& metrics, const TextProperties& properties);

}  // namespace zv
