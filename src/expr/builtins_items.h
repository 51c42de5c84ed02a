#pragma once
// The built-in functions that read items: fields of the current item, of its children, its
// automatic parent, of items in a sheet's lists, counts and sums over a list, and eval.

#include <string_view>
#include <vector>

#include "core/record_types.h"
#include "expr/builtin_call.h"

namespace zv {

/// The most evals that may run inside one another; a deeper one fails with error -9.
inline constexpr int kMaxEvalDepth = 64;

/// The item a call is about: the evaluation's, else the current item of the item context; null
/// when there is none.
Item* callItem(const BuiltinCall& call);
/// The sheet a call reaches: its item's, else the table's owner; null when there is none.
const FileInfo* callSheet(const BuiltinCall& call);

/// The item of a list argument ("list" or "*sublist") by key, as listiteminfo finds it: a number
/// (or a text of digits) is the nth non-group entry from 1, groups descended; any other text
/// the first entry of that name, groups included. Null when absent.
Item* findListItem(const FileInfo& sheet, std::string_view list, const Value& key);

/// The list of the sheet whose name starts with `name` ignoring case (a name matches over its
/// own length), among the top-level lists and then the lists of dialog `list` fields. Null when
/// none.
ListInfo* findListByPrefix(const FileInfo& sheet, std::string_view name);

/// The items a list argument stands for: "list" or "list:selector" (the items of the list that
/// pass compareItemvalue with the selector), or "*name", the members of the sheet's sublist of
/// that name. Groups are descended and left out themselves. False when the list is unknown.
bool listArgumentItems(const FileInfo& sheet, SymbolTable& table, std::string_view list,
                       std::vector<Item*>& out);

/// The selector test of lists and incategory: "@option:value" or "@option=value" compares the
/// item's options of that name with the evaluated value (a name alone suffices without a value);
/// any other text is the category test of the item rules (see OptionRules::inCategory).
bool compareItemvalue(const Item& item, SymbolTable& table, std::string_view text);

int builtinIteminfo(BuiltinCall& call);         ///< iteminfo(field)
int builtinChilditeminfo(BuiltinCall& call);    ///< childiteminfo(n, field)
int builtinParentiteminfo(BuiltinCall& call);   ///< parentiteminfo(field)
int builtinListiteminfo(BuiltinCall& call);     ///< listiteminfo(list, key, field)
int builtinVariteminfo(BuiltinCall& call);      ///< variteminfo(variable, field)
int builtinFinditemvalue(BuiltinCall& call);    ///< finditemvalue(list, mode, field)
int builtinCountitems(BuiltinCall& call);       ///< countitems(list, value, comparison, field)
int builtinTotalitems(BuiltinCall& call);       ///< totalitems(list, value, comparison, field)
int builtinTotalitemvalues(BuiltinCall& call);  ///< totalitemvalues(list, field)
int builtinListentries(BuiltinCall& call);      ///< listentries(list)
int builtinEval(BuiltinCall& call);             ///< eval(s): parses and evaluates a text

}  // namespace zv
