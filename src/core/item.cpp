#include "core/item.h"

namespace zv {

std::unique_ptr<Item> Item::clone() const {
  auto copy = std::make_unique<Item>(kind, name);
  copy->flagsA = flagsA;
  copy->flagsB = flagsB;
  copy->sizeX = sizeX;
  copy->sizeY = sizeY;
  copy->sourceId = sourceId;
  copy->dsid = dsid;
  copy->position = position;
  copy->depth = depth;
  copy->original = original;
  copy->origCat = origCat;
  copy->cat = cat;
  copy->className = className;
  copy->lookupArray = lookupArray;
  copy->script = script;
  copy->format = format;
  copy->sformat = sformat;
  copy->varName = varName;
  copy->checkExp = checkExp;
  copy->checkMsg = checkMsg;
  copy->levelValue = levelValue;
  copy->level = level;
  copy->defaultText = defaultText;
  copy->defFormula = defFormula;
  copy->value = value;
  copy->cost = cost;
  copy->formula = formula;
  copy->mult = mult;
  copy->add = add;
  copy->aux = aux;
  copy->totalCost = totalCost;
  copy->totalCostFormula = totalCostFormula;
  copy->childCost = childCost;
  copy->notes = notes;
  copy->options.reserve(options.size());
  for (const auto& option : options)
    copy->options.push_back(std::make_unique<Option>(*option));
  copy->adj = adj;
  copy->prereq = prereq;
  copy->autoitems = autoitems;
  copy->alias = alias;
  copy->autoID = autoID;
  copy->autoParent = autoParent;
  copy->defaultSource = defaultSource;
  copy->altFormats = altFormats;
  copy->children.reserve(children.size());
  for (const auto& child : children) {
    auto member = child->clone();
    member->parent = copy.get();
    copy->children.push_back(std::move(member));
  }
  return copy;
}

Item& Item::appendChild(std::unique_ptr<Item> child) {
  child->bindTo(owner, list, this, depth + 1);
  child->position = static_cast<std::int32_t>(children.size());
  children.push_back(std::move(child));
  return *children.back();
}

void Item::bindTo(FileInfo* ownerFile, ListInfo* ownerList, Item* parentItem,
                  std::int32_t atDepth) {
  owner = ownerFile;
  list = ownerList;
  parent = parentItem;
  depth = atDepth;
  for (auto& child : children)
    child->bindTo(ownerFile, ownerList, this, atDepth + 1);
}

void renumberPositions(ItemChain& chain) {
  std::int32_t position = 0;
  for (auto& item : chain)
    item->position = position++;
}

}  // namespace zv
