#include "expr/item_fields.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/option.h"
#include "core/text.h"

namespace zv {

namespace {

enum Field : int {
  kAddAsList,
  kAdj,
  kAlias,
  kAtDefault,
  kAutoAdded,
  kAutoChargeCost,
  kAutoID,
  kAutoItems,
  kAutoParent,
  kBaseCost,
  kBaseValue,
  kBlankCharsheet,
  kBonus,
  kCategory,
  kCheckExp,
  kCheckFailed,
  kCheckRequirements,
  kChildCost,
  kClass,
  kCost,
  kDefault,
  kDeleteAuto,
  kDsid,
  kEditDlg,
  kExcluded,
  kExp,
  kFilename,
  kFormat,
  kFormula,
  kGeneric,
  kIndent,
  kItemRow,
  kLevel,
  kListIndex,
  kLookupArray,
  kName,
  kNChildren,
  kNoAutoDup,
  kNotes,
  kOptExp,
  kOption,
  kOptions,
  kOptKeepValue,
  kOptName,
  kOptNumberValue,
  kOptQualifier,
  kOptRawType,
  kOptRawValue,
  kOptTextValue,
  kOptType,
  kOptValue,
  kOrigList,
  kOrigName,
  kParent,
  kPrereq,
  kRand,
  kSee,
  kSformat,
  kSublist,
  kVarName,
  kFieldEnd
};
static_assert(kFieldEnd == kItemFieldCount);

struct FieldName {
  std::string_view name;
  Field field;
};

// Sorted ignoring case; a unit test checks the order.
constexpr std::array<FieldName, kItemFieldNameCount> kFields{{
    {"addaslist", kAddAsList},
    {"adj", kAdj},
    {"alias", kAlias},
    {"atdefault", kAtDefault},
    {"autoAdded", kAutoAdded},
    {"autochargecost", kAutoChargeCost},
    {"autoID", kAutoID},
    {"autoitems", kAutoItems},
    {"autoParent", kAutoParent},
    {"basecost", kBaseCost},
    {"basevalue", kBaseValue},
    {"blankcharsheet", kBlankCharsheet},
    {"bonus", kBonus},
    {"category", kCategory},
    {"checkexp", kCheckExp},
    {"checkfailed", kCheckFailed},
    {"checkrequirements", kCheckRequirements},
    {"childcost", kChildCost},
    {"class", kClass},
    {"cost", kCost},
    {"default", kDefault},
    {"defaultValue", kDefault},
    {"deleteAuto", kDeleteAuto},
    {"dsid", kDsid},
    {"editdlg", kEditDlg},
    {"excluded", kExcluded},
    {"exp", kExp},
    {"filename", kFilename},
    {"format", kFormat},
    {"formula", kFormula},
    {"generic", kGeneric},
    {"indent", kIndent},
    {"item", kItemRow},
    {"level", kLevel},
    {"listindex", kListIndex},
    {"lookuparray", kLookupArray},
    {"name", kName},
    {"nchildren", kNChildren},
    {"noautodup", kNoAutoDup},
    {"notes", kNotes},
    {"optexp", kOptExp},
    {"option", kOption},
    {"options", kOptions},
    {"optkeepvalue", kOptKeepValue},
    {"optname", kOptName},
    {"optnumbervalue", kOptNumberValue},
    {"optqualifier", kOptQualifier},
    {"optrawtype", kOptRawType},
    {"optrawvalue", kOptRawValue},
    {"opttextvalue", kOptTextValue},
    {"opttype", kOptType},
    {"optvalue", kOptValue},
    {"origlist", kOrigList},
    {"origname", kOrigName},
    {"parent", kParent},
    {"prereq", kPrereq},
    {"rand", kRand},
    {"see", kSee},
    {"sformat", kSformat},
    {"sublist", kSublist},
    {"varname", kVarName},
}};

constexpr std::array<std::string_view, kItemFieldNameCount> makeNames() {
  std::array<std::string_view, kItemFieldNameCount> names{};
  for (std::size_t i = 0; i < kFields.size(); ++i)
    names[i] = kFields[i].name;
  return names;
}
constexpr std::array<std::string_view, kItemFieldNameCount> kFieldNames = makeNames();

/// The option's value and its text: by the installed rules, else by optionValue. False when the
/// rules could not get it.
bool optionString(const Item& item, const Option& option, std::string& text, Value& value) {
  const OptionRules& rules = engine().services.optionRules;
  if (rules.optionString != nullptr) return rules.optionString(item, option, text, value);
  value = optionValue(option);
  text = valueToText(value);
  return true;
}

Value flag(bool on) {
  return Value(static_cast<std::int32_t>(on ? 1 : 0));
}

Value textOrZero(const std::string& text) {
  return text.empty() ? Value(std::int32_t{0}) : Value(text);
}

/// The level value less the base of the level variable, in the kind of the level.
Value baseValue(const Item& item) {
  if (item.levelSymbol == nullptr) return Value(std::int32_t{0});
  const double base = getBaseValue(item.levelSymbol);
  const Value& level = item.value;
  if (level.isInteger()) return Value(static_cast<std::int32_t>(level.integer() - base));
  if (level.isFloat()) return Value(level.real() - base);
  return level;
}

/// The list row of an item: by the installed formatter, else in the plain column form: name,
/// cost and, when the item has a level, the level, joined by tabs.
std::string itemRow(const Item& item) {
  if (const auto& formatter = engine().services.itemRow) return formatter(item);
  std::string row = item.name;
  row += '\t';
  row += formatFloat(item.totalCost);
  if (!item.level.empty()) {
    row += '\t';
    row += valueToText(item.value);
  }
  return row;
}

/// The display text of an option: by the installed rules, else its name, the qualifier in
/// parentheses, and its value.
std::string optionDisplay(const Item& item, const Option& option) {
  const OptionRules& rules = engine().services.optionRules;
  if (rules.optionDisplay != nullptr) return rules.optionDisplay(item, option);
  std::string text = option.name;
  if (!option.qualifier.empty()) text += " (" + option.qualifier + ")";
  std::string value = valueToText(optionValue(option));
  if (!value.empty()) text += ": " + value;
  return text;
}

bool isOptionField(Field field) {
  return field >= kOptExp && field <= kOptValue && field != kOptions;
}

/// Visits the options that belong to the item: its own, then those of each parent sublist up
/// while the sublist passes its options on. Inherited options marked `noinherit` are skipped.
template <typename Visit>
bool forEachOption(const Item& item, bool inherited, Visit&& visit) {
  for (const auto& option : item.options) {
    if (visit(*option)) return true;
  }
  if (!inherited) return false;
  for (const Item* parent = item.parent; parent != nullptr && parent->inheritOpts();
       parent = parent->parent) {
    for (const auto& option : parent->options) {
      if (option->noInherit()) continue;
      if (visit(*option)) return true;
    }
  }
  return false;
}

/// Reads a whole-text number: an integer, else a real; false for anything else.
bool wholeNumber(const std::string& text, Value& out) {
  if (text.empty()) return false;
  std::size_t i = 0;
  if (text[0] == '-' || text[0] == '+') i = 1;
  if (i >= text.size()) return false;
  bool digits = false;
  bool point = false;
  for (std::size_t j = i; j < text.size(); ++j) {
    const char c = text[j];
    if (c >= '0' && c <= '9') {
      digits = true;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      return false;
    }
  }
  if (!digits) return false;
  if (point) {
    out = Value(parseReal(text));
  } else {
    out = Value(static_cast<std::int32_t>(leadingInteger(text)));
  }
  return true;
}

std::string trimmed(std::string_view text) {
  return std::string(trim(text));
}

/// The value text of an option's value language (see optionValue).
std::string optionValueText(const std::string& value) {
  if (value.size() < 2 || value[0] != '?') return value;
  const std::size_t semicolon = value.find(';');
  switch (value[1]) {
    case '+': {
      if (semicolon == std::string::npos) return value;
      std::string text = value.substr(semicolon + 1);
      if (text.empty()) return value.size() > 2 && value[2] == '1' ? "1" : "0";
      return text;
    }
    case '?': {
      if (semicolon == std::string::npos) return value.substr(2);
      std::string label = value.substr(2, semicolon - 2);
      const std::size_t second = value.find(';', semicolon + 1);
      std::string chosen = value.substr(
          semicolon + 1, second == std::string::npos ? std::string::npos : second - semicolon - 1);
      return chosen.empty() ? label : chosen;
    }
    case ':': {
      if (semicolon == std::string::npos) return value;
      const std::int32_t index = leadingInteger(trimmed(value.substr(2, semicolon - 2)));
      std::size_t start = semicolon + 1;
      for (std::int32_t n = 1; start <= value.size(); ++n) {
        const std::size_t end = value.find(';', start);
        std::string entry =
            value.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (n == index) {
          const std::size_t comma = entry.rfind(',');
          return trimmed(comma == std::string::npos ? entry : entry.substr(comma + 1));
        }
        if (end == std::string::npos) break;
        start = end + 1;
      }
      return "";
    }
    case '!':
      return value.substr(2);
    default:
      return value;
  }
}

// ---- The context stack ----

struct ItemContext {
  SymbolTable::Resolver chained;
  FileInfo* fileInfo = nullptr;
  SymbolTable* table = nullptr;
};

std::vector<ItemContext> contexts;
Item* currentItem = nullptr;
Option* currentOption = nullptr;

/// The field, then an option of the name; no chained resolver.
bool fieldOrOption(const Item& item, const Option* option, std::string_view name, Value& out) {
  const int field = findItemField(name);
  if (field >= 0) {
    if (itemField(item, option, field, out)) return true;
  }
  if (const Option* named = findItemOption(item, name)) {
    std::string text;
    return optionString(item, *named, text, out);
  }
  return false;
}

}  // namespace

std::span<const std::string_view> itemFieldNames() {
  return kFieldNames;
}

int findItemField(std::string_view name) {
  auto it = std::lower_bound(kFields.begin(), kFields.end(), name,
                             [](const FieldName& entry, std::string_view key) {
                               return compareIgnoringCase(entry.name, key) < 0;
                             });
  if (it == kFields.end() || !equalsIgnoringCase(it->name, name)) return -1;
  return it->field;
}

std::string_view optionKindWord(std::int32_t kind) {
  switch (kind) {
    case kOptionAdjustment:
    case kOptionAdjDistLevel:
    case kOptionAdjDistCost:
      return "Adjustment";
    case kOptionText:
      return "Text";
    case kOptionExpression:
      return "Expression";
    case kOptionFraction:
      return "Fraction";
    case kOptionMultiplier:
      return "Multiplier";
    case kOptionAddition:
      return "Addition";
    case kOptionPercentage:
      return "Percentage";
    case kOptionAuxCost:
      return "AuxCost";
    default:
      return "Option";
  }
}

std::string_view optionKindShortWord(std::int32_t kind) {
  switch (kind) {
    case kOptionAdjustment:
      return "adj";
    case kOptionText:
      return "text";
    case kOptionExpression:
      return "exp";
    case kOptionFraction:
      return "frac";
    case kOptionMultiplier:
      return "mult";
    case kOptionAddition:
      return "add";
    case kOptionPercentage:
      return "percent";
    case kOptionAuxCost:
      return "auxcost";
    case kOptionAdjDistLevel:
      return "adjdistlevel";
    case kOptionAdjDistCost:
      return "adjdistcost";
    default:
      return "Option";
  }
}

Value optionValue(const Option& option) {
  std::string text = optionValueText(option.value);
  Value number;
  if (wholeNumber(text, number)) return number;
  return Value(std::move(text));
}

int countedOptions(const Item& item) {
  int count = 0;
  forEachOption(item, engine().preferences.printInheritedOptions, [&](const Option& option) {
    if (!option.hidden() && !option.value.starts_with("?+0")) ++count;
    return false;
  });
  return count;
}

const Option* findItemOption(const Item& item, std::string_view name) {
  const Option* found = nullptr;
  forEachOption(item, true, [&](const Option& option) {
    if (equalsIgnoringCase(option.name, name)) {
      found = &option;
      return true;
    }
    return false;
  });
  if (found != nullptr || name.empty()) return found;
  forEachOption(item, true, [&](const Option& option) {
    if (startsWithIgnoringCase(option.name, name)) {
      found = &option;
      return true;
    }
    return false;
  });
  return found;
}

bool itemField(const Item& item, const Option* option, int fieldNumber, Value& out) {
  if (fieldNumber < 0 || fieldNumber >= kItemFieldCount) return false;
  const Field field = static_cast<Field>(fieldNumber);
  if (isOptionField(field) && option == nullptr) return false;
  switch (field) {
    case kAddAsList:
      out = flag(item.addAsList());
      return true;
    case kAdj:
      // The adjustment text alone: the variable name and the automatic changes are appended once
      // the adjustment rules exist.
      out = Value(item.adj);
      return true;
    case kAlias:
      out = Value(item.alias);
      return true;
    case kAtDefault:
      // An item at its default carries the use-default flag; its level follows the default.
      out = flag(item.useDefault());
      return true;
    case kAutoAdded:
      out = flag(item.autoAdded());
      return true;
    case kAutoChargeCost:
      out = flag(item.autoChargeCost());
      return true;
    case kAutoID:
      out = Value(item.autoID);
      return true;
    case kAutoItems:
      out = Value(item.autoitems);
      return true;
    case kAutoParent:
      out = Value(item.autoParent);
      return true;
    case kBaseCost:
      out = Value(item.cost);
      return true;
    case kBaseValue:
      out = baseValue(item);
      return true;
    case kBlankCharsheet:
      // Only a printout of a blank sheet sets this; items read outside a printout see 0.
      out = Value(std::int32_t{0});
      return true;
    case kBonus:
      out = item.levelSymbol == nullptr ? Value(std::int32_t{0})
                                        : Value(getBaseValue(item.levelSymbol));
      return true;
    case kCategory:
      out = Value(item.cat);
      return true;
    case kCheckExp:
      out = Value(item.checkExp);
      return true;
    case kCheckFailed:
      // Set by the last level check that refused the item's level.
      out = flag(item.checkFailed);
      return true;
    case kCheckRequirements:
      out = flag(engine().preferences.checkReq);
      return true;
    case kChildCost:
      out = Value(item.childCost);
      return true;
    case kClass:
      out = Value(item.className);
      return true;
    case kCost:
      out = Value(item.totalCost);
      return true;
    case kDefault:
      out = Value(item.defaultText);
      return true;
    case kDeleteAuto:
      out = flag(item.deleteAuto());
      return true;
    case kDsid:
      out = Value(std::string_view(item.dsid.c_str()).substr(0, 1));
      return true;
    case kEditDlg:
      out = Value(static_cast<std::int32_t>(item.editDlg()));
      return true;
    case kExcluded:
      out = flag(!item.inTotal());
      return true;
    case kExp:
      out = Value(item.level);
      return true;
    case kFilename:
      out = Value(item.owner != nullptr ? std::string(item.owner->name.c_str()) : std::string());
      return true;
    case kFormat:
      out = Value(item.format);
      return true;
    case kFormula:
      out = Value(item.formula);
      return true;
    case kGeneric:
      out = flag(item.generic());
      return true;
    case kIndent:
      out = Value(item.depth);
      return true;
    case kItemRow:
      out = Value(itemRow(item));
      return true;
    case kLevel:
      out = item.value;
      return true;
    case kListIndex:
      out = Value(item.position + 1);
      return true;
    case kLookupArray:
      out = Value(item.lookupArray);
      return true;
    case kName:
      out = Value(item.name);
      return true;
    case kNChildren:
      out = Value(static_cast<std::int32_t>(item.children.size()));
      return true;
    case kNoAutoDup:
      return false;
    case kNotes:
      out = Value(item.notes);
      return true;
    case kOptExp:
      out = Value(option->format);
      return true;
    case kOption:
      out = Value(optionDisplay(item, *option));
      return true;
    case kOptions:
      out = Value(static_cast<std::int32_t>(countedOptions(item)));
      return true;
    case kOptKeepValue:
      out = flag(option->keepValue());
      return true;
    case kOptName:
      out = Value(option->name);
      return true;
    case kOptNumberValue: {
      std::string text;
      Value value;
      if (!optionString(item, *option, text, value)) return false;
      out = Value(valueToText(value));
      return true;
    }
    case kOptQualifier:
      out = textOrZero(option->qualifier);
      return true;
    case kOptRawType:
      out = Value(optionKindShortWord(option->kind));
      return true;
    case kOptRawValue:
      out = Value(option->value);
      return true;
    case kOptTextValue: {
      std::string text;
      Value value;
      if (!optionString(item, *option, text, value)) return false;
      out = Value(std::move(text));
      return true;
    }
    case kOptType:
      out = Value(optionKindWord(option->kind));
      return true;
    case kOptValue: {
      std::string text;
      return optionString(item, *option, text, out);
    }
    case kOrigList:
      out = Value(item.origCat);
      return true;
    case kOrigName:
      out = Value(item.original.empty() ? item.name : item.original);
      return true;
    case kParent:
      if (item.parent == nullptr) return false;
      out = Value(item.parent->name);
      return true;
    case kPrereq:
      out = textOrZero(item.prereq);
      return true;
    case kRand:
      out = Value(static_cast<std::int32_t>(item.rand()));
      return true;
    case kSee:
      out = flag(item.see());
      return true;
    case kSformat:
      out = Value(item.sformat);
      return true;
    case kSublist:
      out = flag(item.isSublist());
      return true;
    case kVarName:
      out = Value(item.varName);
      return true;
    case kFieldEnd:
      break;
  }
  return false;
}

bool itemField(const Item& item, const Option* option, std::string_view name, Value& out) {
  return itemField(item, option, findItemField(name), out);
}

bool itemField(const Item& item, std::string_view name, Value& out) {
  return itemField(item, currentOption, name, out);
}

void pushItemContext(FileInfo* fileInfo, SymbolTable& table) {
  SymbolTable* tablePointer = &table;
  SymbolTable::Resolver chained = table.resolver();
  SymbolTable::Resolver resolver = [tablePointer, chained](std::string_view name, Value& out) {
    // The table's item, set for one evaluation, comes before the context's current item.
    const bool tableHasItem = tablePointer->currentItem != nullptr;
    Item* item = tableHasItem ? tablePointer->currentItem : currentItem;
    const Option* option = tableHasItem ? tablePointer->currentOption : currentOption;
    if (item != nullptr && name.size() > 1 && name[0] == '@' &&
        fieldOrOption(*item, option, name.substr(1), out)) {
      return true;
    }
    return chained ? chained(name, out) : false;
  };
  table.setResolver(std::move(resolver));
  contexts.push_back(ItemContext{std::move(chained), fileInfo, &table});
}

bool popItemContext() {
  if (contexts.empty()) {
    reportInternalError("Itemlook", __LINE__);
    return false;
  }
  ItemContext context = std::move(contexts.back());
  contexts.pop_back();
  context.table->setResolver(std::move(context.chained));
  currentItem = nullptr;
  currentOption = nullptr;
  return true;
}

void setCurrentItem(Item* item, Option* option) {
  currentItem = item;
  currentOption = option;
}

Item* currentContextItem() {
  return currentItem;
}

Option* currentContextOption() {
  return currentOption;
}

bool itemValueByName(const Item& item, const Option* option, std::string_view name, Value& out) {
  if (fieldOrOption(item, option, name, out)) return true;
  if (!contexts.empty() && contexts.back().chained) return contexts.back().chained(name, out);
  return false;
}

bool itemValueByName(const Item& item, std::string_view name, Value& out) {
  return itemValueByName(item, currentOption, name, out);
}

}  // namespace zv
