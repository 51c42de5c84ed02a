#pragma once
// The tokens of the expression language and the opcodes of compiled code share one numbering;
// symbol kinds use the same numbers (7 variable, 28 function, 30 array).
//
// Layout of compiled code (bytes): a symbol reference (7, 30, 35, 36) is the opcode and the
// Symbol pointer; a user function call (28) adds a one-byte argument count; an integer literal (8)
// and a jump (51, 52) carry a 32-bit value; a float literal (21) a double; a string literal (25)
// its bytes and a NUL; a built-in of fixed size (5, 6, 33, 55) its one-byte id; a built-in of any
// size (37) its id and the argument count; a parameter (27), a local (42, 54) and a declaration of
// locals (45) one byte. Values are stored in the machine's byte order.

#include <cstdint>

namespace zv {

enum Opcode : std::uint8_t {
  kOpSubtract = 1,
  kOpAdd = 2,
  kOpMultiply = 3,
  kOpDivide = 4,
  kOpBuiltin2 = 5,
  kOpBuiltin1 = 6,
  kOpVariable = 7,
  kOpInteger = 8,
  kOpIllegal = 9,
  kOpBottom = 10,
  kOpEnd = 11,
  kOpOpenParen = 12,
  kOpCloseParen = 13,
  kOpComma = 14,
  kOpNegate = 15,
  kOpLess = 16,
  kOpLessEqual = 17,
  kOpGreater = 18,
  kOpGreaterEqual = 19,
  kOpEqual = 20,
  kOpFloat = 21,
  kOpPower = 22,
  kOpConditional = 23,
  kOpColon = 24,
  kOpString = 25,
  kOpStore = 26,
  kOpParameter = 27,
  kOpCall = 28,
  kOpName = 29,
  kOpArray = 30,
  kOpIndex = 31,
  kOpCloseBracket = 32,
  kOpBuiltin3 = 33,
  kOpNotEqual = 34,
  kOpVariableLessBase = 35,
  kOpBaseOf = 36,
  kOpBuiltinN = 37,
  kOpAnd = 38,
  kOpOr = 39,
  kOpNot = 40,
  kOpMod = 41,
  kOpLocal = 42,
  kOpOpenProcedure = 43,
  kOpCloseProcedure = 44,
  kOpLocals = 45,
  kOpReturn = 46,
  kOpIf = 47,
  kOpElseIf = 48,
  kOpElse = 49,
  kOpEndIf = 50,
  kOpJumpIfFalse = 51,
  kOpJump = 52,
  kOpSemicolon = 53,
  kOpLocalRef = 54,
  kOpBuiltin4 = 55,
  kOpUnaryPlus = 56,
  kOpWhile = 57,
  kOpEndWhile = 58,
};

/// The highest opcode; code holding a larger one is corrupt.
inline constexpr int kLastOpcode = 58;

/// Symbol kinds, numbered as the opcodes that refer to them.
enum class SymbolKind : std::int32_t { None = 0, Variable = 7, Function = 28, Array = 30 };

/// Bytes that follow each opcode in compiled code (string literals excepted: theirs vary).
int operandBytes(std::uint8_t opcode);

}  // namespace zv
