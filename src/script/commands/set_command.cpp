// set: a field of the current item or of the last item added, and the two sheet-wide switches.

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/value/defaults.h"
#include "rules/value/level.h"
#include "script/commands/handlers.h"
#include "script/expand/expand.h"
#include "script/state/evaluate.h"

namespace zv::script {

namespace {

bool switchTruth(const Value& value) {
  if (value.isString()) return !value.text().empty();
  return valueToDouble(value) != 0.0;
}

/// Evaluates the value of a set with `item` as the current item.
bool setValueOf(ScriptRun& run, Item& item, std::string text, Value& out) {
  if (!expandExpression(run, text)) return false;
  Item* const savedItem = run.currentItem();
  Option* const savedOption = run.currentOption();
  run.setCurrentItem(&item, item.owner != nullptr && &item == savedItem ? savedOption : nullptr);
  const int result = evaluateText(run, text, out);
  run.setCurrentItem(savedItem, savedOption);
  if (result != 0) {
    run.reportError(strprintf("Error in set expression (may be missing semicolon): %s", text));
    return false;
  }
  return true;
}

Flow setField(ScriptRun& run, Item& item, const std::string& field, const Value& value) {
  const std::string text = valueToText(value);
  if (equalsIgnoringCase(field, "level")) {
    setItemLevel(item, text, true, false);
  } else if (equalsIgnoringCase(field, "cost")) {
    item.cost = valueToDouble(value);
    item.setKeepCost(true);
  } else if (equalsIgnoringCase(field, "default")) {
    if (!item.defaultText.empty()) {
      const bool atDefault = integerTruth(value);
      item.setUseDefault(atDefault);
      Value level;
      if (atDefault && evaluateDefault(item, level) == 0) item.level = valueToText(level);
    }
  } else if (equalsIgnoringCase(field, "name")) {
    item.name = text;
  } else if (equalsIgnoringCase(field, "alias")) {
    item.alias = text;
  } else if (equalsIgnoringCase(field, "origname")) {
    item.original = text;
  } else if (equalsIgnoringCase(field, "autoParent")) {
    if (value.isInteger()) item.autoParent = value.integer();
  } else if (equalsIgnoringCase(field, "autoID")) {
    if (value.isInteger()) {
      item.autoID = value.integer();
      if (item.owner != nullptr) item.owner->noteAutoID(item.autoID);
    }
  } else if (equalsIgnoringCase(field, "notes")) {
    if (value.isString()) item.notes = value.text();
  } else if (equalsIgnoringCase(field, "varname")) {
    if (!value.isString()) return run.fail("String required for set varname");
    if (item.list == nullptr) {
      return run.fail(strprintf("Unable to find parent list window for %s.", item.name));
    }
    if (item.levelSymbol != nullptr && item.owner != nullptr && item.owner->symbols) {
      deleteSymbol(*item.owner->symbols, *item.levelSymbol);
      item.levelSymbol = nullptr;
    }
    item.varName = value.text();
    if (!defineItemVariable(item, item.level)) return run.fail("Out of memory setting varname");
  } else if (equalsIgnoringCase(field, "req")) {
    if (value.isString()) item.prereq = value.text();
  } else if (equalsIgnoringCase(field, "uniquevar")) {
    item.setUniqueVar(integerTruth(value));
  } else {
    return run.fail(strprintf("Unknown value in set: %s", field));
  }
  recalculateItem(item);
  return Flow::Next;
}

}  // namespace

Flow runSet(ScriptRun& run) {
  std::string field;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";=", field, found)) return Flow::Stop;
  if (found == ';') return run.fail("Missing '=' in set");
  std::string text;
  if (!run.reader.scanToDelimiter(";", text, found)) return Flow::Stop;
  if (text.empty()) return run.fail("Expression missing for set");
  field = trimBlanks(field);

  const bool constCost = equalsIgnoringCase(field, "constcost");
  if (constCost || equalsIgnoringCase(field, "$@@checkrequirements")) {
    if (!expandExpression(run, text)) return Flow::Stop;
    Value value;
    if (evaluateText(run, text, value) != 0) {
      return run.fail(strprintf("Error in item expression: %s", text));
    }
    if (constCost) {
      run.destSheet->setConstCost(switchTruth(value));
      setChanged(*run.destSheet, true);
    } else {
      engine().preferences.checkReq = switchTruth(value);
    }
    return Flow::Next;
  }

  Item* item = nullptr;
  if (field.rfind("$@", 0) == 0) {
    item = run.lastItemAdded;
    if (item == nullptr) return run.fail("Set $@ may be used only after adding item.");
    field = trimBlanks(field.substr(2));
  } else {
    if (field.rfind("$*", 0) == 0) field = trimBlanks(field.substr(2));
    item = run.currentItem();
    if (item == nullptr) return run.fail("Set may be used only within list or foreach");
  }
  Value value;
  if (!setValueOf(run, *item, text, value)) return Flow::Stop;
  return setField(run, *item, field, value);
}

}  // namespace zv::script
