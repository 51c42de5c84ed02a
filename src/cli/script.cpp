#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/game_systems.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/file_recognition.h"
#include "rules/selection/rule_library.h"
#include "script/entry/runs.h"
#include "script/reader/script_file.h"

namespace zv::cli {

namespace {

/// The game system that the script's header names as its source, read silently; "" when the
/// header can't be read (the run then reports why).
std::string sourceSystemOf(const Context& context, const std::string& scriptName) {
  const std::filesystem::path path = findDataFile(context.dataDir(), scriptName);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return "";
  HeadlessHost silent(nullptr);
  HostInstallation quiet(silent);
  std::shared_ptr<const script::SourceText> text =
      script::loadScriptFile(context.dataDir(), scriptName);
  if (!text) return "";
  script::ScriptReader reader(script::ScriptPosition{text}, nullptr);
  script::ScriptHeader header;
  return script::readScriptHeader(reader, header) ? header.sourceSystem : "";
}

/// The sheet a script runs on when no sheet is named: an empty sheet of the script's own game
/// system, with a table for its variables and no lists or dialogs. Nothing of it is saved.
std::unique_ptr<FileInfo> emptySheetFor(const std::string& gameSystem) {
  auto sheet = std::make_unique<FileInfo>(kFileCharacterSheet, "(no sheet)", "");
  sheet->gameSystemName = gameSystem;
  sheet->gameSystem = &findOrCreateGameSystem(gameSystem);
  sheet->symbols = std::make_shared<SymbolTable>();
  sheet->symbols->owner = sheet.get();
  return sheet;
}

}  // namespace

// script SCRIPT [SHEET...]: runs the script (a bare name in the data directory) on each sheet in
// turn, in script mode, questions answered from --answers. A sheet whose run reached the end of
// the script and changed it is saved in place with the backup rule; a failed run writes nothing.
// Without a sheet the script runs once on an empty sheet of its game system.
int runScript(Context& context, const std::vector<std::string>& args) {
  if (args.empty()) return usageError("script needs a script name");
  const std::string& scriptName = args.front();
  if (scriptName.find_first_of("/\\") != std::string::npos) {
    return usageError("script takes the bare name of a script in the data directory");
  }
  script::ScriptEnvironment environment;
  environment.dataDir = context.dataDir();
  // A walk of a data list passes over what the sheet's selection rules refuse, when they are on.
  selectionRules().scanRuleFiles(context.dataDir());
  if (args.size() == 1) {
    std::unique_ptr<FileInfo> sheet = emptySheetFor(sourceSystemOf(context, scriptName));
    return script::runScriptOnSheet(environment, *sheet, scriptName) ? 0 : 1;
  }
  int status = 0;
  for (std::size_t i = 1; i < args.size(); ++i) {
    const std::string& path = args[i];
    std::unique_ptr<FileInfo> sheet = openSheet(path);
    if (!sheet) {
      status = 1;
      continue;
    }
    if (!script::runScriptOnSheet(environment, *sheet, scriptName)) {
      status = 1;
      continue;
    }
    if (sheet->changed() && !saveOpenedSheet(context, *sheet, path, sheet->fileType)) status = 1;
  }
  return status;
}

}  // namespace zv::cli
