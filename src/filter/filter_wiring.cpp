#include "filter/filter_wiring.h"

#include "core/text.h"
#include "expr/sheet_attributes.h"
#include "filter/format/item_format.h"
#include "filter/format/item_text.h"
#include "filter/run/sheet_values.h"

namespace zv {

void wireFilterServices(EngineContext& context) {
  context.services.itemRow = [](const Item& item) {
    // The format language reads the item's options and lookups, which take it as their context.
    Item& row = const_cast<Item&>(item);
    return itemFormatText(filterFormatOf(row), &row, filterFormatSpace(false));
  };
  context.services.sheetAttribute = [](const FileInfo& sheet, std::string_view name, Value& out) {
    if (startsWithIgnoringCase(name, "details")) {
      SheetValue value = sheetValue(sheet, name, SheetValueSettings());
      if (value.status == SheetValue::Status::Found) {
        out = std::move(value.value);
        return true;
      }
      if (value.status == SheetValue::Status::Failed) {
        out = Value(std::string());
        return true;
      }
    }
    return basicSheetAttribute(sheet, name, out);
  };
}

}  // namespace zv
