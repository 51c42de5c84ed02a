// var, array, local, func and the assignment of a script variable.

#include "core/strfmt.h"
#include "core/text.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/edit.h"
#include "script/expand/expand.h"
#include "script/flow/calls.h"
#include "script/flow/dispatch.h"
#include "script/flow/statements.h"
#include "script/state/evaluate.h"

namespace zv::script {

namespace {

constexpr std::size_t kAssignmentNameCapacity = 128;
constexpr std::size_t kAssignmentValueCapacity = 1024;

bool isIdentifier(std::string_view name) {
  if (name.empty()) return false;
  const auto first = static_cast<unsigned char>(name.front());
  if (!isLetterChar(first) && first != '_') return false;
  for (char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (!isLetterChar(byte) && !(c >= '0' && c <= '9') && c != '_') return false;
  }
  return true;
}

/// Whether an array definition: a "[" stands before any "=" or "(".
bool isArrayText(std::string_view text) {
  const std::size_t bracket = text.find('[');
  return bracket != std::string_view::npos && bracket < text.find_first_of("=(");
}

/// Defines a script variable (or gives one of the context a new formula) with an expression.
bool defineScriptVariable(ScriptRun& run, const std::string& name, const std::string& expression) {
  SymbolTable& table = *run.context;
  if (Symbol* existing = table.findHere(name);
      existing != nullptr && existing->isVariable() && !existing->undefined()) {
    if (setExpression(table, *existing, expression) == 0) return true;
  } else if (defineVariable(table, name, expression) != nullptr) {
    return true;
  }
  run.reportError(strprintf("Unable to define %s (%s)", name, expressionErrorText()));
  return false;
}

/// Defines a local of the innermost call with the value of the expression.
bool defineLocal(ScriptRun& run, const std::string& name, const std::string& expression) {
  SymbolTable& locals = *run.locals();
  if (locals.findHere(name) != nullptr) {
    run.reportError(strprintf("Local variable named %s already exists.", name));
    return false;
  }
  Value value;
  if (evaluateText(run, expression, value) != 0) {
    run.reportError(
        strprintf("Unable to define local variable %s (%s)", name, expressionErrorText()));
    return false;
  }
  Symbol* local = defineVariable(locals, name, "0");
  if (local == nullptr || setValue(locals, *local, value) != 0) {
    run.reportError(
        strprintf("Unable to define local variable %s (%s)", name, expressionErrorText()));
    return false;
  }
  return true;
}

Flow defineArrayText(ScriptRun& run, const std::string& text, bool local) {
  const std::size_t equals = text.find('=');
  const std::string header = trimBlanks(text.substr(0, equals));
  const std::string body = equals == std::string::npos ? "" : trimBlanks(text.substr(equals + 1));
  const std::string name = trimBlanks(header.substr(0, header.find('[')));
  SymbolTable& table = local ? *run.locals() : *run.context;
  if (local && table.findHere(name) != nullptr) {
    return run.fail(strprintf("Local variable named %s already exists.", name));
  }
  if (!local) {
    if (Symbol* existing = table.find(name);
        existing != nullptr && !existing->isArray() && !existing->undefined()) {
      return run.fail(strprintf("Redefined %s as an array", name));
    }
  }
  if (defineArray(table, header, body) == nullptr) {
    if (local) {
      return run.fail(
          strprintf("Unable to define local variable %s (%s)", name, expressionErrorText()));
    }
    return run.fail(strprintf("Unable to define %s (%s)", name, expressionErrorText()));
  }
  return Flow::Next;
}

/// The text of a `func name { ... }` body from its "{" to the matching "}", braces included.
bool readBracedBody(ScriptRun& run, std::string& body) {
  ScriptPosition& at = run.reader.position;
  const std::string& text = at.source->text;
  body = "{";
  int depth = 1;
  char quote = '\0';
  while (at.offset < text.size() && text[at.offset] != '\0') {
    const char c = text[at.offset++];
    if (c == '\n') ++at.line;
    body.push_back(c == '\r' || c == '\n' ? ' ' : c);
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '{') {
      ++depth;
    } else if (c == '}' && --depth == 0) {
      return true;
    }
    if (body.size() >= kTokenCapacity - 1) {
      run.reportError("Buffer filled while scanning");
      return false;
    }
  }
  run.reportError("Premature end found scanning for statement end");
  return false;
}

/// Sets a script variable: a local in scope, else a variable of the context (or of a sheet seen
/// through it), defined on first use.
bool assignVariable(ScriptRun& run, const std::string& name, const Value& value) {
  if (SymbolTable* locals = run.locals()) {
    if (Symbol* local = locals->findHere(name)) {
      if (!local->isVariable() || setValue(*locals, *local, value) != 0) {
        run.reportError(strprintf("Error setting '%s'", name));
        return false;
      }
      return true;
    }
  }
  SymbolTable& context = *run.context;
  Symbol* symbol = context.find(name);
  if (symbol != nullptr && !symbol->undefined()) {
    if (!symbol->isVariable()) {
      run.reportError(strprintf("Error setting '%s'", name));
      return false;
    }
    SymbolTable* table = symbol->table != nullptr ? symbol->table : &context;
    FileInfo* sheet = table->owner;
    const bool sheetVariable = sheet != nullptr && sheet->symbols.get() == table;
    const int result =
        sheetVariable ? setVariableValue(*sheet, *symbol, value) : setValue(*table, *symbol, value);
    if (result != 0) {
      run.reportError(strprintf("Error setting '%s'", name));
      return false;
    }
    return true;
  }
  symbol = defineVariable(context, name, "0");
  if (symbol == nullptr) {
    run.reportError(strprintf("Error defining '%s'", name));
    return false;
  }
  if (setValue(*(symbol->table != nullptr ? symbol->table : &context), *symbol, value) != 0) {
    run.reportError(strprintf("Error setting '%s'", name));
    return false;
  }
  return true;
}

}  // namespace

