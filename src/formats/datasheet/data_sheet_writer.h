#pragma once
// Writing a data sheet (.cds) as a token stream, in text or binary form.

#include "core/game_system.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// Writes the header of `file` and the categories and strings of `system` to `output`, in
/// binary or text form. Returns kWriteOk or the first failure, whose message has been shown.
int writeDataSheet(const DataSheetFile& file, const GameSystem& system, ByteStream& output,
                   bool binary);

}  // namespace zv
