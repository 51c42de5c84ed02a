#include "rules/requirements/requirements.h"

#include <cctype>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_items.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/categories.h"
#include "rules/value/level.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"

namespace zv {

namespace {

/// A requirement's text with the escapes taken out: `plain[i]` tells that character i stood
/// behind a backslash and so has no meaning in the syntax.
struct PlainText {
  std::string text;
  std::vector<bool> plain;

  std::size_t size() const { return text.size(); }
  bool syntaxAt(std::size_t i, char c) const { return i < size() && text[i] == c && !plain[i]; }

  /// The first character of `chars` with a meaning in the syntax, from `from`.
  std::size_t findSyntax(std::string_view chars, std::size_t from = 0) const {
    for (std::size_t i = from; i < size(); ++i) {
      if (!plain[i] && chars.find(text[i]) != std::string_view::npos) return i;
    }
    return std::string::npos;
  }

  /// The first "::" or "@@" (both characters with meaning).
  std::size_t findPair(char c) const {
    for (std::size_t i = 0; i + 1 < size(); ++i) {
      if (syntaxAt(i, c) && syntaxAt(i + 1, c)) return i;
    }
    return std::string::npos;
  }

  PlainText slice(std::size_t from, std::size_t to = std::string::npos) const {
    PlainText out;
    to = std::min(to, size());
    if (from >= to) return out;
    out.text = text.substr(from, to - from);
    out.plain.assign(plain.begin() + static_cast<long>(from),
                     plain.begin() + static_cast<long>(to));
    return out;
  }

