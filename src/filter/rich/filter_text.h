#pragma once
// Filter output in the form of lines of text with header commands among them ("@bold",
// "@font 'Arial' 14pt b", "@leftindent 1in"), read into the rich text model.

#include <string_view>

#include "filter/file/filter_document.h"
#include "filter/rich/rich_text.h"

namespace zv {

/// Reads `source` line by line: a line that is a style command changes the style of what
/// follows, any other line is text, ended by CR LF. The style starts from the document's header
/// (when there is a document), whose margins and orientation become the page. `rich` tells
/// whether any style command appeared. False (with `out` empty) after a command's error, shown
/// in a "Filter Error" box.
bool parseFilterText(std::string_view source, const FilterDocument* document, RichText& out,
                     bool& rich);

}  // namespace zv
