#pragma once
// The item format language: strings such as "%0ln%-5rc%-10rv" that lay one item out in columns,
// for list windows and filters. `%[-]n` starts a column n units from the left edge (with "-",
// n units and 4 more from the right edge), then an alignment letter (l, r, c; any other is left)
// and a field letter; `^f` writes field f into the current column; `%%` is a percent sign; any
// other character is copied into the current column.

#include <string>
#include <string_view>
#include <vector>

#include "core/item.h"
#include "core/record_types.h"

namespace zv {

enum class ColumnAlignment { Left, Right, Centre };

struct ItemFormatColumn {
  int left = 0;   ///< from the rectangle's left edge
  int right = 0;  ///< the column reaches to here
  ColumnAlignment alignment = ColumnAlignment::Left;
  std::string text;
};

/// Where a format is laid out: the width of the rectangle and the unit of `n` (the width of a
/// character in a list window; 8 on a rectangle of 32767 in a filter).
struct ItemFormatSpace {
  int unit = 8;
  int width = 32767;
  bool useAliases = false;  ///< the `n` field shows the alias form of the name
  /// Where `x` expressions evaluate when there is no item (null: they give "???").
  SymbolTable* table = nullptr;
};

/// A filter's space: unit 8 on 32767.
inline ItemFormatSpace filterFormatSpace(bool useAliases) {
  return ItemFormatSpace{8, 32767, useAliases, nullptr};
}

inline constexpr std::size_t kMaxItemFormatColumns = 10;
inline constexpr std::size_t kMaxItemFormatText = 1024;

/// The columns of one item (null: only the literal text, as in list headers), sorted by their
/// left edges; each reaches to the next one's left edge less one unit, the last to the right edge
/// less 4. At most 10 columns (an eleventh one's text goes into the tenth) and 1,024 bytes of
/// text in all.
std::vector<ItemFormatColumn> layoutItemFormat(std::string_view format, Item* item,
                                               const ItemFormatSpace& space);

/// The columns' texts in order with one tab between them, cut at 1,024 bytes.
std::string itemFormatText(std::string_view format, Item* item, const ItemFormatSpace& space);

}  // namespace zv