  /// Without blanks at either end (escaped blanks stay).
  PlainText trimmed() const {
    std::size_t from = 0;
    std::size_t to = size();
    while (from < to && text[from] == ' ' && !plain[from])
      ++from;
    while (to > from && text[to - 1] == ' ' && !plain[to - 1])
      --to;
    return slice(from, to);
  }
};

void syntaxError(const PrereqContext& context, std::string_view text) {
  if (!context.quiet) showError(strprintf("Syntax error in requirement: %s", std::string(text)));
}

/// Splits "left op right" at the first of "<", "=", ">"; None when there is none.
PrereqComparison splitComparison(const PlainText& text, PlainText& left, PlainText& right) {
  const std::size_t at = text.findSyntax("<=>");
  if (at == std::string::npos) {
    left = text.trimmed();
    return PrereqComparison::None;
  }
  PrereqComparison comparison = PrereqComparison::Equal;
  std::size_t length = 1;
  const bool equalsNext = text.syntaxAt(at + 1, '=');
  if (text.text[at] == '<') {
    comparison = equalsNext ? PrereqComparison::LessEqual : PrereqComparison::Less;
    length = equalsNext ? 2 : 1;
  } else if (text.text[at] == '>') {
    comparison = equalsNext ? PrereqComparison::GreaterEqual : PrereqComparison::Greater;
    length = equalsNext ? 2 : 1;
  }
  left = text.slice(0, at).trimmed();
  right = text.slice(at + length).trimmed();
  return comparison;
}

/// Reads a run of digits at `position` into `out`; false when none stands there.
bool readCount(const PlainText& text, std::size_t& position, int& out) {
  const std::size_t start = position;
  long value = 0;
  while (position < text.size() && std::isdigit(static_cast<unsigned char>(text.text[position]))) {
    value = std::min(value * 10 + (text.text[position] - '0'), 1000000L);
    ++position;
  }
  out = static_cast<int>(value);
  return position > start;
}

/// "list:name" into its two parts; no list when there is no ":".
void splitListName(const PlainText& text, std::string& list, std::string& name) {
  const std::size_t colon = text.findSyntax(":");
  if (colon == std::string::npos) {
    list.clear();
    name = text.trimmed().text;
    return;
  }
  list = text.slice(0, colon).trimmed().text;
  name = text.slice(colon + 1).trimmed().text;
}

/// Sets the comparison value of a requirement from its text: evaluated in the item's context,
/// or kept as text.
void setComparisonValue(const PrereqContext& context, Prereq& prereq, std::string valueText) {
  prereq.valueText = std::move(valueText);
  prereq.value = Value(prereq.valueText);
  if (!context.evaluate) return;
  Value result;
  if (evaluateForItem(context.item, nullptr, prereq.valueText, result) != 0) {
    if (!context.quiet) reportExpressionError(prereq.valueText);
    return;
  }
  prereq.value = std::move(result);
}

/// A dialog field "dialog:field" of the sheet, or null.
DlgItem* findDialogField(const FileInfo* sheet, std::string_view dialog, std::string_view name) {
  if (sheet == nullptr || dialog.empty()) return nullptr;
  for (const auto& dlg : sheet->dlgs) {
    if (!equalsIgnoringCase(std::string_view(dlg->name), dialog)) continue;
    for (const auto& field : dlg->items) {
      if (equalsIgnoringCase(field->varName, name)) return field.get();
    }
  }
  return nullptr;
}

/// Fills a requirement from its body (without "!" and message); false on a syntax error.
bool readBody(const PrereqContext& context, const PlainText& body, Prereq& prereq) {
  if (body.size() == 0) return false;
  if (body.syntaxAt(0, '$')) {
    prereq.kind = PrereqKind::Expression;
    prereq.name = body.slice(1).trimmed().text;
    return !prereq.name.empty();
  }
  PlainText left;
  PlainText right;
  if (body.syntaxAt(0, '#')) {
    prereq.comparison = splitComparison(body.slice(1), left, right);
    std::size_t position = 0;
    if (!readCount(left, position, prereq.count) || !left.syntaxAt(position, ',')) return false;
    ++position;
    std::size_t afterSecond = position;
    int second = 0;
    if (readCount(left, afterSecond, second) && left.syntaxAt(afterSecond, ',')) {
      prereq.kind = PrereqKind::CategoriesCount;
      prereq.categoryCount = second;
      prereq.list = left.slice(afterSecond + 1).trimmed().text;
    } else {
      const PlainText rest = left.slice(position);
      const std::size_t colon = rest.findSyntax(":");
      if (colon == std::string::npos) {
        prereq.kind = PrereqKind::ListCount;
        prereq.list = rest.trimmed().text;
      } else {
        prereq.kind = PrereqKind::CategoryCount;
        prereq.list = rest.slice(0, colon).trimmed().text;
        prereq.category = rest.slice(colon + 1).trimmed().text;
        if (prereq.category.empty()) return false;
      }
    }
    if (prereq.list.empty()) return false;
  } else if (const std::size_t at = body.findPair('@'); at != std::string::npos) {
    prereq.kind = PrereqKind::Option;
    splitListName(body.slice(0, at), prereq.list, prereq.name);
    PlainText option = body.slice(at + 2).trimmed();
    if (option.syntaxAt(0, '*')) {
      prereq.optionStarred = true;
      option = option.slice(1);
    }
    prereq.comparison = splitComparison(option, left, right);
    prereq.optionName = left.text;
    if (prereq.name.empty() || prereq.optionName.empty()) return false;
  } else {
    prereq.comparison = splitComparison(body, left, right);
    prereq.kind = prereq.comparison == PrereqComparison::None ? PrereqKind::ItemExists
                                                              : PrereqKind::ItemCompared;
    splitListName(left, prereq.list, prereq.name);
    if (prereq.name.empty()) return false;
    if (prereq.kind == PrereqKind::ItemCompared) {
      prereq.field = findDialogField(context.sheet, prereq.list, prereq.name);
    }
  }
  if (prereq.comparison != PrereqComparison::None) {
    if (right.size() == 0) return false;
    setComparisonValue(context, prereq, right.text);
  }
  if (context.sheet != nullptr && !prereq.list.empty() && prereq.field == nullptr) {
    prereq.listFound = findListByPrefix(*context.sheet, prereq.list);
  }
  return true;
}

bool compares(int order, PrereqComparison comparison) {
  switch (comparison) {
    case PrereqComparison::Less:
      return order < 0;
    case PrereqComparison::LessEqual:
      return order <= 0;
    case PrereqComparison::Equal:
      return order == 0;
    case PrereqComparison::GreaterEqual:
      return order >= 0;
    case PrereqComparison::Greater:
      return order > 0;
    case PrereqComparison::None:
      return true;
  }
  return false;
}

/// Calls `visit` for each entry of a chain, groups too when `withGroups`, descending into them.
template <typename Visit>
void forEachEntry(const ItemChain& chain, bool withGroups, Visit visit) {
  for (const auto& entry : chain) {
    if (!entry->isSublist() || withGroups) visit(*entry);
    if (entry->isSublist()) forEachEntry(entry->children, withGroups, visit);
  }
}

/// The list a requirement looks in: the one it names, else the item's own.
ListInfo* listFor(FileInfo& sheet, ListInfo* itemList, const Item& item, const Prereq& prereq) {
  if (prereq.list.empty()) return itemList != nullptr ? itemList : item.list;
  if (prereq.listFound != nullptr) return prereq.listFound;
  return findListByPrefix(sheet, prereq.list);
}

/// The entry of that name in the list (sublists searched), other than `self`.
Item* findNamed(ListInfo* list, std::string_view name, const Item& self) {
  if (list == nullptr) return nullptr;
  Item* found = nullptr;
  forEachEntry(list->items, true, [&](Item& entry) {
    if (found == nullptr && &entry != &self && equalsIgnoringCase(entry.name, name)) found = &entry;
  });
  return found;
}

bool fieldCompares(FileInfo& sheet, const DlgItem& field, const Prereq& prereq) {
  constexpr std::int32_t kEditTextField = 31;
  if (field.kind == kEditTextField) {
    Value wanted = prereq.value;
    if (!forceString(wanted)) return false;
    return compares(compareIgnoringCase(field.text, wanted.text()), prereq.comparison);
  }
  Value current;
  if (field.symbol != nullptr) {
    getValue(*field.symbol, current);
  } else if (sheet.symbols) {
    if (const Symbol* symbol = sheet.symbols->find(field.varName)) getValue(*symbol, current);
  }
  return compares(compareValues(current, prereq.value), prereq.comparison);
}

bool testUnnegated(FileInfo& sheet, ListInfo* itemList, Item& item, const Prereq& prereq) {
  switch (prereq.kind) {
    case PrereqKind::Expression: {
      Value result;
      const std::string text = expandOptionRefs(item, prereq.name, nullptr, true);
      if (evaluateForItem(&item, nullptr, text, result) != 0) {
        reportExpressionError(text);
        return false;
      }
      return result.isFloat() ? result.real() != 0.0 : integerOf(result) != 0;
    }
    case PrereqKind::ItemExists:
      return findNamed(listFor(sheet, itemList, item, prereq), prereq.name, item) != nullptr;
    case PrereqKind::ItemCompared: {
      if (prereq.field != nullptr) return fieldCompares(sheet, *prereq.field, prereq);
      const Item* found = findNamed(listFor(sheet, itemList, item, prereq), prereq.name, item);
      return found != nullptr && levelCompares(*found, prereq);
    }
    case PrereqKind::ListCount:
    case PrereqKind::CategoryCount: {
      ListInfo* list = listFor(sheet, itemList, item, prereq);
      if (list == nullptr) return false;
      int counted = 0;
      forEachEntry(list->items, false, [&](Item& entry) {
        if (&entry == &item || !levelCompares(entry, prereq)) return;
        if (prereq.kind == PrereqKind::ListCount || itemInCategory(entry, prereq.category)) {
          ++counted;
        }
      });
      return counted >= prereq.count;
    }
    case PrereqKind::CategoriesCount: {
      ListInfo* list = listFor(sheet, itemList, item, prereq);
      if (list == nullptr) return false;
      std::vector<Item*> members;
      forEachEntry(list->items, false, [&](Item& entry) {
        if (&entry != &item && levelCompares(entry, prereq)) members.push_back(&entry);
      });
      int categories = 0;
      for (const CategoryTotal& total : categoryTotals(members)) {
        if (total.count >= prereq.count) ++categories;
      }
      return categories >= prereq.categoryCount;
    }
    case PrereqKind::Option: {
      Item* holder = findNamed(listFor(sheet, itemList, item, prereq), prereq.name, item);
      if (holder == nullptr) return false;
      std::optional<EffectiveOption> option =
          findOptionByName(*holder, prereq.optionName, !prereq.optionStarred);
      if (!option) return false;
      if (prereq.comparison == PrereqComparison::None) return true;
      std::optional<OptString> read = getOptString(*option->holder, *option->option);
      return read && compares(compareValues(read->value, prereq.value), prereq.comparison);
    }
    case PrereqKind::Excluded:
    case PrereqKind::MessageOnly:
      return false;
  }
  return false;
}

void appendEscaped(std::string& out, std::string_view text) {
  for (char c : text) {
    if (c == '!' || c == ';' || c == '\\' || c == '|' || c == '~') out += '\\';
    out += c;
  }
}

/// " op value" of a comparison, "" without one.
std::string comparisonTail(const Prereq& prereq) {
  if (prereq.comparison == PrereqComparison::None) return {};
  return std::string(comparisonText(prereq.comparison)) + prereq.valueText;
}

}  // namespace

std::optional<Prereq> parsePrereq(const PrereqContext& context, std::string_view text,
                                  std::size_t& position, bool& failed) {
  failed = false;
  while (position < text.size()) {
    PlainText element;
    PrereqConnector connector = PrereqConnector::End;
    while (position < text.size()) {
      const char c = text[position++];
      if (c == '\\' && position < text.size()) {
        element.text += text[position++];
        element.plain.push_back(true);
        continue;
      }
      if (c == ';' || c == '|' || c == '~') {
        connector = c == ';'   ? PrereqConnector::And
                    : c == '|' ? PrereqConnector::Or
                               : PrereqConnector::Then;
        break;
      }
      element.text += c;
      element.plain.push_back(false);
    }
    element = element.trimmed();
    if (element.size() == 0) continue;  // an empty requirement goes with its connector
    Prereq prereq;
    prereq.connector = connector;
    if (element.syntaxAt(0, '!')) {
      prereq.negated = true;
      element = element.slice(1).trimmed();
    }
    PlainText body = element;
    if (const std::size_t mark = element.findPair(':'); mark != std::string::npos) {
      body = element.slice(0, mark).trimmed();
      prereq.message = element.slice(mark + 2).trimmed().text;
    }
    if (!readBody(context, body, prereq)) {
      syntaxError(context, element.text);
      failed = true;
      return std::nullopt;
    }
    return prereq;
  }
  return std::nullopt;
}

std::optional<std::vector<Prereq>> parsePrereqs(const PrereqContext& context,
                                                std::string_view text) {
  std::vector<Prereq> prereqs;
  std::size_t position = 0;
  bool failed = false;
  while (std::optional<Prereq> prereq = parsePrereq(context, text, position, failed)) {
    prereqs.push_back(std::move(*prereq));
  }
  if (failed) return std::nullopt;
  return prereqs;
}

std::string_view comparisonText(PrereqComparison comparison) {
  switch (comparison) {
    case PrereqComparison::Less:
      return "<";
    case PrereqComparison::LessEqual:
      return "<=";
    case PrereqComparison::Equal:
      return "=";
    case PrereqComparison::GreaterEqual:
      return ">=";
    case PrereqComparison::Greater:
      return ">";
    case PrereqComparison::None:
      return "";
  }
  return "";
}

std::optional<std::string> formatPrereq(const Prereq& prereq) {
  const int comparison = static_cast<int>(prereq.comparison);
  if (comparison < 0 || comparison > 5) {
    showError("error in formatPrereq");
    return std::nullopt;
  }
  std::string out = prereq.negated ? "!" : "";
  auto appendComparison = [&] {
    if (prereq.comparison == PrereqComparison::None) return;
    out += comparisonText(prereq.comparison);
    appendEscaped(out, prereq.valueText);
  };
  auto appendListName = [&] {
    if (!prereq.list.empty()) {
      appendEscaped(out, prereq.list);
      out += ':';
    }
    appendEscaped(out, prereq.name);
  };
  switch (prereq.kind) {
    case PrereqKind::Expression:
      out += '$';
      appendEscaped(out, prereq.name);
      break;
    case PrereqKind::ItemExists:
      appendListName();
      break;
    case PrereqKind::ItemCompared:
      appendListName();
      appendComparison();
      break;
    case PrereqKind::ListCount:
    case PrereqKind::CategoryCount:
    case PrereqKind::CategoriesCount:
      if (prereq.list.empty()) {
        showError(prereq.kind == PrereqKind::CategoryCount ? "Category or list name missing"
                                                           : "List name missing");
        return std::nullopt;
      }
      if (prereq.kind == PrereqKind::CategoryCount && prereq.category.empty()) {
        showError("Category or list name missing");
        return std::nullopt;
      }
      out += strprintf("#%d,", prereq.count);
      if (prereq.kind == PrereqKind::CategoriesCount) out += strprintf("%d,", prereq.categoryCount);
      appendEscaped(out, prereq.list);
      if (prereq.kind == PrereqKind::CategoryCount) {
        out += ':';
        appendEscaped(out, prereq.category);
      }
      appendComparison();
      break;
    case PrereqKind::Option:
      appendListName();
      out += "@@";
      if (prereq.optionStarred) out += '*';
      appendEscaped(out, prereq.optionName);
      appendComparison();
      break;
    default:
      showError("Internal Error in formatPrereq");
      return std::nullopt;
  }
  if (!prereq.message.empty()) {
    out += "::";
    appendEscaped(out, prereq.message);
  }
  switch (prereq.connector) {
    case PrereqConnector::And:
      out += ';';
      break;
    case PrereqConnector::Or:
      out += '|';
      break;
    case PrereqConnector::Then:
      out += '~';
      break;
    case PrereqConnector::End:
      break;
  }
  return out;
}

bool testPrereq(FileInfo& sheet, ListInfo* list, Item& item, const Prereq& prereq) {
  return testUnnegated(sheet, list, item, prereq) != prereq.negated;
}

std::optional<Prereq> findExclusion(FileInfo& sheet, const Item& item) {
  std::optional<Prereq> exclusion;
  for (ListInfo* list : sheet.allLists()) {
    forEachEntry(list->items, false, [&](Item& holder) {
      if (exclusion || &holder == &item || holder.prereq.empty()) return;
      PrereqContext context{&sheet, list, &holder, false, true};
      std::optional<std::vector<Prereq>> prereqs = parsePrereqs(context, holder.prereq);
      if (!prereqs) return;
      for (const Prereq& prereq : *prereqs) {
        if (!prereq.negated || prereq.kind != PrereqKind::ItemExists ||
            !equalsIgnoringCase(prereq.name, item.name)) {
          continue;
        }
        const ListInfo* named = prereq.list.empty() ? list : findListByPrefix(sheet, prereq.list);
        if (item.list != nullptr && named != item.list) continue;
        Prereq excluded;
        excluded.kind = PrereqKind::Excluded;
        excluded.list = std::string(list->name);
        excluded.name = holder.name;
        exclusion = std::move(excluded);
        return;
      }
    });
  }
  return exclusion;
}

bool prereqSatisfied(FileInfo& sheet, ListInfo* list, Item& item, PrereqMode mode,
                     std::string_view requirements) {
  if (item.noPrereq() || (mode.adding && item.noCheckOnInsert())) return true;
  if (mode.excludedTest && findExclusion(sheet, item)) return false;
  std::string message;
  if (checkLevel(item, item.level.empty() ? "0" : item.level, message) != 1) return false;
  PrereqContext context{&sheet, list, &item, true, false};
  std::optional<std::vector<Prereq>> prereqs = parsePrereqs(context, requirements);
  if (!prereqs) return false;
  // Within a group, each "and" clause is a run of "or" choices, met when one choice is; a group
  // ends at "then" or the end, met when all its clauses are.
  bool groupMet = true;
  bool clauseMet = false;
  bool clauseOpen = false;
  for (const Prereq& prereq : *prereqs) {
    clauseMet = clauseMet || testPrereq(sheet, list, item, prereq);
    clauseOpen = prereq.connector == PrereqConnector::Or;
    if (clauseOpen) continue;
    groupMet = groupMet && clauseMet;
    clauseMet = false;
    if (prereq.connector == PrereqConnector::Then || prereq.connector == PrereqConnector::End) {
      if (!groupMet) return false;
      groupMet = true;
    }
  }
  // A text that ends in "|" leaves its last clause open: it counts as it stands.
  return groupMet && (!clauseOpen || clauseMet);
}

std::optional<PrereqOrderError> checkPrereqOrder(std::string_view text) {
  // The operator behind the last requirement met, and whether a requirement stood since.
  std::optional<PrereqConnector> pending;
  bool requirementSince = false;
  bool blank = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\\') {
      ++i;
      blank = false;
      continue;
    }
    if (c != '|' && c != '~' && c != ';') {
      if (c != ' ') blank = false;
      continue;
    }
    const bool hadRequirement = !blank;
    blank = true;
    if (hadRequirement) requirementSince = true;
    if (c == ';') continue;
    const PrereqConnector connector = c == '|' ? PrereqConnector::Or : PrereqConnector::Then;
    if (pending && !requirementSince) {
      if (connector == PrereqConnector::Or) {
        return PrereqOrderError{"OR Error", "OR cannot directly follow another OR or THEN"};
      }
      return PrereqOrderError{"Then Error", "THEN cannot directly follow an OR or another THEN"};
    }
    pending = connector;
    requirementSince = false;
  }
  if (pending && !requirementSince && blank) {
    return PrereqOrderError{"Order Error", "OR and THEN cannot be last."};
  }
  return std::nullopt;
}

