#pragma once
// Writing a data sheet (.cds) as a token stream, in text or binary form.

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/game_system.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// One category as the writer takes it: its name, its sort mode and its items. A game system
/// keeps its categories as records; a data sheet document keeps them as sublists of its root.
struct DataSheetCategory {
  std::string_view name;
  std::int16_t sort = 0;
  const ItemChain* items = nullptr;
};

/// What a data sheet file holds besides its header: the game system's name, the categories in
/// document order, the strings and the option tree.
struct DataSheetBody {
  std::string_view gameSystem;
  std::vector<DataSheetCategory> categories;
  const std::vector<StringDef>* strings = nullptr;
  const OptionTree* options = nullptr;
};

/// The body of a game system's master data: its categories, strings and options.
DataSheetBody dataSheetBodyOf(const GameSystem& system);

/// Writes the header of `file` and `body` to `output`, in binary or text form. Returns kWriteOk
/// or the first failure, whose message has been shown.
int writeDataSheet(const DataSheetFile& file, const DataSheetBody& body, ByteStream& output,
                   bool binary);
/// The same with the categories, strings and options of `system`.
int writeDataSheet(const DataSheetFile& file, const GameSystem& system, ByteStream& output,
                   bool binary);

}  // namespace zv
