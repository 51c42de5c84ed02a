#pragma once
// Writing a character sheet or template as a token stream, in text or binary form.

#include <string_view>

#include "core/fileinfo.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

struct SheetWriteOptions {
  /// The `binary` setting. A template (fileType 2) is written in text form whatever it says.
  bool binary = false;
};

/// Writes the sheet to `output`. The record is brought up to date on the way: the screen's
/// pixels per inch, a sheet's data file names (from the sources of its items), a template's
/// window places (reset when fewer than two windows are open) and its binary flag. Returns the
/// stream result (kWriteOk or a negative kWrite* value); a failure has been reported.
int writeCharsheet(FileInfo& sheet, ByteStream& output, const SheetWriteOptions& options = {});

/// The same into a token stream that has a byte stream; its form is set here.
int writeCharsheet(FileInfo& sheet, TokenStream& output, const SheetWriteOptions& options = {});

/// Shows the message of a failed write of a sheet or data sheet: -2 "No disk space to write
/// file %s", -1 "Error writing file %s", any other failure the internal error report.
void reportSheetWriteResult(int result, std::string_view fileName);

}  // namespace zv