Flow runVar(ScriptRun& run, bool local) {
  if (local && run.frames.empty()) {
    return run.fail("Local definitions may not appear outside subroutines.");
  }
  std::string text;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";", text, found)) return Flow::Stop;
  if (isArrayText(text)) {
    if (!expandExpression(run, text)) return Flow::Stop;
    return defineArrayText(run, text, local);
  }
  const std::size_t equals = text.find('=');
  if (equals != std::string::npos) {
    std::string name = trimBlanks(text.substr(0, equals));
    std::string expression = trimBlanks(text.substr(equals + 1));
    if (!expandExpression(run, name) || !expandExpression(run, expression)) return Flow::Stop;
    name = trimBlanks(name);
    const bool ok =
        local ? defineLocal(run, name, expression) : defineScriptVariable(run, name, expression);
    return ok ? Flow::Next : Flow::Stop;
  }
  for (const std::string& piece : split(text, ',')) {
    std::string name = trimBlanks(piece);
    if (!expandExpression(run, name)) return Flow::Stop;
    name = trimBlanks(name);
    if (name.empty()) continue;
    const bool ok = local ? defineLocal(run, name, "0") : defineScriptVariable(run, name, "0");
    if (!ok) return Flow::Stop;
  }
  return Flow::Next;
}

Flow runArray(ScriptRun& run, bool local) {
  std::string text;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";", text, found) || !expandExpression(run, text)) {
    return Flow::Stop;
  }
  return defineArrayText(run, text, local);
}

Flow runFunc(ScriptRun& run) {
  std::string header;
  char found = '\0';
  if (!run.reader.scanToDelimiter("={;", header, found)) return Flow::Stop;
  std::string body;
  if (found == '=') {
    if (!run.reader.scanToDelimiter(";", body, found)) return Flow::Stop;
  } else if (found == '{') {
    if (!readBracedBody(run, body)) return Flow::Stop;
  }
  if (!expandExpression(run, header)) return Flow::Stop;
  header = trimBlanks(header);
  if (defineFunction(*run.context, header, body) == nullptr) {
    return run.fail(strprintf("Unable to define %s (%s)", header, expressionErrorText()));
  }
  return Flow::Next;
}

Flow runAssignment(ScriptRun& run) {
  std::string left;
  char found = '\0';
  if (!run.reader.scanToDelimiter("=;", left, found, kAssignmentNameCapacity)) return Flow::Stop;
  if (found == ';') return run.fail("Illegal command or '=' expected for assignment");
  std::string value;
  if (!run.reader.scanToDelimiter(";", value, found, kAssignmentValueCapacity)) return Flow::Stop;
  if (value.empty()) return run.fail("Expression missing for assignment");
  if (run.commands.assign != nullptr) {
    if (std::optional<Flow> flow = run.commands.assign(run, left, value)) return *flow;
  }
  if (!isIdentifier(left)) return run.fail("Bad command or illegal symbol for assignment");
  Value result;
  if (valueOfText(run, value, "Error in assignment expression (may be missing semicolon): %s",
                  result) == Flow::Stop) {
    return Flow::Stop;
  }
  return assignVariable(run, left, result) ? Flow::Next : Flow::Stop;
}

}  // namespace zv::script
