#pragma once
// The rich text model as a Qt text document laid out for a paint device: what printing through a
// filter, a data sheet's print and a sheet's detail pages put on paper.

#include <QTextDocument>
#include <memory>

#include "filter/rich/rich_text.h"

class QPaintDevice;

namespace zv {

/// The units of lengths inside a text document (indents, spacing, tab stops): Qt's layout scales
/// them from 96 to the inch to the resolution of the device it measures on.
inline constexpr double kLayoutUnitsPerInch = 96.0;

/// A text document of `rich` laid out with the metrics of `device`: runs become character
/// formats (font, point size, bold, italic, underline), paragraphs block formats (indents,
/// justification, spacing, tab stops). The document is laid out with `device`'s metrics.
std::unique_ptr<QTextDocument> textDocumentOf(const RichText& rich, QPaintDevice& device);

/// Plain text in one font as the rich text model: lines end at CR LF, LF or CR.
RichText plainRichText(std::string_view text, std::string_view face, int pointSize);

}  // namespace zv
