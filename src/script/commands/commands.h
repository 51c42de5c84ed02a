#pragma once
// The statements that act on sheets, given to a run's dispatcher: `list` with its members,
// `options`, `add`, `option` and `addoption`, `set`, the assignment forms "$@name = ...",
// "dialog.field = ..." and "list.name = ...", the copy commands, `exclude`, `unconverted`,
// `deleteitem` and `notes`.

#include "script/state/script_run.h"

namespace zv::script {

/// The hooks that a run's dispatcher calls for these statements.
SheetCommands sheetCommands();

}  // namespace zv::script
