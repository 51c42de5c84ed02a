#include "rules/value/option_value.h"

#include <cctype>
#include <cmath>

#include "core/fileinfo.h"
#include "core/list_info.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "core/value.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/multipliers.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

constexpr char kQuarter = '\xBC';
constexpr char kHalf = '\xBD';
constexpr char kThreeQuarters = '\xBE';
constexpr char kTimes = '\xD7';

double glyphValue(char c) {
  switch (c) {
    case kQuarter:
      return 0.25;
    case kHalf:
      return 0.5;
    case kThreeQuarters:
      return 0.75;
    default:
      return -1.0;
  }
}

/// "(name)" behind a message when there is an item to name.
std::string withItem(std::string_view message, const Item* item) {
  if (item == nullptr) return std::string(message);
  return strprintf("%s (%s)", std::string(message).c_str(), item->name.c_str());
}

bool readDigits(std::string_view text, std::size_t& at, long& number) {
  const std::size_t start = at;
  number = 0;
  while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0) {
    number = number * 10 + (text[at] - '0');
    ++at;
  }
  return at > start;
}

std::optional<OptValue> countList(Item* item, std::string_view text) {
  std::size_t at = 2;
  while (at < text.size() && text[at] == ' ')
    ++at;
  long index = 0;
  const bool negative = at < text.size() && text[at] == '-';
  if (negative) ++at;
  if (!readDigits(text, at, index) || negative || index < 1) {
    showError(withItem("Missing or bad count in ?: option", item));
    return std::nullopt;
  }
  while (at < text.size() && text[at] == ' ')
    ++at;
  if (at >= text.size() || text[at] != ';') {
    showError("Missing ';' after number in ?: option");
    return std::nullopt;
  }
  std::vector<std::string> entries = split(text.substr(at + 1), ';');
  // The last entry is closed by a ";" when only blanks follow it.
  const bool lastClosed = !entries.empty() && trim(entries.back()).empty();
  if (lastClosed) entries.pop_back();
  OptValue out;
  out.count = static_cast<int>(entries.size());
  if (index > out.count) {
    showError(withItem("Not enough parameters for ?: option", item));
    return std::nullopt;
  }
  if (index == out.count && !lastClosed) {
    showError("Missing , in ?: option");
    return std::nullopt;
  }
  out.index = static_cast<int>(index);
  const std::string& entry = entries[static_cast<std::size_t>(index - 1)];
  const std::size_t comma = entry.rfind(',');
  if (comma == std::string::npos) {
    out.value = trim(entry);
    out.label = out.value;
  } else {
    out.label = trim(std::string_view(entry).substr(0, comma));
    out.value = trim(std::string_view(entry).substr(comma + 1));
  }
  return out;
}

std::optional<OptValue> toggle(std::string_view text) {
  if (text.size() < 4 || text[3] != ';') {
    showError("Missing parameter for ?+ option.");
    return std::nullopt;
  }
  OptValue out;
  out.value = std::string(text.substr(4));
  if (out.value.empty()) out.value.assign(1, text[2] == '0' ? '0' : '1');
  out.label = out.value;
  return out;
}

std::optional<OptValue> prompted(std::string_view text) {
  std::string_view rest = text.substr(2);
  OptValue out;
  const std::size_t first = rest.find(';');
  out.label = std::string(rest.substr(0, first));
  if (first != std::string_view::npos) {
    std::string_view tail = rest.substr(first + 1);
    out.value = std::string(tail.substr(0, tail.find(';')));
  }
  if (out.value.empty()) out.value = out.label;
  return out;
}

/// Replaces the "@name@" stretches of a computed value by fields of the related item ("@name@",
/// "@!name@") or of the item itself ("@*name@"). A stretch of 32 bytes or more, or an unclosed
/// one, makes the whole text "0".
std::string replaceAttributes(Item* item, Item* related, std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '@') {
      out += text[i];
      continue;
    }
    const std::size_t close = text.find('@', i + 1);
    if (close == std::string_view::npos || close - i - 1 >= 32) return "0";
    std::string_view name = text.substr(i + 1, close - i - 1);
    Item* source = related;
    if (!name.empty() && name.front() == '*') {
      source = item;
      name.remove_prefix(1);
    } else if (!name.empty() && name.front() == '!') {
      name.remove_prefix(1);
    }
    std::optional<std::string> field;
    if (source != nullptr) field = itemAttributeText(*source, name);
    out += field.value_or("0");
    i = close;
  }
  return out;
}

