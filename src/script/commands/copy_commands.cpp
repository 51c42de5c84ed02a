// copyitem, copyoption, copynotes, copylist, copydialog, copydefines and copyall: the copy
// routines of conversion, called one by one.

#include "core/list_total.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "script/commands/handlers.h"
#include "script/copy/copy_routines.h"
#include "script/state/dialog_fields.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

constexpr std::size_t kCopyNameLength = 32;

CopyContext contextOf(ScriptRun& run) {
  CopyContext context{*run.destSheet, *run.sourceSheet, nullptr, nullptr};
  context.beforeDelete = [&run](const std::vector<Item*>& doomed) { run.beforeDelete(doomed); };
  return context;
}

/// The two names of copylist and copydialog: string tokens of at most 32 characters.
bool readTwoNames(ScriptRun& run, const char* message, std::string& from, std::string& to) {
  ReadToken token;
  for (std::string* name : {&from, &to}) {
    if (!run.reader.readToken(token)) return false;
    if (!token.is(Token::Plain)) {
      run.reportError(message);
      return false;
    }
    *name = token.text.substr(0, kCopyNameLength);
  }
  return true;
}

Flow finishCopy(ScriptRun& run, bool ok) {
  if (ok) return Flow::Next;
  run.errorReported = true;
  return Flow::Stop;
}

}  // namespace

Flow runCopyItem(ScriptRun& run) {
  std::string name;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";", name, found) || !run.reader.unquote(name)) {
    return Flow::Stop;
  }
  Item* element = run.currentItem();
  if (element == nullptr) return run.fail("No current item for copyitem");
  Category* dataList = nullptr;
  ListInfo* list = destinationListNamed(run, trimBlanks(name), &dataList);
  if (list == nullptr) return Flow::Stop;
  Item* parent = run.currentSublistParent;
  if (parent != nullptr && parent->list != list) parent = nullptr;
  CopyContext context = contextOf(run);
  Item* copy = copyItem(context, dataList, *list, *element, parent, 0, false);
  if (copy == nullptr) return finishCopy(run, false);
  addUpList(*list);
  run.lastItemAdded = copy;
  return Flow::Next;
}

Flow runCopyOption(ScriptRun& run) {
  if (!run.inOptions || run.currentOption() == nullptr || run.currentItem() == nullptr) {
    return run.fail("copyoption found outside options command");
  }
  if (run.lastItemAdded == nullptr) {
    return run.fail("copyoption -- no item added to copy option to.");
  }
  if (run.lastItemAdded == run.currentItem()) return Flow::Next;
  mergeOption(*run.sourceSheet, *run.destSheet, *run.currentItem(), *run.lastItemAdded,
              *run.currentOption(), true);
  recalculateItem(*run.lastItemAdded);
  return Flow::Next;
}

Flow runCopyNotes(ScriptRun& run) {
  if (!run.inList || run.currentItem() == nullptr) {
    return run.fail("copynotes found outside list command");
  }
  if (run.lastItemAdded == nullptr) {
    return run.fail("copynotes -- no item added to copy notes to.");
  }
  if (run.lastItemAdded->notes.empty() && run.lastItemAdded != run.currentItem()) {
    run.lastItemAdded->notes = run.currentItem()->notes;
    setChanged(*run.destSheet, true);
  }
  return Flow::Next;
}

Flow runCopyList(ScriptRun& run) {
  std::string from;
  std::string to;
  if (!readTwoNames(run, "String expected for copyList", from, to)) return Flow::Stop;
  ListInfo* target = findListByPrefix(*run.destSheet, to);
  if (target == nullptr) return run.fail(strprintf("copyList: can't find new list '%s'", to));
  ListInfo* source = findListByPrefix(*run.sourceSheet, from);
  if (source == nullptr) return run.fail(strprintf("copyList: can't find old list '%s'", from));
  CopyContext context = contextOf(run);
  return finishCopy(run, copyList(context, *source, *target));
}

Flow runCopyDialog(ScriptRun& run) {
  std::string from;
  std::string to;
  if (!readTwoNames(run, "String expected for copyDialog", from, to)) return Flow::Stop;
  DlgInfo* source = findDialog(*run.sourceSheet, from);
  if (source == nullptr) {
    return run.fail(
        strprintf("copyDialog: dialog '%s' doesn't exist in original character sheet.", from));
  }
  DlgInfo* target = findDialog(*run.destSheet, to);
  if (target == nullptr) {
    return run.fail(strprintf("copyDialog: dialog '%s' doesn't exist in new character sheet.", to));
  }
  if (source == target) return Flow::Next;
  CopyContext context = contextOf(run);
  return finishCopy(run, copyDialog(context, *source, *target));
}

Flow runCopyDefines(ScriptRun& run) {
  if (run.sourceSheet == run.destSheet) {
    return run.fail(
        "Copydefines can be used only when converting from one character sheet to another.");
  }
  return finishCopy(run, copyScriptDefines(*run.destSheet, *run.sourceSheet));
}

Flow runCopyAll(ScriptRun& run) {
  if (run.sourceSheet == run.destSheet) return Flow::Next;
  CopyContext context = contextOf(run);
  return finishCopy(run, copyAll(context));
}

}  // namespace zv::script
