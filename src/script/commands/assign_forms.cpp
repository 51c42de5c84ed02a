// The assignment forms that reach a sheet: "$@name = value" (a variable that the script adds to
// the destination sheet and that is saved with it), "dialog.field = value" and "list.name =
// value" (an item's level).

#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/list_total.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/tokens/keywords.h"
#include "rules/value/edit.h"
#include "rules/value/level.h"
#include "script/commands/handlers.h"
#include "script/copy/field_values.h"
#include "script/expand/expand.h"
#include "script/flow/calls.h"
#include "script/state/dialog_fields.h"
#include "script/state/evaluate.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

constexpr const char* kAssignmentError =
    "Error in assignment expression (may be missing semicolon): %s";

/// The text a script-added variable keeps: a number as it is, a text in double quotes; in single
/// quotes when it holds a double quote but no single quote; in double quotes with each double
/// quote turned into a single one when it holds both.
std::string storedText(const Value& value) {
  if (!value.isString()) {
    return value.isFloat() ? formatRealForFile(value.real()) : valueToText(value);
  }
  const std::string& text = value.text();
  const bool doubleQuote = text.find('"') != std::string::npos;
  const bool singleQuote = text.find('\'') != std::string::npos;
  if (!doubleQuote) return "\"" + text + "\"";
  if (!singleQuote) return "'" + text + "'";
  return "\"" + replaceAll(text, "\"", "'") + "\"";
}

Flow assignSheetVariable(ScriptRun& run, const std::string& name, const std::string& valueText) {
  FileInfo& sheet = *run.destSheet;
  for (const auto& dialog : sheet.dlgs) {
    for (const auto& field : dialog->items) {
      if (field->kind != kList && equalsIgnoringCase(field->varName, name)) {
        return run.fail(strprintf(
            "The variable '%s' cannot be assigned because the dialog '%s' already defines a "
            "variable by that name",
            name, std::string_view(dialog->name)));
      }
    }
  }
  for (ListInfo* list : sheet.allLists()) {
    if (equalsIgnoringCase(std::string_view(list->totalVarName), name)) {
      return run.fail(
          strprintf("The variable '%s' cannot be assigned because the list '%s' defines it.", name,
                    std::string_view(list->name)));
    }
  }
  Value value;
  if (valueOfText(run, valueText, kAssignmentError, value) == Flow::Stop) return Flow::Stop;
  if (!sheet.symbols) return run.fail(strprintf("Error defining '%s' in character sheet.", name));
  SymbolTable& table = *sheet.symbols;
  Symbol* symbol = table.findHere(name);
  if (symbol == nullptr || symbol->undefined() || !symbol->isVariable()) {
    symbol = defineVariable(table, name, "0");
    if (symbol == nullptr) {
      return run.fail(strprintf("Error defining '%s' in character sheet.", name));
    }
  }
  if (setVariableValue(sheet, *symbol, value) != 0) {
    return run.fail(strprintf("Error setting '%s' in character sheet.", name));
  }
  DefineRec* record = nullptr;
  for (DefineRec& define : sheet.defines) {
    if (equalsIgnoringCase(define.name, name)) record = &define;
  }
  if (record == nullptr) {
    sheet.defines.emplace_back();
    record = &sheet.defines.back();
    record->kind = kVar;
    record->name = name;
  }
  record->setScriptAdded(true);
  record->body = storedText(value);
  record->symbol = symbol;
  setChanged(sheet, true);
  return Flow::Next;
}

/// The text for a dialog field from a right side "$$dialog.field" of the source sheet.
Flow sourceFieldValue(ScriptRun& run, const std::string& reference, DlgItem& target,
                      std::optional<std::string>& text, bool& pictureCopied) {
  std::string dialogName;
  std::string fieldName;
  if (!splitDialogField(reference, dialogName, fieldName)) {
    return run.fail("Colon missing in field reference");
  }
  DlgInfo* dialog = findDialog(*run.sourceSheet, dialogName);
  DlgItem* field = dialog != nullptr ? findField(*dialog, fieldName) : nullptr;
  if (field == nullptr) {
    return run.fail(strprintf("%s.%s is not a dialog field", dialogName, fieldName));
  }
  if (field->kind == kPicture) {
    if (target.kind != kPicture) {
      return run.fail(strprintf("Assigned picture to non-picture field (%s)", target.varName));
    }
    setFieldPicture(target, *field);
    setChanged(*run.destSheet, true);
    pictureCopied = true;
    return Flow::Next;
  }
  if (field->kind == kEditvar || field->kind == kCheckbox) {
    text = std::to_string(field->symbol != nullptr ? valueToInteger(field->symbol->value)
                                                   : field->checked);
  } else {
    text = fieldRawText(*field);
  }
  if (!text) text = std::string();
  return Flow::Next;
}