std::optional<OptValue> computeOption(Item* item, std::string_view relatedItem,
                                      std::string_view text) {
  Item* related = item != nullptr ? findRelatedItem(*item, relatedItem) : nullptr;
  const std::string expression = replaceAttributes(item, related, text.substr(2));
  Value result;
  if (evaluateForItem(item, nullptr, expression, result) != 0) {
    reportExpressionError(expression);
    return std::nullopt;
  }
  OptValue out;
  out.value = valueToText(result);
  out.label = related != nullptr ? related->name : std::string();
  return out;
}

Item* findInChain(const ItemChain& chain, std::string_view name) {
  for (const auto& candidate : chain) {
    if (equalsIgnoringCase(candidate->name, name)) return candidate.get();
    if (Item* inner = findInChain(candidate->children, name)) return inner;
  }
  return nullptr;
}

std::string signedWhole(double value) {
  return strprintf("%+d", static_cast<int>(std::trunc(value)));
}

/// The glyph of 1/4, 1/2 or 3/4 written so; other forms (2/4) stay as written.
char fractionGlyph(long numerator, long denominator) {
  if (numerator == 1 && denominator == 4) return kQuarter;
  if (numerator == 1 && denominator == 2) return kHalf;
  if (numerator == 3 && denominator == 4) return kThreeQuarters;
  return '\0';
}

/// Sign, whole part and the fraction as a glyph or "n/d", from the parts of a fraction text.
std::optional<std::string> normalFraction(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] == ' ')
    ++at;
  char sign = '+';
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) sign = text[at++];
  std::string out(1, sign);
  if (at < text.size() && glyphValue(text[at]) > 0) return out + text[at];
  long whole = 0;
  if (!readDigits(text, at, whole)) return std::nullopt;
  std::string numerator;
  std::string denominator;
  if (at < text.size() && text[at] == '/') {
    ++at;
    long den = 0;
    readDigits(text, at, den);
    if (den == 0) return out + std::to_string(whole);
    if (char glyph = fractionGlyph(whole, den)) return out + glyph;
    return out + strprintf("%s/%s", std::to_string(whole).c_str(), std::to_string(den).c_str());
  }
  out += std::to_string(whole);
  if (at < text.size() && glyphValue(text[at]) > 0) return out + text[at];
  if (at < text.size() && text[at] == '.') {
    return enclosed(std::string(1, sign), formatFloat(std::fabs(*parseFraction(text)), false), "");
  }
  if (at + 1 < text.size() && text[at] == ' ') {
    std::size_t next = at + 1;
    long n = 0;
    long d = 0;
    if (readDigits(text, next, n) && next < text.size() && text[next] == '/') {
      ++next;
      if (readDigits(text, next, d) && d != 0) {
        if (char glyph = fractionGlyph(n, d)) return out + glyph;
        return enclosed(out, " ",
                        strprintf("%s/%s", std::to_string(n).c_str(), std::to_string(d).c_str()));
      }
    }
  }
  return out;
}

}  // namespace

int evaluateForItem(Item* item, Option* option, std::string_view text, Value& out) {
  SymbolTable* table = nullptr;
  if (item != nullptr && item->owner != nullptr) table = item->owner->symbols.get();
  if (table == nullptr) return parseExp(nullptr, text, out);
  return parseExpInContext(table, item, option, text, out);
}

Item* findRelatedItem(const Item& item, std::string_view name) {
  if (name.empty() || item.list == nullptr) return nullptr;
  return findInChain(item.list->items, name);
}

std::optional<std::string> itemAttributeText(Item& item, std::string_view attribute) {
  if (equalsIgnoringCase(attribute, "level")) return valueToText(item.value);
  if (equalsIgnoringCase(attribute, "cost")) return formatFloat(item.totalCost, false);
  if (equalsIgnoringCase(attribute, "basecost")) return formatFloat(item.cost, false);
  if (equalsIgnoringCase(attribute, "multiplier")) return formatFloat(item.mult, false);
  if (equalsIgnoringCase(attribute, "addition")) return formatFloat(item.add, false);
  if (equalsIgnoringCase(attribute, "name")) return item.name;
  if (equalsIgnoringCase(attribute, "category")) return item.cat;
  if (equalsIgnoringCase(attribute, "default")) return item.defaultText;
  if (equalsIgnoringCase(attribute, "nchildren")) return std::to_string(item.children.size());
  if (equalsIgnoringCase(attribute, "editdlg")) return std::to_string(item.editDlg());
  if (equalsIgnoringCase(attribute, "atdefault")) return item.useDefault() ? "1" : "0";
  static constexpr std::string_view kSums[] = {"fracup",  "fracdown", "product",
                                               "percent", "posadd",   "negadd"};
  for (std::string_view name : kSums) {
    if (!equalsIgnoringCase(attribute, name)) continue;
    // The sums come from a fresh walk, which leaves the item's own figures as they were.
    const double mult = item.mult;
    const double add = item.add;
    const double aux = item.aux;
    const MultiplierSums sums = computeMultipliers(item);
    item.mult = mult;
    item.add = add;
    item.aux = aux;
    if (name == "fracup") return formatFloat(sums.fractionUp, false);
    if (name == "fracdown") return formatFloat(sums.fractionDown, false);
    if (name == "product") return formatFloat(sums.product, false);
    if (name == "percent") return std::to_string(sums.percent);
    if (name == "posadd") return formatFloat(sums.positiveAdditions, false);
    return formatFloat(sums.negativeAdditions, false);
  }
  return std::nullopt;
}

