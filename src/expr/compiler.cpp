#include "expr/compiler.h"

#include <array>
#include <vector>

#include "core/engine_context.h"
#include "core/text.h"
#include "expr/builtin_table.h"
#include "expr/evaluator.h"
#include "expr/expr_error.h"
#include "expr/lexer.h"
#include "expr/opcodes.h"
#include "expr/sheet_attributes.h"
#include "expr/symbols.h"

namespace zv {

namespace {

constexpr int kOperatorStackSize = 40;  // entries, the bottom included
constexpr int kOperand = -1;            // the precedence of operands

int precedence(int token) {
  switch (token) {
    case kOpSubtract:
    case kOpAdd:
      return 50;
    case kOpMultiply:
    case kOpDivide:
    case kOpMod:
      return 60;
    case kOpBuiltin1:
    case kOpBuiltin2:
    case kOpBuiltin3:
    case kOpNegate:
    case kOpUnaryPlus:
    case kOpNot:
      return 70;
    case kOpBottom:
      return 0;
    case kOpEnd:
      return 10;
    case kOpOpenParen:
      return 100;
    case kOpCloseParen:
      return 20;
    case kOpComma:
      return 30;
    case kOpLess:
    case kOpLessEqual:
    case kOpGreater:
    case kOpGreaterEqual:
    case kOpEqual:
    case kOpNotEqual:
      return 40;
    case kOpPower:
      return 65;
    case kOpConditional:
      return 36;
    case kOpColon:
      return 37;
    case kOpStore:
      return 33;
    case kOpCall:
    case kOpBuiltinN:
    case kOpBuiltin4:
      return 80;
    case kOpIndex:
      return 90;
    case kOpCloseBracket:
      return 25;
    case kOpAnd:
      return 39;
    case kOpOr:
      return 38;
    default:
      return kOperand;
  }
}

// Words that only make sense as statements of a procedure; inside an expression they end it.
bool isStatementToken(int token) {
  switch (token) {
    case kOpOpenProcedure:
    case kOpCloseProcedure:
    case kOpLocals:
    case kOpReturn:
    case kOpIf:
    case kOpElseIf:
    case kOpElse:
    case kOpEndIf:
    case kOpWhile:
    case kOpEndWhile:
      return true;
    default:
      return false;
  }
}

struct StackEntry {
  std::uint8_t token = kOpBottom;
  std::uint8_t id = 0;
  Symbol* symbol = nullptr;
};

/// A name as the compiler resolved it.
struct Resolved {
  int code = kOpName;
  std::uint8_t id = 0;
  Symbol* symbol = nullptr;
};

Symbol* placeholderFor(SymbolTable& table, std::string_view name) {
  if (Symbol* found = table.find(name)) return found;
  Symbol* created = table.add(name);
  if (created == nullptr) return nullptr;
  created->kind = SymbolKind::Variable;
  created->flags = Symbol::kValid | Symbol::kConstant | Symbol::kUndefined;
  return created;
}

class Compiler {
 public:
  Compiler(SymbolTable* table, std::string_view text, Code& code,
           std::span<const std::string> parameters)
      : table_(table), text_(text), out_(code), parameters_(parameters) {}

  int compile() {
    std::size_t pos = 0;
    ExprToken first;
    std::size_t afterFirst = nextExpressionToken(text_, 0, first);
    if (first.code == kOpOpenProcedure) {
      pos = afterFirst;
      return compileProcedure(pos);
    }
    int result = compileSequence(pos, 0);
    if (result < 0) return result;
    return out_.byte(kOpEnd) ? 0 : kExprNoMemory;
  }

  bool isConstant() const { return isConstant_; }

 private:
  int compileSequence(std::size_t& pos, int terminator);
  int resolveName(ExprToken& token, Resolved& resolved);
  int emitOperand(const ExprToken& token, const Resolved& resolved);
  int emitOperator(const StackEntry& entry, int count);
  int compileProcedure(std::size_t& pos);
  int compileStatements(std::size_t& pos, std::initializer_list<int> enders, int& ender,
                        bool& lastWasReturn);
  int compileAssignment(std::size_t& pos, const ExprToken& name);
  int compileReturn(std::size_t& pos);
  int compileIf(std::size_t& pos);
  int compileWhile(std::size_t& pos);
  int expect(std::size_t& pos, int token, int error);
  int jumpPlaceholder(std::uint8_t opcode, std::size_t& at);
  int findLocal(std::string_view name) const;
  int findParameter(std::string_view name) const;

