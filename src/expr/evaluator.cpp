#include "expr/evaluator.h"

#include <cmath>
#include <cstddef>
#include <deque>
#include <new>
#include <vector>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtin_call.h"
#include "expr/builtin_table.h"
#include "expr/expr_error.h"
#include "expr/opcodes.h"
#include "expr/symbols.h"

namespace zv {

namespace {

// Nested evaluations (function calls, eval, item formulas) deeper than this are refused as too
// complicated, so that a text that evaluates itself can't exhaust the machine stack.
constexpr int kMaxNesting = 250;

Item* currentItem = nullptr;
int nesting = 0;

/// Argument lists of built-in calls, one per nesting level, kept to reuse their storage.
std::vector<Value>& argumentBuffer(int level) {
  static std::deque<std::vector<Value>> buffers;
  while (static_cast<int>(buffers.size()) <= level)
    buffers.emplace_back();
  return buffers[static_cast<std::size_t>(level)];
}

/// The fixed value stack; only the slots in use hold constructed values.
class ValueStack {
 public:
  ValueStack() = default;
  ~ValueStack() { clear(); }
  ValueStack(const ValueStack&) = delete;
  ValueStack& operator=(const ValueStack&) = delete;

  int size() const { return count_; }
  bool full() const { return count_ >= kEvaluationStackSize; }
  Value& at(int index) {
    return *std::launder(
        reinterpret_cast<Value*>(storage_ + static_cast<std::size_t>(index) * sizeof(Value)));
  }
  Value& top() { return at(count_ - 1); }
  template <typename... Args>
  void push(Args&&... args) {
    new (storage_ + static_cast<std::size_t>(count_) * sizeof(Value))
        Value(std::forward<Args>(args)...);
    ++count_;
  }
  void pop() { at(--count_).~Value(); }
  void clear() {
    while (count_ > 0)
      pop();
  }

