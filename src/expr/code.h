#pragma once
// Compiled code: a byte buffer that grows as the compiler writes, limited to 65000 bytes, and the
// readers the evaluator and the reference walkers use.

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/record_types.h"

namespace zv {

/// The largest compiled code.
inline constexpr std::size_t kMaxCodeLength = 65000;

using Code = std::vector<std::uint8_t>;

/// Appends to compiled code; every write that would pass the limit fails (error -3).
class CodeWriter {
 public:
  explicit CodeWriter(Code& code) : code_(code) {}

  std::size_t length() const { return code_.size(); }
  bool empty() const { return code_.empty(); }

  bool byte(std::uint8_t value) { return bytes(&value, 1); }
  bool int32(std::int32_t value) { return bytes(&value, sizeof value); }
  bool real(double value) { return bytes(&value, sizeof value); }
  bool symbol(Symbol* value) { return bytes(&value, sizeof value); }
  /// A text and its terminating NUL; a text holding a NUL is cut there.
  bool text(std::string_view value);
  /// Overwrites a 32-bit value written earlier at `at` (a jump's target).
  void patchInt32(std::size_t at, std::int32_t value) {
    std::memcpy(code_.data() + at, &value, sizeof value);
  }

 private:
  bool bytes(const void* data, std::size_t count);
  Code& code_;
};

inline std::int32_t readInt32(const std::uint8_t* at) {
  std::int32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}
inline double readReal(const std::uint8_t* at) {
  double value;
  std::memcpy(&value, at, sizeof value);
  return value;
}
inline Symbol* readSymbol(const std::uint8_t* at) {
  Symbol* value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

/// The position of the opcode after the one at `pc`; -1 when the opcode is outside 0 to 58 or
/// its operands run past the end.
long nextOpcode(const std::uint8_t* code, std::size_t length, std::size_t pc);

}  // namespace zv