  SymbolTable* table_;
  std::string_view text_;
  CodeWriter out_;
  std::span<const std::string> parameters_;
  std::vector<std::string> locals_;
  bool isConstant_ = true;
};

int Compiler::findLocal(std::string_view name) const {
  for (std::size_t i = 0; i < locals_.size(); ++i) {
    if (equalsIgnoringCase(locals_[i], name)) return static_cast<int>(i);
  }
  return -1;
}

int Compiler::findParameter(std::string_view name) const {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    if (equalsIgnoringCase(parameters_[i], name)) return static_cast<int>(i);
  }
  return -1;
}

int Compiler::resolveName(ExprToken& token, Resolved& resolved) {
  if (table_ == nullptr) return kExprOnlyConstants;
  isConstant_ = false;
  const std::string& name = token.text;
  if (const BuiltinInfo* builtin = findBuiltin(name)) {
    resolved.code = builtin->token;
    resolved.id = builtin->id;
    return 0;
  }
  if (table_->resolver()) {
    Value value;
    if (table_->resolver()(name, value)) {
      switch (value.kind()) {
        case ValueKind::Integer:
          resolved.code = kOpInteger;
          token.integer = value.integer();
          break;
        case ValueKind::Float:
          resolved.code = kOpFloat;
          token.real = value.real();
          break;
        case ValueKind::String:
          resolved.code = kOpString;
          token.text = expandNewlines(value.text());
          break;
        case ValueKind::ArrayRef:
          resolved.code = kOpArray;
          resolved.symbol = value.arraySymbol();
          break;
        default:
          resolved.code = kOpInteger;
          token.integer = 0;
          break;
      }
      return 0;
    }
  }
  if (int slot = findLocal(name); slot >= 0) {
    resolved.code = kOpLocal;
    resolved.id = static_cast<std::uint8_t>(slot);
    return 0;
  }
  if (int index = findParameter(name); index >= 0) {
    resolved.code = kOpParameter;
    resolved.id = static_cast<std::uint8_t>(index + 1);
    return 0;
  }
  if (name[0] == '~' || name[0] == '&') {
    Symbol* symbol = placeholderFor(*table_, std::string_view(name).substr(1));
    if (symbol == nullptr) return kExprNoMemory;
    resolved.code = name[0] == '~' ? kOpVariableLessBase : kOpBaseOf;
    resolved.symbol = symbol;
    return 0;
  }
  if (name[0] == '@' && table_->owner != nullptr) {
    Value value;
    const std::string_view attribute = std::string_view(name).substr(1);
    const auto& provider = engine().services.sheetAttribute;
    const bool found = provider ? provider(*table_->owner, attribute, value)
                                : basicSheetAttribute(*table_->owner, attribute, value);
    if (!found) value.setInteger(0);
    if (value.isFloat()) {
      resolved.code = kOpFloat;
      token.real = value.real();
    } else if (value.isString()) {
      resolved.code = kOpString;
      token.text = value.text();
    } else {
      resolved.code = kOpInteger;
      token.integer = integerOf(value);
    }
    return 0;
  }
  Symbol* symbol = placeholderFor(*table_, name);
  if (symbol == nullptr) return kExprNoMemory;
  resolved.code = symbol->kind == SymbolKind::None ? kOpVariable : static_cast<int>(symbol->kind);
  resolved.symbol = symbol;
  return 0;
}

int Compiler::emitOperand(const ExprToken& token, const Resolved& resolved) {
  bool ok = out_.byte(static_cast<std::uint8_t>(resolved.code));
  switch (resolved.code) {
    case kOpInteger:
      ok = ok && out_.int32(token.integer);
      break;
    case kOpFloat:
      ok = ok && out_.real(token.real);
      break;
    case kOpString:
      ok = ok && out_.text(token.text);
      break;
    case kOpVariable:
    case kOpArray:
    case kOpVariableLessBase:
    case kOpBaseOf:
      ok = ok && out_.symbol(resolved.symbol);
      break;
    case kOpParameter:
    case kOpLocal:
      ok = ok && out_.byte(resolved.id);
      break;
    default:
      return kExprInternal;
  }
  return ok ? 0 : kExprNoMemory;
}

int Compiler::emitOperator(const StackEntry& entry, int count) {
  bool ok = out_.byte(entry.token);
  switch (entry.token) {
    case kOpBuiltin1:
    case kOpBuiltin2:
    case kOpBuiltin3:
    case kOpBuiltin4:
      ok = ok && out_.byte(entry.id);
      break;
    case kOpBuiltinN:
      ok = ok && out_.byte(entry.id) && out_.byte(static_cast<std::uint8_t>(count));
      break;
    case kOpCall:
      ok = ok && out_.symbol(entry.symbol) && out_.byte(static_cast<std::uint8_t>(count));
      break;
    default:
      break;
  }
  return ok ? 0 : kExprNoMemory;
}

int Compiler::compileSequence(std::size_t& pos, int terminator) {
  std::array<StackEntry, kOperatorStackSize> stack{};
  int top = 0;  // stack[0] is the bottom
  std::array<int, kOperatorStackSize + 1> counts{};
  int depth = 0;
  int lastClosed = 0;
  int previous = kOpBottom;
  const std::size_t start = out_.length();
  ExprToken token;

  for (;;) {
    const std::size_t before = pos;
    pos = nextExpressionToken(text_, pos, token);
    int code = token.code;
    if (code == kOpIllegal) return kExprBadOperator;
    if (code == kOpSemicolon || isStatementToken(code) ||
        (code == terminator && (terminator != kOpCloseParen || depth == 0))) {
      code = kOpEnd;
      pos = before;
    }
    if ((code == kOpSubtract || code == kOpAdd) && precedence(previous) >= 0 &&
        previous != kOpCloseParen && previous != kOpCloseBracket) {
      code = code == kOpSubtract ? kOpNegate : kOpUnaryPlus;
    }
    Resolved resolved;
    resolved.code = code;
    if (code == kOpName) {
      if (int r = resolveName(token, resolved); r < 0) return r;
      code = resolved.code;
    }
    const int prec = precedence(code);
    if (prec == kOperand) {
      if (int r = emitOperand(token, resolved); r < 0) return r;
      previous = code;
      continue;
    }
    if (prec == 70) {
      if (top + 1 >= kOperatorStackSize) return kExprStackOverflow;
      stack[static_cast<std::size_t>(++top)] = {static_cast<std::uint8_t>(code), resolved.id,
                                                resolved.symbol};
      previous = code;
      continue;
    }
    if (code == kOpOpenParen) {
      if (depth + 1 >= static_cast<int>(counts.size())) return kExprStackOverflow;
      counts[static_cast<std::size_t>(++depth)] = 1;
    } else if (code == kOpComma && depth >= 1) {
      ++counts[static_cast<std::size_t>(depth)];
    }
    for (;;) {
      if (top < 0) return kExprStackUnderflow;
      const StackEntry& entry = stack[static_cast<std::size_t>(top)];
      if (entry.token == kOpOpenParen) {
        if (code == kOpCloseParen) {
          --top;
          lastClosed = counts[static_cast<std::size_t>(depth)];
          --depth;
        }
        break;
      }
      if (entry.token == kOpIndex) {
        if (code == kOpCloseBracket) {
          --top;
          if (!out_.byte(kOpIndex)) return kExprNoMemory;
        }
        break;
      }
      if (prec > precedence(entry.token)) break;
      if (entry.token == kOpBottom) return kExprStackUnderflow;
      if (int r = emitOperator(entry, lastClosed); r < 0) return r;
      --top;
    }
    if (code == kOpEnd) {
      if (out_.length() == start) return kExprEmpty;
      if (top != 0) return kExprIncomplete;
      return 0;
    }
    if (code != kOpCloseParen && code != kOpComma && code != kOpColon && code != kOpCloseBracket) {
      if (top + 1 >= kOperatorStackSize) return kExprStackOverflow;
      stack[static_cast<std::size_t>(++top)] = {static_cast<std::uint8_t>(code), resolved.id,
                                                resolved.symbol};
    }
    previous = code;
  }
}

int Compiler::expect(std::size_t& pos, int token, int error) {
  ExprToken t;
  pos = nextExpressionToken(text_, pos, t);
  return t.code == token ? 0 : error;
}

int Compiler::jumpPlaceholder(std::uint8_t opcode, std::size_t& at) {
  if (!out_.byte(opcode)) return kExprNoMemory;
  at = out_.length();
  return out_.int32(0) ? 0 : kExprNoMemory;
}

int Compiler::compileProcedure(std::size_t& pos) {
  ExprToken token;
  std::size_t before = pos;
  pos = nextExpressionToken(text_, pos, token);
  if (token.code == kOpLocals) {
    for (;;) {
      pos = nextExpressionToken(text_, pos, token);
      if ((token.code == kOpName && findBuiltin(token.text) != nullptr) ||
          reservedWordToken(token.text) != 0) {
        setError(kExprReservedWord, token.text);
        return kExprReservedWord;
      }
      if (token.code != kOpName) {
        setError(kExprIllegalLocalName, token.text);
        return kExprIllegalLocalName;
      }
      if (findLocal(token.text) >= 0 || findParameter(token.text) >= 0) {
        setError(kExprLocalRedefined, token.text);
        return kExprLocalRedefined;
      }
      if (locals_.size() >= 255) return kExprTooComplicated;
      locals_.push_back(token.text);
      pos = nextExpressionToken(text_, pos, token);
      if (token.code == kOpComma) continue;
      if (token.code == kOpSemicolon) break;
      return kExprSemicolonMissing;
    }
    if (!out_.byte(kOpLocals) || !out_.byte(static_cast<std::uint8_t>(locals_.size()))) {
      return kExprNoMemory;
    }
  } else {
    pos = before;
  }
  int ender = 0;
  bool lastWasReturn = false;
  if (int r = compileStatements(pos, {kOpCloseProcedure, kOpEnd}, ender, lastWasReturn); r < 0) {
    return r;
  }
  return lastWasReturn ? 0 : kExprNoReturn;
}

int Compiler::compileStatements(std::size_t& pos, std::initializer_list<int> enders, int& ender,
                                bool& lastWasReturn) {
  ExprToken token;
  for (;;) {
    pos = nextExpressionToken(text_, pos, token);
    for (int e : enders) {
      if (token.code == e) {
        ender = e;
        return 0;
      }
    }
    int r = 0;
    switch (token.code) {
      case kOpName:
        r = compileAssignment(pos, token);
        lastWasReturn = false;
        break;
      case kOpReturn:
        r = compileReturn(pos);
        lastWasReturn = true;
        break;
      case kOpSemicolon:
        break;
      case kOpIf:
        r = compileIf(pos);
        lastWasReturn = false;
        break;
      case kOpWhile:
        r = compileWhile(pos);
        lastWasReturn = false;
        break;
      case kOpEnd:
        return kExprIncomplete;
      default:
        setError(kExprUnrecognizedStatement, token.text);
        return kExprUnrecognizedStatement;
    }
    if (r < 0) return r;
  }
}

int Compiler::compileAssignment(std::size_t& pos, const ExprToken& name) {
  int slot = findLocal(name.text);
  if (slot < 0) {
    setError(kExprLocalUndefined, name.text);
    return kExprLocalUndefined;
  }
  if (!out_.byte(kOpLocalRef) || !out_.byte(static_cast<std::uint8_t>(slot))) return kExprNoMemory;
  ExprToken token;
  pos = nextExpressionToken(text_, pos, token);
  if (token.code != kOpStore && token.code != kOpEqual) return kExprAssignmentMissing;
  if (int r = compileSequence(pos, kOpSemicolon); r < 0) return r;
  if (int r = expect(pos, kOpSemicolon, kExprSemicolonMissing); r < 0) return r;
  return out_.byte(kOpStore) ? 0 : kExprNoMemory;
}

int Compiler::compileReturn(std::size_t& pos) {
  if (int r = compileSequence(pos, kOpSemicolon); r < 0) return r;
  if (int r = expect(pos, kOpSemicolon, kExprSemicolonMissing); r < 0) return r;
  return out_.byte(kOpEnd) ? 0 : kExprNoMemory;
}

int Compiler::compileIf(std::size_t& pos) {
  std::vector<std::size_t> exits;
  for (;;) {
    if (int r = expect(pos, kOpOpenParen, kExprIfParenthesis); r < 0) return r;
    if (int r = compileSequence(pos, kOpCloseParen); r < 0) return r;
    if (int r = expect(pos, kOpCloseParen, kExprIfParenthesis); r < 0) return r;
    std::size_t falseJump = 0;
    if (int r = jumpPlaceholder(kOpJumpIfFalse, falseJump); r < 0) return r;
    int ender = 0;
    bool ignored = false;
    if (int r = compileStatements(pos, {kOpElseIf, kOpElse, kOpEndIf}, ender, ignored); r < 0) {
      return r;
    }
    if (ender != kOpEndIf) {
      std::size_t exit = 0;
      if (int r = jumpPlaceholder(kOpJump, exit); r < 0) return r;
      exits.push_back(exit);
    }
    out_.patchInt32(falseJump, static_cast<std::int32_t>(out_.length()));
    if (ender == kOpElse) {
      if (int r = compileStatements(pos, {kOpEndIf}, ender, ignored); r < 0) return r;
    }
    if (ender == kOpEndIf) break;
  }
  for (std::size_t exit : exits)
    out_.patchInt32(exit, static_cast<std::int32_t>(out_.length()));
  return 0;
}

int Compiler::compileWhile(std::size_t& pos) {
  if (int r = expect(pos, kOpOpenParen, kExprWhileParenthesis); r < 0) return r;
  const std::size_t condition = out_.length();
  if (int r = compileSequence(pos, kOpCloseParen); r < 0) return r;
  if (int r = expect(pos, kOpCloseParen, kExprWhileParenthesis); r < 0) return r;
  std::size_t falseJump = 0;
  if (int r = jumpPlaceholder(kOpJumpIfFalse, falseJump); r < 0) return r;
  int ender = 0;
  bool ignored = false;
  if (int r = compileStatements(pos, {kOpEndWhile}, ender, ignored); r < 0) return r;
  if (!out_.byte(kOpJump) || !out_.int32(static_cast<std::int32_t>(condition))) {
    return kExprNoMemory;
  }
  out_.patchInt32(falseJump, static_cast<std::int32_t>(out_.length()));
  return 0;
}

bool isBlank(std::string_view text) {
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\f' && c != '\v') return false;
  }
  return true;
}

}  // namespace

