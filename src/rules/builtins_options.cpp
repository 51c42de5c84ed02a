// The option built-ins: whether the game system or the item has an option, how many, and an
// option's value in its several forms.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/text.h"
#include "expr/builtins_args.h"
#include "expr/builtins_items.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"
#include "rules/builtins.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"

namespace zv {

namespace {

/// The nth-option lookups running now, by item, name and n: an option whose value asks for
/// itself again would otherwise recurse without end.
std::vector<std::tuple<const Item*, std::string, std::int32_t>> runningLookups;

class LookupGuard {
 public:
  LookupGuard(const Item* item, std::string name, std::int32_t n) {
    for (const auto& [runningItem, runningName, runningN] : runningLookups) {
      if (runningItem == item && runningN == n && equalsIgnoringCase(runningName, name)) return;
    }
    runningLookups.emplace_back(item, std::move(name), n);
    entered_ = true;
  }
  ~LookupGuard() {
    if (entered_) runningLookups.pop_back();
  }
  LookupGuard(const LookupGuard&) = delete;
  LookupGuard& operator=(const LookupGuard&) = delete;
  /// False when the same lookup was running already.
  bool entered() const { return entered_; }

 private:
  bool entered_ = false;
};

bool namesOption(const Option& option, std::string_view name) {
  return equalsIgnoringCase(option.name, name) ||
         (!option.alias.empty() && equalsIgnoringCase(option.alias, name));
}

/// True when the option tree holds a list (group) or an option of that name, at any depth.
bool offersOption(const OptionTree& level, std::string_view name) {
  for (const OptionTreeEntry& entry : level) {
    if (equalsIgnoringCase(entry.name, name)) return true;
    if (entry.option != nullptr && namesOption(*entry.option, name)) return true;
    if (offersOption(entry.entries, name)) return true;
  }
  return false;
}

/// The options that count for the item in listings: its own, and the inherited ones while the
/// PrintInheritedOptions preference is on.
std::vector<EffectiveOption> listedOptions(Item& item) {
  std::vector<EffectiveOption> options = effectiveOptions(item);
  if (!engine().preferences.printInheritedOptions) {
    std::erase_if(options, [&item](const EffectiveOption& entry) { return entry.holder != &item; });
  }
  return options;
}

/// Puts the value of an option into the call's result; false after a shown message.
bool optionValueResult(BuiltinCall& call, const EffectiveOption& entry) {
  std::optional<OptString> read = getOptString(*entry.holder, *entry.option);
  if (!read) return false;
  call.result = std::move(read->value);
  return true;
}

/// A text read as a number: a whole number as an integer, anything else a fraction or decimal
/// as a real; integer 0 when no number stands there.
Value numberFromText(std::string_view text) {
  std::optional<double> number = parseFraction(text);
  if (!number) return Value(std::int32_t{0});
  const double whole = std::trunc(*number);
  if (whole == *number && std::fabs(whole) < 2147483647.0) {
    return Value(static_cast<std::int32_t>(whole));
  }
  return Value(*number);
}

/// The text of one field of an option for listoptions: the option fields of the item field
/// table, with optorigname, optdisplay and optactive besides; any other name is an item field.
std::string optionFieldText(Item& item, EffectiveOption entry, const std::string& field) {
  Option& option = *entry.option;
  if (equalsIgnoringCase(field, "optorigname")) {
    return option.origName.empty() ? option.name : option.origName;
  }
  if (equalsIgnoringCase(field, "optdisplay")) return formatOption(*entry.holder, option);
  if (equalsIgnoringCase(field, "optactive")) return option.hidden() ? "0" : "1";
  Value value;
  if (!itemField(item, &option, field, value)) return {};
  return valueToText(value);
}

}  // namespace

int builtinOptavailable(BuiltinCall& call) {
  std::string name;
  if (!hasArguments(call, 1) || !textArgument(call, 0, name)) return 0;
  const FileInfo* sheet = callSheet(call);
  if (sheet == nullptr || sheet->gameSystem == nullptr) return 0;
  call.result = Value(std::int32_t{offersOption(sheet->gameSystem->options, trim(name)) ? 1 : 0});
  return 0;
}

int builtinOptpresent(BuiltinCall& call) {
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr || !textArgument(call, 0, name)) return 0;
  call.result = Value(std::int32_t{findOptionByName(*item, name, true) ? 1 : 0});
  return 0;
}

