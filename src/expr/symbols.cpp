#include "expr/symbols.h"

#include <algorithm>

#include "core/messages.h"
#include "core/strfmt.h"
#include "expr/compiler.h"
#include "expr/evaluator.h"
#include "expr/expr_error.h"
#include "expr/lexer.h"

namespace zv {

namespace {

constexpr std::size_t kInitialCapacity = 100;
constexpr std::size_t kMaxParameters = 10;

bool readingFlag = false;

bool isReference(std::uint8_t op) {
  return op == kOpVariable || op == kOpCall || op == kOpArray || op == kOpVariableLessBase ||
         op == kOpBaseOf;
}

/// Calls `visit(opcode, symbol)` for each symbol reference of the code; stops at the first
/// opcode outside the known range and returns false then.
template <typename Visit>
bool forEachReference(const Code& code, Visit visit) {
  std::size_t pc = 0;
  while (pc < code.size()) {
    long next = nextOpcode(code.data(), code.size(), pc);
    if (next < 0) return false;
    std::uint8_t op = code[pc];
    if (isReference(op)) visit(op, readSymbol(code.data() + pc + 1));
    pc = static_cast<std::size_t>(next);
  }
  return true;
}

/// Adds `user` to the dependents of `used`, unless it stands there already before the last node.
void addDependent(Symbol& used, Symbol& user) {
  auto& list = used.dependents;
  if (list.size() > 1 && std::find(list.begin(), list.end() - 1, &user) != list.end() - 1) return;
  list.push_back(&user);
}

void removeDependent(Symbol& used, Symbol& user) {
  auto& list = used.dependents;
  auto it = std::find(list.begin(), list.end(), &user);
  if (it != list.end()) list.erase(it);
}

void linkCode(Symbol& symbol) {
  forEachReference(symbol.code, [&symbol](std::uint8_t, Symbol* used) {
    if (used != &symbol) addDependent(*used, symbol);
  });
}

void unlinkCode(Symbol& symbol) {
  forEachReference(symbol.code, [&symbol](std::uint8_t, Symbol* used) {
    if (used != &symbol) removeDependent(*used, symbol);
  });
}

/// Walks code for a reference to `target` by value (variables, functions, ~name), descending into
/// the code of what it references. Returns false when `target` is found or the code is corrupt.
bool freeOfReferenceTo(const Symbol& target, const Code& code, int depth) {
  std::size_t pc = 0;
  while (pc < code.size()) {
    std::uint8_t op = code[pc];
    long next = nextOpcode(code.data(), code.size(), pc);
    if (op > kLastOpcode || next < 0) {
      showError(strprintf("Illegal opcode for %s", target.name));
      return false;
    }
    if (op == kOpVariable || op == kOpCall || op == kOpVariableLessBase) {
      const Symbol* used = readSymbol(code.data() + pc + 1);
      if (used == &target) {
        if (depth > 0) setErrorCode(kExprRecursive);
        return false;
      }
      if (used->hasCode() && !freeOfReferenceTo(target, used->code, depth + 1)) {
        if (lastErrorCode() != kExprRecursive) setErrorCode(kExprRecursive);
        return false;
      }
    }
    pc = static_cast<std::size_t>(next);
  }
  return true;
}

int evaluateSymbol(SymbolTable& table, Symbol& symbol) {
  return evaluate(&table, symbol.name, symbol.code, symbol.value, nullptr, 0, symbol.ownerItem);
}

void invalidateDependents(Symbol& symbol) {
  symbol.set(Symbol::kVisiting);
  for (std::size_t i = 0; i < symbol.dependents.size(); ++i) {
    Symbol* dependent = symbol.dependents[i];
    if (dependent == &symbol) continue;
    dependent->clear(Symbol::kValid);
    if (!dependent->has(Symbol::kVisiting)) invalidateDependents(*dependent);
  }
  symbol.clear(Symbol::kVisiting);
}

int refreshInputs(SymbolTable& table, Symbol& symbol) {
  if (!symbol.hasCode()) return 0;
  std::size_t pc = 0;
  const Code& code = symbol.code;
  while (pc < code.size()) {
    long next = nextOpcode(code.data(), code.size(), pc);
    if (next < 0) return -1;
    std::uint8_t op = code[pc];
    if (op == kOpVariable || op == kOpVariableLessBase) {
      Symbol& input = *readSymbol(code.data() + pc + 1);
      if (!input.valid() && !input.constant() && &input != &symbol) {
        if (refreshInputs(table, input) < 0) return -1;
        if (!input.hasCode()) return -1;
        if (evaluateSymbol(table, input) == -1) return -1;
        if (input.changeCallback != nullptr) input.changeCallback(input, input.userData);
      }
    }
    pc = static_cast<std::size_t>(next);
  }
  return 0;
}

int recalculateDependents(SymbolTable& table, Symbol& symbol) {
  for (std::size_t i = 0; i < symbol.dependents.size(); ++i) {
    Symbol& dependent = *symbol.dependents[i];
    if (dependent.valid() || dependent.constant()) continue;
    if (refreshInputs(table, dependent) < 0) return -1;
    if (dependent.isVariable()) {
      if (!dependent.hasCode()) return -1;
      if (evaluateSymbol(table, dependent) == -1) return -1;
      if (dependent.changeCallback != nullptr) {
        dependent.changeCallback(dependent, dependent.userData);
      }
    }
    dependent.set(Symbol::kValid);
    if (recalculateDependents(table, dependent) < 0) return -1;
  }
  return 0;
}

/// Validates a symbol whose content changed and recalculates its dependents.
int refreshDependents(SymbolTable& table, Symbol& symbol) {
  if (symbol.dependents.empty()) return 0;
  symbol.set(Symbol::kValid);
  invalidateDependents(symbol);
  return recalculateDependents(table, symbol);
}

/// Checks a name for a new definition: not reserved, not defined yet. Returns the existing
/// placeholder, or null with `error` 0 when the name is free.
Symbol* checkNewName(SymbolTable& table, std::string_view name, SymbolKind kind, int& error) {
  error = 0;
  if (isReservedName(name)) {
    setError(kExprReservedWord, name);
    error = kExprReservedWord;
    return nullptr;
  }
  Symbol* existing = table.find(name);
  if (existing == nullptr) return nullptr;
  // An array may also take over the variable placeholder that a forward reference made.
  bool kindFits = existing->kind == kind ||
                  (kind == SymbolKind::Array && existing->kind == SymbolKind::Variable);
  if (!existing->undefined() || (!kindFits && !existing->dependents.empty())) {
    setError(kExprRedefined, name);
    error = kExprRedefined;
    return nullptr;
  }
  return existing;
}

/// The symbol to define under `name`: the placeholder that stands there or a new one.
Symbol* symbolForDefinition(SymbolTable& table, std::string_view name, SymbolKind kind) {
  int error = 0;
  Symbol* symbol = checkNewName(table, name, kind, error);
  if (error != 0) return nullptr;
  if (symbol == nullptr) symbol = table.add(name);
  if (symbol == nullptr) setError(kExprNoMemory, name);
  return symbol;
}

/// Reads the elements of an array body; on failure stores the error and returns its code.
int readArrayElements(Symbol& array, std::string_view body, long statedSize) {
  std::size_t pos = 0;
  ExprToken token;
  int element = 0;
  if (statedSize == 0) return 0;
  for (;;) {
    pos = nextExpressionToken(body, pos, token);
    if (token.code == kOpEnd && pos == kNoPosition && element == 0) return 0;
    ++element;
    if (statedSize > 0 && element > statedSize) {
      setError(kExprArrayDefinition, array.name);
      return kExprArrayDefinition;
    }
    bool negative = false;
    if (token.code == kOpSubtract || token.code == kOpAdd) {
      negative = token.code == kOpSubtract;
      pos = nextExpressionToken(body, pos, token);
      if (token.code != kOpInteger && token.code != kOpFloat) token.code = kOpIllegal;
    }
    Value value;
    switch (token.code) {
      case kOpInteger:
        value.setInteger(
            negative ? static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(token.integer))
                     : token.integer);
        break;
      case kOpFloat:
        value.setFloat(negative ? -token.real : token.real);
        break;
      case kOpString:
        value.setString(token.text);
        break;
      default:
        setError(kExprArrayElement, array.name, element);
        return kExprArrayElement;
    }
    if (statedSize > 0) {
      array.elements[static_cast<std::size_t>(element - 1)] = std::move(value);
    } else {
      if (array.elements.size() == array.elements.capacity()) {
        array.elements.reserve(array.elements.size() + array.elements.size() * 3 / 4 + 1);
      }
      array.elements.push_back(std::move(value));
    }
    pos = nextExpressionToken(body, pos, token);
    if (token.code == kOpEnd) return 0;
    if (token.code != kOpComma) {
      setError(kExprArrayElement, array.name, element + 1);
      return kExprArrayElement;
    }
  }
}

}  // namespace

