#pragma once
// Reading and writing single bits and small bit fields of the 32-bit flag words of the records.

#include <cstdint>

namespace zv::bits {

constexpr bool test(std::uint32_t word, unsigned bit) {
  return ((word >> bit) & 1u) != 0;
}

constexpr void assign(std::uint32_t& word, unsigned bit, bool on) {
  if (on) {
    word |= 1u << bit;
  } else {
    word &= ~(1u << bit);
  }
}

constexpr std::uint32_t fieldMask(unsigned width) {
  return (1u << width) - 1u;
}

/// The `width` bits starting at `shift`.
constexpr std::uint32_t field(std::uint32_t word, unsigned shift, unsigned width) {
  return (word >> shift) & fieldMask(width);
}

/// Stores the low `width` bits of `value` at `shift`; higher bits of `value` are dropped.
constexpr void setField(std::uint32_t& word, unsigned shift, unsigned width, std::uint32_t value) {
  std::uint32_t mask = fieldMask(width) << shift;
  word = (word & ~mask) | ((value << shift) & mask);
}

}  // namespace zv::bits
