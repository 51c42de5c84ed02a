#pragma once
// Writing the rich text model out: as plain text, as HTML and as a cleaned RTF.

#include <optional>
#include <string>

#include "filter/rich/rich_text.h"

namespace zv {

/// The characters as they stand; runs and paragraphs are ignored.
std::string textOf(const RichText& rich);

/// The story as HTML, paragraph by paragraph and run by run. nullopt after "Unable to emit
/// HTML" when the model is inconsistent (a run or paragraph beyond the text or out of order).
std::optional<std::string> htmlOf(const RichText& rich);

/// The story as RTF with code page 1252: its fonts, paragraphs whose format changes, runs whose
/// properties change, and the characters escaped.
std::string rtfOf(const RichText& rich);

/// The HTML size (1 to 7) of a size in half points.
int htmlFontSize(int halfPoints);

}  // namespace zv