Flow assignPicture(ScriptRun& run, DlgItem& field, const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    return run.fail(strprintf("The file %s does not exist. Cannot assign picture.", path));
  }
  std::ifstream in(path, std::ios::binary);
  std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in.good() && !in.eof()) {
    return run.fail(strprintf("Cannot read image file '%s' to assign picture.", path));
  }
  if (data.empty()) {
    return run.fail(strprintf("Cannot read image file '%s' to assign picture.", path));
  }
  field.pictureData = std::move(data);
  field.picture.reset();
  setChanged(*run.destSheet, true);
  return Flow::Next;
}

Flow assignDialogField(ScriptRun& run, DlgInfo& dialog, const std::string& fieldName,
                       const std::string& valueText) {
  DlgItem* field = findField(dialog, fieldName);
  if (field == nullptr) {
    return run.fail(
        strprintf("%s.%s is not a field in a dialog", std::string_view(dialog.name), fieldName));
  }
  std::optional<std::string> text;
  const std::string trimmed = trimBlanks(valueText);
  if (trimmed.rfind("$$", 0) == 0) {
    bool pictureCopied = false;
    if (sourceFieldValue(run, trimmed.substr(2), *field, text, pictureCopied) == Flow::Stop) {
      return Flow::Stop;
    }
    if (pictureCopied) return Flow::Next;
  } else {
    std::string expanded = trimmed;
    if (!expandExpression(run, expanded)) return Flow::Stop;
    const Symbol* variable = run.context->find(trimBlanks(expanded));
    if (variable != nullptr && variable->isVariable() && variable->value.isString()) {
      text = variable->value.text();
    } else {
      Value value;
      if (evaluateText(run, expanded, value) != 0) {
        return run.fail(strprintf(kAssignmentError, expanded));
      }
      text = valueToText(value);
    }
  }
  if (field->kind == kPicture) return assignPicture(run, *field, *text);
  if (!setFieldText(*run.destSheet, *field, *text)) {
    return run.fail(
        strprintf("Error setting dialog field %s.%s", std::string_view(dialog.name), fieldName));
  }
  return Flow::Next;
}

Flow assignItemLevel(ScriptRun& run, ListInfo& list, const std::string& itemName,
                     const std::string& valueText) {
  Item* item = findElement(list, itemName);
  if (item == nullptr) {
    return run.fail(strprintf("Cannot find %s in list %s", itemName, std::string_view(list.name)));
  }
  WatchedItem watched(run, item);
  Value value;
  if (valueOfText(run, valueText, kAssignmentError, value) == Flow::Stop) return Flow::Stop;
  if (watched.get() == nullptr) return Flow::Next;
  setItemLevel(*watched.get(), valueToText(value), true, false);
  recalculateItem(*watched.get());
  run.lastItemAdded = watched.get();
  return optionsThatFollow(run);
}

}  // namespace

std::optional<Flow> assignForm(ScriptRun& run, const std::string& left, const std::string& value) {
  const std::string target = trimBlanks(left);
  if (target.rfind("$@", 0) == 0) {
    return assignSheetVariable(run, trimBlanks(target.substr(2)), value);
  }
  const std::size_t dot = target.find('.');
  if (dot == std::string::npos) return std::nullopt;
  const std::string owner = trimBlanks(target.substr(0, dot));
  const std::string member = trimBlanks(target.substr(dot + 1));
  if (DlgInfo* dialog = findDialog(*run.destSheet, owner)) {
    return assignDialogField(run, *dialog, member, value);
  }
  if (ListInfo* list = findListByPrefix(*run.destSheet, owner)) {
    return assignItemLevel(run, *list, member, value);
  }
  return run.fail(strprintf("%s.%s is not a field in a dialog", owner, member));
}

}  // namespace zv::script
