#include "rules/selection/take_item.h"

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "rules/requirements/prereq_dialog.h"

namespace zv {

namespace {

bool chainHolds(const ItemChain& chain, std::string_view name) {
  for (const auto& entry : chain) {
    if (equalsIgnoringCase(entry->name, name) || chainHolds(entry->children, name)) return true;
  }
  return false;
}

/// Step 2: Taken when the requirements let the item be taken, else why not.
TakeResult requirementsAllow(ItemSelection& selection, Item& probe, const PlaceItem& place) {
  FileInfo& sheet = selection.sheet();
  ListInfo& list = selection.list();
  if (prereqSatisfied(sheet, &list, probe, PrereqMode{true, true}, probe.prereq)) {
    return TakeResult::Taken;
  }
  if (engine().preferences.noBadValueDlg) {
    host().beep();
    return TakeResult::Refused;
  }
  ItemUnderTestScope underTest(probe.name);
  RequirementsDialog dialog(sheet, &list, probe, true, &selection.rules());
  if (runRequirementsDialog(dialog, place)) return TakeResult::Taken;
  return dialog.accept() ? TakeResult::Cancelled : TakeResult::Refused;
}

void evaluateDisplayedLevel(FileInfo& sheet, Item& copy) {
  if (copy.level.empty() || !sheet.symbols) return;
  Value level;
  if (parseExpInContext(sheet.symbols.get(), &copy, nullptr, copy.level, level) != 0) return;
  copy.value = level;
  if (level.isNumber()) copy.levelValue = valueToDouble(level);
}

}  // namespace

TakeOutcome takeItem(ItemSelection& selection, std::size_t row, const PlaceItem& place,
                     const TakeOptions& options) {
  TakeOutcome outcome;
  Item* master = selection.follow(row);
  if (master == nullptr) return outcome;
  FileInfo& sheet = selection.sheet();
  ListInfo& list = selection.list();

  if (!options.listAllowsDuplicates && !master->dupExpected() &&
      chainHolds(list.items, master->name)) {
    if (askQuestion("Note", strprintf("%s is already listed", master->name), ButtonSet::OkCancel,
                    Button::Ok) != Button::Ok) {
      outcome.result = TakeResult::Cancelled;
      return outcome;
    }
  }

  // The copy stands for the item as it would be in the list while its requirements are tested.
  std::unique_ptr<Item> copy = master->clone();
  copy->owner = &sheet;
  copy->list = &list;
  if (!master->isSublist() && !master->noPrereq() && !options.listNoRequirements &&
      engine().preferences.checkReq) {
    const TakeResult verdict = requirementsAllow(selection, *copy, place);
    if (verdict != TakeResult::Taken) {
      outcome.result = verdict;
      return outcome;
    }
  }

  evaluateDisplayedLevel(sheet, *copy);
  const Category* category =
      row < selection.rows().size() ? selection.rows()[row].category : nullptr;
  if (category != nullptr && !equalsIgnoringCase(category->name, list.catName)) {
    copy->origCat = category->name.str();
  }
  copy->owner = nullptr;
  copy->list = nullptr;
  Item* placed = place(sheet, list, std::move(copy), selection.cursor());
  if (placed == nullptr) return outcome;

  selection.noteTaken();
  outcome.result = TakeResult::Taken;
  outcome.placed = placed;
  setChanged(sheet, true);
  if (list.maxItems > 0 && static_cast<std::int32_t>(list.items.size()) >= list.maxItems) {
    outcome.close = true;
  } else if (selection.unique()) {
    selection.refresh();
    outcome.close = !selection.checkItemsLeft();
  }
  return outcome;
}

}  // namespace zv
