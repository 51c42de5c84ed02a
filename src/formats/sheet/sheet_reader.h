#pragma once
// Reading a character sheet (.chr) or character template (.cst) from its token stream, in text
// or binary form, into a FileInfo.

#include <string_view>

#include "core/fileinfo.h"
#include "formats/sheet/sheet_read_options.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// The first word of every sheet and template file.
inline constexpr std::string_view kCharsheetFirstWord = "Character Sheet file v. 1";

/// Reads the sheet from `input` into `sheet`, whose fileType (1 sheet, 2 template), name and path
/// the caller has set. On failure the reason has been shown, false is returned and the record
/// keeps no partial document: its lists, dialogs, definitions and symbol table are gone.
bool readCharsheet(FileInfo& sheet, ByteStream& input, const SheetReadOptions& options = {});

/// The same over a token stream that is positioned at the first byte of the file (it is opened
/// here, so the binary form is recognised by its magic).
bool readCharsheet(FileInfo& sheet, TokenStream& input, const SheetReadOptions& options = {});

}  // namespace zv
