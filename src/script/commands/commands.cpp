#include "script/commands/commands.h"

#include "script/commands/handlers.h"

namespace zv::script {

namespace {

std::optional<Flow> command(ScriptRun& run, const ReadToken& keyword) {
  switch (keyword.token) {
    case Token::List:
      return runList(run);
    case Token::Options:
      return runOptions(run);
    case Token::Destination:
      return runDestination(run);
    case Token::Add:
      return runAdd(run);
    case Token::Option:
      return runOption(run, false);
    case Token::AddOption:
      return runOption(run, true);
    case Token::Set:
      return runSet(run);
    case Token::CopyItem:
      return runCopyItem(run);
    case Token::CopyOption:
      return runCopyOption(run);
    case Token::CopyNotes:
      return runCopyNotes(run);
    case Token::CopyList:
      return runCopyList(run);
    case Token::CopyDialog:
      return runCopyDialog(run);
    case Token::CopyDefines:
      return runCopyDefines(run);
    case Token::CopyAll:
      return runCopyAll(run);
    case Token::Exclude:
      return runExclude(run);
    case Token::Unconverted:
      return runUnconverted(run);
    case Token::DeleteItem:
      return runDeleteItem(run);
    case Token::Notes:
      return runNotes(run);
    default:
      return std::nullopt;
  }
}

}  // namespace

SheetCommands sheetCommands() {
  SheetCommands commands;
  commands.command = command;
  commands.assign = assignForm;
  return commands;
}

}  // namespace zv::script