int compileExpression(SymbolTable* table, std::string_view text, Code& code,
                      std::span<const std::string> parameters, bool& isConstant) {
  code.clear();
  int result = kExprInternal;
  isConstant = true;
  if (!isBlank(text)) {
    Compiler compiler(table, text, code, parameters);
    result = compiler.compile();
    isConstant = compiler.isConstant();
    if (result == 0) result = static_cast<int>(code.size());
  }
  setErrorCode(result);
  return result;
}

int parseExp(SymbolTable* table, std::string_view text, Value& out) {
  Code code;
  code.reserve(128);
  bool isConstant = false;
  if (compileExpression(table, text, code, {}, isConstant) < 0) return -1;
  if (evaluate(table, "Expression", code, out, nullptr, 0, currentEvaluationItem()) != 0) {
    return -1;
  }
  return 0;
}

int parseExpInContext(SymbolTable* table, Item* item, Option* option, std::string_view text,
                      Value& out) {
  if (table == nullptr) return -1;
  Item* savedItem = table->currentItem;
  Option* savedOption = table->currentOption;
  table->currentItem = item;
  table->currentOption = option;
  int result = parseExp(table, text, out);
  table->currentItem = savedItem;
  table->currentOption = savedOption;
  return result;
}

}  // namespace zv
