// ?choose, ?cchoose and ?uchoose: the user picks some of the candidate items, which are then
// added as item references are.

#include <utility>

#include "core/host.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "expr/item_fields.h"
#include "rules/auto/auto_run.h"
#include "rules/value/cost.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"

namespace zv {

namespace {

struct Candidate {
  const Item* master = nullptr;
  AutoItemRef ref;
  std::string category;
};

/// Whether a master item passes the expression of ?selexp: a number that isn't 0, or else a
/// text that isn't empty. An expression that can't be evaluated lets the item pass, as the
/// selection rules do.
bool selects(FileInfo& sheet, std::string_view expression, const Item& master) {
  if (expression.empty() || !sheet.symbols) return true;
  // "@name" reads the candidate's fields.
  ItemContextScope fields(&sheet, *sheet.symbols);
  Value result;
  if (parseExpInContext(sheet.symbols.get(), const_cast<Item*>(&master), nullptr, expression,
                        result) != 0) {
    return true;
  }
  if (result.isNumber()) return valueToDouble(result) != 0.0;
  return !valueToText(result).empty();
}

/// The cost a candidate would have at its element's level, as ?cchoose shows it.
std::string candidateCost(FileInfo& sheet, const Candidate& candidate) {
  std::unique_ptr<Item> copy = candidate.master->clone();
  copy->owner = &sheet;
  if (candidate.ref.hasLevel) copy->level = candidate.ref.level;
  if (!copy->formula.empty()) {
    Value level;
    double cost = 0.0;
    if (parseExp(sheet.symbols.get(), copy->level.empty() ? "0" : copy->level, level) == 0 &&
        costAtLevel(*copy, valueToDouble(level), cost)) {
      copy->cost = cost;
    }
  }
  computeMultipliers(*copy);
  return formatFloat(computeCost(*copy));
}

/// A candidate's row: its name, with its cost (?cchoose) or its options (?uchoose).
std::string candidateRow(FileInfo& sheet, const Candidate& candidate, ChooseMode mode) {
  const std::string& name = candidate.master->name;
  if (mode == ChooseMode::Costs) return strprintf("%s [%s]", name, candidateCost(sheet, candidate));
  if (mode == ChooseMode::Options && !candidate.master->options.empty()) {
    std::unique_ptr<Item> copy = candidate.master->clone();
    copy->owner = &sheet;
    std::string options;
    for (auto& option : copy->options) {
      if (!options.empty()) options += "; ";
      options += formatOption(*copy, *option);
    }
    return strprintf("%s (%s)", name, options);
  }
  return name;
}

}  // namespace

AutoStep AutoRun::choose(std::string_view argument, ChooseMode mode) {
  std::string error;
  std::optional<ChooseArgument> choice = parseChooseArgument(argument, error);
  if (!choice) {
    showError(error);
    return AutoStep::Fail;
  }
  // ?selexp filters the patterns of this choice only.
  const std::string selectExpression = std::exchange(state.selectExpression, std::string());
  std::vector<Candidate> candidates;
  for (const AutoItemRef& element : choice->elements) {
    const std::string categoryName = element.hasCategory ? element.category : defaultCategoryName();
    if (!element.name.empty() && element.name.front() == '*') {
      Category* found = category(categoryName);
      if (found == nullptr) {
        showError("Categories not implemented yet.");
        return AutoStep::Fail;
      }
      for (const Item* master : found->index) {
        if (master->isSublist() || !wildcardMatch(element.name, master->name)) continue;
        if (!selects(sheet, selectExpression, *master) || !autoSelectionAllows(sheet, *master)) {
          continue;
        }
        AutoItemRef ref = element;
        ref.name = master->name;
        ref.hasDisplayName = false;
        candidates.push_back({master, ref, categoryName});
      }
    } else if (const Item* master = findMaster(categoryName, element.name)) {
      candidates.push_back({master, element, categoryName});
    }
  }
  if (candidates.empty()) return AutoStep::Go;

  const int minimum = choice->minimum;
  const int maximum = choice->maximum;
  const int count = static_cast<int>(candidates.size());
  std::vector<std::size_t> chosen;
  if (count == minimum && count == maximum) {
    for (std::size_t i = 0; i < candidates.size(); ++i)
      chosen.push_back(i);
  } else {
    ChoiceRequest request;
    request.title = choice->title;
    request.prompt = chooseCountText(minimum, maximum);
    request.multiple = maximum != 1;
    request.minimum = minimum;
    request.maximum = maximum;
    for (const Candidate& candidate : candidates)
      request.choices.push_back(candidateRow(sheet, candidate, mode));
    std::optional<std::vector<int>> picked = host().chooseSome(request);
    if (!picked) return AutoStep::Cancel;
    for (int index : *picked) {
      if (index < 0 || index >= count) continue;
      if (maximum > 0 && static_cast<int>(chosen.size()) >= maximum) break;
      chosen.push_back(static_cast<std::size_t>(index));
    }
  }
  for (std::size_t index : chosen) {
    Candidate& candidate = candidates[index];
    if (mode != ChooseMode::Names) {
      const std::string& initial =
          candidate.ref.hasLevel ? candidate.ref.level : candidate.master->level;
      std::optional<std::string> level =
          host().enterValue(choice->title, candidate.master->name, initial);
      if (!level) return AutoStep::Cancel;
      candidate.ref.level = trim(*level);
      candidate.ref.hasLevel = !candidate.ref.level.empty();
    }
    const AutoStep step = addAutoItem(candidate.master, candidate.ref, candidate.category);
    if (step != AutoStep::Go) return step;
  }
  return AutoStep::Go;
}

}  // namespace zv
