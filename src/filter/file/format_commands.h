#pragma once
// The header commands of filters: the 32 words that set page, font, paragraph and identity
// values. A body line or a print page can set a style from a line through the same function.

#include <string_view>

#include "core/record_types.h"
#include "filter/file/filter_document.h"

namespace zv {

/// The command numbers: the places of the words in the sorted table, from 1.
enum FormatCommand : int {
  kFormatNone = 0,
  kFormatBgColor,
  kFormatBold,
  kFormatBoldItalic,
  kFormatClipFormat,
  kFormatColumns,
  kFormatDefTab,
  kFormatDescription,
  kFormatExtension,
  kFormatFace,
  kFormatFirstIndent,
  kFormatFont,
  kFormatFontInfo,
  kFormatGameSystem,
  kFormatHLine,
  kFormatItalic,
  kFormatKeepNext,
  kFormatLandscape,
  kFormatLeftIndent,
  kFormatMargins,
  kFormatNeed,
  kFormatParInfo,
  kFormatPlain,
  kFormatSamePage,
  kFormatSheetType,
  kFormatSortExp,
  kFormatSortOrder,
  kFormatTabs,
  kFormatTabWidth,
  kFormatTextColor,
  kFormatTrans,
  kFormatVLine,
  kFormatWrapTab,
};
inline constexpr int kFormatCommandCount = 32;

/// The number of a command word (without "@"), ignoring case; kFormatNone for any other word.
int findFormatCommand(std::string_view word);
/// The word of a command number.
std::string_view formatCommandWord(int command);
/// True for the commands that set the style block, which take effect without a document.
bool isStyleCommand(int command);

/// The command word of a line that starts with "@": the bytes behind it up to a blank, a tab or
/// the line end.
std::string_view commandWordOf(std::string_view line);

/// Applies a header command line (starting with "@"): 0 when it is no header command, the
/// command's number when consumed, -1 after an error (shown in a "Filter Error" box with
/// `lineNumber`). Without a document only style commands take effect. With a sheet and a
/// document, @gamesystem and @sheettype must match the sheet.
int applyFormatCommand(const FileInfo* sheet, std::string_view line, FilterDocument* document,
                       FilterStyle& style, int lineNumber);

}  // namespace zv
