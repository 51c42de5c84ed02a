#pragma once
// The master data of one game system: categories of master items, loaded data sheets, strings,
// definitions and the embedded record that owns the master items for the expression engine.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/basic_records.h"
#include "core/bit_field.h"
#include "core/fileinfo.h"
#include "core/fixed_string.h"
#include "core/item.h"
#include "core/option.h"
#include "core/option_tree.h"
#include "core/record_limits.h"

namespace zv {

/// A data sheet loaded into a game system.
struct OpenDataSheet {
  std::int32_t id = 0;  ///< process-unique, from nextDataSheetId()
  FixedString<kPathCapacity> helpFile;
  std::int32_t level = 0;
  std::string name;  ///< the file's short name
};

/// A name and value string of the data sheets.
struct StringDef {
  std::string name;
  std::string value;
};

/// A master list: the items of one category, from every data sheet that feeds it.
struct Category {
  Category() = default;
  explicit Category(std::string_view categoryName) : name(categoryName) {}
  Category(const Category&) = delete;
  Category& operator=(const Category&) = delete;

  FixedString<kCategoryNameCapacity> name;
  std::int16_t sort = 0;  ///< keyword `sort`: the sort mode of the items
  ItemChain items;
  std::vector<AltFormat> altFormats;
  /// The lookup index: every master item of the category, members of sublists too, sorted by
  /// name ignoring case (load order among equal names). Rebuilt when a load or unload ends.
  std::vector<Item*> index;

  /// Appends a master item (no owner, no list) at the next position.
  Item& appendItem(std::unique_ptr<Item> item);
  /// Fills the lookup index from the items as they stand.
  void rebuildIndex();
  /// The first master item of that name (ignoring case) through the index; null if there is none.
  Item* findItem(std::string_view itemName) const;
};

/// A preference a game system declares in a `.pref` file: its name (the file's section), the
/// prompt and control of the preferences dialog, the default and the choices of a list.
struct ConfigParam {
  std::string name;
  std::string prompt;
  std::string
      type;  ///< "checkbox", "prompt", "number", "edittext", "dropdown", "listbox", "treelist"
  std::string defaultValue;
  std::vector<std::string> choices;
};

struct GameSystem {
  explicit GameSystem(std::string_view systemName);
  GameSystem(const GameSystem&) = delete;
  GameSystem& operator=(const GameSystem&) = delete;

  FixedString<kGameSystemNameCapacity> name;  ///< matched ignoring case
  std::uint32_t flags = 0;
  std::int32_t level = -1;  ///< the level of the data sheets loaded so far; -1 until the first
  std::vector<OpenDataSheet> dataSheets;              ///< in load order
  std::vector<std::unique_ptr<Category>> categories;  ///< in first-seen order
  std::vector<StringDef> strings;
  OptionTree options;  ///< the master option tree: groups and options of every data sheet
  /// The definitions of the data sheets; the same table as master.symbols once created.
  std::shared_ptr<SymbolTable> symbols;
  /// Stands as the owner of the master items so that expression code treats them like sheet
  /// items; its gameSystem points back here.
  FileInfo master;
  std::vector<DefineRec> defines;        ///< from all loaded data sheets, merged into open sheets
  std::vector<ConfigParam> preferences;  ///< from the `.pref` files, in file order

  /// Whether the data sheet copyright has been shown once in this process.
  bool copyrightShown() const { return bits::test(flags, 0); }
  void setCopyrightShown(bool on) { bits::assign(flags, 0, on); }

  /// The category of that name, ignoring case; null if there is none.
  Category* findCategory(std::string_view categoryName) const;
  /// The category of that name, appended at the end if it is new.
  Category& findOrAddCategory(std::string_view categoryName);

  /// Records a loaded data sheet with a fresh id, at the end of the load order.
  OpenDataSheet& addDataSheet(std::string_view sheetName);
  /// The loaded data sheet with that id; null if there is none.
  OpenDataSheet* findDataSheet(std::int32_t id);
};

}  // namespace zv