std::vector<UnsatisfiedItem> checkAllPrereq(FileInfo& sheet) {
  std::vector<UnsatisfiedItem> unsatisfied;
  for (ListInfo* list : sheet.allLists()) {
    forEachEntry(list->items, false, [&](Item& item) {
      if (item.prereq.empty() && !findExclusion(sheet, item)) return;
      if (prereqSatisfied(sheet, list, item, PrereqMode{true, false}, item.prereq)) return;
      unsatisfied.push_back(
          UnsatisfiedItem{list, &item, strprintf("%s: %s", std::string(list->name), item.name)});
    });
  }
  return unsatisfied;
}

std::string unsatisfiedCountText(std::size_t count) {
  if (count == 0) return "No unsatisfied requirements";
  if (count == 1) return "1 item with unsatisfied requirements";
  return strprintf("%d items with unsatisfied requirements", static_cast<int>(count));
}

std::string prereqText(const Prereq& prereq, Item* item) {
  if (!prereq.message.empty() || prereq.kind == PrereqKind::MessageOnly) {
    if (prereq.message.starts_with('$')) {
      Value shown;
      if (evaluateForItem(item, nullptr, prereq.message.substr(1), shown) == 0) {
        return valueToText(shown);
      }
    }
    return prereq.message;
  }
  std::string text = prereq.negated ? "NOT " : "";
  const std::string tail = comparisonTail(prereq);
  const std::string listName =
      prereq.list.empty() ? prereq.name : strprintf("%s: %s", prereq.list, prereq.name);
  switch (prereq.kind) {
    case PrereqKind::Expression:
      return text + prereq.name;
    case PrereqKind::ItemExists:
      return text + listName;
    case PrereqKind::ItemCompared:
      return text + listName + tail;
    case PrereqKind::ListCount:
      return text + strprintf("%d %s", prereq.count, prereq.list) + tail;
    case PrereqKind::CategoryCount:
      if (prereq.negated) {
        if (prereq.count == 1) return strprintf("No %s %s", prereq.category, prereq.list) + tail;
        return strprintf("No more than %d %s %s", prereq.count - 1, prereq.category, prereq.list) +
               tail;
      }
      return strprintf("%d %s %s", prereq.count, prereq.category, prereq.list) + tail;
    case PrereqKind::CategoriesCount:
      return text +
             strprintf("%d item(s) in %d categories in %s", prereq.count, prereq.categoryCount,
                       prereq.list) +
             tail;
    case PrereqKind::Excluded:
      return strprintf("%s:%s excludes this item.", prereq.list, prereq.name);
    case PrereqKind::MessageOnly:
      return prereq.message;
    case PrereqKind::Option: {
      const std::string star = prereq.optionStarred ? "*" : "";
      if (prereq.list.empty()) {
        text += strprintf("%s%s (Option: %s", prereq.name, "", star + prereq.optionName);
      } else {
        text += strprintf("%s: %s%s (Option: %s", prereq.list, prereq.name, "",
                          star + prereq.optionName);
      }
      return text + tail + ")";
    }
  }
  return text;
}

bool levelCompares(const Item& item, const Prereq& prereq) {
  return compares(compareValues(item.value, prereq.value), prereq.comparison);
}

}  // namespace zv
