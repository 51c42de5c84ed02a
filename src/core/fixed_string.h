#pragma once
// A text field of fixed capacity: it keeps at most `Capacity - 1` bytes, like a nul-terminated
// buffer of that size, and silently drops the rest whenever it is assigned.

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "core/text.h"

namespace zv {

template <std::size_t Capacity>
class FixedString {
  static_assert(Capacity > 0);

 public:
  static constexpr std::size_t kCapacity = Capacity;
  static constexpr std::size_t kMaxLength = Capacity - 1;

  FixedString() = default;
  // Implicit on purpose: `list.name = token;` truncates as the record's buffer would.
  FixedString(std::string_view text) : text_(truncateToCapacity(text, Capacity)) {}
  FixedString(const std::string& text) : FixedString(std::string_view(text)) {}
  FixedString(const char* text) : FixedString(std::string_view(text)) {}

  const std::string& str() const { return text_; }
  const char* c_str() const { return text_.c_str(); }
  std::size_t size() const { return text_.size(); }
  bool empty() const { return text_.empty(); }
  void clear() { text_.clear(); }

  operator const std::string&() const { return text_; }
  operator std::string_view() const { return text_; }

  friend bool operator==(const FixedString& a, std::string_view b) { return a.text_ == b; }
  friend std::ostream& operator<<(std::ostream& out, const FixedString& s) {
    return out << s.text_;
  }

 private:
  std::string text_;
};

}  // namespace zv
