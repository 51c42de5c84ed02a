#pragma once
// The sheet reader's symbol binder over the expression engine: a sheet's table is a SymbolTable
// owned by the record, and definitions go through the engine's define functions.

#include "core/list_total.h"
#include "formats/sheet/sheet_symbols.h"

namespace zv {

class ExprSheetSymbols : public SheetSymbolBinder {
 public:
  void createTable(FileInfo& sheet) override;
  void freeTable(FileInfo& sheet) override;
  void setReading(bool on) override;
  Result defineVariable(FileInfo& sheet, std::string_view name,
                        std::string_view expression) override;
  Result defineFunction(FileInfo& sheet, std::string_view header, std::string_view body) override;
  Result defineArray(FileInfo& sheet, std::string_view header, std::string_view body) override;
  bool setNumber(FileInfo& sheet, Symbol& symbol, double value) override;
  bool isDefined(FileInfo& sheet, std::string_view name) override;
  std::optional<std::string> evaluateText(FileInfo& sheet, std::string_view expression,
                                          std::string& error) override;
};

/// The binder that documents use; it holds no state of its own.
ExprSheetSymbols& exprSheetSymbols();

/// Puts a list's total that was added up into the list's total variable, as a number: the
/// engine's service `storeListTotal`.
void storeListTotalInVariable(ListInfo& list, double total);

}  // namespace zv
