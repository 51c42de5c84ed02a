// The directives of automatic items texts: a sorted table of the 36 names, found by binary search
// ignoring case, and what each one does to the run.

#include <algorithm>
#include <array>

#include "core/host.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/auto/auto_run.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

using Handler = AutoStep (*)(AutoRun& run, const AutoElement& element);

struct Directive {
  std::string_view name;
  Handler handler;
  bool takesArgument;
  bool conditional;  ///< ?if, ?elseif, ?else, ?endif: they act while the run is inactive too
};

constexpr std::string_view kOpenCloseTitle = "Error with ?open/close in autoitems";
/// The most draws one ?nrand makes, so that a stray count can't keep the program busy.
constexpr int kMaxRandomDraws = 1000;
/// The longest value ?setval puts in a variable.
constexpr std::size_t kMaxSetValue = 255;

AutoStep fail(std::string_view text) {
  showError(text);
  return AutoStep::Fail;
}

/// "name=value" of an argument; false when there is no "=".
bool splitAssignment(std::string_view argument, std::string& name, std::string& value) {
  const std::size_t equals = argument.find('=');
  name = trim(argument.substr(0, equals));
  if (equals == std::string_view::npos) return false;
  value = trim(argument.substr(equals + 1));
  return true;
}

AutoStep pendingOption(AutoRun& run, const AutoElement& element, bool dup, bool noCharge) {
  PendingOption pending;
  splitAssignment(element.argument, pending.name, pending.value);
  pending.dup = dup;
  pending.noCharge = noCharge;
  run.state.options.push_back(std::move(pending));
  run.state.lastOption = static_cast<int>(run.state.options.size()) - 1;
  return AutoStep::Go;
}

// ?if family ---------------------------------------------------------------------------------

bool condition(AutoRun& run, const std::string& expression, bool& out) {
  Value value;
  if (!run.evaluate(expression, value)) return false;
  out = integerOf(value) != 0;
  return true;
}

AutoStep onIf(AutoRun& run, const AutoElement& element) {
  AutoState& state = run.state;
  state.ifStack.push_back({state.active, false});
  if (!state.active) {
    state.ifStack.back().taken = true;
    return AutoStep::Go;
  }
  bool holds = false;
  if (!condition(run, element.argument, holds)) return AutoStep::Fail;
  state.active = holds;
  state.ifStack.back().taken = holds;
  return AutoStep::Go;
}

AutoStep onElseIf(AutoRun& run, const AutoElement& element) {
  AutoState& state = run.state;
  if (state.ifStack.empty()) return fail("?else found without ?if in automatic item");
  AutoState::IfFrame& frame = state.ifStack.back();
  if (frame.taken || !frame.outerActive) {
    state.active = false;
    return AutoStep::Go;
  }
  bool holds = false;
  if (!condition(run, element.argument, holds)) return AutoStep::Fail;
  state.active = holds;
  frame.taken = holds;
  return AutoStep::Go;
}

AutoStep onElse(AutoRun& run, const AutoElement&) {
  AutoState& state = run.state;
  if (state.ifStack.empty()) return fail("?else found without ?if in automatic item");
  AutoState::IfFrame& frame = state.ifStack.back();
  state.active = frame.outerActive && !frame.taken;
  frame.taken = true;
  return AutoStep::Go;
}

AutoStep onEndIf(AutoRun& run, const AutoElement&) {
  AutoState& state = run.state;
  if (state.ifStack.empty()) return fail("?endif found without ?if in automatic item");
  state.active = state.ifStack.back().outerActive;
  state.ifStack.pop_back();
  return AutoStep::Go;
}

// Where items come from and go ---------------------------------------------------------------

AutoStep onCat(AutoRun& run, const AutoElement& element) {
  if (run.category(element.argument) == nullptr) {
    return fail(
        strprintf("Source category '%s' does not exist (%s)", element.argument, run.parent.name));
  }
  run.state.sourceCategory = element.argument;
  return AutoStep::Go;
}

AutoStep onList(AutoRun& run, const AutoElement& element) {
  ListInfo* target = findListByName(run.sheet, element.argument);
  if (target == nullptr) {
    return fail(
        strprintf("Target list '%s' referenced in autoitems list not found", element.argument));
  }
  run.state.targetList = target;
  run.state.targetListName = target->name.str();
  return AutoStep::Go;
}

