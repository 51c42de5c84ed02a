// Runs the input as script statements on a small sheet: one list of three items (one a sublist
// with a member), a dialog with an edit field and a number field, and a game system with a
// category of master items and an option. Every loop and call polls for cancel, and the headless
// host answers a cancel after 2,000 polls, so no text can run for ever; include and exec find no
// files. Nothing may crash, leak or hang.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "core/dialog.h"
#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "core/option_tree.h"
#include "core/random.h"
#include "expr/symbols.h"
#include "formats/engine_wiring.h"
#include "formats/tokens/keywords.h"
#include "rules/value/level.h"
#include "script/entry/runs.h"

namespace {

std::unique_ptr<zv::Item> levelled(const char* name, const char* level) {
  auto item = std::make_unique<zv::Item>(zv::ItemKind::Item, name);
  item->formula = "x*2";
  item->varName = name;
  item->level = level;
  item->cat = "Skills";
  return item;
}

zv::GameSystem& fuzzSystem() {
  static zv::GameSystem* system = [] {
    zv::GameSystem& made = zv::findOrCreateGameSystem("Fuzzia");
    zv::Category& skills = made.findOrAddCategory("Skills");
    skills.appendItem(levelled("Climb", "1"));
    skills.appendItem(levelled("Swim", "2"));
    auto pack = std::make_unique<zv::Item>(zv::ItemKind::Sublist, "Pack");
    pack->appendChild(levelled("Rope", "1"));
    skills.appendItem(std::move(pack));
    skills.rebuildIndex();
    zv::OptionTreeEntry entry;
    entry.name = "Edge";
    entry.option = std::make_unique<zv::Option>();
    entry.option->kind = zv::kOptionMultiplier;
    entry.option->name = "Edge";
    entry.option->value = "2";
    zv::insertOptionEntry(made.options, std::move(entry));
    return &made;
  }();
  return *system;
}

std::unique_ptr<zv::FileInfo> smallSheet() {
  auto sheet = std::make_unique<zv::FileInfo>(1, "fuzz.chr", "");
  sheet->gameSystemName = "Fuzzia";
  sheet->gameSystem = &fuzzSystem();
  sheet->symbols = std::make_shared<zv::SymbolTable>();
  sheet->symbols->owner = sheet.get();
  zv::ListInfo& list = *sheet->addList();
  list.name = "Skills";
  list.catName = "Skills";
  list.maxItems = 20;
  list.appendItem(levelled("Climb", "3"));
  list.appendItem(levelled("Swim", "1"));
  auto pack = std::make_unique<zv::Item>(zv::ItemKind::Sublist, "Pack");
  pack->appendChild(levelled("Rope", "2"));
  list.appendItem(std::move(pack));
  zv::DlgInfo& dialog = *sheet->addDialog();
  dialog.name = "Main";
  auto name = std::make_unique<zv::DlgItem>();
  name->kind = zv::kEdittext;
  name->varName = "Name";
  dialog.appendItem(std::move(name));
  auto budget = std::make_unique<zv::DlgItem>();
  budget->kind = zv::kEditvar;
  budget->varName = "Budget";
  budget->symbol = zv::defineVariable(*sheet->symbols, "Budget", "100");
  dialog.appendItem(std::move(budget));
  zv::settleSheetLevels(*sheet);
  return sheet;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 8192) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(2000);
  zv::HostInstallation installed(host);
  static const bool rules = (zv::wireEngineServices(zv::engine()), true);
  (void)rules;
  zv::seedRandom(1);

  std::unique_ptr<zv::FileInfo> sheet = smallSheet();
  zv::script::ScriptEnvironment environment;
  environment.dataDir = "/nonexistent-zarvelin-fuzz";
  zv::script::SubroutineList subroutines;
  std::unique_ptr<zv::SymbolTable> context;
  zv::script::runMenuScript(environment, *sheet, "fuzz.scp", text, 0, 1, subroutines, context);
  // A second run on what the first left: the lasting context and subroutines.
  zv::script::runMenuScript(environment, *sheet, "fuzz.scp", text, 0, 1, subroutines, context);
  zv::script::runItemScript(environment, *sheet, sheet->lists.front()->items.front().get(),
                            "item.scp", text, 0, 1);
  return 0;
}
