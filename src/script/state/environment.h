#pragma once
// What every script run of a program shares: where scripts are found, the count that refuses a
// second run while one is under way, and the few things of the open windows that scripts may ask
// about. The program (the desktop frame, the command line) owns one and passes it to each run.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/record_types.h"
#include "script/reader/script_reader.h"

namespace zv::script {

/// The hooks of the script debugger. None is open in this version, so each does nothing.
class ScriptDebugger {
 public:
  virtual ~ScriptDebugger() = default;
  /// A statement of that line is about to run.
  virtual void line(const ScriptPosition&) {}
  /// A run or a subroutine call began a frame with that label ("<convert>", a subroutine name).
  virtual void pushFrame(std::string_view /*label*/, const ScriptPosition&) {}
  virtual void popFrame() {}
};

/// The windows of a sheet as scripts see them. Headless runs have none: no list window is open,
/// no field has the focus, no window is active.
class ScriptViews {
 public:
  virtual ~ScriptViews() = default;
  /// The 1-based selected row of the list's open window; -1 when it isn't open or has none.
  virtual int selectedRow(const ListInfo&) { return -1; }
  /// The name of the dialog field that has the focus.
  virtual std::optional<std::string> focusedField() { return std::nullopt; }
  /// The name of the active dialog or list window.
  virtual std::optional<std::string> activeWindow() { return std::nullopt; }
};

struct ScriptEnvironment {
  /// The data directory: scripts, included files and exec'd scripts are found there by name.
  std::filesystem::path dataDir;
  /// Non-zero while a script runs; a second run is refused.
  int runDepth = 0;
  /// A progress window of a script is up: an interrupt then only sets the flag that `$+canceled`
  /// reads, instead of stopping the run.
  bool progressWindowUp = false;
  ScriptDebugger* debugger = nullptr;
  ScriptViews* views = nullptr;
};

}  // namespace zv::script
