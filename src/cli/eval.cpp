#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/codepage.h"
#include "core/messages.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"

namespace zv::cli {

// eval [--sheet FILE] EXPR: the value as the system shows it, then a newline.
int runEval(Context&, const std::vector<std::string>& args) {
  std::string expression;
  std::string sheetPath;
  bool haveExpression = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--sheet") {
      if (i + 1 >= args.size()) return usageError("--sheet needs a file");
      sheetPath = args[++i];
      continue;
    }
    if (haveExpression) return usageError("eval takes one expression (quote it)");
    // The terminal speaks UTF-8; the expression language speaks the system's single-byte text.
    expression = utf8ToWindows1252(args[i]);
    haveExpression = true;
  }
  if (!haveExpression) return usageError("eval needs an expression");

  std::unique_ptr<FileInfo> sheet;
  SymbolTable scratch;
  SymbolTable* table = &scratch;
  if (!sheetPath.empty()) {
    sheet = openSheet(sheetPath);
    if (!sheet) return 1;
    if (sheet->symbols) table = sheet->symbols.get();
  }
  Value result;
  if (parseExp(table, expression, result) != 0) {
    reportExpressionError(expression);
    return 1;
  }
  std::cout << windows1252ToUtf8(valueToText(result)) << '\n';
  return 0;
}

}  // namespace zv::cli
