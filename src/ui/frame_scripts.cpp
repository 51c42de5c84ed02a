// Data > Run Script...: the scripts of the sheet's game system, offered by title, and the one
// chosen run on the active sheet.

#include <algorithm>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "script/entry/runs.h"
#include "script/reader/script_file.h"
#include "ui/main_frame.h"

namespace zv::ui {

void MainFrame::runScript(SheetView& view) {
  view.commitPendingEdit();
  FileInfo& sheet = view.sheet();
  const std::string system(sheet.gameSystemName);
  std::vector<script::ScriptListing> scripts =
      script::listScripts(appSettings_.sourceDirectory, ".scp", system);
  // A script runs on one sheet: both of its game systems must be the sheet's.
  std::erase_if(scripts, [&system](const script::ScriptListing& listing) {
    return !listing.header.hasGameSystems || !equalsIgnoringCase(listing.header.destSystem, system);
  });
  if (scripts.empty()) {
    showTitled(Severity::Message, "Run Script",
               strprintf("There is no script for the %s game system in %s.", system,
                         appSettings_.sourceDirectory.string()));
    return;
  }
  ChoiceRequest request;
  request.title = "Run Script";
  request.prompt = strprintf("The script to run on %s:", std::string_view(sheet.name));
  for (const script::ScriptListing& listing : scripts) {
    request.choices.push_back(listing.displayTitle());
  }
  request.initial = {0};
  const std::vector<int> chosen = host().choose(request);
  if (chosen.empty() || chosen.front() < 0 ||
      static_cast<std::size_t>(chosen.front()) >= scripts.size()) {
    return;
  }
  scripts_.dataDir = appSettings_.sourceDirectory;
  if (!scriptViews_) scriptViews_ = std::make_unique<ScriptViewsOfFrame>(*mdiArea_);
  scripts_.views = scriptViews_.get();
  {
    BusyCursor busy;
    script::runScriptOnSheet(scripts_, sheet,
                             scripts[static_cast<std::size_t>(chosen.front())].fileName);
  }
  // What the script changed shows in every window of the sheet, whether it ran to the end or
  // stopped part way: a script has no undo.
  view.refreshEverything();
  updateMenus();
  updateCommandStates();
}

}  // namespace zv::ui
