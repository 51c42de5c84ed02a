#pragma once
// The statements of the control flow, each run after its keyword has been read (the internal
// table of the dispatcher).

#include <string>
#include <vector>

#include "script/state/script_run.h"

namespace zv::script {

Flow runIf(ScriptRun& run);
Flow runFor(ScriptRun& run);
Flow runWhile(ScriptRun& run);
Flow runSwitch(ScriptRun& run);
Flow runContext(ScriptRun& run);
Flow runForeach(ScriptRun& run);
Flow runItem(ScriptRun& run);

Flow runVar(ScriptRun& run, bool local);
Flow runArray(ScriptRun& run, bool local);
Flow runFunc(ScriptRun& run);
/// `name = value;` with the position at the name.
Flow runAssignment(ScriptRun& run);

Flow runSub(ScriptRun& run);
/// `call name(...)` after `call`, or `name(...)` with the position at the name.
Flow runCall(ScriptRun& run);
Flow runReturn(ScriptRun& run);

Flow runInclude(ScriptRun& run);
Flow runExec(ScriptRun& run);
Flow runExit(ScriptRun& run);
Flow runFail(ScriptRun& run);
Flow runWarn(ScriptRun& run);

}  // namespace zv::script
