// Feeds the input to the requirement parser as an item's `prereq` text on a small sheet: parsed
// with and without evaluation, each requirement written back and read again, shown as its display
// line, tested with prereqSatisfied and the check of the whole sheet, and its operators checked
// as the editor does. Nothing may crash. A written text need not read back the
// same: the writer escapes only "!", ";", "\", "|" and "~", so a name that held an escaped "<"
// reads back as a comparison.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "expr/symbols.h"
#include "rules/install.h"
#include "rules/requirements/requirements.h"

namespace {

zv::Item& addItem(zv::ListInfo& list, const char* name, int level, const char* categories) {
  zv::Item& item = list.appendItem(std::make_unique<zv::Item>(zv::ItemKind::Item, name));
  item.value = zv::Value(level);
  item.cat = categories;
  return item;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(2000);
  zv::HostInstallation installed(host);
  static const bool rules = (zv::wireItemRules(zv::engine()), true);
  (void)rules;

  zv::FileInfo sheet;
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  zv::defineVariable(*sheet.symbols, "Grit", "5");
  for (const char* name : {"Skills", "Feats"}) {
    sheet.lists.push_back(std::make_unique<zv::ListInfo>());
    sheet.lists.back()->owner = &sheet;
    sheet.lists.back()->name = name;
  }
  zv::Item& sword = addItem(*sheet.lists[0], "Sword", 12, "Combat");
  auto edge = std::make_unique<zv::Option>();
  edge->kind = zv::kOptionAddition;
  edge->name = "Edge";
  edge->value = "+2";
  sword.options.push_back(std::move(edge));
  addItem(*sheet.lists[0], "Lore", 4, "Knowledge;*Marked");
  zv::Item& feat = addItem(*sheet.lists[1], "Feat", 1, "");
  feat.prereq = std::string(text);
  sheet.dlgs.push_back(std::make_unique<zv::DlgInfo>());
  sheet.dlgs.back()->name = "Main";
  auto race = std::make_unique<zv::DlgItem>();
  race->kind = 31;
  race->varName = "Race";
  race->text = "Elf";
  sheet.dlgs.back()->appendItem(std::move(race));

  for (bool evaluate : {false, true}) {
    zv::PrereqContext context{&sheet, sheet.lists[1].get(), &feat, evaluate, false};
    auto prereqs = zv::parsePrereqs(context, text);
    if (!prereqs) continue;
    for (const zv::Prereq& prereq : *prereqs) {
      (void)zv::prereqText(prereq, &feat);
      auto written = zv::formatPrereq(prereq);
      if (!written) continue;
      (void)zv::parsePrereqs(zv::PrereqContext{&sheet, nullptr, &feat, false, true}, *written);
    }
  }
  zv::prereqSatisfied(sheet, sheet.lists[1].get(), feat, zv::PrereqMode{true, false}, text);
  (void)zv::checkPrereqOrder(text);
  (void)zv::checkAllPrereq(sheet);
  return 0;
}
