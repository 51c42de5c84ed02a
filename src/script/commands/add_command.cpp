// add, option and addoption.

#include "core/engine_context.h"
#include "core/game_system.h"
#include "core/list_total.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/lists/list_ops.h"
#include "rules/value/level.h"
#include "rules/value/lookup.h"
#include "rules/value/option_value.h"
#include "script/commands/handlers.h"
#include "script/expand/expand.h"
#include "script/flow/calls.h"
#include "script/flow/dispatch.h"
#include "script/state/evaluate.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

constexpr std::size_t kValueCapacity = 256;

/// "name[new name]": the name, and the new name (the name itself without brackets) with each ''
/// turned back into ".
bool splitNewName(ScriptRun& run, const std::string& text, const char* missing, std::string& name,
                  std::string& newName) {
  const std::size_t open = text.find('[');
  if (open == std::string::npos) {
    name = trimBlanks(text);
    newName = name;
  } else {
    const std::size_t close = text.rfind(']');
    if (close == std::string::npos || close < open) {
      run.reportError(missing);
      return false;
    }
    name = trimBlanks(text.substr(0, open));
    newName = trimBlanks(text.substr(open + 1, close - open - 1));
  }
  newName = replaceAll(newName, "''", "\"");
  return true;
}

/// A value's text translated through the item's lookup array; nullopt after "Missing value in
/// lookup array: %s".
std::optional<std::string> throughLookup(ScriptRun& run, Item& item, const std::string& value) {
  const auto entries = lookupEntries(item);
  if (!entries) {
    run.errorReported = true;
    return std::nullopt;
  }
  for (const auto& [key, expression] : *entries) {
    std::string name = key;
    if (!name.empty() && name.front() == '$') {
      name = name.substr(1);
      if (!expandExpression(run, name)) return std::nullopt;
    }
    if (!equalsIgnoringCase(trimBlanks(name), value)) continue;
    Value out;
    if (evaluateText(run, expression, out) != 0) break;
    return valueToText(out);
  }
  run.reportError(strprintf("Missing value in lookup array: %s", value));
  return std::nullopt;
}

/// Moves an item's level to the nearest level its checks accept, when the present one fails.
void snapLevel(Item& item) {
  if (item.level.empty() || item.isSublist()) return;
  std::string message;
  if (checkLevel(item, item.level, message) != 0) return;
  const double level = nextAcceptableLevel(item, valueToDouble(item.value), 1.0);
  setItemLevel(item, formatFloat(level, false), true, false);
}

const Option* findOptionData(const OptionTree& tree, std::string_view name) {
  for (const OptionTreeEntry& entry : tree) {
    if (entry.option && equalsIgnoringCase(entry.option->name, name)) return entry.option.get();
    if (const Option* inner = findOptionData(entry.entries, name)) return inner;
  }
  return nullptr;
}

/// Gives an option the text of a value, keeping the form of its value: a count list chooses the
/// entry of that text or number, a toggle turns on or off, a prompted value takes the text.
void setOptionValue(Option& option, const std::string& text) {
  if (option.value.size() >= 2 && option.value[0] == '?') {
    const char form = option.value[1];
    if (form == '+') {
      const bool on = text == "1" || equalsIgnoringCase(text, "yes");
      option.value = strprintf("?+%c%s", on ? '1' : '0',
                               option.value.size() > 3 ? option.value.substr(3) : "");
      return;
    }
    if (form == ':') {
      std::vector<std::string> parts = split(option.value.substr(2), ';');
      if (!parts.empty()) parts.erase(parts.begin());
      std::vector<std::string> entries;
      for (const std::string& part : parts) {
        if (!trim(part).empty()) entries.push_back(trim(part));
      }
      int chosen = 0;
      for (std::size_t i = 0; i < entries.size(); ++i) {
        if (equalsIgnoringCase(trim(entries[i].substr(0, entries[i].find(','))), text)) {
          chosen = static_cast<int>(i) + 1;
        }
      }
      if (chosen == 0 && !text.empty() &&
          text.find_first_not_of("0123456789") == std::string::npos) {
        chosen = std::atoi(text.c_str());
      }
      if (chosen >= 1 && chosen <= static_cast<int>(entries.size())) {
        std::string value = strprintf("?:%d;", chosen);
        for (const std::string& entry : entries)
          value += entry + ";";
        option.value = value;
        return;
      }
    }
    if (form == '?') {
      const std::vector<std::string> parts = split(option.value.substr(2), ';');
      option.value = strprintf("??%s;%s;", parts.empty() ? "" : parts.front(), text);
      return;
    }
  }
  option.value = text;
}

}  // namespace

