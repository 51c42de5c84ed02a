#pragma once
// The rich text model as a Qt text document laid out for a paint device: what printing through a
// filter, a data sheet's print and a sheet's detail pages put on paper.

#include <QTextDocument>
#include <memory>

#include "filter/rich/rich_text.h"

class QPaintDevice;

namespace zv {

/// A text document of `rich` whose lengths are device units of `device`: runs become character
/// formats (font, point size, bold, italic, underline), paragraphs block formats (indents,
/// justification, spacing, tab stops). The document is laid out with `device`'s metrics.
std::unique_ptr<QTextDocument> textDocumentOf(const RichText& rich, QPaintDevice& device);

/// Plain text in one font as the rich text model: lines end at CR LF, LF or CR.
RichText plainRichText(std::string_view text, std::string_view face, int pointSize);

}  // namespace zv