bool isToggledOff(std::string_view valueText) {
  return valueText.starts_with("?+0");
}

std::optional<OptValue> getOptValue(Item* item, std::int32_t /*kind*/, std::string_view relatedItem,
                                    std::string_view valueText) {
  if (valueText.starts_with("?:")) return countList(item, valueText);
  if (valueText.starts_with("?+")) return toggle(valueText);
  if (valueText.starts_with("??")) return prompted(valueText);
  if (valueText.starts_with("?!")) return computeOption(item, relatedItem, valueText);
  OptValue out;
  out.value = std::string(valueText);
  out.label = out.value;
  return out;
}

std::optional<double> parseFraction(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] == ' ')
    ++at;
  double sign = 1.0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    if (text[at] == '-') sign = -1.0;
    ++at;
  }
  if (at < text.size() && glyphValue(text[at]) > 0) return sign * glyphValue(text[at]);
  const std::size_t digitsAt = at;
  long whole = 0;
  if (!readDigits(text, at, whole)) return std::nullopt;
  if (at < text.size() && text[at] == '.') return sign * leadingDecimal(text.substr(digitsAt));
  if (at < text.size() && text[at] == '/') {
    ++at;
    long den = 0;
    readDigits(text, at, den);
    if (den == 0) return sign * static_cast<double>(whole);
    return sign * static_cast<double>(whole) / static_cast<double>(den);
  }
  if (at < text.size() && glyphValue(text[at]) > 0) return sign * (whole + glyphValue(text[at]));
  if (at + 1 < text.size() && text[at] == ' ') {
    std::size_t next = at + 1;
    long n = 0;
    long d = 0;
    if (readDigits(text, next, n) && next < text.size() && text[next] == '/') {
      ++next;
      readDigits(text, next, d);
      if (d != 0) return sign * (whole + static_cast<double>(n) / static_cast<double>(d));
    }
  }
  return sign * static_cast<double>(whole);
}

std::optional<double> parseMultiplier(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] == ' ')
    ++at;
  if (at < text.size() && (text[at] == '*' || text[at] == kTimes)) ++at;
  return parseFraction(text.substr(at));
}

std::optional<std::string> reformatModifier(Item* item, const Option& option,
                                            std::string_view valueText) {
  if (valueText.starts_with("?:") || valueText.starts_with("??") || valueText.starts_with("?+") ||
      valueText.starts_with("?!")) {
    return std::string(valueText);
  }
  switch (option.kind) {
    case kOptionFraction: {
      std::optional<std::string> normal = normalFraction(valueText);
      if (!normal) break;
      return normal;
    }
    case kOptionMultiplier: {
      std::string_view rest = valueText;
      while (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
      if (!rest.empty() && (rest.front() == '*' || rest.front() == kTimes)) rest.remove_prefix(1);
      std::optional<std::string> normal = normalFraction(rest);
      if (!normal) break;
      // A factor carries no sign of its own unless it is negative.
      if (normal->front() == '+') normal->erase(0, 1);
      return std::string(1, kTimes) + *normal;
    }
    case kOptionAddition: {
      std::optional<double> number = parseFraction(valueText);
      if (!number) break;
      return signedWhole(*number);
    }
    case kOptionPercentage: {
      std::optional<double> number = parseFraction(valueText);
      if (!number) break;
      return signedWhole(*number) + "%";
    }
    case kOptionAuxCost: {
      if (trim(valueText).empty()) break;
      const std::string expression = replaceWord(
          option.auxExpression.empty() ? std::string("x") : option.auxExpression, "x", valueText);
      Value result;
      if (evaluateForItem(item, nullptr, expression, result) != 0 || !result.isNumber()) {
        showError("Bad value type");
        return std::nullopt;
      }
      return std::string(valueText);
    }
    case kOptionAdjustment:
    case kOptionText:
    case kOptionExpression:
    case kOptionAdjDistLevel:
    case kOptionAdjDistCost:
      return std::string(valueText);
    default:
      showError("Case missing in reformatModifier");
      return std::nullopt;
  }
  showError("Value required");
  return std::nullopt;
}

}  // namespace zv
