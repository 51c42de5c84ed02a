#include "expr/code.h"

#include "expr/opcodes.h"

namespace zv {

int operandBytes(std::uint8_t opcode) {
  switch (opcode) {
    case kOpVariable:
    case kOpArray:
    case kOpVariableLessBase:
    case kOpBaseOf:
      return sizeof(Symbol*);
    case kOpCall:
      return sizeof(Symbol*) + 1;
    case kOpInteger:
    case kOpJumpIfFalse:
    case kOpJump:
      return 4;
    case kOpFloat:
      return 8;
    case kOpBuiltin1:
    case kOpBuiltin2:
    case kOpBuiltin3:
    case kOpBuiltin4:
    case kOpParameter:
    case kOpLocal:
    case kOpLocalRef:
    case kOpLocals:
      return 1;
    case kOpBuiltinN:
      return 2;
    default:
      return 0;
  }
}

bool CodeWriter::text(std::string_view value) {
  // The code holds the text up to its terminator, so a text ends at its first NUL byte.
  value = value.substr(0, value.find('\0'));
  if (!bytes(value.data(), value.size())) return false;
  return byte(0);
}

bool CodeWriter::bytes(const void* data, std::size_t count) {
  if (code_.size() + count > kMaxCodeLength) return false;
  if (code_.capacity() < code_.size() + count) code_.reserve(code_.size() + count + 128);
  const auto* from = static_cast<const std::uint8_t*>(data);
  code_.insert(code_.end(), from, from + count);
  return true;
}

long nextOpcode(const std::uint8_t* code, std::size_t length, std::size_t pc) {
  if (pc >= length) return -1;
  std::uint8_t op = code[pc];
  if (op > kLastOpcode) return -1;
  std::size_t next = pc + 1;
  if (op == kOpString) {
    while (next < length && code[next] != 0)
      ++next;
    if (next >= length) return -1;
    return static_cast<long>(next + 1);
  }
  next += static_cast<std::size_t>(operandBytes(op));
  if (next > length) return -1;
  return static_cast<long>(next);
}

}  // namespace zv
