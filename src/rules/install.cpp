#include "rules/install.h"

#include "rules/builtins.h"
#include "rules/requirements/requirements_check.h"
#include "rules/value/categories.h"
#include "rules/value/option_refs.h"

namespace zv {

namespace {

// The engine hands out const records; the rules evaluate in the item's context, which needs the
// item as the table's current one, so the constness is dropped here only.
bool optionString(const Item& item, const Option& option, std::string& text, Value& value) {
  std::optional<OptString> read =
      getOptString(const_cast<Item&>(item), const_cast<Option&>(option));
  if (!read) return false;
  text = read->text;
  value = read->value;
  return true;
}

std::string optionDisplay(const Item& item, const Option& option) {
  return formatOption(const_cast<Item&>(item), const_cast<Option&>(option));
}

std::string expandRefs(const Item& item, std::string_view text) {
  return expandOptionRefs(const_cast<Item&>(item), text, nullptr, true);
}

}  // namespace

void wireItemRules(EngineContext& context) {
  OptionRules& rules = context.services.optionRules;
  rules.optionString = optionString;
  rules.optionDisplay = optionDisplay;
  rules.expandOptionRefs = expandRefs;
  rules.inCategory = itemInCategory;
  context.services.checkRequirements = unmetRequirementsAfterChange;
  registerRuleBuiltins();
}

}  // namespace zv
