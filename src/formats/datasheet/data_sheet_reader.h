#pragma once
// Reading a data sheet (.cds, text or binary) into a game system: its categories of master items,
// strings and definitions, plus the header values that belong to the file itself.

#include <string>

#include "formats/datasheet/data_sheet_file.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// Reads the data sheet from `input` (positioned at its first byte) into `file`, whose name and
/// path the caller has set. The categories, options, strings and an OpenDataSheet record go into
/// the game system. A character sheet file stands in as a data sheet: its lists feed the
/// categories they name (`input` must then be able to rewind). On failure the reason has been
/// shown and false is returned; what the file had put into the game system is still there, under
/// file.id, for the caller to remove.
bool readDataSheet(ByteStream& input, DataSheetFile& file,
                   const DataSheetReadOptions& options = {});
/// The same over the whole file in memory (the faster way for a text data sheet).
bool readDataSheet(std::string bytes, DataSheetFile& file,
                   const DataSheetReadOptions& options = {});

}  // namespace zv
