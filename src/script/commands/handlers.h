#pragma once
// The handlers of the sheet commands, each run after its keyword has been read.

#include <string>

#include "core/item.h"
#include "script/state/script_run.h"

namespace zv::script {

Flow runList(ScriptRun& run);
Flow runOptions(ScriptRun& run);
Flow runDestination(ScriptRun& run);
Flow runAdd(ScriptRun& run);
/// `option` (alwaysNew false) and `addoption` (true) on the last item added.
Flow runOption(ScriptRun& run, bool alwaysNew);
Flow runSet(ScriptRun& run);

Flow runCopyItem(ScriptRun& run);
Flow runCopyOption(ScriptRun& run);
Flow runCopyNotes(ScriptRun& run);
Flow runCopyList(ScriptRun& run);
Flow runCopyDialog(ScriptRun& run);
Flow runCopyDefines(ScriptRun& run);
Flow runCopyAll(ScriptRun& run);

Flow runExclude(ScriptRun& run);
Flow runUnconverted(ScriptRun& run);
Flow runDeleteItem(ScriptRun& run);
Flow runNotes(ScriptRun& run);

/// "$@name = value", "dialog.field = value", "list.name = value"; nullopt for a plain name.
std::optional<Flow> assignForm(ScriptRun& run, const std::string& left, const std::string& value);

/// After `add` and "list.name = ...": an `option` or `addoption` that follows belongs to the item.
Flow optionsThatFollow(ScriptRun& run);

/// Assigns the item again from its level text after its options or fields changed, and adds up
/// its list; the sheet is marked changed.
void recalculateItem(Item& item);

/// The list of the destination by the start of its name whose data sheet list exists; null after
/// "'%s' is not a list name." or "Can't find data sheet list %s for %s.".
ListInfo* destinationListNamed(ScriptRun& run, std::string_view name, Category** dataList);

}  // namespace zv::script
