#include "core/text.h"

#include <array>

#include "core/messages.h"

namespace zv {

namespace {

struct CaseTable {
  std::array<unsigned char, 256> upper{};
  std::array<unsigned char, 256> lower{};
  std::array<bool, 256> letter{};

  CaseTable() {
    for (int i = 0; i < 256; ++i) {
      upper[i] = lower[i] = static_cast<unsigned char>(i);
    }
    auto pair = [this](int up, int low) {
      upper[low] = static_cast<unsigned char>(up);
      lower[up] = static_cast<unsigned char>(low);
      letter[up] = letter[low] = true;
    };
    for (int c = 'A'; c <= 'Z'; ++c)
      pair(c, c + 32);
    // Accented capitals 0xC0-0xDE pair with 0xE0-0xFE; 0xD7 and 0xF7 are the signs x and /.
    for (int c = 0xC0; c <= 0xDE; ++c) {
      if (c != 0xD7) pair(c, c + 32);
    }
    pair(0x8A, 0x9A);  // S caron
    pair(0x8C, 0x9C);  // OE
    pair(0x8E, 0x9E);  // Z caron
    pair(0x9F, 0xFF);  // Y diaeresis
    for (int c : {0x83, 0xAA, 0xB5, 0xBA, 0xDF})
      letter[c] = true;  // f hook, ordinals, mu, sharp s
  }
};

const CaseTable& table() {
  static const CaseTable instance;
  return instance;
}

}  // namespace

unsigned char toUpperChar(unsigned char c) {
  return table().upper[c];
}
unsigned char toLowerChar(unsigned char c) {
  return table().lower[c];
}
bool isLetterChar(unsigned char c) {
  return table().letter[c];
}

std::string toUpper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    c = static_cast<char>(toUpperChar(static_cast<unsigned char>(c)));
  return out;
}

std::string toLower(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    c = static_cast<char>(toLowerChar(static_cast<unsigned char>(c)));
  return out;
}

int compareIgnoringCase(std::string_view a, std::string_view b) {
  const auto& lower = table().lower;
  size_t n = a.size() < b.size() ? a.size() : b.size();
  for (size_t i = 0; i < n; ++i) {
    int ca = lower[static_cast<unsigned char>(a[i])];
    int cb = lower[static_cast<unsigned char>(b[i])];
    if (ca != cb) return ca - cb;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && compareIgnoringCase(a, b) == 0;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && equalsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

bool endsWithIgnoringCase(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() &&
         equalsIgnoringCase(text.substr(text.size() - suffix.size()), suffix);
}

size_t findIgnoringCase(std::string_view haystack, std::string_view needle, size_t from) {
  if (needle.empty()) return from <= haystack.size() ? from : std::string_view::npos;
  if (haystack.size() < needle.size()) return std::string_view::npos;
  for (size_t i = from; i + needle.size() <= haystack.size(); ++i) {
    if (equalsIgnoringCase(haystack.substr(i, needle.size()), needle)) return i;
  }
  return std::string_view::npos;
}

std::string trim(std::string_view text) {
  size_t begin = 0;
  size_t end = text.size();
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (begin < end && blank(text[begin]))
    ++begin;
  while (end > begin && blank(text[end - 1]))
    --end;
  return std::string(text.substr(begin, end - begin));
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (;;) {
    size_t at = text.find(separator, start);
    if (at == std::string_view::npos) {
      parts.emplace_back(text.substr(start));
      return parts;
    }
    parts.emplace_back(text.substr(start, at - start));
    start = at + 1;
  }
}

std::string truncateToCapacity(std::string_view text, size_t capacity) {
  if (capacity == 0) return std::string();
  return std::string(text.substr(0, capacity - 1));
}

int replaceToken(std::string& text, size_t capacity, std::string_view from, std::string_view to) {
  if (from.empty()) return 0;
  std::string result;
  int count = 0;
  size_t pos = 0;
  for (;;) {
    size_t at = findIgnoringCase(text, from, pos);
    if (at == std::string::npos) break;
    result.append(text, pos, at - pos);
    result.append(to);
    pos = at + from.size();
    ++count;
  }
  result.append(text, pos, std::string::npos);
  if (result.size() + 1 > capacity) {
    showError("Error in replaceToken -- temporary string too small");
    return -1;
  }
  text = std::move(result);
  return count;
}

std::string replaceAll(std::string text, std::string_view from, std::string_view to) {
  if (from.empty()) return text;
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

bool wildcardMatch(std::string_view pattern, std::string_view name) {
  // Iterative: remember the last "*" and how far it has swallowed, and widen it on a mismatch.
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t star = std::string_view::npos;
  std::size_t resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() &&
        (pattern[p] == '?' || toLowerChar(static_cast<unsigned char>(pattern[p])) ==
                                  toLowerChar(static_cast<unsigned char>(name[n])))) {
      ++p;
      ++n;
    } else if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}

}  // namespace zv