void recalculateItem(Item& item) {
  FileInfo* sheet = item.owner;
  if (sheet == nullptr) return;
  applyItemOptions(*sheet, item);
  // An item with no level text, cost formula or variable keeps the fixed value it was given.
  const bool fixedValue = item.level.empty() && item.formula.empty() && item.varName.empty();
  if (!fixedValue) setItemLevel(item, item.level, true, false);
  if (item.list != nullptr) addUpList(*item.list);
  if (engine().views.itemChanged) engine().views.itemChanged(item);
  setChanged(*sheet, true);
}

Flow optionsThatFollow(ScriptRun& run) {
  ReadToken next;
  if (!run.reader.readToken(next)) return Flow::Stop;
  if (next.is(Token::Option)) return runOption(run, false);
  if (next.is(Token::AddOption)) return runOption(run, true);
  run.reader.putBack();
  return Flow::Next;
}

Flow runAdd(ScriptRun& run) {
  std::string text;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";=", text, found) || !run.reader.unquote(text) ||
      !expandExpression(run, text)) {
    return Flow::Stop;
  }
  std::string name;
  std::string newName;
  if (!splitNewName(run, text, "Missing ']' in new name", name, newName)) return Flow::Stop;
  ListInfo* list = nullptr;
  Category* dataList = nullptr;
  std::string itemName = name;
  if (const std::size_t dot = name.find('.'); dot != std::string::npos) {
    itemName = trimBlanks(name.substr(dot + 1));
    list = destinationListNamed(run, trimBlanks(name.substr(0, dot)), &dataList);
    if (list == nullptr) return Flow::Stop;
    if (newName == name) newName = itemName;
  } else {
    if (run.destinationList == nullptr)
      return run.fail("Period missing between list and item names");
    list = run.destinationList;
    dataList = dataListOf(*run.destSheet, *list);
    if (dataList == nullptr) {
      return run.fail(strprintf("Can't find data sheet list %s for %s.",
                                std::string_view(list->catName), std::string_view(list->name)));
    }
  }
  if (list->maxItems > 0 && elementCount(*list) >= static_cast<std::size_t>(list->maxItems)) {
    return run.fail(
        strprintf("The script attempted to add too many items to the list '%s'. The limit is %d.",
                  std::string_view(list->name), static_cast<int>(list->maxItems)));
  }
  std::optional<std::string> valueText;
  Value given;
  if (found == '=') {
    std::string expression;
    if (!run.reader.scanToDelimiter(";", expression, found, kValueCapacity)) return Flow::Stop;
    Value value;
    if (valueOfText(run, expression,
                    "Error in assignment expression (may be missing semicolon): %s",
                    value) == Flow::Stop) {
      return Flow::Stop;
    }
    valueText = valueToText(value);
    given = value;
  }

  std::unique_ptr<Item> copy;
  if (const Item* master = findDataItem(*dataList, itemName)) {
    copy = master->clone();
    if (!copy) return run.fail(strprintf("Couldn't duplicate pattern item %s", itemName));
    copy->name = newName;
    copy->autoID = 0;
    copy->autoParent = 0;
    if (!equalsIgnoringCase(std::string_view(list->catName), std::string_view(dataList->name))) {
      copy->origCat = std::string(dataList->name);
    }
  } else {
    const Button answer = run.reportError(
        strprintf("Can't find '%s' in list %s.", itemName, std::string_view(list->name)));
    if (answer == Button::Cancel) return Flow::Stop;
    copy = std::make_unique<Item>(ItemKind::Item, newName);
  }
  if (valueText && !copy->lookupArray.empty() && !valueText->empty() &&
      valueText->find_first_not_of("0123456789.-+ ") != std::string::npos) {
    std::optional<std::string> translated = throughLookup(run, *copy, *valueText);
    if (!translated) return Flow::Stop;
    valueText = std::move(translated);
    given = Value(*valueText);
  }
  Item* parent = run.currentSublistParent;
  if (parent != nullptr && parent->list != list) parent = nullptr;
  AddChain chain;
  const AddResult added =
      addItem(*run.destSheet, *list, std::move(copy), Placement::appendTo(parent), chain, false);
  if (added.status != AddStatus::Added || added.item == nullptr) {
    run.errorReported = true;
    return Flow::Stop;
  }
  Item& item = *added.item;
  setChanged(*run.destSheet, true);
  run.lastItemAdded = &item;
  if (!valueText) {
    snapLevel(item);
  } else if (item.formula.empty() && item.varName.empty() && !item.isSublist()) {
    // An item with no price by level and no variable holds the value itself.
    item.level.clear();
    item.value = given;
  } else {
    setItemLevel(item, *valueText, true, false);
    snapLevel(item);
  }
  recalculateItem(item);
  return optionsThatFollow(run);
}

