#pragma once
// The small records that lists, dialogs, items and data sheets share: fonts, alternative formats,
// page layout and definitions.

#include <cstdint>
#include <string>
#include <vector>

#include "core/bit_field.h"
#include "core/fixed_string.h"
#include "core/record_limits.h"
#include "core/record_types.h"

namespace zv {

struct FontSpec {
  FixedString<kFontFaceCapacity> fontFace;
  /// Low byte the point size, higher bits the style; a font is in use only when positive.
  std::int16_t fontSize = 0;
  std::int16_t fontCharset = 0;
  std::int16_t fontPitch = 0;
  std::uint32_t fontColor = 0;  ///< 0x00BBGGRR
  friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

/// An alternative format of a list, item or category, chosen by name in list windows.
struct AltFormat {
  std::string name;
  std::string header;
  std::string format;
  friend bool operator==(const AltFormat&, const AltFormat&) = default;
};

struct TabStop {
  std::int16_t position = 0;  ///< twips
  std::int16_t type = 0;
  friend bool operator==(const TabStop&, const TabStop&) = default;
};

/// The page layout of a data sheet. Lengths are twips (1/1440 inch). A record read from a file
/// starts zero-filled; a new data sheet starts from forNewDataSheet().
struct PageInfo {
  std::int16_t lm = 0;
  std::int16_t rm = 0;
  std::int16_t tm = 0;
  std::int16_t bm = 0;
  std::int16_t tabwidth = 0;
  std::int16_t charstyle = 0;
  FixedString<kFontFaceCapacity> facename;
  std::int16_t pointsize = 0;
  std::uint8_t pitch = 0;
  std::uint8_t charset = 0;
  std::uint32_t textcolor = 0;
  std::int32_t firstindent = 0;
  std::int16_t lineheight = 0;
  std::int16_t just = 0;
  std::int16_t columns = 0;
  std::int16_t columnSpacing = 0;
  std::int16_t deftab = 0;
  std::vector<TabStop> tabs;  ///< keyword `tabs`; its size is the tab count

  /// Margins of 1080, "Times New Roman" at 220 with pitch 18, one tab at 360, default tabs and
  /// column spacing of 720.
  static PageInfo forNewDataSheet();

  friend bool operator==(const PageInfo&, const PageInfo&) = default;
};

/// A definition made by a sheet or a data sheet: a variable, function or array with its body.
struct DefineRec {
  std::int32_t kind = 0;  ///< the keyword id of `var`, `func` or `array`
  std::uint32_t flags = 0;
  std::int32_t sourceId = 0;  ///< the data sheet id; 0 for the sheet's own
  std::string name;
  std::string body;
  Symbol* symbol = nullptr;  ///< the symbol defined in the owner's table; null if that failed

  bool scriptAdded() const { return bits::test(flags, 0); }
  void setScriptAdded(bool on) { bits::assign(flags, 0, on); }
};

}  // namespace zv
