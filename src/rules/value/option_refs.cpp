#include "rules/value/option_refs.h"

#include <algorithm>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

/// Sublists nest at most 200 deep; a longer chain of parents is a broken record.
constexpr int kMaxOptionSearchDepth = 256;

std::string nameWithQualifier(const Option& option, bool useAlias) {
  const std::string& name = useAlias && !option.alias.empty() ? option.alias : option.name;
  if (option.qualifier.empty()) return name;
  return strprintf("%s (%s)", name.c_str(), option.qualifier.c_str());
}

bool holdsOperator(std::string_view text) {
  return text.find_first_of("+-*/<>=&|^% ") != std::string_view::npos;
}

/// A value as it stands in an expression: a number bare, anything else quoted.
std::string valueLiteral(const std::string& value) {
  if (isLiteralText(value) && !value.starts_with("\"")) return value;
  std::string quoted = value;
  std::replace(quoted.begin(), quoted.end(), '"', '\'');
  return enclosed("\"", quoted, "\"");
}

/// The option's display template with its tokens replaced (x the option's value, c, a, m and
/// aux the item's figures), evaluated; nullopt when it doesn't evaluate, so that the plain
/// display stands. Displays stay quiet: they are made while windows paint.
std::optional<std::string> displayTemplate(Item& item, Option& option, const std::string& value) {
  std::string text = replaceWord(option.format, "aux", strprintf("%.15g", item.aux));
  text = replaceWord(text, "c", strprintf("%f", item.cost));
  text = replaceWord(text, "a", strprintf("%.15g", item.add));
  text = replaceWord(text, "m", strprintf("%.15g", item.mult));
  text = replaceWord(text, "x", valueLiteral(value));
  text = expandOptionRefs(item, text, nullptr, true);
  Value result;
  if (evaluateForItem(&item, &option, text, result) != 0) return std::nullopt;
  return valueToText(result);
}

}  // namespace

std::optional<OptString> getOptString(Item& item, Option& option) {
  if (!isOptionKind(option.kind)) {
    showError("Internal Error in getOptString");
    return std::nullopt;
  }
  std::optional<OptValue> read = getOptValue(&item, option.kind, option.relatedItem, option.value);
  if (!read) return std::nullopt;
  OptString out;
  out.raw = read->value;
  out.text = read->label.empty() || read->label == read->value
                 ? read->value
                 : strprintf("%s, %s", read->label.c_str(), read->value.c_str());
  switch (option.kind) {
    case kOptionExpression: {
      Value result;
      if (evaluateForItem(&item, &option, read->value, result) != 0) {
        reportExpressionError(read->value);
        return std::nullopt;
      }
      out.value = std::move(result);
      out.text = valueToText(out.value);
      break;
    }
    case kOptionText:
      out.value = Value(out.text);
      break;
    case kOptionAddition:
    case kOptionPercentage:
      out.value = Value(static_cast<std::int32_t>(leadingInteger(read->value)));
      break;
    case kOptionMultiplier: {
      std::string_view text = read->value;
      if (!text.empty() && (text.front() == '*' || text.front() == '\xD7')) text.remove_prefix(1);
      Value result;
      if (evaluateForItem(&item, &option, text, result) == 0) {
        out.value = std::move(result);
      } else {
        out.value = Value(std::string(text));
      }
      break;
    }
    default:
      out.value = Value(read->value);
      break;
  }
  return out;
}

std::optional<EffectiveOption> findOptionByName(Item& item, std::string_view name, bool exact) {
  Item* holder = &item;
  for (int depth = 0; holder != nullptr; ++depth) {
    if (depth > kMaxOptionSearchDepth) {
      showError("Recursed too far in option list search");
      return std::nullopt;
    }
    const bool own = holder == &item;
    EffectiveOption prefixMatch;
    for (const auto& option : holder->options) {
      if (!own && option->noInherit()) continue;
      if (equalsIgnoringCase(option->name, name) ||
          (!option->alias.empty() && equalsIgnoringCase(option->alias, name))) {
        return EffectiveOption{holder, option.get()};
      }
      if (!exact && prefixMatch.option == nullptr && option->name.size() >= name.size() &&
          equalsIgnoringCase(std::string_view(option->name).substr(0, name.size()), name)) {
        prefixMatch = {holder, option.get()};
      }
    }
    if (prefixMatch.option != nullptr) return prefixMatch;
    if (holder->parent == nullptr || !holder->parent->inheritOpts()) break;
    holder = holder->parent;
  }
  return std::nullopt;
}

