#pragma once
// A data sheet read on its own, into a private game system, so that the master data of the
// process stay untouched: for converting, dumping and merging data sheets.

#include <filesystem>
#include <memory>

#include "core/game_system.h"
#include "formats/datasheet/data_sheet_reader.h"

namespace zv {

struct DataSheetContents {
  DataSheetFile file;
  /// The game system that the file names, private to these contents.
  std::unique_ptr<GameSystem> system;
};

/// Reads the data sheet (binary, text, macro text, or a character sheet used as data) at `path`
/// into `contents`, whose file name is the path's short name. Duplicates of lower priority stay,
/// as in a document. False after the reason was shown ("Cannot open data sheet '%s'." when the
/// file can't be read).
bool readDataSheetContents(const std::filesystem::path& path, DataSheetContents& contents,
                           const std::filesystem::path& dataDir = {});

}  // namespace zv
