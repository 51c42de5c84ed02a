#include "ui/engine_edits.h"

#include "rules/value/edit.h"
#include "rules/value/recalculate.h"

namespace zv::ui {

int storeExpression(FileInfo& sheet, Symbol& symbol, std::string_view text) {
  return setVariableExpression(sheet, symbol, text);
}

int storeConstant(FileInfo& sheet, Symbol& symbol, const Value& value) {
  return setVariableValue(sheet, symbol, value);
}

void recalculateSheet(FileInfo& sheet) {
  zv::recalculateSheet(sheet);
}

}  // namespace zv::ui
