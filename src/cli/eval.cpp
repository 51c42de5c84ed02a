#include <iostream>
#include <optional>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/codepage.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "expr/builtins_items.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"

namespace zv::cli {

// eval [--sheet FILE [--item LIST:NAME]] EXPR: the value as the system shows it, then a newline.
int runEval(Context&, const std::vector<std::string>& args) {
  std::string expression;
  std::string sheetPath;
  std::string itemPath;
  bool haveExpression = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--sheet") {
      if (i + 1 >= args.size()) return usageError("--sheet needs a file");
      sheetPath = args[++i];
      continue;
    }
    if (args[i] == "--item") {
      if (i + 1 >= args.size()) return usageError("--item needs LIST:NAME");
      itemPath = utf8ToWindows1252(args[++i]);
      continue;
    }
    if (haveExpression) return usageError("eval takes one expression (quote it)");
    // The terminal speaks UTF-8; the expression language speaks the system's single-byte text.
    expression = utf8ToWindows1252(args[i]);
    haveExpression = true;
  }
  if (!haveExpression) return usageError("eval needs an expression");
  const std::size_t colon = itemPath.find(':');
  if (!itemPath.empty() && (sheetPath.empty() || colon == std::string::npos)) {
    return usageError("--item needs --sheet and LIST:NAME");
  }

  std::unique_ptr<FileInfo> sheet;
  SymbolTable scratch;
  SymbolTable* table = &scratch;
  if (!sheetPath.empty()) {
    sheet = openSheet(sheetPath);
    if (!sheet) return 1;
    if (sheet->symbols) table = sheet->symbols.get();
  }
  // With --item the expression is a formula of that item: its fields, options and level.
  Item* item = nullptr;
  if (!itemPath.empty()) {
    item = findListItem(*sheet, itemPath.substr(0, colon), Value(itemPath.substr(colon + 1)));
    if (item == nullptr) {
      showError(strprintf("Item %s not found.", itemPath));
      return 1;
    }
  }
  std::optional<ItemContextScope> context;
  if (item != nullptr) {
    context.emplace(sheet.get(), *table);
    setCurrentItem(item, nullptr);
  }
  Value result;
  if (parseExpInContext(table, item, nullptr, expression, result) != 0) {
    reportExpressionError(expression);
    return 1;
  }
  std::cout << windows1252ToUtf8(valueToText(result)) << '\n';
  return 0;
}

}  // namespace zv::cli
