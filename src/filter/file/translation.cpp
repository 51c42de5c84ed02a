#include "filter/file/translation.h"

namespace zv {

namespace {

unsigned char unescaped(unsigned char c) {
  switch (c) {
    case 'b':
      return 8;
    case 't':
      return 9;
    case 'n':
      return 10;
    case 'r':
      return 13;
    default:
      return c;
  }
}

}  // namespace

std::optional<FilterTranslation> parseTranslation(std::string_view arguments) {
  std::size_t pos = 0;
  if (pos >= arguments.size()) return std::nullopt;
  FilterTranslation entry;
  unsigned char c = static_cast<unsigned char>(arguments[pos++]);
  if (c == '\\' && pos < arguments.size()) {
    c = unescaped(static_cast<unsigned char>(arguments[pos++]));
  } else if (c < 32 && c != '\t') {
    return std::nullopt;
  }
  entry.code = c;
  if (pos < arguments.size() && (arguments[pos] == ' ' || arguments[pos] == '\t')) ++pos;
  while (pos < arguments.size() && entry.text.size() < kMaxTranslationLength) {
    unsigned char r = static_cast<unsigned char>(arguments[pos]);
    if (r < 32) break;
    ++pos;
    if (r == '\\' && pos < arguments.size() && static_cast<unsigned char>(arguments[pos]) >= 32) {
      r = unescaped(static_cast<unsigned char>(arguments[pos++]));
    }
    entry.text += static_cast<char>(r);
  }
  return entry;
}

std::string escapeTranslationText(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case 8:
        out += "\\b";
        break;
      case 9:
        out += "\\t";
        break;
      case 10:
        out += "\\n";
        break;
      case 13:
        out += "\\r";
        break;
      case '\\':
        out += "\\\\";
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace zv
