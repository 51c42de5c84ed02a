#include "script/copy/copy_routines.h"

#include <algorithm>

#include "core/game_systems.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/tokens/keywords.h"
#include "rules/lists/list_ops.h"
#include "rules/value/level.h"
#include "script/copy/field_values.h"

namespace zv::script {

namespace {

bool isPattern(const Item& item) {
  return item.name.find_first_of("*?") != std::string::npos;
}

Item* findByName(const ItemChain& chain, std::string_view name, bool patterns) {
  if (name.empty()) return nullptr;
  for (const auto& item : chain) {
    if (patterns ? (isPattern(*item) && wildcardMatch(item->name, name))
                 : equalsIgnoringCase(item->name, name)) {
      return item.get();
    }
    if (Item* inner = findByName(item->children, name, patterns)) return inner;
  }
  return nullptr;
}

/// The level text of the copy: the element's value as "%f" when its level variable has a base,
/// else its level text; the master's formula when the element has none.
std::string copiedLevelText(const Item& element, const Item* master) {
  if (element.levelSymbol != nullptr && getBaseValue(element.levelSymbol) != 0.0) {
    const double value = element.value.isString() ? 0.0 : valueToDouble(element.value);
    return strprintf("%f", value);
  }
  const bool elementFormula = !element.level.empty() && !isLiteralText(element.level);
  if (master != nullptr && !master->level.empty() && !isLiteralText(master->level) &&
      !elementFormula) {
    return master->level;
  }
  return element.level;
}

std::unique_ptr<Item> duplicateFor(const Item& element, const Item* master) {
  if (element.isSublist()) {
    std::unique_ptr<Item> copy;
    if (master != nullptr && master->isSublist()) {
      copy = master->clone();
      copy->children.clear();
      copy->cost = element.cost;
    } else if (master != nullptr && master->addAsList()) {
      copy = master->clone();
      copy->children.clear();
      copy->kind = ItemKind::Sublist;
      copy->cost = element.cost;
    } else {
      copy = element.clone();
      copy->children.clear();
    }
    copy->name = element.name;
    return copy;
  }
  std::unique_ptr<Item> copy = master != nullptr ? master->clone() : element.clone();
  copy->name = element.name;
  copy->level = copiedLevelText(element, master);
  if (master == nullptr) copy->options.clear();
  return copy;
}

/// The marks, links and texts that a copy takes from its element.
void takeFromElement(FileInfo& destination, Item& copy, const Item& element) {
  if (!element.origCat.empty()) copy.origCat = element.origCat;
  copy.setUseDefault(element.useDefault());
  copy.setDefBased(element.defBased());
  copy.setAutoAdded(element.autoAdded());
  copy.setInTotal(element.inTotal());
  copy.setUniqueVar(element.uniqueVar());
  copy.autoID = element.autoID;
  if (element.autoID != 0) destination.noteAutoID(element.autoID);
  copy.autoParent = element.autoParent;
  copy.sizeX = element.sizeX;
  copy.sizeY = element.sizeY;
  if (element.noPrereq()) copy.setNoPrereq(true);
  copy.levelValue = element.levelValue;
  if (element.uniqueVar() && !element.varName.empty()) copy.varName = element.varName;
  if (copy.prereq.empty()) copy.prereq = element.prereq;
  if (!element.notes.empty()) copy.notes = element.notes;
  if (!element.alias.empty()) copy.alias = element.alias;
  if (copy.cat.empty()) copy.cat = element.cat;
  if (element.keepCost() || copy.childCostsSeparate()) {
    copy.cost = element.cost;
    copy.setKeepCost(true);
  }
}

std::vector<Item*> pointersOf(const ItemChain& chain) {
  std::vector<Item*> out;
  out.reserve(chain.size());
  for (const auto& item : chain)
    out.push_back(item.get());
  return out;
}

bool namesMatch(const Item& existing, const Item& element) {
  return equalsIgnoringCase(existing.name, element.name) ||
         (!element.original.empty() && equalsIgnoringCase(existing.name, element.original));
}

/// Defines a script-added record's variable in the sheet's table from its text.
bool defineRecord(FileInfo& sheet, DefineRec& record) {
  if (!sheet.symbols) return false;
  SymbolTable& table = *sheet.symbols;
  switch (record.kind) {
    case kFunc:
      record.symbol = defineFunction(table, record.name, record.body);
      break;
    case kArray:
      record.symbol = defineArray(table, record.name, record.body);
      break;
    default:
      if (Symbol* existing = table.findHere(record.name);
          existing != nullptr && existing->isVariable() && !existing->undefined()) {
        record.symbol = setExpression(table, *existing, record.body) == 0 ? existing : nullptr;
      } else {
        record.symbol = defineVariable(table, record.name, record.body);
      }
      break;
  }
  return record.symbol != nullptr;
}

}  // namespace

Item* findMasterItem(FileInfo& sheet, Category* dataList, const Item& element) {
  Category* category = dataList;
  if (!element.origCat.empty()) {
    if (Category* own = categoryFind(sheet, element.origCat)) category = own;
  }
  if (category != nullptr) {
    if (Item* found = findByName(category->items, element.original, false)) return found;
    if (Item* found = findByName(category->items, element.name, false)) return found;
    if (Item* found = findByName(category->items, element.original, true)) return found;
    if (Item* found = findByName(category->items, element.name, true)) return found;
  }
  if (sheet.gameSystem != nullptr) {
    for (const auto& other : sheet.gameSystem->categories) {
      if (Item* found = findByName(other->items, element.name, false)) return found;
    }
  }
  return nullptr;
}

Item* copyItem(CopyContext& context, Category* dataList, ListInfo& list, Item& element,
               Item* parent, int depth, bool recursive) {
  FileInfo& destination = context.destination;
  const Item* master = findMasterItem(destination, dataList, element);
  std::unique_ptr<Item> copy = duplicateFor(element, master);
  takeFromElement(destination, *copy, element);
  for (const auto& option : element.options) {
    mergeOption(context.source, destination, element, *copy, *option, false);
  }
  AddChain chain;
  const AddResult added =
      addItem(destination, list, std::move(copy), Placement::appendTo(parent), chain, false);
  if (added.status != AddStatus::Added || added.item == nullptr) return nullptr;
  Item* placed = added.item;
  context.lastItemAdded = placed;
  if (element.isSublist() && recursive) {
    if (!replaceItems(context, dataList, list, pointersOf(element.children), placed, depth + 1)) {
      return nullptr;
    }
  }
  element.setConverted(true);
  setChanged(destination, true);
  return placed;
}

bool replaceItems(CopyContext& context, Category* dataList, ListInfo& list,
                  const std::vector<Item*>& elements, Item* parent, int depth) {
  if (depth > 64) return true;
  ItemChain& target = parent != nullptr ? parent->children : list.items;
  std::vector<Item*> doomed;
  for (const auto& existing : target) {
    for (const Item* element : elements) {
      if (existing.get() != element && namesMatch(*existing, *element)) {
        doomed.push_back(existing.get());
        break;
      }
    }
  }
  for (Item* item : doomed) {
    // A deletion may take automatic items along; only those still in the chain are deleted.
    const bool stillThere = std::any_of(target.begin(), target.end(),
                                        [item](const auto& held) { return held.get() == item; });
    if (!stillThere) continue;
    if (context.beforeDelete) {
      std::vector<Item*> gone{item};
      for (Item* automatic : automaticChildren(context.destination, *item))
        gone.push_back(automatic);
      context.beforeDelete(gone);
    }
    deleteElement(context.destination, list, *item);
  }
  for (Item* element : elements) {
    if (copyItem(context, dataList, list, *element, parent, depth, true) == nullptr) return false;
  }
  return true;
}

bool copyList(CopyContext& context, ListInfo& from, ListInfo& to) {
  if (&from == &to) return true;
  Category* dataList = categoryFind(context.destination, std::string_view(from.catName));
  if (dataList == nullptr)
    dataList = categoryFind(context.destination, std::string_view(to.catName));
  if (!replaceItems(context, dataList, to, pointersOf(from.items), nullptr, 0)) return false;
  addUpList(to);
  return true;
}

bool copyLists(CopyContext& context) {
  FileInfo& destination = context.destination;
  for (const auto& from : context.source.lists) {
    ListInfo* to = nullptr;
    for (const auto& candidate : destination.lists) {
      if (equalsIgnoringCase(std::string_view(candidate->name), std::string_view(from->name))) {
        to = candidate.get();
        to->loc.x = from->loc.x;
        to->loc.y = from->loc.y;
        break;
      }
    }
    if (to == nullptr) {
      for (ListInfo* candidate : destination.allLists()) {
        if (equalsIgnoringCase(std::string_view(candidate->name), std::string_view(from->name))) {
          to = candidate;
          break;
        }
      }
    }
    if (to == nullptr) {
      const std::vector<ListInfo*> all = destination.allLists();
      if (all.empty()) {
        showError("No lists in destination character sheet.");
        return false;
      }
      to = all.front();
      showError(strprintf(
          "Can't find list named %s in new character sheet.\r\nAdding items to %s instead.",
          std::string_view(from->name), std::string_view(to->name)));
    } else {
      to->loc.width = from->loc.width;
      to->loc.height = from->loc.height;
    }
    if (!copyList(context, *from, *to)) return false;
  }
  return true;
}

bool copyDlgItem(FileInfo& destination, DlgItem& target, const DlgItem& source,
                 std::string_view dialogName) {
  if (target.kind != source.kind) {
    showError(strprintf(
        "Old and new character sheets are not compatible: the type of '%s' in dialog '%s' is "
        "different.",
        source.varName, dialogName));
    return false;
  }
  switch (source.kind) {
    case kList:
      showError("Bad case in copyDlgItem");
      return false;
    case kPicture:
      setFieldPicture(target, source);
      setChanged(destination, true);
      return true;
    case kCheckbox:
      // A check box's own setter does nothing: its state goes in with its variable.
      target.checked = source.checked;
      return setFieldText(destination, target, strprintf("%d", static_cast<int>(source.checked)));
    case kEditvar:
      // A number field's value is its variable's; its text may be the expression it started as.
      setFieldText(destination, target,
                   source.symbol != nullptr ? valueToText(source.symbol->value) : source.text);
      return true;
    case kEdittext:
    case kFormula:
      setFieldText(destination, target, source.text);
      return true;
    case kCombobox: {
      const std::vector<std::string> parts = split(source.choices, ';');
      const std::size_t at = static_cast<std::size_t>(source.selectedIndex) * 2;
      if (source.selectedIndex >= 0 && at < parts.size()) {
        setFieldText(destination, target, trim(parts[at]));
      }
      return true;
    }
    default:
      return true;
  }
}

bool copyDialog(CopyContext& context, DlgInfo& from, DlgInfo& to) {
  to.x = from.x;
  to.y = from.y;
  to.width = from.width;
  to.height = from.height;
  for (const auto& field : from.items) {
    if (field->kind == kList) {
      if (!field->listField) continue;
      ListInfo& sourceList = *field->listField;
      Category* dataList = categoryFind(context.destination, std::string_view(sourceList.catName));
      if (dataList == nullptr) {
        showError(
            strprintf("Can't find selection list for '%s'", std::string_view(sourceList.name)));
        return false;
      }
      ListInfo* targetList = nullptr;
      for (ListInfo* candidate : context.destination.allLists()) {
        if (equalsIgnoringCase(std::string_view(candidate->name),
                               std::string_view(sourceList.name))) {
          targetList = candidate;
          break;
        }
      }
      if (targetList == nullptr) {
        showError(strprintf("Can't find list '%s' in new character sheet",
                            std::string_view(sourceList.name)));
        return false;
      }
      if (targetList == &sourceList) continue;
      if (!replaceItems(context, dataList, *targetList, pointersOf(sourceList.items), nullptr, 0)) {
        return false;
      }
      addUpList(*targetList);
      continue;
    }
    if (field->varName.empty()) continue;
    for (const auto& target : to.items) {
      if (target.get() != field.get() && equalsIgnoringCase(target->varName, field->varName)) {
        if (!copyDlgItem(context.destination, *target, *field, std::string_view(from.name))) {
          return false;
        }
        break;
      }
    }
  }
  return true;
}

bool copyDialogs(CopyContext& context) {
  for (const auto& from : context.source.dlgs) {
    for (const auto& to : context.destination.dlgs) {
      if (equalsIgnoringCase(std::string_view(to->name), std::string_view(from->name))) {
        if (to.get() != from.get() && !copyDialog(context, *from, *to)) return false;
        break;
      }
    }
  }
  return true;
}

bool copyHeaderValues(FileInfo& destination, FileInfo& source) {
  if (&destination == &source) return true;
  destination.created = source.created;
  destination.printTemplate = source.printTemplate;
  destination.templateName = source.templateName;
  if (!std::string_view(source.chargenTemplate).empty()) {
    destination.chargenTemplate = source.chargenTemplate;
  }
  if (!std::string_view(source.chargenScript).empty()) {
    destination.chargenScript = source.chargenScript;
  }
  destination.setRunChargen(source.runChargen());
  if (!source.description.empty()) destination.description = source.description;
  if (!source.copyright.empty()) destination.copyright = source.copyright;
  if (!source.ruleSet.empty()) destination.ruleSet = source.ruleSet;
  if (std::string_view(destination.sheetType).empty()) destination.sheetType = source.sheetType;
  destination.maxAttempts = std::max(destination.maxAttempts, source.maxAttempts);
  if (equalsIgnoringCase(std::string_view(destination.gameSystemName),
                         std::string_view(source.gameSystemName))) {
    for (const std::string& name : source.dataFiles) {
      const bool present =
          std::any_of(destination.dataFiles.begin(), destination.dataFiles.end(),
                      [&name](const std::string& held) { return equalsIgnoringCase(held, name); });
      if (present) continue;
      const OpenDataSheet* known = findLoadedDataSheet(name);
      if (known == nullptr || known->level != destination.level) continue;
      if (!ensureDataSheet(&destination, name, true)) return false;
    }
  }
  destination.assocFiles = source.assocFiles;
  for (const auto& from : source.dlgs) {
    for (const auto& to : destination.dlgs) {
      if (equalsIgnoringCase(std::string_view(to->name), std::string_view(from->name)) &&
          to->help.empty()) {
        to->help = from->help;
      }
    }
  }
  for (const auto& from : source.lists) {
    for (const auto& to : destination.lists) {
      if (equalsIgnoringCase(std::string_view(to->name), std::string_view(from->name)) &&
          to->help.empty()) {
        to->help = from->help;
      }
    }
  }
  return true;
}

bool copyScriptDefines(FileInfo& destination, FileInfo& source) {
  if (&destination == &source) return true;
  for (const DefineRec& from : source.defines) {
    if (!from.scriptAdded()) continue;
    auto existing = std::find_if(
        destination.defines.begin(), destination.defines.end(),
        [&from](const DefineRec& held) { return equalsIgnoringCase(held.name, from.name); });
    if (existing != destination.defines.end()) {
      existing->setScriptAdded(true);
      if (existing->body != from.body) {
        existing->body = from.body;
        defineRecord(destination, *existing);
      }
      continue;
    }
    DefineRec record;
    record.kind = from.kind;
    record.flags = from.flags;
    record.name = from.name;
    record.body = from.body;
    if (!defineRecord(destination, record)) {
      showError(strprintf("Unable to define script-added variable %s.", from.name));
      return false;
    }
    destination.defines.push_back(std::move(record));
  }
  return true;
}

bool copyAll(CopyContext& context) {
  return copyHeaderValues(context.destination, context.source) &&
         copyScriptDefines(context.destination, context.source) && copyDialogs(context) &&
         copyLists(context);
}

}  // namespace zv::script
