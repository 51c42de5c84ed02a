#include "script/state/dialog_fields.h"

#include <vector>

#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_system.h"
#include "expr/symbols.h"
#include "formats/tokens/keywords.h"

namespace zv::script {

DlgInfo* findDialog(FileInfo& sheet, std::string_view name) {
  for (const auto& dialog : sheet.dlgs) {
    if (equalsIgnoringCase(std::string_view(dialog->name), name)) return dialog.get();
  }
  return nullptr;
}

DlgItem* findField(DlgInfo& dialog, std::string_view name) {
  if (name.empty()) return nullptr;
  for (const auto& field : dialog.items) {
    if (equalsIgnoringCase(field->varName, name)) return field.get();
  }
  return nullptr;
}

bool splitDialogField(std::string_view text, std::string& dialog, std::string& field) {
  const std::size_t dot = text.find('.');
  if (dot == std::string_view::npos) return false;
  dialog = trim(text.substr(0, dot));
  field = trim(text.substr(dot + 1));
  return true;
}

std::optional<std::string> fieldRawText(const DlgItem& field) {
  switch (field.kind) {
    case kCheckbox:
      if (field.symbol != nullptr) return std::to_string(valueToInteger(field.symbol->value));
      return std::to_string(field.checked);
    case kText:
    case kEdittext:
      if (field.symbol != nullptr && field.symbol->value.isString()) {
        return field.symbol->value.text();
      }
      return field.text;
    case kCombobox: {
      const std::vector<std::string> parts = split(field.choices, ';');
      const std::size_t at = static_cast<std::size_t>(field.selectedIndex) * 2;
      if (field.selectedIndex < 0 || at >= parts.size()) return std::string();
      return parts[at];
    }
    case kPicture:
      return pictureSizeText(field.pictureData);
    default:
      if (field.symbol != nullptr) return valueToText(field.symbol->value);
      return std::nullopt;
  }
}

std::optional<std::string> sourceFieldText(FileInfo& sheet, std::string_view text) {
  if (text.size() < 3 || text.substr(0, 2) != "$$") return std::nullopt;
  std::string dialogName;
  std::string fieldName;
  if (!splitDialogField(text.substr(2), dialogName, fieldName)) return std::nullopt;
  DlgInfo* dialog = findDialog(sheet, dialogName);
  DlgItem* field = dialog != nullptr ? findField(*dialog, fieldName) : nullptr;
  if (field == nullptr) return std::nullopt;
  return fieldRawText(*field);
}

}  // namespace zv::script