AutoStep onOpen(AutoRun& run, const AutoElement&) {
  AutoState& state = run.state;
  auto openError = [](std::string_view text) {
    showTitled(Severity::Error, kOpenCloseTitle, text);
    return AutoStep::Fail;
  };
  if (state.lastAdded == nullptr) return openError("?open error: No item added.");
  if (!state.lastAdded->isSublist()) {
    return openError(
        strprintf("?open error: Last item added was not sublist: %s.", state.lastAdded->name));
  }
  if (state.sublistStack.size() >= AutoState::kMaxOpenSublists) {
    return openError(strprintf("?open overflow on %s.", state.lastAdded->name));
  }
  state.sublistStack.push_back(state.lastAdded);
  return AutoStep::Go;
}

AutoStep onClose(AutoRun& run, const AutoElement&) {
  if (!run.state.sublistStack.empty()) run.state.sublistStack.pop_back();
  return AutoStep::Go;
}

AutoStep onDataSheet(AutoRun& run, const AutoElement& element) {
  return autoLoadDataSheet(run.sheet, element.argument) ? AutoStep::Go : AutoStep::Fail;
}

// The items' options, references and flags ---------------------------------------------------

AutoStep onOpt(AutoRun& run, const AutoElement& element) {
  return pendingOption(run, element, false, false);
}
AutoStep onDupOpt(AutoRun& run, const AutoElement& element) {
  return pendingOption(run, element, true, false);
}
AutoStep onNcOpt(AutoRun& run, const AutoElement& element) {
  return pendingOption(run, element, false, true);
}

AutoStep onRmOpt(AutoRun& run, const AutoElement& element) {
  auto& options = run.state.options;
  options.erase(std::remove_if(options.begin(), options.end(),
                               [&](const PendingOption& pending) {
                                 return equalsIgnoringCase(pending.name, element.argument);
                               }),
                options.end());
  run.state.lastOption = static_cast<int>(options.size()) - 1;
  return AutoStep::Go;
}

AutoStep onClearOpt(AutoRun& run, const AutoElement&) {
  run.state.options.clear();
  run.state.lastOption = -1;
  return AutoStep::Go;
}

AutoStep onQualifier(AutoRun& run, const AutoElement& element) {
  AutoState& state = run.state;
  if (state.lastOption >= 0 && static_cast<std::size_t>(state.lastOption) < state.options.size()) {
    state.options[static_cast<std::size_t>(state.lastOption)].qualifier = element.argument;
  }
  return AutoStep::Go;
}

/// The option of that name in the game system's tree, or null.
const Option* masterOption(const OptionTree& level, std::string_view name) {
  for (const OptionTreeEntry& entry : level) {
    if (entry.option && equalsIgnoringCase(entry.option->name, name)) return entry.option.get();
    if (const Option* found = masterOption(entry.entries, name)) return found;
  }
  return nullptr;
}

AutoStep onSelOptVal(AutoRun& run, const AutoElement& element) {
  std::string name;
  std::string title;
  splitAssignment(element.argument, name, title);
  const Option* master =
      run.sheet.gameSystem != nullptr ? masterOption(run.sheet.gameSystem->options, name) : nullptr;
  if (master == nullptr) {
    showTitled(Severity::Error, "Cannot Find Option",
               strprintf("Cannot find option %s for automatic item %s.", name, run.parent.name));
    return AutoStep::Fail;
  }
  if (title.empty()) title = name;
  PendingOption pending;
  pending.name = name;
  pending.isValue = true;
  if (master->value.starts_with("?:")) {
    // A count list: the user picks an entry, and the list is written with that choice.
    ChoiceRequest request;
    request.title = title;
    request.prompt = name;
    std::optional<OptValue> whole =
        getOptValue(&run.parent, master->kind, master->relatedItem, master->value);
    const std::size_t entries = master->value.find(';');
    if (!whole || entries == std::string::npos) return AutoStep::Fail;
    for (int entry = 1; entry <= whole->count; ++entry) {
      const std::string candidate = "?:" + std::to_string(entry) + master->value.substr(entries);
      std::optional<OptValue> read =
          getOptValue(&run.parent, master->kind, master->relatedItem, candidate);
      if (!read) return AutoStep::Fail;
      request.choices.push_back(read->label);
    }
    std::vector<int> picked = host().choose(request);
    if (picked.empty()) return AutoStep::Cancel;
    const std::size_t semicolon = master->value.find(';');
    pending.value = "?:" + std::to_string(picked.front() + 1) +
                    (semicolon == std::string::npos ? "" : master->value.substr(semicolon));
  } else {
    std::optional<std::string> typed = host().enterValue(title, name, master->value);
    if (!typed) return AutoStep::Cancel;
    pending.value = *typed;
  }
  run.state.options.push_back(std::move(pending));
  run.state.lastOption = static_cast<int>(run.state.options.size()) - 1;
  return AutoStep::Go;
}

