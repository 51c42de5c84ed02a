#pragma once
// Filter output on the clipboard: which formats a block goes under, chosen by the filter's
// @clipformat, and the "HTML Format" wrapper with its byte offsets.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filter/file/filter_document.h"

namespace zv {

/// The name under which plain text goes (the text format every clipboard has).
inline constexpr std::string_view kPlainTextFormat = "Text";
inline constexpr std::string_view kHtmlFormat = "HTML Format";
inline constexpr std::string_view kRichTextFormat = "Rich Text Format";

struct ClipboardEntry {
  std::string format;  ///< kPlainTextFormat, kHtmlFormat, kRichTextFormat or a filter's own name
  std::string bytes;
  friend bool operator==(const ClipboardEntry&, const ClipboardEntry&) = default;
};

struct ClipboardContents {
  std::vector<ClipboardEntry> entries;
  /// For "HTML Format": the page as the filter made it, before wrapping, for clipboards that take
  /// HTML as it is.
  std::string html;
};

/// The "HTML Format" form of a page: high bytes re-encoded (b becomes b >> 6 | 0xC0 and
/// b & 0x3F), "<!--StartFragment-->\r\n" behind the body tag and its white space,
/// "<!--EndFragment-->\r\n" one byte before "</body>", and the header "Version:0.9\r\n
/// StartHTML:%06d\r\nEndHTML:%06d\r\nStartFragment:%06d\r\nEndFragment:%06d\r\n" in front.
/// nullopt after "HTML is not properly formatted. <body> or </body> missing." or, for a page
/// whose offsets don't fit six digits, "Memory error creating HTML clipboard format.".
std::optional<std::string> wrapHtmlForClipboard(std::string_view html);

/// What goes on the clipboard for a filter's output `block`. With @clipformat "HTML Format"
/// (exactly): the wrapped page and the block as plain text. With "Rich Text Format" (ignoring
/// case): the parsed RTF's text as plain text and the block as RTF. Any other name: the block
/// under that name. Without one: the block parsed as filter text, giving plain text and, when
/// it held style commands, RTF. A failure falls back to the block as plain text.
ClipboardContents clipboardContentsFor(const FilterDocument& document, std::string_view block);

/// Where clipboard contents go; the desktop program's clipboard implements it.
class ClipboardSink {
 public:
  virtual ~ClipboardSink() = default;
  /// False when the clipboard is busy.
  virtual bool open() = 0;
  /// Replaces the clipboard's contents.
  virtual void put(const ClipboardContents& contents) = 0;
  virtual void close() = 0;
};

/// Puts a filter's output on the clipboard; "Can't open clipboard" when it is busy.
bool putOnClipboard(ClipboardSink& clipboard, const FilterDocument& document,
                    std::string_view block);

}  // namespace zv
