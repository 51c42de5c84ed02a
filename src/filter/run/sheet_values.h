#pragma once
// The values a filter reads from the sheet itself: the 16 sheet words ("@date", "@filename",
// "@detailshtml"...), what "@list", "@notes", "@details" and "@dialog.field" give in
// expressions, and the text a dialog field shows in output.

#include <optional>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "core/value.h"

namespace zv {

/// What the sheet words need besides the sheet.
struct SheetValueSettings {
  bool blankSheet = false;
  int pageNumber = 0;
  std::string shortDatePattern = "m/d/yy";
};

/// The result of a sheet word: no such word, a value, or a failure (the rich text of the sheet
/// could not be read; `error` says why).
struct SheetValue {
  enum class Status { Unknown, Found, Failed } status = Status::Unknown;
  Value value;
  std::string error;
};

/// One of the 16 sheet words (ignoring case): blankcharsheet, charsheetlevel, checkrequirements,
/// currentversion, date, datasheets, datecreated, detailshtml, detailsrtf, detailstext,
/// filename, gamesystem, notes, pagenumber, ruleset, sheettype.
SheetValue sheetValue(const FileInfo& sheet, std::string_view word,
                      const SheetValueSettings& settings);

/// The list of the sheet named by `name` as a filter names lists: a top-level list or a dialog's
/// list field whose name starts with `name` (ignoring case). Null when there is none.
ListInfo* findSheetList(const FileInfo& sheet, std::string_view name);

/// The field `field` of the dialog `dialog` (ignoring case); null when either is missing.
DlgItem* findDialogField(const FileInfo& sheet, std::string_view dialog, std::string_view field);

/// The text a dialog field gives in output: a list the name of its first item (or nothing), a
/// combo box the label of its chosen entry, a formula or variable field the value it shows,
/// any other field its text.
std::string dialogFieldText(FileInfo& sheet, const DlgItem& field);

/// The value of a dialog field in expressions: its variable's value; for a picture 1 when it has
/// one; for a field without a variable 1 when its text isn't empty.
Value dialogFieldValue(const DlgItem& field);

/// The number of elements of a list, members of sublists included.
int countElements(const ItemChain& chain);

}  // namespace zv
