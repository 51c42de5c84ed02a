#include "formats/sheet/expr_sheet_symbols.h"

#include "core/fileinfo.h"
#include "core/list_total.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"

namespace zv {

namespace {

SheetSymbolBinder::Result outcome(Symbol* symbol) {
  SheetSymbolBinder::Result result;
  result.ok = symbol != nullptr;
  result.symbol = symbol;
  if (!result.ok) result.error = expressionErrorText();
  return result;
}

SymbolTable& tableOf(FileInfo& sheet, ExprSheetSymbols& binder) {
  if (!sheet.symbols) binder.createTable(sheet);
  return *sheet.symbols;
}

}  // namespace

void ExprSheetSymbols::createTable(FileInfo& sheet) {
  auto table = std::make_shared<SymbolTable>();
  table->owner = &sheet;
  sheet.symbols = std::move(table);
}

void ExprSheetSymbols::freeTable(FileInfo& sheet) {
  if (sheet.symbols) sheet.symbols->clear();
  sheet.symbols.reset();
}

void ExprSheetSymbols::setReading(bool on) {
  zv::setReading(on);
}

SheetSymbolBinder::Result ExprSheetSymbols::defineVariable(FileInfo& sheet, std::string_view name,
                                                           std::string_view expression) {
  return outcome(zv::defineVariable(tableOf(sheet, *this), name, expression));
}

SheetSymbolBinder::Result ExprSheetSymbols::defineFunction(FileInfo& sheet, std::string_view header,
                                                           std::string_view body) {
  return outcome(zv::defineFunction(tableOf(sheet, *this), header, body));
}

SheetSymbolBinder::Result ExprSheetSymbols::defineArray(FileInfo& sheet, std::string_view header,
                                                        std::string_view body) {
  return outcome(zv::defineArray(tableOf(sheet, *this), header, body));
}

bool ExprSheetSymbols::setNumber(FileInfo& sheet, Symbol& symbol, double value) {
  return setValue(tableOf(sheet, *this), symbol, Value(value)) == 0;
}

bool ExprSheetSymbols::isDefined(FileInfo& sheet, std::string_view name) {
  Symbol* symbol = tableOf(sheet, *this).find(name);
  return symbol != nullptr && !symbol->undefined();
}

std::optional<std::string> ExprSheetSymbols::evaluateText(FileInfo& sheet,
                                                          std::string_view expression,
                                                          std::string& error) {
  Value value;
  if (parseExp(&tableOf(sheet, *this), expression, value) != 0) {
    error = expressionErrorText();
    return std::nullopt;
  }
  return valueToText(value);
}

ExprSheetSymbols& exprSheetSymbols() {
  static ExprSheetSymbols binder;
  return binder;
}

void storeListTotalInVariable(ListInfo& list, double total) {
  if (list.owner == nullptr || !list.owner->symbols || list.totalSymbol == nullptr) return;
  setValue(*list.owner->symbols, *list.totalSymbol, Value(total));
}

}  // namespace zv
