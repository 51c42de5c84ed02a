#include "filter/run/sheet_values.h"

#include <algorithm>
#include <array>

#include "core/host.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "expr/item_fields.h"
#include "expr/sheet_attributes.h"
#include "expr/symbols.h"
#include "filter/rich/rich_writers.h"
#include "filter/rich/rtf_reader.h"
#include "filter/run/short_date.h"
#include "formats/tokens/keywords.h"
#include "core/engine_context.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

enum class Word {
  BlankCharSheet,
  CharSheetLevel,
  CheckRequirements,
  CurrentVersion,
  Date,
  DataSheets,
  DateCreated,
  DetailsHtml,
  DetailsRtf,
  DetailsText,
  FileName,
  GameSystem,
  Notes,
  PageNumber,
  RuleSet,
  SheetType,
};

struct Row {
  std::string_view name;
  Word word;
};

// Sorted ignoring case, for the binary search.
constexpr std::array<Row, 16> kWords = {{
    {"blankcharsheet", Word::BlankCharSheet},
    {"charsheetlevel", Word::CharSheetLevel},
    {"checkrequirements", Word::CheckRequirements},
    {"currentversion", Word::CurrentVersion},
    {"datasheets", Word::DataSheets},
    {"date", Word::Date},
    {"datecreated", Word::DateCreated},
    {"detailshtml", Word::DetailsHtml},
    {"detailsrtf", Word::DetailsRtf},
    {"detailstext", Word::DetailsText},
    {"filename", Word::FileName},
    {"gamesystem", Word::GameSystem},
    {"notes", Word::Notes},
    {"pagenumber", Word::PageNumber},
    {"ruleset", Word::RuleSet},
    {"sheettype", Word::SheetType},
}};

SheetValue found(Value value) {
  SheetValue result;
  result.status = SheetValue::Status::Found;
  result.value = std::move(value);
  return result;
}

SheetValue details(const FileInfo& sheet, Word word) {
  if (sheet.richText.empty()) return found(Value(std::string()));
  RichText rich;
  if (int code = parseRichText(sheet.richText, rich); code != kRichOk) {
    SheetValue failed;
    failed.status = SheetValue::Status::Failed;
    failed.error =
        strprintf("The rich text of %s can't be read (error %d).", sheet.name.str(), code);
    return failed;
  }
  switch (word) {
    case Word::DetailsHtml: {
      std::optional<std::string> html = htmlOf(rich);
      if (!html) {
        SheetValue failed;
        failed.status = SheetValue::Status::Failed;
        failed.error = "Unable to emit HTML";
        return failed;
      }
      return found(Value(std::move(*html)));
    }
    case Word::DetailsRtf:
      return found(Value(rtfOf(rich)));
    default:
      return found(Value(textOf(rich)));
  }
}

std::string joined(const std::vector<std::string>& names) {
  std::string out;
  for (const std::string& name : names) {
    if (!out.empty()) out += ',';
    out += name;
  }
  return out;
}

int elementCount(const ItemChain& chain) {
  int count = 0;
  for (const auto& item : chain) {
    ++count;
    if (item->isSublist()) count += elementCount(item->children);
  }
  return count;
}

}  // namespace

SheetValue sheetValue(const FileInfo& sheet, std::string_view word,
                      const SheetValueSettings& settings) {
  auto it = std::lower_bound(
      kWords.begin(), kWords.end(), word,
      [](const Row& row, std::string_view key) { return compareIgnoringCase(row.name, key) < 0; });
  if (it == kWords.end() || !equalsIgnoringCase(it->name, word)) return {};
  switch (it->word) {
    case Word::BlankCharSheet:
      return found(Value(std::int32_t{settings.blankSheet ? 1 : 0}));
    case Word::CharSheetLevel:
      return found(Value(std::int32_t{sheet.level}));
    case Word::CheckRequirements:
      return found(Value(std::int32_t{engine().preferences.checkReq ? 1 : 0}));
    case Word::CurrentVersion:
      return found(Value(std::int32_t{kCurrentDataVersion}));
    case Word::Date: {
      LocalTime now = host().now();
      if (!now.valid) return found(Value("1/1/1997"));
      return found(Value(formatShortDate(settings.shortDatePattern, now.month, now.day, now.year)));
    }
    case Word::DataSheets:
      return found(Value(joined(sheet.dataFiles)));
    case Word::DateCreated:
      return found(Value(createdDateText(settings.shortDatePattern, sheet.created.str())));
    case Word::DetailsHtml:
    case Word::DetailsRtf:
    case Word::DetailsText:
      return details(sheet, it->word);
    case Word::FileName:
      return found(Value(sheet.name.str()));
    case Word::GameSystem:
      return found(Value(sheet.gameSystemName.str()));
    case Word::Notes:
      return found(Value(sheet.notes));
    case Word::PageNumber:
      return found(Value(std::int32_t{settings.pageNumber}));
    case Word::RuleSet:
      return found(Value(sheet.ruleSet));
    case Word::SheetType:
      return found(Value(sheet.sheetType.str()));
  }
  return {};
}

ListInfo* findSheetList(const FileInfo& sheet, std::string_view name) {
  if (name.empty()) return nullptr;
  for (const auto& list : sheet.lists) {
    if (startsWithIgnoringCase(list->name.str(), name)) return list.get();
  }
  for (const auto& dialog : sheet.dlgs) {
    for (const auto& field : dialog->items) {
      if (field->listField && startsWithIgnoringCase(field->listField->name.str(), name)) {
        return field->listField.get();
      }
    }
  }
  return nullptr;
}

DlgItem* findDialogField(const FileInfo& sheet, std::string_view dialog, std::string_view field) {
  for (const auto& d : sheet.dlgs) {
    if (!equalsIgnoringCase(d->name.str(), dialog)) continue;
    for (const auto& item : d->items) {
      if (!item->varName.empty() && equalsIgnoringCase(item->varName, field)) return item.get();
    }
  }
  return nullptr;
}

std::string dialogFieldText(FileInfo& sheet, const DlgItem& field) {
  switch (field.kind) {
    case kList:
      if (field.listField && !field.listField->items.empty()) {
        return field.listField->items.front()->name;
      }
      return {};
    case kCombobox: {
      // "label;value;label;value": the entry whose value the variable holds, else the chosen one.
      std::vector<std::string> parts = split(field.choices, ';');
      const std::string current = field.symbol != nullptr ? valueToText(field.symbol->value) : "";
      for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        if (field.symbol != nullptr && trim(parts[i + 1]) == current) return parts[i];
      }
      const std::size_t chosen = static_cast<std::size_t>(std::max(0, field.selectedIndex)) * 2;
      return chosen < parts.size() ? parts[chosen] : current;
    }
    case kFormula:
    case kEditvar: {
      if (field.symbol == nullptr) return field.text;
      std::string text = valueToText(field.symbol->value);
      if (field.kind == kEditvar && !field.format.empty() && sheet.symbols) {
        Value shown;
        if (parseExp(sheet.symbols.get(), replaceWord(field.format, "x", text), shown) == 0 &&
            shown.isString()) {
          return shown.text();
        }
      }
      return text;
    }
    default:
      return field.text;
  }
}

Value dialogFieldValue(const DlgItem& field) {
  if (field.kind == kPicture) {
    return Value(std::int32_t{field.pictureData.empty() && !field.picture ? 0 : 1});
  }
  if (field.symbol != nullptr) return field.symbol->value;
  return Value(std::int32_t{field.text.empty() ? 0 : 1});
}

int countElements(const ItemChain& chain) {
  return elementCount(chain);
}

}  // namespace zv
