#pragma once
// The record a filter file is loaded into: its body text, its translations and the values of its
// header commands (page, font, paragraph and identity values). The same style block serves a body
// line or a print page that sets a style from a line.

#include <cstdint>
#include <string>
#include <vector>

#include "core/fixed_string.h"

namespace zv {

/// A tab stop of a filter: the alignment code of the rich text writer (0 left, 1 centre, 2 right,
/// 3 decimal) and the position in twips.
struct FilterTab {
  std::int16_t alignment = 0;
  std::int16_t position = 0;
  friend bool operator==(const FilterTab&, const FilterTab&) = default;
};

/// A vertical line of a printed listing: from and to, in twips.
struct FilterVerticalLine {
  std::int16_t from = 0;
  std::int16_t to = 0;
  friend bool operator==(const FilterVerticalLine&, const FilterVerticalLine&) = default;
};

/// The current character and paragraph style. Lengths are twips (1/1440 inch); a negative length
/// of a measure in lines ("2l") counts lines.
struct FilterStyle {
  enum Flag : std::uint8_t { kBold = 1, kItalic = 2, kUnderline = 4, kStrikeout = 8 };

  std::uint8_t flags = 0;
  FixedString<32> face;
  std::int16_t size = 0;
  std::uint8_t charset = 0;
  std::uint8_t pitch = 0;
  std::uint32_t textColor = 0;  ///< 0x00BBGGRR
  std::int16_t firstIndent = 0;
  std::int16_t leftIndent = 0;
  std::int16_t spacing = 0;  ///< paragraph spacing
  std::int16_t wrapTab = 0;  ///< bit 0: wrap at tabs
  std::int16_t columns = 0;
  std::int16_t columnGap = 0;
  std::int16_t defaultTab = 0;
  std::vector<FilterTab> tabs;
  std::vector<FilterVerticalLine> verticalLines;
  std::int16_t ruleStart = 0;  ///< the horizontal rule of @hline
  std::int16_t ruleEnd = 0;
  std::int16_t ruleWidth = 0;
  std::uint32_t backgroundColor = 0;
  bool backgroundUsed = false;
  std::int16_t needed = 0;  ///< space needed at the foot of the page before a paragraph

  bool has(Flag flag) const { return (flags & flag) != 0; }
  friend bool operator==(const FilterStyle&, const FilterStyle&) = default;
};

/// One @trans entry: a character and the text that stands for it in field output.
struct FilterTranslation {
  unsigned char code = 0;
  std::string text;
  friend bool operator==(const FilterTranslation&, const FilterTranslation&) = default;
};

struct FilterDocument {
  /// Every line that is no header command, in file order, with its line end.
  std::string body;
  /// The @trans entries, newest first.
  std::vector<FilterTranslation> translations;
  std::int32_t outputLength = 0;  ///< length of the last output
  std::int16_t marginLeft = 0;
  std::int16_t marginTop = 0;
  std::int16_t marginRight = 0;
  std::int16_t marginBottom = 0;
  std::int16_t tabWidth = 0;  ///< width of a tab in plain text output
  FilterStyle style;
  FixedString<32> clipFormat;
  FixedString<32> extension;  ///< of output files, without the dot
  FixedString<24> gameSystem;
  FixedString<24> sheetType;
  std::string description;
  std::string sortExpression;  ///< the key that sorts sheets in a batch
  std::int32_t sortOrder = 0;
  std::int32_t samePage = 0;
  /// The line number at which the body starts: body line n is line headerLines + n of the file.
  std::int32_t headerLines = 0;
  std::int32_t landscape = 0;
};

}  // namespace zv