Flow runOption(ScriptRun& run, bool alwaysNew) {
  bool makeNew = alwaysNew;
  WatchedItem target(run, run.lastItemAdded);
  for (;;) {
    std::string text;
    char found = '\0';
    if (!run.reader.scanToDelimiter(";=", text, found) || !run.reader.unquote(text) ||
        !expandExpression(run, text)) {
      return Flow::Stop;
    }
    if (target.get() == nullptr) {
      if (run.currentItem() != nullptr) {
        return run.fail(strprintf("No current item for option (processing %s)", text));
      }
      return run.fail("No current item for option");
    }
    Item& item = *target.get();
    std::string name;
    std::string newName;
    if (!splitNewName(run, text, "Missing ']' in new option name", name, newName)) {
      return Flow::Stop;
    }
    const bool renamed = newName != name;
    Option* option = nullptr;
    if (!makeNew && !renamed) {
      for (const auto& held : item.options) {
        if (!equalsIgnoringCase(held->name, name)) continue;
        if (held->converted() && !run.scriptMode) continue;
        option = held.get();
        break;
      }
    }
    if (option == nullptr) {
      const Option* data = run.destSheet->gameSystem != nullptr
                               ? findOptionData(run.destSheet->gameSystem->options, name)
                               : nullptr;
      if (data == nullptr) return run.fail(strprintf("Cannot find option %s in data sheet", name));
      auto copy = std::make_unique<Option>(*data);
      if (renamed) copy->name = newName;
      item.options.push_back(std::move(copy));
      option = item.options.back().get();
      setChanged(*run.destSheet, true);
    }
    option->setConverted(true);
    if (found == '=') {
      std::string expression;
      if (!run.reader.scanToDelimiter(";", expression, found)) return Flow::Stop;
      Value value;
      if (!evaluateStatementText(run, expression, "Bad expression in option: %s.", value)) {
        return Flow::Stop;
      }
      setOptionValue(*option, valueToText(value));
    }
    const bool modifier = option->kind == kOptionFraction || option->kind == kOptionMultiplier ||
                          option->kind == kOptionAddition || option->kind == kOptionPercentage;
    if (modifier) {
      std::optional<std::string> normal = reformatModifier(&item, *option, option->value);
      if (!normal) {
        run.errorReported = true;
        return Flow::Stop;
      }
      option->value = std::move(*normal);
    }
    ReadToken next;
    if (!run.reader.readToken(next)) return Flow::Stop;
    if (next.is(Token::OptQualifier)) {
      std::string qualifier;
      if (!run.reader.scanToDelimiter(";", qualifier, found)) return Flow::Stop;
      Value value;
      if (!evaluateStatementText(run, qualifier, "Bad expression in optqualifier: %s.", value)) {
        return Flow::Stop;
      }
      option->qualifier = valueToText(value);
      if (!run.reader.readToken(next)) return Flow::Stop;
    }
    if (next.is(Token::Option)) {
      makeNew = false;
      continue;
    }
    if (next.is(Token::AddOption)) {
      makeNew = true;
      continue;
    }
    run.reader.putBack();
    break;
  }
  if (target.get() != nullptr) recalculateItem(*target.get());
  return Flow::Next;
}

}  // namespace zv::script
