// exclude, unconverted, deleteitem and notes.

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/lists/list_ops.h"
#include "script/commands/handlers.h"
#include "script/copy/unconverted.h"
#include "script/expand/expand.h"
#include "script/flow/dispatch.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

Flow runExclude(ScriptRun& run) {
  Item* item = run.lastItemAdded;
  if (item == nullptr) return Flow::Next;
  item->setInTotal(false);
  if (item->list != nullptr) addUpList(*item->list);
  if (engine().views.itemChanged) engine().views.itemChanged(*item);
  if (item->owner != nullptr) setChanged(*item->owner, true);
  return Flow::Next;
}

Flow runUnconverted(ScriptRun& run) {
  ReadToken name;
  if (!run.reader.readToken(name)) return Flow::Stop;
  if (!name.is(Token::Plain)) return run.fail("Expected string after unconverted");
  ListInfo* target = findListByPrefix(*run.destSheet, name.text);
  if (target == nullptr) {
    return run.fail(strprintf("Can't find list %s in new character sheet", name.text));
  }
  addUnconvertedItems(*run.destSheet, *target, run.sourceSheet->allLists());
  return Flow::Next;
}

Flow runDeleteItem(ScriptRun& run) {
  const bool conversion = run.kind == RunKind::Conversion && run.sourceSheet != run.destSheet;
  Item* item = run.lastItemAdded;
  if (item == nullptr && !conversion) item = run.currentItem();
  if (item == nullptr) return run.fail("No item to delete");
  if (item->owner != run.destSheet) return run.fail("May delete only items that have been added.");
  ListInfo* list = item->list;
  if (list == nullptr) {
    return run.fail(strprintf("Unable to find list window for item: %s", item->name));
  }
  FileInfo& sheet = *run.destSheet;
  run.beforeDelete(itemsDeletedWith(sheet, *item));
  const DeleteOutcome outcome = deleteElement(sheet, *list, *item);
  if (!outcome.deleted) {
    run.errorReported = true;
    return Flow::Stop;
  }
  run.lastItemAdded = nullptr;
  setChanged(sheet, true);
  return Flow::Next;
}

Flow runNotes(ScriptRun& run) {
  std::string text;
  char found = '\0';
  if (!readExpanded(run, ";", text, found) || !run.reader.unquote(text)) return Flow::Stop;
  run.destSheet->notes = text;
  setChanged(*run.destSheet, true);
  return Flow::Next;
}

}  // namespace zv::script
