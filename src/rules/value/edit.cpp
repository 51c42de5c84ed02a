#include "rules/value/edit.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/engine_context.h"
#include "core/list_info.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_value.h"

namespace zv {

namespace {

constexpr std::string_view kUnacceptableTitle = "Unacceptable Value";

bool askHost(std::string_view title, std::string_view message, BadValueBox box) {
  if (box == BadValueBox::OkOnly) {
    showTitled(Severity::Warning, title, message);
    return false;
  }
  return askQuestion(title, message, ButtonSet::OkCancel, Button::Ok) == Button::Ok;
}

/// The items being changed: a change of an item that is already being changed further up the
/// call chain (a listener, a script run by a field) is refused, so that no change loops.
class EditGuard {
 public:
  explicit EditGuard(const void* subject) : subject_(subject) {
    busy_ = std::find(inEdit().begin(), inEdit().end(), subject) != inEdit().end();
    if (!busy_) inEdit().push_back(subject);
  }
  ~EditGuard() {
    if (!busy_) inEdit().erase(std::find(inEdit().begin(), inEdit().end(), subject_));
  }
  EditGuard(const EditGuard&) = delete;
  EditGuard& operator=(const EditGuard&) = delete;
  bool busy() const { return busy_; }

 private:
  static std::vector<const void*>& inEdit() {
    static std::vector<const void*> subjects;
    return subjects;
  }
  const void* subject_;
  bool busy_ = false;
};

/// The title of a refused level: the list's name.
std::string refusalTitle(const Item& item) {
  if (item.list != nullptr && !item.list->name.empty()) return item.list->name.str();
  return std::string(kUnacceptableTitle);
}

/// Assigns a level inside one batch of changes; the failed checks of dependants come back.
bool assignLevel(FileInfo& sheet, Item& item, std::string_view levelText,
                 std::vector<FailedCheck>& failed) {
  ChangeBatch batch(sheet);
  const bool ok = setItemLevel(item, levelText, true, false);
  failed = batch.finish();
  return ok;
}

/// The first problem that the change left behind: a dependant that fails its check, or unmet
/// requirements.
std::optional<BadValue> problemAfterChange(FileInfo& sheet, Item& item,
                                           const std::vector<FailedCheck>& failed) {
  for (const FailedCheck& check : failed) {
    if (check.item != &item) return BadValue{refusalTitle(*check.item), check.message};
  }
  const auto& check = engine().services.checkRequirements;
  if (engine().preferences.checkReq && check) return check(sheet, item);
  return std::nullopt;
}

}  // namespace

std::optional<BadValue> checkRequirementsOf(FileInfo& sheet, Item& item, bool always) {
  const auto& check = engine().services.checkRequirements;
  if ((!always && !engine().preferences.checkReq) || !check) return std::nullopt;
  return check(sheet, item);
}

bool passBadValue(const BadValue& bad) {
  const EnginePreferences& preferences = engine().preferences;
  if (preferences.noBadValueDlg) {
    host().beep();
    return false;
  }
  const BadValueBox box =
      preferences.disallowIfNotSatisfied ? BadValueBox::OkOnly : BadValueBox::OkCancel;
  const auto& accept = engine().dialogs.acceptBadValue;
  const bool accepted =
      accept ? accept(bad.title, bad.message, box) : askHost(bad.title, bad.message, box);
  return accepted && box == BadValueBox::OkCancel;
}

EditResult changeItemLevel(FileInfo& sheet, Item& item, std::string_view levelText) {
  if (!checkFileInfo(&sheet)) return EditResult::Failed;
  EditGuard guard(&item);
  if (guard.busy()) return EditResult::Busy;
  const std::string text(levelText);
  const std::string oldLevel = item.level;
  // A level the user gives takes the item off its default; a refused one puts it back.
  const bool wasAtDefault = item.useDefault();
  item.setUseDefault(false);
  auto giveBack = [&](EditResult result) {
    item.setUseDefault(wasAtDefault);
    return result;
  };
  if (engine().preferences.checkReq && !text.empty()) {
    std::string optionMessage;
    const int verdict = checkLevel(item, text, optionMessage);
    if (verdict < 0) return giveBack(EditResult::Failed);
    if (verdict == 0 &&
        !passBadValue({refusalTitle(item), levelRefusalText(item, text, optionMessage)})) {
      return giveBack(EditResult::Refused);
    }
  }
  std::vector<FailedCheck> failed;
  if (!assignLevel(sheet, item, text, failed)) {
    giveBack(EditResult::Failed);
    assignLevel(sheet, item, oldLevel, failed);
    return EditResult::Failed;
  }
  if (std::optional<BadValue> problem = problemAfterChange(sheet, item, failed)) {
    if (!passBadValue(*problem)) {
      giveBack(EditResult::Refused);
      assignLevel(sheet, item, oldLevel, failed);
      return EditResult::Refused;
    }
  }
  setChanged(sheet, true);
  return EditResult::Changed;
}

EditResult reassessItem(FileInfo& sheet, Item& item, const std::function<void()>& undo) {
  if (!checkFileInfo(&sheet)) return EditResult::Failed;
  EditGuard guard(&item);
  if (guard.busy()) return EditResult::Busy;
  std::vector<FailedCheck> failed;
  const bool assigned = assignLevel(sheet, item, item.level, failed);
  std::optional<BadValue> problem;
  if (assigned && engine().preferences.checkReq && !item.useDefault() && !item.level.empty()) {
    std::string optionMessage;
    if (checkLevel(item, item.level, optionMessage) == 0) {
      problem = BadValue{refusalTitle(item), levelRefusalText(item, item.level, optionMessage)};
    }
  }
  if (assigned && !problem) problem = problemAfterChange(sheet, item, failed);
  if (!assigned || (problem && !passBadValue(*problem))) {
    undo();
    assignLevel(sheet, item, item.level, failed);
    return assigned ? EditResult::Refused : EditResult::Failed;
  }
  setChanged(sheet, true);
  return EditResult::Changed;
}

EditResult changeItemCost(FileInfo& sheet, Item& item, std::string_view costText) {
  if (!checkFileInfo(&sheet)) return EditResult::Failed;
  Value result;
  if (evaluateForItem(&item, nullptr, costText.empty() ? "0" : costText, result) != 0 ||
      !result.isNumber()) {
    showError(strprintf("Illegal cost value: '%s'", std::string(costText).c_str()));
    return EditResult::Failed;
  }
  const double cost = valueToDouble(result);
  if (item.formula.empty() || item.useDefault()) {
    EditGuard guard(&item);
    if (guard.busy()) return EditResult::Busy;
    ChangeBatch batch(sheet);
    item.cost = cost;
    computeMultipliers(item);
    item.totalCost = computeCost(item);
    updateTotals(item);
    batch.noteValueChange(item);
    batch.finish();
    setChanged(sheet, true);
    return EditResult::Changed;
  }
  const double oldCost = item.cost;
  item.cost = cost;
  std::string level;
  const bool found = findLevelForCost(item, level);
  item.cost = oldCost;
  if (!found) return EditResult::Refused;
  return changeItemLevel(sheet, item, level);
}

EditResult stepItemLevel(FileInfo& sheet, Item& item, int step) {
  if (item.isSublist()) {
    return changeItemCost(sheet, item, std::to_string(static_cast<long>(item.cost) + step));
  }
  const double start = static_cast<double>(valueToInteger(Value(valueToText(item.value))));
  double next = nextAcceptableLevel(item, start, step);
  if (next == start) next = start + step;
  return changeItemLevel(sheet, item, formatFloat(next, false));
}

int setVariableExpression(FileInfo& sheet, Symbol& variable, std::string_view text) {
  if (!checkFileInfo(&sheet) || !sheet.symbols) return -1;
  ChangeBatch batch(sheet);
  return setExpression(*sheet.symbols, variable, text);
}

int setVariableValue(FileInfo& sheet, Symbol& variable, const Value& value) {
  if (!checkFileInfo(&sheet) || !sheet.symbols) return -1;
  ChangeBatch batch(sheet);
  return setValue(*sheet.symbols, variable, value);
}

EditResult changeVariable(FileInfo& sheet, std::string_view name, std::string_view expression) {
  if (!checkFileInfo(&sheet) || !sheet.symbols) return EditResult::Failed;
  SymbolTable& table = *sheet.symbols;
  const std::string text = expression.empty() ? std::string("0") : std::string(expression);
  Symbol* symbol = table.find(name);
  int status = 0;
  if (symbol != nullptr && !symbol->undefined() && !symbol->isVariable()) {
    setError(kExprRedefined, name);
    status = -1;
  } else if (symbol != nullptr && symbol->isVariable() && !symbol->undefined()) {
    status = setVariableExpression(sheet, *symbol, text);
  } else {
    ChangeBatch batch(sheet);
    status = defineVariable(table, name, text) != nullptr ? 0 : -1;
  }
  if (status != 0) {
    reportExpressionError(text);
    return EditResult::Failed;
  }
  setChanged(sheet, true);
  return EditResult::Changed;
}

}  // namespace zv