std::optional<EffectiveOption> findOptionByIndex(Item& item, std::string_view name, int n) {
  int seen = 0;
  for (const EffectiveOption& entry : effectiveOptions(item)) {
    const Option& option = *entry.option;
    if (!name.empty() && !equalsIgnoringCase(option.name, name) &&
        (option.alias.empty() || !equalsIgnoringCase(option.alias, name))) {
      continue;
    }
    if (++seen == n) return entry;
  }
  return std::nullopt;
}

std::string formatOption(Item& item, Option& option, bool useAlias) {
  const std::string name = nameWithQualifier(option, useAlias);
  std::optional<OptValue> read = getOptValue(&item, option.kind, option.relatedItem, option.value);
  const std::string value = read ? read->value : std::string();
  const std::string label = read ? read->label : std::string();
  if (!option.format.empty()) {
    if (std::optional<std::string> shown = displayTemplate(item, option, value)) return *shown;
  }
  switch (option.kind) {
    case kOptionText:
      return strprintf("%s: %s", name.c_str(), value.c_str());
    case kOptionExpression: {
      Value result;
      if (!read || evaluateForItem(&item, &option, value, result) != 0) {
        return strprintf("%s: (Error!)", name.c_str());
      }
      return strprintf("%s: %s", name.c_str(), valueToText(result).c_str());
    }
    case kOptionAuxCost: {
      const std::string expression =
          replaceWord(option.auxExpression.empty() ? "x" : option.auxExpression, "x", value);
      Value result;
      std::string cost = "0";
      if (evaluateForItem(&item, &option, expression, result) == 0) cost = valueToText(result);
      return strprintf("%s: %s (cost %s)", name.c_str(), value.c_str(), cost.c_str());
    }
    default:
      if (!label.empty() && label != value) {
        return strprintf("%s: %s, %s", name.c_str(), label.c_str(), value.c_str());
      }
      return strprintf("%s: %s", name.c_str(), value.c_str());
  }
}

std::string expandOptionRefs(Item& item, std::string_view text, Item* other, bool wrap) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '`') {
      out += text[i];
      continue;
    }
    const std::size_t close = text.find('`', i + 1);
    if (close == std::string_view::npos) {
      out += text.substr(i);
      break;
    }
    std::string_view reference = text.substr(i + 1, close - i - 1);
    i = close;
    bool parenthesize = wrap;
    if (!reference.empty() && reference.front() == '~') {
      parenthesize = false;
      reference.remove_prefix(1);
    }
    std::string result = "0";
    if (!reference.empty() && reference.front() == '$') {
      Value value;
      const std::string_view expression = reference.substr(1);
      if (evaluateForItem(&item, nullptr, expression, value) == 0) {
        result = valueToText(value);
      } else {
        reportExpressionError(expression);
      }
    } else {
      Item* target = &item;
      if (!reference.empty() && reference.front() == '!') {
        target = other;
        reference.remove_prefix(1);
      }
      if (target != nullptr) {
        if (std::optional<EffectiveOption> found = findOptionByName(*target, reference, true)) {
          if (std::optional<OptString> value = getOptString(*found->holder, *found->option)) {
            result =
                found->option->kind == kOptionExpression ? valueToText(value->value) : value->raw;
          }
        }
      }
    }
    if (result.empty()) result.assign(1, '0');
    if (parenthesize && holdsOperator(result)) result = enclosed("(", result, ")");
    out += result;
  }
  return out;
}

}  // namespace zv
