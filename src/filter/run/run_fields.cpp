// The fields of a filter run: item fields inside @foreach, sheet words, and the look-up hook
// that expressions of the run see.

#include <cmath>

#include "core/numbers.h"
#include "core/strfmt.h"
#include "expr/item_fields.h"
#include "filter/format/item_format.h"
#include "filter/format/item_text.h"
#include "filter/run/filter_runner.h"
#include "rules/value/option_refs.h"

namespace zv {

namespace {

/// The item's level variable less its base: "%f" for a real, "%d" for an integer; "0" without
/// a variable.
std::string baseValueText(const Item& item) {
  if (item.levelSymbol == nullptr) return "0";
  Value value;
  if (!itemField(item, nullptr, "basevalue", value)) return "0";
  if (value.isInteger()) return strprintf("%d", value.integer());
  if (value.isFloat()) return strprintf("%f", value.real());
  return valueToText(value);
}

}  // namespace

FilterRunner::FieldStatus FilterRunner::itemFieldText(Item& item, std::string_view word,
                                                      std::string& out) {
  const std::string lower = toLower(word);
  Option* option = currentOption_;
  if (lower == "adj") {
    out = item.adj;
    if (!item.adj.empty() && !item.varName.empty()) out += ":" + item.varName;
  } else if (lower == "basecost") {
    out = formatFloat(item.cost);
  } else if (lower == "basevalue") {
    out = baseValueText(item);
  } else if (lower == "bonus") {
    out = item.levelSymbol == nullptr ? "0" : formatFloat(getBaseValue(item.levelSymbol));
  } else if (lower == "cost") {
    out = formatFloat(item.totalCost);
  } else if (lower == "format" || lower == "item") {
    out = itemFormatText(filterFormatOf(item), &item, filterFormatSpace(options_.useAliases));
  } else if (lower == "level") {
    out = lookedUpLevel(item);
  } else if (lower == "name") {
    out = displayName(item, options_.useAliases);
  } else if (lower == "parent") {
    out = item.parent != nullptr ? item.parent->name : std::string();
  } else if (lower == "prereq") {
    out = item.prereq;
  } else if (lower == "optexp" || lower == "option" || lower == "optname" ||
             lower == "opttextvalue" || lower == "optvalue" || lower == "optkeepvalue") {
    if (option == nullptr) {
      if (lower == "optexp" || lower == "option" || lower == "optname") {
        out.clear();
        return FieldStatus::Text;
      }
      fail(strprintf("%%@%s%% has no option to read outside @options.", lower));
      return FieldStatus::Failed;
    }
    if (lower == "option") {
      out = formatOption(item, *option, options_.useAliases);
    } else if (lower == "optname") {
      out = options_.useAliases && !option->alias.empty() ? option->alias : option->name;
    } else if (lower == "optkeepvalue") {
      out = option->keepValue() ? "1" : "0";
    } else {
      Value value;
      if (!itemField(item, option, lower, value)) {
        fail(strprintf("%%@%s%% can't read the option %s.", lower, option->name));
        return FieldStatus::Failed;
      }
      out = valueToText(value);
    }
  } else {
    Value value;
    if (!itemValueByName(item, option, word, value)) return FieldStatus::NoSuchField;
    out = valueToText(value);
  }
  return FieldStatus::Text;
}

bool FilterRunner::sheetWordText(std::string_view word, std::string& out) {
  SheetValue value = sheetValue(sheet_, word, sheetSettings_);
  switch (value.status) {
    case SheetValue::Status::Found:
      out = valueToText(value.value);
      return true;
    case SheetValue::Status::Failed:
      return fail(value.error);
    case SheetValue::Status::Unknown:
      out.clear();
      return true;
  }
  return true;
}

bool FilterRunner::installResolver() {
  savedResolver_ = table_->resolver();
  SymbolTable::Resolver chained = savedResolver_;
  table_->setResolver([this, chained](std::string_view name, Value& out) {
    return resolve(name, out) || (chained && chained(name, out));
  });
  resolverInstalled_ = true;
  return true;
}

bool FilterRunner::resolve(std::string_view name, Value& out) {
  if (name.empty()) return false;
  if (name.front() != '@') {
    // The locals: the innermost table, then the filter's own.
    SymbolTable* tables[] = {locals_.back().get(), locals_.front().get()};
    for (SymbolTable* table : tables) {
      Symbol* symbol = table->findHere(name);
      if (symbol == nullptr || symbol->undefined()) continue;
      if (symbol->isArray()) {
        out = Value::arrayRef(symbol);
        return true;
      }
      if (symbol->isVariable()) {
        out = symbol->value;
        return true;
      }
    }
    return false;
  }
  std::string_view word = name.substr(1);
  if (word.size() >= 2 && word.front() == '`' && word.back() == '`') {
    word = word.substr(1, word.size() - 2);
  }
  if (equalsIgnoringCase(word, "notes")) {
    out = Value(std::int32_t{sheet_.notes.empty() ? 0 : 1});
    return true;
  }
  if (equalsIgnoringCase(word, "details")) {
    out = Value(std::int32_t{sheet_.richText.empty() ? 0 : 1});
    return true;
  }
  if (const std::size_t dot = word.find('.'); dot != std::string_view::npos) {
    if (DlgItem* field = findDialogField(sheet_, word.substr(0, dot), word.substr(dot + 1))) {
      out = dialogFieldValue(*field);
      return true;
    }
    return false;
  }
  SheetValue value = sheetValue(sheet_, word, sheetSettings_);
  if (value.status == SheetValue::Status::Found) {
    out = std::move(value.value);
    return true;
  }
  if (value.status == SheetValue::Status::Failed) {
    out = Value(std::string());
    return true;
  }
  if (ListInfo* list = findSheetList(sheet_, word)) {
    out = Value(static_cast<std::int32_t>(list->items.size()));
    return true;
  }
  return false;
}

}  // namespace zv
