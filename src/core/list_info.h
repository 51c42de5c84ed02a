#pragma once
// A list of a sheet: one of the sheet's top-level lists, or the list owned by a dialog field of
// kind `list`.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/basic_records.h"
#include "core/bit_field.h"
#include "core/fixed_string.h"
#include "core/item.h"
#include "core/record_limits.h"
#include "core/record_types.h"

namespace zv {

/// A bonus that adjustments gave the items of one category of a list ("Skills:Combat+1").
struct CategoryBonus {
  std::string category;
  double total = 0.0;
};

struct ListInfo {
  ListInfo() = default;
  ListInfo(const ListInfo&) = delete;
  ListInfo& operator=(const ListInfo&) = delete;

  std::uint32_t flags = 0;
  FileInfo* owner = nullptr;
  WindowHandle window = nullptr;  ///< the list window; null when closed
  FixedString<kListNameCapacity> name{"(Unknown)"};
  std::string help;
  FixedString<kPromptCapacity> costPrompt;
  FixedString<kPromptCapacity> levelPrompt;
  std::string listHeader;
  FixedString<kListPromptCapacity> listPrompt{"Total"};
  FixedString<kMenuCharCapacity> menuChar;
  FixedString<kCategoryNameCapacity> catName;  ///< the category that feeds this list
  FontSpec font;                               ///< in use only when font.fontSize > 0
  Rect16 loc;
  ItemChain items;
  double total = 0.0;
  FixedString<kTotalVarNameCapacity> totalVarName;  ///< keyword `var`
  Symbol* totalSymbol = nullptr;
  std::int32_t maxItems = 0;  ///< 0: no limit
  std::string checkExp;
  std::string checkMsg;
  std::string changeExp;
  Symbol* changeSymbol = nullptr;
  std::string defCheckMsg;
  std::string format;  ///< the default item format
  std::vector<AltFormat> altFormats;
  std::vector<CategoryBonus> categoryBonuses;  ///< in the order the categories first got one

  bool open() const { return bits::test(flags, 0); }
  void setOpen(bool on) { bits::assign(flags, 0, on); }
  bool inUse() const { return bits::test(flags, 1); }
  void setInUse(bool on) { bits::assign(flags, 1, on); }
  /// Which item editor the list uses (three bits).
  unsigned editDlg() const { return bits::field(flags, 3, 3); }
  void setEditDlg(unsigned value) { bits::setField(flags, 3, 3, value); }

  /// Appends an item at list level, tying it and its members to this list and its owner.
  Item& appendItem(std::unique_ptr<Item> item);

  /// A deep copy with the same owner; items are tied to the copy, symbols and window cleared.
  std::unique_ptr<ListInfo> clone() const;
};

}  // namespace zv
