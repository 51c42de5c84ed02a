#pragma once
// The item selection without its window: what the Select Item dialog offers a list of a sheet.
// It opens at the list's category (or that of the group the cursor stands in), lets the user
// choose another category or "(All)", shows each category's tree of master items that pass the
// sheet's rule sets, finds rows by a part of their name, and follows reference items. The
// desktop dialog and the script commands drive it; takeItem (take_item.h) adds a row's item.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "rules/selection/rule_sets.h"

namespace zv {

/// The category choice that stands for every category.
inline constexpr std::string_view kAllCategories = "(All)";

/// One row of the offer: a master item, its category, its depth in the category's tree and the
/// row of the group that holds it (-1 at the top).
struct OfferedRow {
  Item* item = nullptr;
  Category* category = nullptr;
  int depth = 0;
  int parentRow = -1;
};

struct SelectionRequest {
  FileInfo* sheet = nullptr;
  ListInfo* list = nullptr;
  Item* cursor = nullptr;        ///< the list window's cursor row, where items go; may be null
  bool masterList = false;       ///< Select from Master List: opens at "(All)"
  bool unique = false;           ///< items the list already holds aren't offered
  RuleLibrary* rules = nullptr;  ///< the rule library; null: selectionRules()
};

class ItemSelection {
 public:
  /// The checks before offering: a sheet without a game system shows "The game system is not set
  /// in the GetItem dialog." ("Internal Error"); a category with no loaded items shows "No data
  /// sheets are are loaded with data for this category.\r\n\r\nLoad data sheets for the %s game
  /// system with File | Load Data Sheet... or open a character for this game system." ("No Data
  /// Available"). On success the rows of the opening category are ready. False after its box.
  bool open(const SelectionRequest& request);

  FileInfo& sheet() const { return *request_.sheet; }
  ListInfo& list() const { return *request_.list; }
  Item* cursor() const { return request_.cursor; }
  /// Moves the cursor row where the next item taken goes (the list window's caret as it is when
  /// the user takes it); null for the end of the list.
  void setCursor(Item* cursor) { request_.cursor = cursor; }
  bool unique() const { return request_.unique; }
  const RuleSetContext& rules() const { return rules_; }

  /// "(All)", then the categories of the game system that hold items, in their order.
  std::vector<std::string> categoryChoices() const;
  const std::string& currentCategory() const { return current_; }
  /// Shows another category (or "(All)"); false for a name that isn't one of the choices.
  bool chooseCategory(std::string_view name);
  /// The category the dialog opens at: the list's, or that of the group the cursor stands in;
  /// "(All)" for Select from Master List or a list without a category.
  std::string defaultCategory() const;

  /// The rows of the current category, depth first; groups show unless refused (a group always
  /// passes), so a group whose members are all refused still shows.
  const std::vector<OfferedRow>& rows() const { return rows_; }
  /// Works the rows out again (after the sheet's list or rule sets changed).
  void refresh();
  /// False, after "There are no more items available in this list satisfying the current rules."
  /// ("No Items Available") or in unique mode "There are no more unique items available in this
  /// list satisfying the current rules." ("No More Items Available"), when no item is left
  /// (groups alone are nothing to take).
  bool checkItemsLeft() const;

  /// The next row after `from` (or from the top) whose name holds `text` ignoring case, going
  /// round past the end; nullopt when none does.
  std::optional<std::size_t> findNext(std::string_view text, std::optional<std::size_t> from) const;
  /// The same going up, round past the top.
  std::optional<std::size_t> findPrevious(std::string_view text,
                                          std::optional<std::size_t> from) const;

  /// The item a row stands for: the row's own, or for a reference item (flag `see`) the item its
  /// `original` names, found among the categories and passing the rules. A missing or refused
  /// item shows "This item is actually a reference to another item.\r\n\r\nThe referenced item,
  /// %s, is not currently loaded or active." ("Item Not Found"); a reference of a group names a
  /// group, or shows "There is no sublist specified for this reference." or "The sublist
  /// referenced by this item, %s, does not exist and cannot be opened.". Null after a box.
  Item* follow(std::size_t row) const;

  /// How many items were taken while the dialog was open.
  int taken() const { return taken_; }
  void noteTaken() { ++taken_; }

 private:
  /// Appends the rows of a chain of master items under `parentRow`.
  void addRows(const ItemChain& chain, Category* category, int depth, int parentRow,
               const Item*& previous);
  bool listHolds(std::string_view name) const;
  Category* categoryOf(std::string_view name) const;

  SelectionRequest request_;
  RuleSetContext rules_;
  std::string current_;
  std::vector<OfferedRow> rows_;
  int taken_ = 0;
};

/// The row format of an item in the selection dialog: its `sformat`, else its `format`, else
/// "%0ln" for a group and "%0ln%-5rc" for an item.
std::string selectionRowFormat(const Item& item);

}  // namespace zv
