#pragma once
// Requirements: the `prereq` text of an item, a sequence of demands joined by "and" (";"), "or"
// ("|") and "then" ("~"), and the test of it against a sheet. Each demand is "[!]body[::message]"
// where the body asks for an expression, an item, an item at a level, a count of items in a list
// or category, or an option of an item. A backslash makes the next character plain.
//
// Satisfying an unmet demand by adding items (which needs list insertion) builds on this: it
// walks the same parsed records and marks each one it satisfied (Prereq::satisfiedByUser).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/value.h"

namespace zv {

enum class PrereqKind : int {
  Expression = 0,       ///< "$expression": true when the result isn't zero
  ItemExists = 1,       ///< "item" or "list:item"
  ItemCompared = 2,     ///< "item op value": the item's level compares
  ListCount = 3,        ///< "#count,list [op value]"
  CategoryCount = 4,    ///< "#count,list:category [op value]"
  CategoriesCount = 5,  ///< "#count,categories,list [op value]"
  Excluded = 10,        ///< made by the excluded test: another item excludes this one
  MessageOnly = 11,     ///< made by a check: a message alone
  Option = 12,          ///< "item@@[*]option [op value]"
};

enum class PrereqConnector : int { And = 6, Or = 7, End = 8, Then = 9 };

enum class PrereqComparison : int {
  None = 0,
  Less = 1,
  LessEqual = 2,
  Equal = 3,
  GreaterEqual = 4,
  Greater = 5,
};

/// One parsed requirement.
struct Prereq {
  PrereqKind kind = PrereqKind::Expression;
  bool negated = false;          ///< flag bit 0: NOT
  bool satisfiedByUser = false;  ///< flag bit 1: the user satisfied it
  bool optionStarred = false;    ///< flag bit 2: the option name stands behind "*"
  PrereqConnector connector = PrereqConnector::End;
  int count = 0;
  int categoryCount = 0;  ///< kind 5
  std::string category;   ///< kind 4
  std::string list;       ///< the list (or dialog) named, "" for the item's own
  ListInfo* listFound = nullptr;
  std::string name;        ///< the item, or the expression text of kind 0
  std::string optionName;  ///< kind 12
  std::string message;     ///< shown in place of the generated text; "$..." is an expression
  PrereqComparison comparison = PrereqComparison::None;
  Value value;  ///< compared with; the value text itself when not evaluated
  std::string valueText;
  DlgItem* field = nullptr;  ///< kind 2 on a dialog field "dialog:field"

  std::uint32_t flags() const {
    return (negated ? 1u : 0u) | (satisfiedByUser ? 2u : 0u) | (optionStarred ? 4u : 0u);
  }
};

/// Where requirements are read: the sheet, the list whose items they belong to, and the item in
/// whose context values are evaluated. Any may be null; `evaluate` off keeps values as text (a
/// data sheet being loaded).
struct PrereqContext {
  FileInfo* sheet = nullptr;
  ListInfo* list = nullptr;
  Item* item = nullptr;
  bool evaluate = true;
  bool quiet = false;  ///< no messages (the excluded test reads other items' texts)
};

/// Reads one requirement of `text` starting at `position` and moves `position` behind its
/// connector. Empty requirements are skipped; nullopt at the end of the text, and nullopt with
/// `failed` set after "Syntax error in requirement: %s" was shown.
std::optional<Prereq> parsePrereq(const PrereqContext& context, std::string_view text,
                                  std::size_t& position, bool& failed);

/// Every requirement of a text; nullopt after a syntax error.
std::optional<std::vector<Prereq>> parsePrereqs(const PrereqContext& context,
                                                std::string_view text);

/// The text of one requirement as parsePrereq reads it, with its connector and the escapes.
/// nullopt after "Internal Error in formatPrereq", "error in formatPrereq", "List name missing"
/// or "Category or list name missing".
std::optional<std::string> formatPrereq(const Prereq& prereq);

/// The operator text of a comparison: "<", "<=", "=", ">=", ">", or "".
std::string_view comparisonText(PrereqComparison comparison);

/// Whether one requirement holds for the item on the sheet (NOT applied).
bool testPrereq(FileInfo& sheet, ListInfo* list, Item& item, const Prereq& prereq);

/// Whether the item's level value stands to the requirement's value as its comparison asks
/// (a requirement with no comparison holds).
bool levelCompares(const Item& item, const Prereq& prereq);

/// How prereqSatisfied tests an item.
struct PrereqMode {
  bool excludedTest = false;  ///< first test whether an item present excludes this one
  bool adding = false;        ///< the item is being added (its own flag may waive the check)
};

/// The item excluded by an item present on the sheet: a present item whose requirements say
/// "!name" of this item (NOT, item exists). The record is of kind Excluded naming that item and
/// its list; nullopt when none excludes it.
std::optional<Prereq> findExclusion(FileInfo& sheet, const Item& item);

/// True when the item's requirements hold: an item flagged not to be checked (in the adding mode
/// the flag of checks on insertion) holds; with the excluded test, an excluded item fails; the
/// item's level must pass its check; then the requirement text: "and" runs of "or" choices form
/// a group, and groups joined by "then" must each hold, the test stopping at the first that
/// doesn't. A text that can't be read fails.
bool prereqSatisfied(FileInfo& sheet, ListInfo* list, Item& item, PrereqMode mode,
                     std::string_view requirements);

/// A fault of the order of operators that the requirement editor refuses: its box title and text.
struct PrereqOrderError {
  std::string title;
  std::string text;
};

/// The editor's check of a requirement text's operators: "OR cannot directly follow another OR
/// or THEN" ("OR Error"), "THEN cannot directly follow an OR or another THEN" ("Then Error"),
/// "OR and THEN cannot be last." ("Order Error"); nullopt when the order is good. "Directly" means
/// with no requirement between them.
std::optional<PrereqOrderError> checkPrereqOrder(std::string_view text);

/// An item whose requirements don't hold, as the check of a whole sheet lists it.
struct UnsatisfiedItem {
  ListInfo* list = nullptr;
  Item* item = nullptr;
  std::string line;  ///< "%s: %s" of list and item
};

/// Every item of the sheet's lists (groups descended) that has requirements or is excluded by
/// another item, and whose requirements don't hold with the excluded test, in list order.
std::vector<UnsatisfiedItem> checkAllPrereq(FileInfo& sheet);

/// The count line of that check: "No unsatisfied requirements", "1 item with unsatisfied
/// requirements" or "%d items with unsatisfied requirements".
std::string unsatisfiedCountText(std::size_t count);

/// The display line of a requirement: its message (evaluated when it begins "$"), else the
/// generated text by kind, "NOT " in front of a negated one. `item` is the context of a message
/// expression and may be null.
std::string prereqText(const Prereq& prereq, Item* item);

}  // namespace zv
