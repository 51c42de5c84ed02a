#include "core/list_info.h"

namespace zv {

Item& ListInfo::appendItem(std::unique_ptr<Item> item) {
  item->bindTo(owner, this, nullptr, 0);
  item->position = static_cast<std::int32_t>(items.size());
  items.push_back(std::move(item));
  return *items.back();
}

std::unique_ptr<ListInfo> ListInfo::clone() const {
  auto copy = std::make_unique<ListInfo>();
  copy->flags = flags;
  copy->owner = owner;
  copy->name = name;
  copy->help = help;
  copy->costPrompt = costPrompt;
  copy->levelPrompt = levelPrompt;
  copy->listHeader = listHeader;
  copy->listPrompt = listPrompt;
  copy->menuChar = menuChar;
  copy->catName = catName;
  copy->font = font;
  copy->loc = loc;
  copy->items.reserve(items.size());
  for (const auto& item : items) {
    auto member = item->clone();
    member->bindTo(owner, copy.get(), nullptr, 0);
    copy->items.push_back(std::move(member));
  }
  copy->total = total;
  copy->totalVarName = totalVarName;
  copy->maxItems = maxItems;
  copy->checkExp = checkExp;
  copy->checkMsg = checkMsg;
  copy->changeExp = changeExp;
  copy->defCheckMsg = defCheckMsg;
  copy->format = format;
  copy->altFormats = altFormats;
  copy->categoryBonuses = categoryBonuses;
  return copy;
}

}  // namespace zv
