#include "script/entry/runs.h"

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "script/commands/commands.h"
#include "script/copy/unconverted.h"
#include "script/flow/dispatch.h"
#include "script/reader/script_file.h"
#include "script/state/evaluate.h"

namespace zv::script {

namespace {

/// Refuses a run while another is under way, else counts this one for its lifetime.
class RunDepth {
 public:
  explicit RunDepth(ScriptEnvironment& environment) : environment_(environment) {
    if (environment.runDepth != 0) {
      showTitled(Severity::Error, "Script in Progress", "A script is already in progress.");
      return;
    }
    ++environment.runDepth;
    entered_ = true;
  }
  ~RunDepth() {
    if (entered_) --environment_.runDepth;
  }
  RunDepth(const RunDepth&) = delete;
  RunDepth& operator=(const RunDepth&) = delete;
  bool entered() const { return entered_; }

 private:
  ScriptEnvironment& environment_;
  bool entered_ = false;
};

/// Pushes the debugger's frame of a run for its lifetime.
class DebuggerFrame {
 public:
  DebuggerFrame(ScriptRun& run, std::string_view label) : run_(run) {
    if (ScriptDebugger* debugger = run.environment.debugger) {
      debugger->pushFrame(label, run.reader.position);
    }
  }
  ~DebuggerFrame() {
    if (ScriptDebugger* debugger = run_.environment.debugger) debugger->popFrame();
  }
  DebuggerFrame(const DebuggerFrame&) = delete;
  DebuggerFrame& operator=(const DebuggerFrame&) = delete;

