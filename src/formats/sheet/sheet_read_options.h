#pragma once
// What the reader of the sheet grammar is told about the file it reads: a document or a data
// sheet, the expression engine behind it, and the steps its caller supplies.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "formats/sheet/sheet_symbols.h"

namespace zv {

struct SheetReadOptions {
  /// 0 for a document; a data sheet id when a data sheet in this format is merged. Items and
  /// definitions read take it as their sourceId.
  std::int32_t sourceId = 0;
  /// True for a document: each name of the `datafile` block is handed to loadDataSheet.
  bool loadData = true;
  /// The expression engine; null reads the grammar without defining any symbol.
  SheetSymbolBinder* symbols = nullptr;

  /// Assigns the levels of the items and adds up the lists once the last token is read, with the
  /// process-wide reading flag set. It shows its own message and returns false on failure.
  /// Empty: settleFromStoredCosts (sheet_settle.h).
  std::function<bool(FileInfo&)> settle;
  /// Applies an item's options and computes its cost after its option block, in a character
  /// sheet (fileType 1) only. Empty: options are kept as read.
  std::function<void(FileInfo&, Item&)> applyOptions;
  /// Loads a data sheet named in the `datafile` block (when loadData is on).
  std::function<void(FileInfo&, const std::string&)> loadDataSheet;
  /// Keeps the name of a game system met in a file in the settings' list of game systems.
  std::function<void(std::string_view)> registerGameSystemName;
  /// Decodes the raw block of a `picture` field into the picture record; empty keeps the bytes
  /// only.
  std::function<std::shared_ptr<void>(std::string_view name, std::string_view bytes)> decodePicture;
};

}  // namespace zv