 private:
  alignas(Value) std::byte storage_[kEvaluationStackSize * sizeof(Value)];
  int count_ = 0;
};

struct ItemScope {
  explicit ItemScope(Item* item) : saved(currentItem) {
    currentItem = item;
    ++nesting;
  }
  ~ItemScope() {
    currentItem = saved;
    --nesting;
  }
  ItemScope(const ItemScope&) = delete;
  ItemScope& operator=(const ItemScope&) = delete;
  Item* saved;
};

std::int32_t wrap(std::uint32_t value) {
  return static_cast<std::int32_t>(value);
}

bool isGlyph(unsigned char c) {
  return c == kQuarterGlyph || c == kHalfGlyph || c == kThreeQuartersGlyph;
}

/// A text that is not empty and, apart from one leading sign, holds only digits, points and
/// quarter glyphs.
bool isNumericText(const std::string& text) {
  if (text.empty()) return false;
  std::size_t i = (text[0] == '+' || text[0] == '-') ? 1 : 0;
  for (; i < text.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (!((c >= '0' && c <= '9') || c == '.' || isGlyph(c))) return false;
  }
  return true;
}

bool isNumericString(const Value& value) {
  return value.isString() && isNumericText(value.text());
}

bool isArithmetic(std::uint8_t op) {
  return op == kOpSubtract || op == kOpAdd || op == kOpMultiply || op == kOpDivide ||
         op == kOpPower || op == kOpMod;
}

bool isComparison(std::uint8_t op) {
  return (op >= kOpLess && op <= kOpEqual) || op == kOpNotEqual;
}

/// 1 or 0 for a comparison operator given the three-way result of its operands.
std::int32_t compared(std::uint8_t op, int order) {
  switch (op) {
    case kOpLess:
      return order < 0;
    case kOpLessEqual:
      return order <= 0;
    case kOpGreater:
      return order > 0;
    case kOpGreaterEqual:
      return order >= 0;
    case kOpEqual:
      return order == 0;
    default:
      return order != 0;
  }
}

/// Whether a condition holds: a real when not 0.0, anything else when its integer is not 0.
bool isTrue(const Value& value) {
  if (value.isFloat()) return value.real() != 0.0;
  return integerOf(value) != 0;
}

/// The number a variable reads as: its value, or its base (as a real) when the value is zero.
void pushVariable(ValueStack& stack, const Symbol& symbol) {
  const Value& value = symbol.value;
  if ((value.isInteger() && value.integer() == 0) || (value.isFloat() && value.real() == 0.0)) {
    stack.push(symbol.baseValue);
  } else {
    stack.push(value);
  }
}

std::int32_t truncatedBase(double base) {
  return integerOf(Value(base));
}

std::int32_t integerPower(std::int32_t base, std::int32_t exponent) {
  std::uint32_t result = 1;
  std::uint32_t factor = static_cast<std::uint32_t>(base);
  std::uint32_t e = static_cast<std::uint32_t>(exponent);
  while (e != 0) {
    if (e & 1u) result *= factor;
    factor *= factor;
    e >>= 1;
  }
  return wrap(result);
}

void integerOperation(std::uint8_t op, Value& left, std::int32_t a, std::int32_t b) {
  const std::uint32_t ua = static_cast<std::uint32_t>(a);
  const std::uint32_t ub = static_cast<std::uint32_t>(b);
  switch (op) {
    case kOpSubtract:
      left.setInteger(wrap(ua - ub));
      return;
    case kOpAdd:
      left.setInteger(wrap(ua + ub));
      return;
    case kOpMultiply:
      left.setInteger(wrap(ua * ub));
      return;
    case kOpDivide:  // not reached: the left side of "/" is made a real first
      left.setFloat(b == 0 ? 0.0 : static_cast<double>(a) / b);
      return;
    case kOpPower: {
      if (b == 0) {
        left.setInteger(1);
        return;
      }
      double p = std::pow(static_cast<double>(a), static_cast<double>(b));
      if (p > 2147483647.0 || p < -2147483647.0 || b < 0) {
        if (p > 1e38) p = 1e38;
        if (p < -1e-38) p = -1e38;
        left.setFloat(p);
        return;
      }
      left.setInteger(integerPower(a, b));
      return;
    }
    case kOpAnd:
      left.setInteger(a != 0 && b != 0);
      return;
    case kOpOr:
      left.setInteger(a != 0 || b != 0);
      return;
    case kOpMod:
      left.setInteger(b == 0 || b == -1 ? 0 : a % b);
      return;
    default:
      left.setInteger(compared(op, a < b ? -1 : (a > b ? 1 : 0)));
      return;
  }
}

void floatOperation(std::uint8_t op, Value& left, double a, double b) {
  switch (op) {
    case kOpSubtract:
      left.setFloat(a - b);
      return;
    case kOpAdd:
      left.setFloat(a + b);
      return;
    case kOpMultiply:
      left.setFloat(a * b);
      return;
    case kOpDivide:
      left.setFloat(b == 0.0 ? 0.0 : a / b);
      return;
    case kOpPower:
      left.setFloat(b == 0.0 ? 1.0 : std::pow(a, b));
      return;
    case kOpAnd:
      left.setInteger(a != 0.0 && b != 0.0);
      return;
    case kOpOr:
      left.setInteger(a != 0.0 || b != 0.0);
      return;
    case kOpMod:
      left.setFloat(b == 0.0 ? 0.0 : std::fmod(a, b));
      return;
    default:
      left.setInteger(compared(op, a < b ? -1 : (a > b ? 1 : 0)));
      return;
  }
}

/// Brings a side that is neither integer nor real to a number: a numeric text becomes a real,
/// any other text, an array or a local reference goes through forceInteger.
void toNumber(Value& value) {
  if (value.isNumber()) return;
  if (isNumericString(value)) {
    forceFloat(value);
  } else {
    forceInteger(value);
  }
}

/// Applies a binary operator; the result replaces `left`.
void binaryOperation(std::uint8_t op, Value& left, Value& right) {
  if (left.isInteger() && right.isInteger() && op != kOpDivide) {
    integerOperation(op, left, left.integer(), right.integer());
    return;
  }
  if (left.isString() && right.isString() && isArithmetic(op) && isNumericString(left) &&
      isNumericString(right)) {
    forceFloat(left);
    forceFloat(right);
  }
  if (left.isString() && right.isInteger() && isNumericString(left)) {
    forceFloat(left);
  } else if (right.isString() && left.isInteger() && isNumericString(right)) {
    forceFloat(right);
  }
  if (isComparison(op) &&
      ((left.isString() && right.isInteger()) || (right.isString() && left.isInteger()))) {
    forceString(left);
    forceString(right);
  }
  if (left.isString() && right.isString()) {
    left.setInteger(isComparison(op) ? compared(op, compareIgnoringCase(left.text(), right.text()))
                                     : 0);
    return;
  }
  toNumber(left);
  toNumber(right);
  if (op == kOpDivide && left.isInteger()) forceFloat(left);
  if (left.isFloat() || right.isFloat()) {
    floatOperation(op, left, floatOf(left), floatOf(right));
  } else {
    integerOperation(op, left, left.integer(), right.integer());
  }
}

class Machine {
 public:
  Machine(SymbolTable* table, std::string_view name, const std::uint8_t* code, std::size_t length,
          const Value* arguments, int argumentCount)
      : table_(table),
        name_(name),
        code_(code),
        length_(length),
        arguments_(arguments),
        argumentCount_(argumentCount) {}

