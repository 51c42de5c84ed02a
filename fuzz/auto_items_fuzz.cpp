// Feeds the input to the automatic items language: split into its elements, each item reference
// and each choice read, then run as the automatic items of an item added to a small sheet with a
// game system of its own (questions get no answer, draws are seeded). Nothing may crash or hang.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "core/option_tree.h"
#include "core/random.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/auto/auto_items.h"
#include "rules/install.h"
#include "rules/lists/list_ops.h"

namespace {

zv::Item& master(zv::GameSystem& system, const char* category, const char* name,
                 const char* formula, zv::ItemKind kind = zv::ItemKind::Item) {
  auto item = std::make_unique<zv::Item>(kind, name);
  item->cat = category;
  item->formula = formula;
  if (*formula != '\0') item->varName = name;
  item->level = "1";
  return system.findOrAddCategory(category).appendItem(std::move(item));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(2000);
  zv::HostInstallation installed(host);
  static const bool rules = (zv::wireItemRules(zv::engine()), true);
  (void)rules;
  zv::seedRandom(1);

  for (const zv::AutoElement& element : zv::splitAutoItems(text)) {
    if (!element.directive) {
      (void)zv::parseAutoItemRef(element.text);
    } else if (element.hasArgument) {
      std::string error;
      if (auto choice = zv::parseChooseArgument(element.argument, error)) {
        (void)zv::chooseCountText(choice->minimum, choice->maximum);
        for (const zv::AutoItemRef& ref : choice->elements)
          (void)zv::wildcardMatch(ref.name, "Rope");
      }
    }
  }

  zv::GameSystem system("Fuzzland");
  master(system, "Skills", "Climb", "x*2");
  master(system, "Skills", "Swim", "x");
  master(system, "Gear", "Rope", "");
  zv::Item& kit = master(system, "Gear", "Kit", "", zv::ItemKind::Sublist);
  kit.children.push_back(std::make_unique<zv::Item>(zv::ItemKind::Item, "Torch"));
  kit.children.back()->parent = &kit;
  master(system, "Gear", "Echo", "").autoitems = std::string(text);
  for (auto& category : system.categories)
    category->rebuildIndex();
  zv::OptionTreeEntry grip;
  grip.name = "Grip";
  grip.option = std::make_unique<zv::Option>();
  grip.option->kind = zv::kOptionAddition;
  grip.option->name = "Grip";
  grip.option->value = "?:1; Light,0; Firm,2;";
  zv::insertOptionEntry(system.options, std::move(grip));

  zv::FileInfo sheet;
  sheet.gameSystem = &system;
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  for (const char* name : {"Skills", "Gear"}) {
    zv::ListInfo& list = *sheet.addList();
    list.name = name;
    list.catName = name;
  }
  sheet.lists[1]->maxItems = 200;
  zv::AddChain chain;
  zv::Category* gear = system.findCategory("Gear");
  zv::AddResult added = zv::addItem(sheet, *sheet.lists[1], gear->findItem("Echo")->clone(),
                                    zv::Placement::appendTo(), chain, true);
  if (added.item != nullptr) zv::deleteElement(sheet, *sheet.lists[1], *added.item);
  return 0;
}
