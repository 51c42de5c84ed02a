#pragma once
// Item field access: the table of the fields that formulas, filters and scripts read from an item
// ("@cost" inside an item's formula, "cost" as the field argument of iteminfo), and the small stack
// of item contexts that makes the current item known to the compiler through the symbol table's
// resolver.

#include <span>
#include <string>
#include <string_view>

#include "core/record_types.h"
#include "core/value.h"
#include "expr/symbols.h"

namespace zv {

struct Option;

/// The number of distinct fields; the table has one more name, `default` and `defaultValue` being
/// the same field.
inline constexpr int kItemFieldCount = 60;
inline constexpr int kItemFieldNameCount = 61;

/// The field names in table order: sorted ignoring case.
std::span<const std::string_view> itemFieldNames();
/// The field number (0 to kItemFieldCount - 1) of a name, by binary search ignoring case; -1 for
/// an unknown name.
int findItemField(std::string_view name);

/// Reads field `field` of the item, with `option` standing for the current option of the opt*
/// fields. Returns true when it gave a value; false for a field with no value (`noautodup`,
/// `parent` without a parent, an opt* field without an option).
bool itemField(const Item& item, const Option* option, int field, Value& out);
/// The same by name; an unknown name fails.
bool itemField(const Item& item, const Option* option, std::string_view name, Value& out);
/// The same with the current option of the item context (see setCurrentItem).
bool itemField(const Item& item, std::string_view name, Value& out);

/// The long and the short word of an option kind ("Fraction" and "frac"); "Option" for a kind
/// that is none of the ten.
std::string_view optionKindWord(std::int32_t kind);
std::string_view optionKindShortWord(std::int32_t kind);

/// The value an option stands for, read from its value text: a toggle "?+1;text" gives its text
/// (or "0"/"1" when empty), a prompted "??label;value;" its value (the label when empty), a count
/// list "?:n; a; b;" the value of its nth entry, anything else the whole text. A text that is
/// exactly a number becomes that number.
Value optionValue(const Option& option);

/// The number of options that count for the item: its own and, with printInheritedOptions, those
/// inherited from sublists with `inheritopts`, that are active (not hidden) and whose value
/// doesn't begin "?+0".
int countedOptions(const Item& item);

/// The option of the item (or inherited) whose name equals `name` ignoring case; failing that
/// the first whose name starts with it. Null when none.
const Option* findItemOption(const Item& item, std::string_view name);

// ---- The item context ----

/// Saves the table's resolver on the context stack and installs the item resolver in its place,
/// which chains to the saved one. The table must outlive the context.
void pushItemContext(FileInfo* fileInfo, SymbolTable& table);
/// Restores the table's resolver, pops the context and clears the current item and option. On an
/// empty stack: the internal error report (source "Itemlook") and false.
bool popItemContext();
/// Sets the current item and option of the context (either may be null).
void setCurrentItem(Item* item, Option* option);
Item* currentContextItem();
Option* currentContextOption();

/// Pushes a context for its lifetime.
class ItemContextScope {
 public:
  ItemContextScope(FileInfo* fileInfo, SymbolTable& table) { pushItemContext(fileInfo, table); }
  ~ItemContextScope() { popItemContext(); }
  ItemContextScope(const ItemContextScope&) = delete;
  ItemContextScope& operator=(const ItemContextScope&) = delete;
};

/// A field of the item by name, then the value of an option of that name (prefixes accepted),
/// then the resolver chained by the innermost context. `option` is the current option of the
/// opt* fields.
bool itemValueByName(const Item& item, const Option* option, std::string_view name, Value& out);
/// The same with the current option of the context.
bool itemValueByName(const Item& item, std::string_view name, Value& out);

}  // namespace zv
