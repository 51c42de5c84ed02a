#include "script/expand/plus_functions.h"

#include <chrono>
#include <vector>

#include "core/game_system.h"
#include "core/random.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/item_fields.h"
#include "script/reader/script_reader.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

using Result = std::optional<std::string>;

Result reported(ScriptRun& run, std::string_view message) {
  run.reportError(message);
  return std::nullopt;
}

Result truth(bool value) {
  return std::string(value ? "1" : "0");
}

/// A list of the sheet by the start of its name, or nullopt after "'%s' is not a list name.".
ListInfo* listOrReport(ScriptRun& run, FileInfo& sheet, std::string_view name) {
  ListInfo* list = findListByPrefix(sheet, name);
  if (list == nullptr) run.reportError(strprintf("'%s' is not a list name.", name));
  return list;
}

Category* dataListOrReport(ScriptRun& run, FileInfo& sheet, const ListInfo& list) {
  Category* category = dataListOf(sheet, list);
  if (category == nullptr) {
    run.reportError(strprintf("Can't find data sheet list %s for %s.",
                              std::string_view(list.catName), std::string_view(list.name)));
  }
  return category;
}

/// Splits "list,item" at the first comma; the messages name the function.
bool listAndItem(ScriptRun& run, std::string_view arguments, std::string_view function,
                 std::string& list, std::string& item) {
  const std::size_t comma = arguments.find(',');
  if (comma == std::string_view::npos) {
    run.reportError(strprintf("',' missing after list name in $+%s", function));
    return false;
  }
  list = trimBlanks(arguments.substr(0, comma));
  item = trimBlanks(arguments.substr(comma + 1));
  if (item.empty()) {
    run.reportError(strprintf("Item name missing in $+%s", function));
    return false;
  }
  return true;
}

Result canceled(ScriptRun& run, std::string_view) {
  return truth(run.progressCanceled);
}

/// The item drawn at random from a chain: by the items' weights when any has one, else evenly.
Item* drawFrom(const ItemChain& chain) {
  if (chain.empty()) return nullptr;
  std::uint32_t total = 0;
  for (const auto& item : chain)
    total += item->rand();
  if (total == 0) return chain[randomBelow(static_cast<std::uint32_t>(chain.size()))].get();
  std::uint32_t draw = randomBelow(total);
  for (const auto& item : chain) {
    if (draw < item->rand()) return item.get();
    draw -= item->rand();
  }
  return chain.back().get();
}

Result randselect(ScriptRun& run, std::string_view arguments) {
  const std::vector<std::string> path = split(trimBlanks(arguments), '.');
  ListInfo* list = listOrReport(run, *run.destSheet, trimBlanks(path.front()));
  if (list == nullptr) return std::nullopt;
  Category* category = dataListOrReport(run, *run.destSheet, *list);
  if (category == nullptr) return std::nullopt;
  const ItemChain* chain = &category->items;
  for (std::size_t i = 1; i < path.size(); ++i) {
    const std::string name = trimBlanks(path[i]);
    const Item* found = nullptr;
    for (const auto& item : *chain) {
      if (equalsIgnoringCase(item->name, name)) {
        found = item.get();
        break;
      }
    }
    if (found == nullptr) return reported(run, strprintf("Can't find sublist '%s'", name));
    if (!found->isSublist()) return reported(run, strprintf("'%s' is not a sublist", name));
    chain = &found->children;
  }
  const Item* drawn = drawFrom(*chain);
  if (drawn == nullptr) return reported(run, "Cannot find an item at random");
  return drawn->name;
}

Result inSheetList(ScriptRun& run, FileInfo& sheet, std::string_view arguments,
                   std::string_view function) {
  std::string listName;
  std::string itemName;
  if (!listAndItem(run, arguments, function, listName, itemName)) return std::nullopt;
  ListInfo* list = listOrReport(run, sheet, listName);
  if (list == nullptr) return std::nullopt;
  return truth(findElement(*list, itemName) != nullptr);
}

Result inlist(ScriptRun& run, std::string_view arguments) {
  return inSheetList(run, *run.destSheet, arguments, "inlist");
}

Result insourcelist(ScriptRun& run, std::string_view arguments) {
  return inSheetList(run, *run.sourceSheet, arguments, "insourcelist");
}

Result available(ScriptRun& run, std::string_view arguments) {
  std::string listName;
  std::string itemName;
  if (!listAndItem(run, arguments, "available", listName, itemName)) return std::nullopt;
  ListInfo* list = listOrReport(run, *run.destSheet, listName);
  if (list == nullptr) return std::nullopt;
  Category* category = dataListOrReport(run, *run.destSheet, *list);
  if (category == nullptr) return std::nullopt;
  return truth(findDataItem(*category, itemName) != nullptr);
}