/// The names of a list's elements, depth first, for a prompted item reference.
void elementNames(const ItemChain& chain, std::vector<std::string>& names) {
  for (const auto& item : chain) {
    names.push_back(item->name);
    elementNames(item->children, names);
  }
}

AutoStep onItemRef(AutoRun& run, const AutoElement& element) {
  std::string option;
  std::string reference;
  if (!splitAssignment(element.argument, option, reference) || reference.empty()) {
    return fail(strprintf("Item reference missing from ?itemref (%s)", element.argument));
  }
  if (reference.front() == '*') {
    const std::string_view asked = std::string_view(reference).substr(1);
    const std::size_t comma = asked.find(',');
    const std::string prompt = trim(asked.substr(0, comma));
    if (prompt.empty()) {
      return fail(strprintf("Prompt is missing for item reference: %s", element.argument));
    }
    const std::string listName =
        comma == std::string_view::npos ? std::string() : trim(asked.substr(comma + 1));
    ListInfo* source = listName.empty() ? nullptr : findListByName(run.sheet, listName);
    if (source == nullptr) return fail("Missing item or variable name for get reference");
    ChoiceRequest request;
    request.title = prompt;
    request.prompt = prompt;
    elementNames(source->items, request.choices);
    std::vector<int> picked = host().choose(request);
    if (picked.empty()) return AutoStep::Cancel;
    reference = request.choices[static_cast<std::size_t>(picked.front())];
  }
  run.state.itemRefs.push_back({option, reference});
  return AutoStep::Go;
}

AutoStep onZRef(AutoRun& run, const AutoElement&) {
  run.state.itemRefs.clear();
  return AutoStep::Go;
}

AutoStep onSetVal(AutoRun& run, const AutoElement& element) {
  std::string variable;
  std::string values;
  const bool assigned = splitAssignment(element.argument, variable, values);
  if (variable.empty()) return fail("Missing variable in setval.");
  if (!assigned || values.empty()) return fail("Missing value list in setval.");
  ChoiceRequest request;
  request.title = variable;
  request.prompt = variable;
  for (const std::string& value : split(values, ',')) {
    if (!trim(value).empty()) request.choices.push_back(trim(value));
  }
  std::vector<int> picked = host().choose(request);
  if (picked.empty()) return AutoStep::Cancel;
  const std::string& chosen = request.choices[static_cast<std::size_t>(picked.front())];
  if (chosen.size() > kMaxSetValue) return fail("Selected text too long.");
  const bool number = !chosen.empty() &&
                      chosen.find_first_not_of("0123456789.-+") == std::string::npos &&
                      chosen != "-" && chosen != ".";
  const std::string expression = number ? chosen : enclosed("\"", chosen, "\"");
  SymbolTable* table = run.sheet.symbols.get();
  Symbol* symbol = table != nullptr ? table->find(variable) : nullptr;
  bool ok = false;
  if (table != nullptr) {
    ok = symbol != nullptr && symbol->isVariable() && !symbol->undefined()
             ? setExpression(*table, *symbol, expression) == 0
             : (symbol == nullptr || symbol->undefined()) &&
                   defineVariable(*table, variable, expression) != nullptr;
  }
  if (!ok) return fail(strprintf("Unable to define variable %s", variable));
  return AutoStep::Go;
}

// Plain switches -------------------------------------------------------------------------------

AutoStep onAddCat(AutoRun& run, const AutoElement& element) {
  std::string& categories = run.state.categoryToAdd;
  if (!categories.empty()) categories += ';';
  categories += element.argument;
  return AutoStep::Go;
}

AutoStep onAdj(AutoRun& run, const AutoElement& element) {
  std::string& adjustment = run.state.adjustment;
  if (!adjustment.empty()) adjustment += ';';
  adjustment += element.argument;
  return AutoStep::Go;
}

