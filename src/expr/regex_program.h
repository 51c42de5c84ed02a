#pragma once
// The compiled form of a regular expression: a flat list of instructions that the backtracking
// machine of regex.cpp runs. Only the compiler (regex_compile.cpp) writes it.

#include <bitset>
#include <cstdint>

namespace zv::regex_detail {

enum class Op : unsigned char {
  Byte,     // one byte equal to `byte`
  Literal,  // the `count` bytes of the literal pool starting at `index`
  Any,      // any byte
  Set,      // a byte that is in set `index`
  Bol,      // the start of the text
  Eol,      // the end of the text
  Save,     // records the position in capture slot `index`
  Split,    // goes on at `index`; on backtracking, at `count`
  Jump,     // goes on at `index`
  Repeat,   // as many bytes as the one-byte test `unit` passes, at least `count` of them, then
            // gives back one byte at a time on backtracking
  Match,    // the end of the program: a match
};

struct Instruction {
  Op op = Op::Match;
  Op unit = Op::Byte;  // Repeat: the one-byte test (Byte, Any or Set), using `byte` and `index`
  unsigned char byte = 0;
  uint32_t index = 0;
  uint32_t count = 0;
};

using ByteSet = std::bitset<256>;

/// The size an instruction counts for the program size limit: the operation and a 16-bit link
/// (three bytes), followed by the bytes of a literal or the 32-byte bitmap of a set.
inline uint32_t encodedSize(const Instruction& in) {
  uint32_t size = 3;
  if (in.op == Op::Literal) size += in.count;
  if (in.op == Op::Set || (in.op == Op::Repeat && in.unit == Op::Set)) size += 32;
  return size;
}

}  // namespace zv::regex_detail
