#include "core/codepage.h"

#include <array>
#include <cstdint>
#include <optional>

namespace zv {

namespace {

// Code points of the bytes 0x80 to 0x9F; 0 marks the five undefined ones (kept as C1 controls).
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char32_t codePointOf(unsigned char byte) {
  if (byte >= 0x80 && byte <= 0x9F) {
    char32_t mapped = kHighControls[byte - 0x80];
    return mapped != 0 ? mapped : byte;
  }
  return byte;
}

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

char byteFor(char32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
  for (size_t i = 0; i < kHighControls.size(); ++i) {
    char32_t mapped = kHighControls[i] != 0 ? kHighControls[i] : static_cast<char32_t>(0x80 + i);
    if (mapped == cp) return static_cast<char>(0x80 + i);
  }
  return '?';
}

/// Decodes UTF-8; nullopt if the text isn't well-formed.
std::optional<std::u32string> decodeUtf8(std::string_view text) {
  std::u32string out;
  for (size_t i = 0; i < text.size();) {
    auto b = static_cast<unsigned char>(text[i]);
    int extra = b < 0x80             ? 0
                : (b & 0xE0) == 0xC0 ? 1
                : (b & 0xF0) == 0xE0 ? 2
                : (b & 0xF8) == 0xF0 ? 3
                                     : -1;
    if (extra < 0) return std::nullopt;
    char32_t cp = extra == 0 ? b : b & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
      if (i + static_cast<size_t>(k) >= text.size()) return std::nullopt;
      auto c = static_cast<unsigned char>(text[i + static_cast<size_t>(k)]);
      if ((c & 0xC0) != 0x80) return std::nullopt;
      cp = (cp << 6) | (c & 0x3F);
    }
    // Overlong forms would let two texts stand for one.
    if ((extra == 1 && cp < 0x80) || (extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000)) {
      return std::nullopt;
    }
    out += cp;
    i += static_cast<size_t>(extra) + 1;
  }
  return out;
}

}  // namespace

std::string windows1252ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text)
    appendUtf8(out, codePointOf(static_cast<unsigned char>(c)));
  return out;
}

std::string utf8ToWindows1252(std::string_view text) {
  auto decoded = decodeUtf8(text);
  if (!decoded) return std::string(text);
  std::string out;
  out.reserve(decoded->size());
  for (char32_t cp : *decoded)
    out += byteFor(cp);
  return out;
}

}  // namespace zv