AutoStep onAllowDup(AutoRun& run, const AutoElement&) {
  run.state.allowDuplicate = true;
  return AutoStep::Go;
}
AutoStep onCharge(AutoRun& run, const AutoElement&) {
  run.state.charge = true;
  return AutoStep::Go;
}
AutoStep onNoCharge(AutoRun& run, const AutoElement&) {
  run.state.charge = false;
  return AutoStep::Go;
}
AutoStep onCheckReq(AutoRun& run, const AutoElement&) {
  run.state.checkRequirements = true;
  run.state.noRequirements = false;
  return AutoStep::Go;
}
AutoStep onNoReq(AutoRun& run, const AutoElement&) {
  run.state.noRequirements = true;
  run.state.checkRequirements = false;
  return AutoStep::Go;
}
AutoStep onDefault(AutoRun& run, const AutoElement&) {
  run.state.useDefault = true;
  return AutoStep::Go;
}
AutoStep onDefItem(AutoRun& run, const AutoElement& element) {
  run.state.defaultItem = element.argument;
  return AutoStep::Go;
}
AutoStep onSelExp(AutoRun& run, const AutoElement& element) {
  run.state.selectExpression = element.argument;
  return AutoStep::Go;
}
AutoStep onClear(AutoRun& run, const AutoElement&) {
  run.clearState();
  return AutoStep::Go;
}

AutoStep onRand(AutoRun& run, const AutoElement&) {
  run.state.randomMode = true;
  run.state.randomCount = 1;
  return AutoStep::Go;
}

AutoStep onNRand(AutoRun& run, const AutoElement& element) {
  Value count;
  if (!run.evaluate(element.argument, count)) return AutoStep::Fail;
  run.state.randomMode = true;
  run.state.randomCount = std::clamp(integerOf(count), 0, kMaxRandomDraws);
  return AutoStep::Go;
}

AutoStep onChoose(AutoRun& run, const AutoElement& element) {
  return run.choose(element.argument, ChooseMode::Names);
}
AutoStep onCChoose(AutoRun& run, const AutoElement& element) {
  return run.choose(element.argument, ChooseMode::Costs);
}
AutoStep onUChoose(AutoRun& run, const AutoElement& element) {
  return run.choose(element.argument, ChooseMode::Options);
}

// Sorted by name for the binary search; the ?if family acts while inactive.
constexpr std::array<Directive, 36> kDirectives = {{
    {"addcat", onAddCat, true, false},
    {"adj", onAdj, true, false},
    {"allowdup", onAllowDup, false, false},
    {"cat", onCat, true, false},
    {"cchoose", onCChoose, true, false},
    {"charge", onCharge, false, false},
    {"checkreq", onCheckReq, false, false},
    {"choose", onChoose, true, false},
    {"clear", onClear, false, false},
    {"clearopt", onClearOpt, false, false},
    {"close", onClose, false, false},
    {"datasheet", onDataSheet, true, false},
    {"default", onDefault, false, false},
    {"defitem", onDefItem, true, false},
    {"dupopt", onDupOpt, true, false},
    {"else", onElse, false, true},
    {"elseif", onElseIf, true, true},
    {"endif", onEndIf, false, true},
    {"if", onIf, true, true},
    {"itemref", onItemRef, true, false},
    {"list", onList, true, false},
    {"ncopt", onNcOpt, true, false},
    {"nocharge", onNoCharge, false, false},
    {"noreq", onNoReq, false, false},
    {"nrand", onNRand, true, false},
    {"open", onOpen, false, false},
    {"opt", onOpt, true, false},
    {"qualifier", onQualifier, true, false},
    {"rand", onRand, false, false},
    {"rmopt", onRmOpt, true, false},
    {"selexp", onSelExp, true, false},
    {"seloptval", onSelOptVal, true, false},
    {"setval", onSetVal, true, false},
    {"uchoose", onUChoose, true, false},
    {"zopt", onClearOpt, false, false},
    {"zref", onZRef, false, false},
}};

static_assert(std::is_sorted(kDirectives.begin(), kDirectives.end(),
                             [](const Directive& a, const Directive& b) {
                               return a.name < b.name;
                             }));

const Directive* findDirective(std::string_view name) {
  const std::string wanted = toLower(name);
  auto found = std::lower_bound(
      kDirectives.begin(), kDirectives.end(), wanted,
      [](const Directive& entry, const std::string& key) { return entry.name < key; });
  if (found == kDirectives.end() || found->name != wanted) return nullptr;
  return &*found;
}

}  // namespace

AutoStep AutoRun::directive(const AutoElement& element) {
  const Directive* entry = findDirective(element.name);
  if (entry == nullptr) {
    if (!state.active) return AutoStep::Go;
    return fail(strprintf("Bad autoitem modifier: %s (%s)", element.name, parent.name));
  }
  if (!state.active && !entry->conditional) return AutoStep::Go;
  if (entry->takesArgument && !element.terminated) {
    return fail(strprintf("Missing ; in autoitem modifier: %s", element.text));
  }
  return entry->handler(*this, element);
}

}  // namespace zv