Result value(ScriptRun& run, std::string_view arguments) {
  const std::size_t dot = arguments.find('.');
  if (dot == std::string_view::npos) return reported(run, "'.' missing after list name in $+value");
  const std::string listName = trimBlanks(arguments.substr(0, dot));
  const std::string_view rest = arguments.substr(dot + 1);
  const std::size_t comma = rest.find(',');
  const std::string itemName = trimBlanks(rest.substr(0, comma));
  if (itemName.empty()) return reported(run, "Item name missing in $+value");
  const std::string field =
      comma == std::string_view::npos ? "" : trimBlanks(rest.substr(comma + 1));
  if (field.empty()) return reported(run, "Field name missing in $+value");
  ListInfo* list = listOrReport(run, *run.destSheet, listName);
  if (list == nullptr) return std::nullopt;
  Category* category = dataListOrReport(run, *run.destSheet, *list);
  if (category == nullptr) return std::nullopt;
  const Item* item = findDataItem(*category, itemName);
  Value out;
  if (item == nullptr || !itemField(*item, nullptr, field, out)) return std::string();
  return valueToText(out);
}

Result selectedIndex(ScriptRun& run, std::string_view arguments) {
  const std::string name = trimBlanks(arguments);
  if (name.empty()) return reported(run, "')' missing after list name in $+selectedIndex");
  ListInfo* list = listOrReport(run, *run.destSheet, name);
  if (list == nullptr) return std::nullopt;
  const int row = run.environment.views != nullptr ? run.environment.views->selectedRow(*list) : -1;
  return std::to_string(row);
}

Result listCount(ScriptRun& run, std::string_view arguments) {
  const std::string name = trimBlanks(arguments);
  if (name.empty()) return reported(run, "')' missing after list name in $+listCount");
  ListInfo* list = listOrReport(run, *run.destSheet, name);
  if (list == nullptr) return std::nullopt;
  return std::to_string(topLevelCount(*list));
}

/// An answer of the windows; none stops the run without a message.
Result viewAnswer(ScriptRun& run, std::optional<std::string> answer) {
  if (!answer) {
    run.errorReported = true;
    return std::nullopt;
  }
  return answer;
}

Result currentField(ScriptRun& run, std::string_view) {
  ScriptViews* views = run.environment.views;
  return viewAnswer(run, views != nullptr ? views->focusedField() : std::nullopt);
}

Result currentWindow(ScriptRun& run, std::string_view) {
  ScriptViews* views = run.environment.views;
  return viewAnswer(run, views != nullptr ? views->activeWindow() : std::nullopt);
}

Result date(ScriptRun&, std::string_view) {
  return scriptDateText(host().now());
}

Result tickcount(ScriptRun&, std::string_view) {
  const auto ticks = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
  return std::to_string(static_cast<std::uint32_t>(ticks.count()));
}

struct PlusFunction {
  std::string_view name;
  Result (*call)(ScriptRun&, std::string_view);
};

constexpr PlusFunction kFunctions[] = {
    {"canceled", canceled},
    {"randselect", randselect},
    {"inlist", inlist},
    {"insourcelist", insourcelist},
    {"available", available},
    {"value", value},
    {"selectedIndex", selectedIndex},
    {"listCount", listCount},
    {"currentField", currentField},
    {"currentWindow", currentWindow},
    {"date", date},
    {"tickcount", tickcount},
};

const PlusFunction* findFunction(std::string_view name) {
  for (const PlusFunction& function : kFunctions) {
    if (equalsIgnoringCase(function.name, name)) return &function;
  }
  return nullptr;
}

}  // namespace

bool isPlusFunction(std::string_view name) {
  return findFunction(name) != nullptr;
}

std::optional<std::string> callPlusFunction(ScriptRun& run, std::string_view name,
                                            std::string_view arguments) {
  const PlusFunction* function = findFunction(name);
  if (function == nullptr) return reported(run, strprintf("Unknown function: $+%s", name));
  return function->call(run, arguments);
}

std::string scriptDateText(const LocalTime& time, std::string_view pattern) {
  std::string out;
  std::size_t at = 0;
  while (at < pattern.size()) {
    const char letter = static_cast<char>(toLowerChar(static_cast<unsigned char>(pattern[at])));
    if (letter != 'd' && letter != 'm' && letter != 'y') {
      out += pattern[at++];
      continue;
    }
    std::size_t run = 0;
    while (at + run < pattern.size() &&
           toLowerChar(static_cast<unsigned char>(pattern[at + run])) == letter) {
      ++run;
    }
    at += run;
    if (letter == 'y') {
      int year = time.year < 1900 ? time.year + 1900 : time.year;
      out += run < 3 ? strprintf("%02d", year % 100) : strprintf("%d", year);
      continue;
    }
    // The month is counted from 0, one lower than the calendar's.
    const int number = letter == 'd' ? time.day : time.month - 1;
    out += run >= 2 ? strprintf("%02d", number) : strprintf("%d", number);
  }
  return out;
}

}  // namespace zv::script