int builtinOptcount(BuiltinCall& call) {
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr || !textArgument(call, 0, name)) return 0;
  std::int32_t count = 0;
  for (const EffectiveOption& entry : effectiveOptions(*item)) {
    if (name.empty() || namesOption(*entry.option, name)) ++count;
  }
  call.result = Value(count);
  return 0;
}

int builtinOptvalue(BuiltinCall& call) {
  const std::size_t count = call.args.size();
  if (count < 1 || count > 3) return fail(kExprStackUnderflow);
  Item* item = callItem(call);
  std::string name;
  if (count == 3) {
    std::string list;
    const FileInfo* sheet = callSheet(call);
    if (sheet == nullptr || !textArgument(call, 0, list) || !textArgument(call, 2, name)) return 0;
    item = findListItem(*sheet, list, call.args[1]);
  } else if (!textArgument(call, 0, name)) {
    return 0;
  }
  if (item == nullptr) return 0;
  if (count != 2) {
    if (std::optional<EffectiveOption> found = findOptionByName(*item, name, false)) {
      optionValueResult(call, *found);
    }
    return 0;
  }
  const std::int32_t n = integerArgument(call, 1);
  LookupGuard guard(item, name, n);
  if (!guard.entered()) return fail(kExprRecursiveOptValue);
  std::int32_t seen = 0;
  for (const EffectiveOption& entry : effectiveOptions(*item)) {
    if (!name.empty() && !namesOption(*entry.option, name)) continue;
    if (++seen == n) {
      optionValueResult(call, entry);
      break;
    }
  }
  return 0;
}

int builtinOpttextvalue(BuiltinCall& call) {
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr || !textArgument(call, 0, name)) return 0;
  std::optional<EffectiveOption> found = findOptionByName(*item, name, false);
  if (!found) return 0;
  if (std::optional<OptString> read = getOptString(*found->holder, *found->option)) {
    call.result = Value(read->text);
  }
  return 0;
}

int builtinOptnumbervalue(BuiltinCall& call) {
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr || !textArgument(call, 0, name)) return 0;
  std::optional<EffectiveOption> found = findOptionByName(*item, name, false);
  if (!found) return 0;
  Option& option = *found->option;
  if (option.kind == kOptionExpression) {
    optionValueResult(call, *found);
    return 0;
  }
  std::optional<OptValue> value =
      getOptValue(found->holder, option.kind, option.relatedItem, option.value);
  if (!value) return 0;
  if (option.kind == kOptionMultiplier) {
    if (std::optional<double> factor = parseMultiplier(value->value)) call.result = Value(*factor);
    return 0;
  }
  call.result = numberFromText(value->value);
  return 0;
}

int builtinListoptions(BuiltinCall& call) {
  std::string field;
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 3) || !textArgument(call, 0, field) || !textArgument(call, 1, name)) {
    return 0;
  }
  Symbol* array = nullptr;
  std::string separator;
  if (call.args[2].isArrayRef()) {
    array = call.args[2].arraySymbol();
    if (array == nullptr || !array->isArray()) return fail(kExprBadIndexing);
  } else if (!textArgument(call, 2, separator)) {
    return 0;
  }
  std::vector<std::string> texts;
  if (item != nullptr) {
    for (const EffectiveOption& entry : listedOptions(*item)) {
      if (name.empty() || equalsIgnoringCase(entry.option->name, name)) {
        texts.push_back(optionFieldText(*item, entry, field));
      }
    }
  }
  if (array != nullptr) {
    clearArray(*array);
    sizeArray(*array, texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
      setArrayElement(*array, i, Value(texts[i]));
    call.result = Value(static_cast<std::int32_t>(texts.size()));
    return 0;
  }
  std::string joined;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) joined += separator;
    joined += texts[i];
  }
  call.result = Value(joined);
  return 0;
}

}  // namespace zv
