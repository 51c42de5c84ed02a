#include "rules/value/adjustment.h"

#include "rules/value/categories.h"

#include <cctype>
#include <string>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/change_batch.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

struct Statement {
  std::string target;
  char op = 0;
  std::string expression;
};

bool isTargetByte(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == ':';
}

void skipBlanks(std::string_view text, std::size_t& at) {
  while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0)
    ++at;
}

/// The statements of one part; false after "Missing \" in adjustment".
bool parseStatements(std::string_view part, std::vector<Statement>& out) {
  std::size_t at = 0;
  for (;;) {
    skipBlanks(part, at);
    if (at >= part.size()) return true;
    Statement statement;
    if (part[at] == '"') {
      const std::size_t close = part.find('"', at + 1);
      if (close == std::string_view::npos) {
        showError("Missing \" in adjustment");
        return false;
      }
      statement.target = std::string(part.substr(at + 1, close - at - 1));
      at = close + 1;
    } else {
      const std::size_t start = at;
      while (at < part.size() && isTargetByte(part[at]))
        ++at;
      statement.target = std::string(part.substr(start, at - start));
    }
    skipBlanks(part, at);
    if (at < part.size()) statement.op = part[at++];
    const std::size_t end = std::min(part.find(';', at), part.size());
    statement.expression = trim(part.substr(at, end - at));
    at = end + 1;
    out.push_back(std::move(statement));
    if (end >= part.size()) return true;
  }
}

char inverse(char op) {
  switch (op) {
    case '+':
      return '-';
    case '-':
      return '+';
    case '*':
      return '/';
    case '/':
      return '*';
    default:
      return op;
  }
}

class AdjustmentRun {
 public:
  AdjustmentRun(FileInfo& sheet, Item& item, bool adding, int count)
      : sheet_(sheet), table_(*sheet.symbols), item_(item), adding_(adding), count_(count) {}

  bool run(const Statement& statement, bool invert) {
    const char op = invert ? inverse(statement.op) : statement.op;
    std::string expression = replaceWord(statement.expression, "$adding$", std::to_string(count_));
    expression = replaceWord(expression, "$add$", adding_ ? "1" : "0");
    switch (op) {
      case '=':
        return assign(statement.target, invert ? std::string("0") : expression);
      case '+':
      case '-':
        return addTo(statement.target, op == '-' ? -1.0 : 1.0, expression);
      case '*':
      case '/':
        return scale(statement.target, op, expression);
      default:
        showError(strprintf("Error in adjustment list (item: %s).", item_.name.c_str()));
        return false;
    }
  }

 private:
  Symbol* variable(const std::string& name) {
    Symbol* symbol = table_.find(name);
    if (symbol != nullptr && symbol->isVariable() && !symbol->undefined()) return symbol;
    if (symbol != nullptr && !symbol->undefined()) return nullptr;
    return defineVariable(table_, name, "0");
  }

  bool assign(const std::string& target, const std::string& expression) {
    Symbol* symbol = table_.find(target);
    const bool ok = symbol != nullptr && symbol->isVariable() && !symbol->undefined()
                        ? setExpression(table_, *symbol, expression) == 0
                        : defineVariable(table_, target, expression) != nullptr;
    if (!ok) showError(strprintf("Can't define variable %s", target.c_str()));
    return ok;
  }

  bool evaluate(const std::string& expression, double& out) {
    Value value;
    if (parseExpInContext(&table_, &item_, nullptr, expression, value) != 0) {
      showError(strprintf("Error in adjustment expression (%s)", expression.c_str()));
      return false;
    }
    out = valueToDouble(value);
    return true;
  }

  bool addTo(const std::string& target, double sign, const std::string& expression) {
    double amount = 0.0;
    if (!evaluate(expression, amount)) return false;
    amount *= sign;
    const std::size_t colon = target.find(':');
    if (colon == std::string::npos) {
      Symbol* symbol = variable(target);
      if (symbol == nullptr) {
        showError(strprintf("Can't define variable %s", target.c_str()));
        return false;
      }
      setBaseValue(table_, *symbol, getBaseValue(symbol) + amount);
      return true;
    }
    const std::string listName = trim(std::string_view(target).substr(0, colon));
    const std::string category = trim(std::string_view(target).substr(colon + 1));
    if (category.empty()) {
      showError(strprintf("%s is bad category bonus", target.c_str()));
      return false;
    }
    ListInfo* list = nullptr;
    for (ListInfo* candidate : sheet_.allLists()) {
      if (equalsIgnoringCase(candidate->name.str(), listName)) list = candidate;
    }
    if (list == nullptr) {
      showError(strprintf("Non-existent list window name: %s", listName.c_str()));
      return false;
    }
    addCategoryBonus(*list, category, amount);
    return true;
  }

  bool scale(const std::string& target, char op, const std::string& expression) {
    Symbol* symbol = variable(target);
    if (symbol == nullptr) {
      showError(strprintf("Can't define variable %s", target.c_str()));
      return false;
    }
    const std::string wrapped =
        strprintf("%s%c(%s)", valueToText(symbol->value).c_str(), op, expression.c_str());
    if (setExpression(table_, *symbol, wrapped) != 0) {
      showError(strprintf("Error in adjustment expression (%s)", expression.c_str()));
      return false;
    }
    return true;
  }

  FileInfo& sheet_;
  SymbolTable& table_;
  Item& item_;
  bool adding_;
  int count_;
};

}  // namespace

bool runAdjustment(FileInfo& sheet, Item& item, bool adding, std::string_view text, int count) {
  if (!sheet.symbols) return false;
  const std::size_t bang = text.find('!');
  std::string_view part = text;
  bool invert = false;
  if (bang != std::string_view::npos) {
    part = adding ? text.substr(0, bang) : text.substr(bang + 1);
  } else {
    invert = !adding;
  }
  std::vector<Statement> statements;
  if (!parseStatements(part, statements)) return false;
  if (statements.empty()) {
    // An empty part after "!" means that nothing is undone; an empty text is a fault of the data.
    if (bang != std::string_view::npos) return true;
    showTitled(Severity::Error, "Empty Adjustment",
               strprintf("Empty adjustments for %s.", item.name.c_str()));
    return false;
  }
  ChangeBatch batch(sheet);
  AdjustmentRun run(sheet, item, adding, count);
  for (const Statement& statement : statements) {
    if (statement.target.empty()) {
      showTitled(Severity::Error, "Empty Adjustment",
                 strprintf("Empty adjustments for %s.", item.name.c_str()));
      return false;
    }
    if (!run.run(statement, invert)) return false;
  }
  return true;
}

}  // namespace zv