// ---- SymbolTable ----

SymbolTable::SymbolTable() {
  symbols_.reserve(kInitialCapacity);
}

SymbolTable::~SymbolTable() {
  clear();
}

bool SymbolTable::findSlot(std::string_view name, std::size_t& position) const {
  name = clipName(name);
  std::size_t low = 0;
  std::size_t high = symbols_.size();
  while (low < high) {
    std::size_t middle = (low + high) / 2;
    int order = compareIgnoringCase(symbols_[middle]->name, name);
    if (order == 0) {
      position = middle;
      return true;
    }
    if (order < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  position = low;
  return false;
}

Symbol* SymbolTable::findHere(std::string_view name) const {
  std::size_t position = 0;
  return findSlot(name, position) ? symbols_[position].get() : nullptr;
}

Symbol* SymbolTable::find(std::string_view name) const {
  if (nestedTable != nullptr) {
    if (Symbol* found = nestedTable->find(name)) return found;
  }
  return findHere(name);
}

Symbol* SymbolTable::add(std::string_view name) {
  std::size_t position = 0;
  if (findSlot(name, position)) return nullptr;
  if (symbols_.size() == symbols_.capacity()) {
    symbols_.reserve(symbols_.capacity() + symbols_.capacity() / 4);
  }
  auto symbol = std::make_unique<Symbol>();
  symbol->name.assign(clipName(name));
  symbol->table = this;
  Symbol* created = symbol.get();
  symbols_.insert(symbols_.begin() + static_cast<std::ptrdiff_t>(position), std::move(symbol));
  return created;
}

void SymbolTable::remove(Symbol& symbol) {
  auto it = std::find_if(symbols_.begin(), symbols_.end(),
                         [&symbol](const auto& held) { return held.get() == &symbol; });
  if (it != symbols_.end()) symbols_.erase(it);
}

void SymbolTable::clear() {
  // References into other tables are unlinked so that no list there points at a freed symbol.
  for (const auto& symbol : symbols_) {
    forEachReference(symbol->code, [this, &symbol](std::uint8_t, Symbol* used) {
      if (used->table != this) removeDependent(*used, *symbol);
    });
  }
  symbols_.clear();
  maps_.reset();
}

SymbolTable::Resolver SymbolTable::setResolver(Resolver resolver) {
  Resolver previous = std::move(resolver_);
  resolver_ = std::move(resolver);
  return previous;
}

SymbolTable::Maps& SymbolTable::ensureMaps() {
  if (!maps_) maps_ = std::make_unique<Maps>();
  return *maps_;
}

// ---- Definitions ----

Symbol* defineVariable(SymbolTable& table, std::string_view name, std::string_view expression,
                       SymbolCallback callback, void* userData, Item* ownerItem) {
  name = clipName(name);
  Symbol* symbol = symbolForDefinition(table, name, SymbolKind::Variable);
  if (symbol == nullptr) return nullptr;
  if (!symbol->isVariable()) {
    unlinkCode(*symbol);
    symbol->code.clear();
    symbol->elements.clear();
    symbol->parameterCount = 0;
  }
  symbol->kind = SymbolKind::Variable;
  symbol->clear(Symbol::kUndefined);
  symbol->clear(Symbol::kValid);
  symbol->changeCallback = callback;
  symbol->userData = userData;
  symbol->ownerItem = ownerItem;
  if (setExpression(table, *symbol, expression) != 0) return nullptr;
  return symbol;
}

int setExpression(SymbolTable& table, Symbol& symbol, std::string_view text) {
  Code code;
  code.reserve(128);
  bool isConstant = false;
  if (compileExpression(&table, text, code, {}, isConstant) < 0) return -1;
  if (!freeOfReferenceTo(symbol, code, 0)) return -1;
  Value result;
  if (evaluate(&table, symbol.name, code, result, nullptr, 0, symbol.ownerItem) != 0) return -1;
  symbol.value = std::move(result);
  unlinkCode(symbol);
  symbol.code.clear();
  if (isConstant) {
    symbol.set(Symbol::kConstant);
  } else {
    symbol.clear(Symbol::kConstant);
    code.shrink_to_fit();
    symbol.code = std::move(code);
    linkCode(symbol);
  }
  int result2 = propagateChange(table, symbol);
  symbol.clear(Symbol::kUndefined);
  return result2 < 0 ? -1 : 0;
}

int setValue(SymbolTable& table, Symbol& symbol, const Value& value) {
  symbol.value = value;
  unlinkCode(symbol);
  symbol.code.clear();
  symbol.clear(Symbol::kConstant);
  int result = propagateChange(table, symbol);
  symbol.set(Symbol::kConstant);
  return result < 0 ? -1 : 0;
}

int setBaseValue(SymbolTable& table, Symbol& symbol, double base) {
  symbol.baseValue = base;
  symbol.set(Symbol::kHasBase);
  if (symbol.hasCode() && evaluateSymbol(table, symbol) == -1) return -1;
  return propagateChange(table, symbol) < 0 ? -1 : 0;
}

double getBaseValue(const Symbol* symbol) {
  return symbol == nullptr ? 0.0 : symbol->baseValue;
}

int setCallback(Symbol& symbol, SymbolCallback callback, void* userData) {
  if (!symbol.isVariable()) return -1;
  symbol.changeCallback = callback;
  symbol.userData = userData;
  return 0;
}

int getCallback(const Symbol& symbol, SymbolCallback& callback, void*& userData) {
  if (!symbol.isVariable()) return -1;
  callback = symbol.changeCallback;
  userData = symbol.userData;
  return 0;
}

int setOwnerItem(Symbol& symbol, Item* item) {
  if (!symbol.isVariable()) return -1;
  symbol.ownerItem = item;
  return 0;
}

int getValue(const Symbol& symbol, Value& out) {
  if (!symbol.isVariable()) return -1;
  out = symbol.value;
  return 0;
}

Symbol* defineArray(SymbolTable& table, std::string_view header, std::string_view body) {
  ExprToken token;
  std::size_t pos = nextExpressionToken(header, 0, token);
  if (token.code != kOpName || isReservedName(token.text)) {
    setError(kExprReservedWord, token.text);
    return nullptr;
  }
  const std::string name = token.text;
  pos = nextExpressionToken(header, pos, token);
  if (token.code != kOpIndex) {
    setError(kExprArrayDefinition, name);
    return nullptr;
  }
  long statedSize = -1;
  pos = nextExpressionToken(header, pos, token);
  if (token.code == kOpInteger && token.integer >= 0) {
    statedSize = token.integer;
    pos = nextExpressionToken(header, pos, token);
  }
  if (token.code != kOpCloseBracket) {
    setError(kExprArrayDefinition, name);
    return nullptr;
  }
  Symbol* symbol = symbolForDefinition(table, name, SymbolKind::Array);
  if (symbol == nullptr) return nullptr;
  unlinkCode(*symbol);
  symbol->kind = SymbolKind::Array;
  symbol->clear(Symbol::kValid);
  symbol->clear(Symbol::kConstant);
  symbol->value = Value();
  symbol->changeCallback = nullptr;
  symbol->code.assign(1, kOpEnd);
  symbol->elements.clear();
  if (statedSize > 0) {
    symbol->elements.assign(static_cast<std::size_t>(statedSize), Value());
  } else if (statedSize < 0) {
    symbol->elements.reserve(10);
  }
  int error = readArrayElements(*symbol, body, statedSize);
  if (error == 0) error = refreshDependents(table, *symbol);
  if (error != 0) {
    ExpressionError saved = lastError();
    deleteSymbol(table, *symbol);
    lastError() = saved;
    return nullptr;
  }
  symbol->clear(Symbol::kUndefined);
  return symbol;
}

namespace {

/// Defines a function; `keepUndefined` leaves a deleted function's placeholder undefined, so that
/// the name can be defined again.
Symbol* defineFunctionAs(SymbolTable& table, std::string_view header, std::string_view body,
                         bool keepUndefined) {
  ExprToken token;
  std::size_t pos = nextExpressionToken(header, 0, token);
  if (reservedWordToken(token.text) != 0 || (token.code == kOpName && isReservedName(token.text))) {
    setError(kExprReservedWord, token.text);
    return nullptr;
  }
  if (token.code != kOpName) {
    setErrorCode(kExprFunctionNameExpected);
    return nullptr;
  }
  const std::string name = token.text;
  pos = nextExpressionToken(header, pos, token);
  if (token.code != kOpOpenParen) {
    setErrorCode(kExprFunctionNameExpected);
    return nullptr;
  }
  std::vector<std::string> parameters;
  pos = nextExpressionToken(header, pos, token);
  if (token.code != kOpCloseParen) {
    for (;;) {
      if (token.code != kOpName) {
        setErrorCode(kExprSymbolExpected);
        return nullptr;
      }
      for (const std::string& earlier : parameters) {
        if (equalsIgnoringCase(earlier, token.text)) {
          setError(kExprDuplicateArgument, token.text);
          return nullptr;
        }
      }
      if (parameters.size() == kMaxParameters) {
        setErrorCode(kExprCommaOrParenExpected);
        return nullptr;
      }
      parameters.push_back(token.text);
      pos = nextExpressionToken(header, pos, token);
      if (token.code == kOpCloseParen) break;
      if (token.code == kOpEnd) {
        setErrorCode(kExprIncompleteFunction);
        return nullptr;
      }
      if (token.code != kOpComma) {
        setErrorCode(kExprCommaOrParenExpected);
        return nullptr;
      }
      pos = nextExpressionToken(header, pos, token);
    }
  }
  Symbol* symbol = symbolForDefinition(table, name, SymbolKind::Function);
  if (symbol == nullptr) return nullptr;
  symbol->kind = SymbolKind::Function;
  symbol->clear(Symbol::kValid);
  symbol->clear(Symbol::kConstant);
  symbol->changeCallback = nullptr;
  symbol->value = Value();
  symbol->elements.clear();
  symbol->parameterCount = static_cast<std::int32_t>(parameters.size());

  auto fail = [&table, symbol]() -> Symbol* {
    ExpressionError saved = lastError();
    deleteSymbol(table, *symbol);
    lastError() = saved;
    return nullptr;
  };
  Code code;
  code.reserve(128);
  bool isConstant = false;
  if (compileExpression(&table, body, code, parameters, isConstant) < 0) return fail();
  if (!freeOfReferenceTo(*symbol, code, 0)) return fail();
  unlinkCode(*symbol);
  code.shrink_to_fit();
  symbol->code = std::move(code);
  linkCode(*symbol);
  if (refreshDependents(table, *symbol) < 0) return fail();
  if (!keepUndefined) symbol->clear(Symbol::kUndefined);
  return symbol;
}

}  // namespace

Symbol* defineFunction(SymbolTable& table, std::string_view header, std::string_view body) {
  return defineFunctionAs(table, header, body, false);
}

bool deleteSymbol(SymbolTable& table, Symbol& symbol) {
  std::size_t position = 0;
  if (!table.findSlot(symbol.name, position)) return false;
  if (&table.at(position) != &symbol) {
    showError(
        strprintf("Variable found in slot is different from one being deleted: %s.", symbol.name));
    return false;
  }
  if (symbol.dependents.empty() && !symbol.hasBase()) {
    unlinkCode(symbol);
    symbol.code.clear();
    table.remove(symbol);
    return true;
  }
  symbol.set(Symbol::kUndefined);
  if (symbol.isVariable()) {
    symbol.changeCallback = nullptr;
    symbol.userData = nullptr;
    symbol.ownerItem = nullptr;
    setValue(table, symbol, Value());
  } else if (symbol.isFunction()) {
    const std::string name = symbol.name;
    defineFunctionAs(table, strprintf("%s(dummy)", name), "0", true);
  } else if (symbol.isArray()) {
    symbol.elements.clear();
  }
  symbol.set(Symbol::kValid);
  invalidateDependents(symbol);
  recalculateDependents(table, symbol);
  return true;
}

int propagateChange(SymbolTable& table, Symbol& symbol) {
  if (symbol.recursionCount > 2) return 0;
  ++symbol.recursionCount;
  if (symbol.changeCallback != nullptr && !symbol.has(Symbol::kInCallback)) {
    symbol.set(Symbol::kInCallback);
    symbol.changeCallback(symbol, symbol.userData);
    symbol.clear(Symbol::kInCallback);
  }
  symbol.set(Symbol::kValid);
  invalidateDependents(symbol);
  if (recalculateDependents(table, symbol) < 0) return -1;
  --symbol.recursionCount;
  return 0;
}

long nextReference(const Symbol& symbol, long position, Symbol*& referenced) {
  const Code& code = symbol.code;
  if (position < 0) return -1;
  std::size_t pc = static_cast<std::size_t>(position);
  while (pc < code.size()) {
    long next = nextOpcode(code.data(), code.size(), pc);
    if (next < 0) return -1;
    if (isReference(code[pc])) {
      referenced = readSymbol(code.data() + pc + 1);
      return next;
    }
    pc = static_cast<std::size_t>(next);
  }
  return -1;
}

bool isLiteralText(std::string_view text) {
  ExprToken token;
  std::size_t pos = nextExpressionToken(text, 0, token);
  bool negative = false;
  if (token.code == kOpSubtract) {
    negative = true;
    pos = nextExpressionToken(text, pos, token);
  }
  bool literal =
      token.code == kOpInteger || token.code == kOpFloat || (token.code == kOpString && !negative);
  if (!literal || pos == kNoPosition) return false;
  nextExpressionToken(text, pos, token);
  return token.code == kOpEnd;
}

// ---- Arrays ----

void clearArray(Symbol& array) {
  array.elements.clear();
}

void sizeArray(Symbol& array, std::size_t count) {
  array.elements.assign(count, Value());
}

bool setArrayElement(Symbol& array, std::size_t index, Value value) {
  if (index >= array.elements.size()) return false;
  array.elements[index] = std::move(value);
  return true;
}

bool isReading() {
  return readingFlag;
}

void setReading(bool on) {
  readingFlag = on;
}

}  // namespace zv
