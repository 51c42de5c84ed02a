// include, exec, exit, fail and warn.

#include <fstream>
#include <iterator>

#include "core/messages.h"
#include "core/paths.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "script/expand/expand.h"
#include "script/flow/dispatch.h"
#include "script/flow/statements.h"
#include "script/reader/script_file.h"

namespace zv::script {

namespace {

/// The file name of `include` and `exec`: statement text up to ";", expanded, without quotes.
bool readFileName(ScriptRun& run, std::string& name) {
  char found = '\0';
  if (!readExpanded(run, ";", name, found) || !run.reader.unquote(name)) return false;
  name = trimBlanks(name);
  return true;
}

/// The message of `fail` and `warn`: statement text up to ";", expanded, without quotes.
bool readMessage(ScriptRun& run, std::string& text) {
  char found = '\0';
  return readExpanded(run, ";", text, found) && run.reader.unquote(text);
}

}  // namespace

Flow runInclude(ScriptRun& run) {
  std::string name;
  if (!readFileName(run, name)) return Flow::Stop;
  const std::filesystem::path path = findDataFile(run.environment.dataDir, name);
  std::ifstream in(path, std::ios::binary);
  if (!in) return run.fail(strprintf("Can't open include file %s", name));
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return run.fail(strprintf("Error reading include file: %s", name));
  NestingGuard nesting(run);
  if (!nesting.ok()) return Flow::Stop;
  const ScriptPosition back = run.reader.position;
  jumpTo(run.reader, ScriptPosition{makeSource(std::move(text), name), 0, 1});
  ReadToken found;
  const Flow flow = runStatements(run, {}, found);
  if (flow == Flow::Next) jumpTo(run.reader, back);
  return flow;
}

Flow runExec(ScriptRun& run) {
  std::string name;
  if (!readFileName(run, name)) return Flow::Stop;
  std::shared_ptr<const SourceText> source = loadScriptFile(run.environment.dataDir, name);
  if (!source) {
    run.errorReported = true;
    return Flow::Stop;
  }
  const ScriptPosition back = run.reader.position;
  jumpTo(run.reader, ScriptPosition{source, 0, 1});
  ScriptHeader header;
  if (!readScriptHeader(run.reader, header)) return Flow::Stop;
  if (header.hasGameSystems &&
      (!equalsIgnoringCase(header.sourceSystem,
                           std::string_view(run.sourceSheet->gameSystemName)) ||
       !equalsIgnoringCase(header.destSystem, std::string_view(run.destSheet->gameSystemName)))) {
    jumpTo(run.reader, back);
    return run.fail(strprintf("You have attempted to exec a %s script on a %s character sheet.",
                              header.sourceSystem,
                              std::string_view(run.sourceSheet->gameSystemName)));
  }
  if (run.kind != RunKind::Conversion && !run.execContext) {
    run.execContext = std::make_unique<SymbolTable>();
    run.execContext->owner = run.destSheet;
    if (run.destSheet->symbols) run.execContext->nestedTable = run.destSheet->symbols.get();
    run.execSubroutines = std::make_unique<SubroutineList>();
    run.context = run.execContext.get();
    run.scriptContext = run.execContext.get();
    run.subroutines = run.execSubroutines.get();
  }
  run.execPending = true;
  run.execResume = run.reader.position;
  return Flow::Stop;
}

Flow runExit(ScriptRun& run) {
  run.errorReported = true;
  return Flow::Stop;
}

Flow runFail(ScriptRun& run) {
  std::string text;
  if (!readMessage(run, text)) return Flow::Stop;
  run.errorReported = true;
  host().message(Severity::Error, "Error", text);
  return Flow::Stop;
}

Flow runWarn(ScriptRun& run) {
  std::string text;
  if (!readMessage(run, text)) return Flow::Stop;
  Question question;
  question.title = "Warning";
  question.text = text;
  question.buttons = ButtonSet::OkCancel;
  question.defaultButton = Button::Ok;
  question.severity = Severity::Warning;
  if (host().ask(question) == Button::Cancel) {
    run.errorReported = true;
    return Flow::Stop;
  }
  return Flow::Next;
}

}  // namespace zv::script
