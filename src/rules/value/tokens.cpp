#include "rules/value/tokens.h"

#include <cctype>

#include "core/text.h"

namespace zv {

namespace {

bool isWordByte(char c) {
  const auto u = static_cast<unsigned char>(c);
  return std::isalnum(u) != 0 || c == '_';
}

bool matchesAt(std::string_view text, std::size_t at, std::string_view word) {
  if (at + word.size() > text.size()) return false;
  if (!equalsIgnoringCase(text.substr(at, word.size()), word)) return false;
  if (at > 0) {
    const char before = text[at - 1];
    if (isWordByte(before)) return false;
    if (isWordByte(word.front()) && (before == '&' || before == '~')) return false;
  }
  const std::size_t end = at + word.size();
  return end >= text.size() || !isWordByte(text[end]);
}

}  // namespace

std::string replaceWord(std::string_view text, std::string_view word,
                        std::string_view replacement) {
  std::string out;
  if (word.empty()) return std::string(text);
  for (std::size_t i = 0; i < text.size();) {
    if (matchesAt(text, i, word)) {
      out += replacement;
      i += word.size();
    } else {
      out += text[i++];
    }
  }
  return out;
}

std::string enclosed(std::string_view open, std::string_view text, std::string_view close) {
  // Built by appending: GCC 12 warns falsely (-Wrestrict) on a literal + string concatenation.
  std::string out(open);
  out.append(text);
  out.append(close);
  return out;
}

bool containsWord(std::string_view text, std::string_view word) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (matchesAt(text, i, word)) return true;
  }
  return false;
}

}  // namespace zv
