#pragma once
// The RTF reader: a keyword-table reader that understands what the rich text model can hold and
// passes over the rest (colour tables, pictures, headers, footnotes, information groups).

#include <string_view>

#include "filter/rich/rich_text.h"

namespace zv {

/// The results of parseRichText.
enum RichParseResult : int {
  kRichOk = 0,
  kRichStackUnderflow = 1,  ///< a "}" without its "{"
  kRichStackOverflow = 2,   ///< groups nested deeper than the reader keeps
  kRichUnmatchedBrace = 4,  ///< a "{" without its "}" at the end
  kRichBadTable = 5,        ///< a keyword of an unknown kind
  kRichInvalidHex = 6,      ///< a bad digit in \'hh
};

/// The deepest nesting of groups the reader keeps.
inline constexpr int kMaxRichGroupDepth = 256;

/// Parses an RTF source into `out`. A failed parse leaves `out` empty.
int parseRichText(std::string_view source, RichText& out);

/// The number of keywords the reader knows.
int richKeywordCount();

}  // namespace zv