  int run(Value& result);

 private:
  int callFunction(Symbol& function, int count);
  int callBuiltin(int id, int count);

  SymbolTable* table_;
  std::string_view name_;
  const std::uint8_t* code_;
  std::size_t length_;
  const Value* arguments_;
  int argumentCount_;
  ValueStack stack_;
  std::vector<Value> locals_;
  bool haveLocals_ = false;
};

int Machine::callFunction(Symbol& function, int count) {
  if (stack_.size() < function.parameterCount || stack_.size() < count) {
    return kExprStackUnderflow;
  }
  Value result;
  if (function.hasCode()) {
    const Value* arguments = count > 0 ? &stack_.at(stack_.size() - count) : nullptr;
    int error = evaluate(table_, function.name, function.code.data(), function.code.size(), result,
                         arguments, count, currentItem);
    if (error < 0) return error;
  }
  for (int i = 0; i < count; ++i)
    stack_.pop();
  stack_.push(std::move(result));
  return 0;
}

int Machine::callBuiltin(int id, int count) {
  if (stack_.size() < count) return kExprStackUnderflow;
  if (table_ == nullptr) return kExprInternal;
  Value result;
  if (BuiltinFunction function = registeredBuiltin(id)) {
    std::vector<Value>& args = argumentBuffer(nesting);
    args.clear();
    for (int i = stack_.size() - count; i < stack_.size(); ++i) {
      args.push_back(std::move(stack_.at(i)));
    }
    for (int i = 0; i < count; ++i)
      stack_.pop();
    Item* item = currentItem != nullptr ? currentItem : table_->currentItem;
    BuiltinCall call{*table_, item, args, result};
    int error = function(call);
    args.clear();
    if (error < 0) return error;
  } else {
    for (int i = 0; i < count; ++i)
      stack_.pop();
  }
  stack_.push(std::move(result));
  return 0;
}

int Machine::run(Value& result) {
  std::size_t pc = 0;
  for (;;) {
    if (pc >= length_) return kExprInternal;
    const std::uint8_t op = code_[pc];
    const std::uint8_t* operand = code_ + pc + 1;
    switch (op) {
      case kOpEnd:
        if (stack_.size() != 1) return kExprIncomplete;
        result = std::move(stack_.top());
        return 0;

      case kOpInteger:
        if (stack_.full()) return kExprStackOverflow;
        stack_.push(readInt32(operand));
        pc += 5;
        break;
      case kOpFloat:
        if (stack_.full()) return kExprStackOverflow;
        stack_.push(readReal(operand));
        pc += 9;
        break;
      case kOpString: {
        if (stack_.full()) return kExprStackOverflow;
        std::string_view text(reinterpret_cast<const char*>(operand));
        stack_.push(text);
        pc += 2 + text.size();
        break;
      }
      case kOpVariable:
        if (stack_.full()) return kExprStackOverflow;
        pushVariable(stack_, *readSymbol(operand));
        pc += 1 + sizeof(Symbol*);
        break;
      case kOpVariableLessBase: {
        if (stack_.full()) return kExprStackOverflow;
        const Symbol& symbol = *readSymbol(operand);
        if (symbol.value.isInteger()) {
          stack_.push(wrap(static_cast<std::uint32_t>(symbol.value.integer()) -
                           static_cast<std::uint32_t>(truncatedBase(symbol.baseValue))));
        } else if (symbol.value.isFloat()) {
          stack_.push(symbol.value.real() - symbol.baseValue);
        } else {
          stack_.push(truncatedBase(symbol.baseValue));
        }
        pc += 1 + sizeof(Symbol*);
        break;
      }
      case kOpBaseOf:
        if (stack_.full()) return kExprStackOverflow;
        stack_.push(readSymbol(operand)->baseValue);
        pc += 1 + sizeof(Symbol*);
        break;
      case kOpArray:
        if (stack_.full()) return kExprStackOverflow;
        stack_.push(Value::arrayRef(readSymbol(operand)));
        pc += 1 + sizeof(Symbol*);
        break;
      case kOpParameter: {
        if (argumentCount_ <= 0 || arguments_ == nullptr || stack_.full()) {
          return kExprStackOverflow;
        }
        int index = *operand;
        if (index > argumentCount_ || index < 1) {
          stack_.push(std::int32_t{0});
        } else {
          stack_.push(arguments_[index - 1]);
        }
        pc += 2;
        break;
      }
      case kOpLocal: {
        if (!haveLocals_ || stack_.full()) return kExprStackOverflow;
        std::size_t slot = *operand;
        if (slot >= locals_.size()) {
          stack_.push(std::int32_t{0});
        } else {
          stack_.push(locals_[slot]);
        }
        pc += 2;
        break;
      }
      case kOpLocalRef:
        if (!haveLocals_ || stack_.full()) return kExprStackOverflow;
        stack_.push(Value::localRef(*operand));
        pc += 2;
        break;
      case kOpLocals:
        if (haveLocals_) return kExprInternal;
        locals_.assign(*operand, Value());
        haveLocals_ = true;
        pc += 2;
        break;
      case kOpStore: {
        if (stack_.size() < 2) return kExprStackUnderflow;
        Value& target = stack_.at(stack_.size() - 2);
        if (!target.isLocalRef() || target.localSlot() < 0 ||
            static_cast<std::size_t>(target.localSlot()) >= locals_.size()) {
          return kExprInternal;
        }
        locals_[static_cast<std::size_t>(target.localSlot())] = std::move(stack_.top());
        stack_.pop();
        stack_.pop();
        pc += 1;
        break;
      }
      case kOpJumpIfFalse: {
        if (interruptEvaluation(name_)) return kExprUserInterrupt;
        if (stack_.size() < 1) return kExprStackUnderflow;
        bool holds = isTrue(stack_.top());
        stack_.pop();
        std::int32_t target = readInt32(operand);
        if (target < 0 || static_cast<std::size_t>(target) > length_) return kExprInternal;
        pc = holds ? pc + 5 : static_cast<std::size_t>(target);
        break;
      }
      case kOpJump: {
        std::int32_t target = readInt32(operand);
        if (target < 0 || static_cast<std::size_t>(target) > length_) return kExprInternal;
        pc = static_cast<std::size_t>(target);
        if (interruptEvaluation(name_)) return kExprUserInterrupt;
        break;
      }
      case kOpCall: {
        Symbol& function = *readSymbol(operand);
        int count = operand[sizeof(Symbol*)];
        if (int error = callFunction(function, count); error < 0) return error;
        pc += 2 + sizeof(Symbol*);
        break;
      }
      case kOpBuiltin1:
      case kOpBuiltin2:
      case kOpBuiltin3:
      case kOpBuiltin4:
        if (int error = callBuiltin(*operand, builtinArity(op)); error < 0) return error;
        pc += 2;
        break;
      case kOpBuiltinN:
        if (int error = callBuiltin(operand[0], operand[1]); error < 0) return error;
        pc += 3;
        break;
      case kOpIndex: {
        if (stack_.size() < 2) return kExprStackUnderflow;
        std::int32_t index = integerOf(stack_.top());
        stack_.pop();
        Value& left = stack_.top();
        if (!left.isArrayRef()) return kExprBadIndexing;
        const std::vector<Value>& elements = left.arraySymbol()->elements;
        if (elements.empty()) {
          left.setInteger(0);
        } else {
          std::size_t at =
              index < 1 ? 0 : std::min(static_cast<std::size_t>(index) - 1, elements.size() - 1);
          left = elements[at];
        }
        pc += 1;
        break;
      }
      case kOpNegate: {
        if (stack_.size() < 1) return kExprStackUnderflow;
        Value& value = stack_.top();
        if (value.isFloat()) {
          value.setFloat(-value.real());
        } else {
          value.setInteger(wrap(0u - static_cast<std::uint32_t>(integerOf(value))));
        }
        pc += 1;
        break;
      }
      case kOpUnaryPlus:
        pc += 1;
        break;
      case kOpNot: {
        if (stack_.size() < 1) return kExprStackUnderflow;
        Value& value = stack_.top();
        value.setInteger(value.isFloat() ? value.real() == 0.0 : integerOf(value) == 0);
        pc += 1;
        break;
      }
      case kOpConditional: {
        if (stack_.size() < 3) return kExprStackUnderflow;
        const int base = stack_.size() - 3;
        bool holds = isTrue(stack_.at(base));
        stack_.at(base) = std::move(stack_.at(holds ? base + 1 : base + 2));
        stack_.pop();
        stack_.pop();
        pc += 1;
        break;
      }
      case kOpSubtract:
      case kOpAdd:
      case kOpMultiply:
      case kOpDivide:
      case kOpLess:
      case kOpLessEqual:
      case kOpGreater:
      case kOpGreaterEqual:
      case kOpEqual:
      case kOpPower:
      case kOpNotEqual:
      case kOpAnd:
      case kOpOr:
      case kOpMod: {
        if (stack_.size() < 2) return kExprStackUnderflow;
        Value& right = stack_.top();
        Value& left = stack_.at(stack_.size() - 2);
        binaryOperation(op, left, right);
        stack_.pop();
        pc += 1;
        break;
      }
      default:
        return kExprInternal;
    }
  }
}

}  // namespace

Item* currentEvaluationItem() {
  return currentItem;
}

bool interruptEvaluation(std::string_view name) {
  if (!host().interruptRequested()) return false;
  std::string question = strprintf(
      "The application was interrupted while evaluating \"%s.\" Do you wish to abort the "
      "evaluation?\r\n\r\nAborting evaluation can cause incorrect character sheet values and "
      "unpredictable behavior.",
      std::string(name));
  if (askQuestion(severityTitle(Severity::Warning), question, ButtonSet::YesNo) != Button::Yes) {
    return false;
  }
  setError(kExprUserInterrupt, name);
  return true;
}

int evaluate(SymbolTable* table, std::string_view name, const std::uint8_t* code,
             std::size_t length, Value& result, const Value* arguments, int argumentCount,
             Item* item) {
  if (nesting >= kMaxNesting) {
    setErrorCode(kExprTooComplicated);
    return kExprTooComplicated;
  }
  ItemScope scope(item);
  if (interruptEvaluation(name)) return kExprUserInterrupt;
  Machine machine(table, name, code, length, arguments, argumentCount);
  int error = machine.run(result);
  setErrorCode(error);
  return error;
}

}  // namespace zv