 private:
  ScriptRun& run_;
};

/// The statements of a run, read and run to the end of the text. `scriptmode` is taken here, at
/// the outermost level. An `exec` unwinds every statement and goes on here, in the new script.
bool runTopLevel(ScriptRun& run) {
  ReadToken token;
  for (;;) {
    if (!run.reader.readToken(token)) return false;
    if (token.is(Token::EndOfText)) return true;
    if (token.is(Token::ScriptMode)) {
      run.scriptMode = true;
      if (run.kind == RunKind::Conversion) {
        run.sourceSheet = run.destSheet;
        run.reportUnconverted = false;
      }
      continue;
    }
    if (dispatchStatement(run, token) == Flow::Next) continue;
    if (!run.execPending) return false;
    run.execPending = false;
    // A script may exec itself: each new start polls for cancel like a loop's pass.
    if (!run.checkCancel()) return false;
    run.returnPending = false;
    if (run.kind != RunKind::Conversion && run.execSubroutines) run.execSubroutines->clear();
    jumpTo(run.reader, run.execResume);
  }
}

/// The truth of a variable of the context; `absent` when there is none.
bool variableTruth(SymbolTable& table, std::string_view name, bool absent) {
  const Symbol* symbol = table.findHere(name);
  if (symbol == nullptr || !symbol->isVariable() || symbol->undefined()) return absent;
  return integerOf(symbol->value) != 0;
}

std::unique_ptr<SymbolTable> newScriptContext(FileInfo& sheet) {
  auto context = std::make_unique<SymbolTable>();
  context->owner = &sheet;
  context->nestedTable = sheet.symbols.get();
  return context;
}

/// The subroutines that a sheet keeps between its item scripts.
struct SheetScriptState {
  SubroutineList subroutines;
};

SheetScriptState& sheetScriptState(FileInfo& sheet) {
  if (!sheet.scriptObject) sheet.scriptObject = std::make_shared<SheetScriptState>();
  return *static_cast<SheetScriptState*>(sheet.scriptObject.get());
}

}  // namespace

RunOutcome runConversionScript(ScriptEnvironment& environment, FileInfo& source,
                               FileInfo& destination, std::string_view scriptName,
                               const ConversionRequest& request) {
  RunOutcome outcome;
  RunDepth depth(environment);
  if (!depth.entered()) {
    outcome.errorReported = true;
    return outcome;
  }
  std::shared_ptr<const SourceText> text = loadScriptFile(environment.dataDir, scriptName);
  if (!text) {
    outcome.errorReported = true;
    return outcome;
  }
  clearConversionMarks(source, true, true);
  std::unique_ptr<SymbolTable> context = newScriptContext(destination);
  defineVariable(*context, "isOnNew", std::to_string(request.isOnNew));
  SubroutineList subroutines;
  ScriptRun run(environment, source, destination, *context, subroutines);
  run.kind = RunKind::Conversion;
  run.commands = sheetCommands();
  run.scriptMode = request.scriptMode;
  run.reportUnconverted = request.reportUnconverted;
  run.reader.position = ScriptPosition{text, 0, 1};
  ScriptHeader header;
  if (!readScriptHeader(run.reader, header)) {
    outcome.errorReported = true;
    return outcome;
  }
  const std::string_view sourceSystem(source.gameSystemName);
  const std::string_view destSystem(destination.gameSystemName);
  if (!equalsIgnoringCase(header.sourceSystem, sourceSystem) ||
      !equalsIgnoringCase(header.destSystem, destSystem)) {
    showError(strprintf(
        "You have attempted to convert this %s character sheet to %s using a %s to %s conversion "
        "script.\r\n\r\nMake sure you select a destination template that uses the %s game "
        "system, or select another conversion script.",
        sourceSystem, destSystem, header.sourceSystem, header.destSystem, header.destSystem));
    outcome.errorReported = true;
    return outcome;
  }
  {
    DebuggerFrame frame(run, "<convert>");
    outcome.completed = runTopLevel(run);
  }
  if (outcome.completed && run.reportUnconverted) {
    reportUnconvertedItems(*run.sourceSheet, destination);
  }
  outcome.identical = variableTruth(*run.scriptContext, "identical", true);
  outcome.errorReported = run.errorReported;
  return outcome;
}

RunOutcome runItemScript(ScriptEnvironment& environment, FileInfo& sheet, Item* item,
                         std::string_view fileLabel, std::string text, std::size_t start,
                         int firstLine) {
  RunOutcome outcome;
  RunDepth depth(environment);
  if (!depth.entered()) {
    outcome.errorReported = true;
    return outcome;
  }
  clearConversionMarks(sheet, false, true);
  if (!sheet.scriptSymbols) sheet.scriptSymbols = newScriptContext(sheet);
  ScriptRun run(environment, sheet, sheet, *sheet.scriptSymbols,
                sheetScriptState(sheet).subroutines);
  run.kind = RunKind::Item;
  run.commands = sheetCommands();
  run.scriptMode = true;
  run.reader.position =
      ScriptPosition{makeSource(std::move(text), std::string(fileLabel)), start, firstLine, item};
  run.lastItemAdded = item;
  {
    DebuggerFrame frame(run, "<execute>");
    outcome.completed = runTopLevel(run);
  }
  outcome.canceled = variableTruth(*run.scriptContext, "canceled", false);
  outcome.errorReported = run.errorReported;
  return outcome;
}

RunOutcome runMenuScript(ScriptEnvironment& environment, FileInfo& sheet,
                         std::string_view fileLabel, std::string text, std::size_t start,
                         int firstLine, SubroutineList& subroutines,
                         std::unique_ptr<SymbolTable>& context) {
  RunOutcome outcome;
  RunDepth depth(environment);
  if (!depth.entered()) {
    outcome.errorReported = true;
    return outcome;
  }
  clearConversionMarks(sheet, false, true);
  if (!context) context = newScriptContext(sheet);
  ScriptRun run(environment, sheet, sheet, *context, subroutines);
  run.kind = RunKind::Menu;
  run.commands = sheetCommands();
  run.scriptMode = true;
  run.reader.position =
      ScriptPosition{makeSource(std::move(text), std::string(fileLabel)), start, firstLine};
  {
    DebuggerFrame frame(run, "<menu>");
    outcome.completed = runTopLevel(run);
  }
  outcome.errorReported = run.errorReported;
  return outcome;
}

bool runScriptOnSheet(ScriptEnvironment& environment, FileInfo& sheet, std::string_view scriptName,
                      int isOnNew) {
  ConversionRequest request;
  request.reportUnconverted = false;
  request.scriptMode = true;
  request.isOnNew = isOnNew;
  const RunOutcome outcome = runConversionScript(environment, sheet, sheet, scriptName, request);
  if (!outcome.completed && !outcome.errorReported) showError("Error running script.");
  return outcome.completed;
}

}  // namespace zv::script
