#pragma once
// Automatic items: the `autoitems` text of an item is a little program that runs when the item is
// added and brings other items with it. It is a sequence of elements separated by ";": a
// directive "?name" or "?name:argument", or an item reference
//
//   [category:]itemname[[displayname]][=level]
//
// Directives set the state of the run (where items go, which category they come from, pending
// options, charging, conditions) or ask the user (?choose, ?setval, ?seloptval, ?itemref). Each
// item added is tied to the parent by the parent's autoID.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "rules/lists/list_ops.h"

namespace zv {

/// One element of an automatic items text.
struct AutoElement {
  bool directive = false;
  std::string name;      ///< a directive's name without "?"
  std::string argument;  ///< a directive's text behind ":", trimmed
  bool hasArgument = false;
  bool terminated = false;  ///< a ";" ended the element
  std::string text;         ///< the element as written, trimmed
};

/// The elements of a text, blanks around each dropped and empty elements skipped.
std::vector<AutoElement> splitAutoItems(std::string_view text);

/// An item reference `[category:]itemname[[displayname]][=level]`. A ":" splits off the category
/// only when it stands before any "[" and "=".
struct AutoItemRef {
  std::string category;
  std::string name;
  std::string displayName;
  std::string level;
  bool hasCategory = false;
  bool hasDisplayName = false;
  bool hasLevel = false;
};
AutoItemRef parseAutoItemRef(std::string_view text);

/// The argument of ?choose: "title,count,element,element,...", where count is "n" or "min-max"
/// (a maximum of 0: no upper bound) and may be left out (1 and 1). An element is an item
/// reference, or a pattern beginning "*" (with "=level" behind it).
struct ChooseArgument {
  std::string title;
  int minimum = 1;
  int maximum = 1;
  std::vector<AutoItemRef> elements;
};
/// The choice, or nullopt with `error` holding "Title missing after ?choose." or "Missing comma
/// after item count in ?choose.".
std::optional<ChooseArgument> parseChooseArgument(std::string_view argument, std::string& error);

/// The sentence that tells how many items to choose, followed by "Click an item in the list to
/// choose it.".
std::string chooseCountText(int minimum, int maximum);

/// Runs an automatic items text for `parent`, just added to `list`. New items go into `container`
/// (a sublist, or the list itself when null) unless the text sends them elsewhere. Returns the
/// number of items added, or -1 when a directive failed (its message was shown; items added
/// before stay). A question the user cancelled ends the run with `cancelled` set and no message.
int runAutoItems(FileInfo& sheet, ListInfo& list, Item& parent, Item* container,
                 std::string_view text, AddChain& chain, bool& cancelled);

}  // namespace zv
