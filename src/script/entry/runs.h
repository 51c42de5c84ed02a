#pragma once
// The three ways a script runs, and running a script on one sheet.
//
//   runConversionScript  a script file from one sheet to another (or, in script mode, on one
//                        sheet); a new context with the variable `isOnNew`; fresh subroutines
//   runItemScript        script text of an item or field on a sheet, in the sheet's lasting
//                        context and with its saved subroutines; script mode; the item current
//   runMenuScript        script text of a menu entry, in a context the caller keeps
//
// Each refuses to start while another script runs ("Script in Progress"), and succeeds only when
// the statements reach the end of the text: `exit`, `return` at the top, `fail` and every error
// end a run as not completed.

#include <memory>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "expr/symbols.h"
#include "script/state/environment.h"
#include "script/state/script_run.h"

namespace zv::script {

struct ConversionRequest {
  /// List the source's unconverted elements in the destination at the end.
  bool reportUnconverted = true;
  /// Run on one sheet: the script edits the destination in place (the source is the same).
  bool scriptMode = false;
  /// The value of the variable `isOnNew` in the script's context.
  int isOnNew = 0;
};

struct RunOutcome {
  /// The statements reached the end of the text.
  bool completed = false;
  /// A message was shown, or the script chose to stop: the caller adds no message of its own.
  bool errorReported = false;
  /// After a conversion: the truth of the variable `identical`, true when none was made.
  bool identical = true;
  /// After an item script: the truth of the variable `canceled`, false when none was made.
  bool canceled = false;
};

/// Runs the script `scriptName` (a bare file name in the data directory) from `source` to
/// `destination` (the same sheet in script mode).
RunOutcome runConversionScript(ScriptEnvironment& environment, FileInfo& source,
                               FileInfo& destination, std::string_view scriptName,
                               const ConversionRequest& request);

/// Runs `text` from `start` (its first line `firstLine`) on the sheet with `item` current, in the
/// sheet's lasting context.
RunOutcome runItemScript(ScriptEnvironment& environment, FileInfo& sheet, Item* item,
                         std::string_view fileLabel, std::string text, std::size_t start,
                         int firstLine);

/// Runs `text` from `start` on the sheet in `context` (created on first use) with the caller's
/// subroutines.
RunOutcome runMenuScript(ScriptEnvironment& environment, FileInfo& sheet,
                         std::string_view fileLabel, std::string text, std::size_t start,
                         int firstLine, SubroutineList& subroutines,
                         std::unique_ptr<SymbolTable>& context);

/// Runs the script `scriptName` on one sheet in script mode; "Error running script." when it
/// didn't complete and nothing was shown. True when it completed.
bool runScriptOnSheet(ScriptEnvironment& environment, FileInfo& sheet, std::string_view scriptName,
                      int isOnNew = 0);

}  // namespace zv::script
