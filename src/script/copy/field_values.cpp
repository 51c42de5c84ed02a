#include "script/copy/field_values.h"

#include <vector>

#include "core/list_total.h"
#include "core/numbers.h"
#include "core/text.h"
#include "formats/tokens/keywords.h"
#include "rules/value/edit.h"

namespace zv::script {

namespace {

/// The index of the combo box choice whose text (else value) is `text`, or -1.
int choiceIndex(const DlgItem& field, std::string_view text) {
  const std::vector<std::string> parts = split(field.choices, ';');
  const std::string wanted = trim(text);
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    if (equalsIgnoringCase(trim(parts[i]), wanted)) return static_cast<int>(i / 2);
  }
  for (std::size_t i = 1; i < parts.size(); i += 2) {
    if (equalsIgnoringCase(trim(parts[i]), wanted)) return static_cast<int>(i / 2);
  }
  return -1;
}

}  // namespace

bool setFieldText(FileInfo& sheet, DlgItem& field, std::string_view text) {
  switch (field.kind) {
    case kCheckbox: {
      field.checked = static_cast<std::int16_t>(leadingInteger(text) != 0 ? 1 : 0);
      if (field.symbol != nullptr &&
          setVariableValue(sheet, *field.symbol, Value(std::int32_t{field.checked})) != 0) {
        return false;
      }
      break;
    }
    case kEdittext:
      field.text = std::string(text);
      break;
    case kEditvar:
    case kFormula:
      if (field.symbol != nullptr && setVariableExpression(sheet, *field.symbol, text) != 0) {
        return false;
      }
      field.text = std::string(text);
      break;
    case kCombobox: {
      const int index = choiceIndex(field, text);
      if (index < 0) return false;
      const std::vector<std::string> parts = split(field.choices, ';');
      const std::size_t valueAt = static_cast<std::size_t>(index) * 2 + 1;
      const std::string value = valueAt < parts.size() ? trim(parts[valueAt]) : "0";
      if (field.symbol != nullptr && setVariableExpression(sheet, *field.symbol, value) != 0) {
        return false;
      }
      field.selectedIndex = index;
      field.text = std::to_string(index);
      break;
    }
    default:
      return false;
  }
  setChanged(sheet, true);
  return true;
}

void setFieldPicture(DlgItem& field, const DlgItem& from) {
  field.pictureData = from.pictureData;
  field.picture = from.picture;
}

}  // namespace zv::script
