#pragma once
// Builds .prt bytes record by record for the tests.

#include <cstdint>
#include <string>
#include <string_view>

namespace zv::test {

class PrtBytes {
 public:
  PrtBytes& u16(std::uint32_t v) {
    bytes_.push_back(static_cast<char>(v & 0xFF));
    bytes_.push_back(static_cast<char>((v >> 8) & 0xFF));
    return *this;
  }
  PrtBytes& u32(std::uint32_t v) { return u16(v & 0xFFFF).u16(v >> 16); }
  PrtBytes& str(std::string_view s) {
    u16(static_cast<std::uint32_t>(s.size()));
    bytes_.append(s);
    return *this;
  }
  PrtBytes& raw(std::string_view s) {
    bytes_.append(s);
    return *this;
  }
  /// Pcode 0 with the magic and pcode 1 with version 3.
  PrtBytes& head() { return u16(0).u32(0x56239921).u16(1).u16(3); }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace zv::test
