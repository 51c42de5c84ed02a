#pragma once
// A character sheet file used as a data sheet: the items of its lists become master items of the
// categories that the lists name.

#include "formats/datasheet/data_sheet_file.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// Rewinds `input` and reads it as a character sheet (without loading its data sheets and
/// without symbols), then copies the items of every list, and of every `list` field, into the
/// category named by the list's catName, tagged with file.id. A sublist that doesn't add its whole
/// list merges into a sublist of the same name (ignoring case). The game system, level and help
/// file of the sheet become the data sheet's. False after the reason was shown.
bool readCharsheetAsDataSheet(ByteStream& input, DataSheetFile& file,
                              const DataSheetReadOptions& options);

}  // namespace zv
