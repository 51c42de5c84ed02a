#include "ui/text_codec.h"

#include <QFile>
#include <array>

namespace zv::ui {

namespace {

// The characters of bytes 0x80 to 0x9F; the undefined ones keep their own number.
constexpr std::array<char16_t, 32> kHighControlRange = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 0x80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 0x88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 0x90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 0x98
};

char16_t characterOfByte(unsigned char byte) {
  if (byte >= 0x80 && byte <= 0x9F) return kHighControlRange[byte - 0x80];
  return byte;
}

char byteOfCharacter(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
    return static_cast<char>(character);
  }
  for (size_t i = 0; i < kHighControlRange.size(); ++i) {
    if (kHighControlRange[i] == character) return static_cast<char>(0x80 + i);
  }
  return '?';
}

}  // namespace

QString fromSystemText(std::string_view text) {
  QString result;
  result.reserve(static_cast<qsizetype>(text.size()));
  for (char c : text)
    result.append(QChar(characterOfByte(static_cast<unsigned char>(c))));
  return result;
}

std::string toSystemText(const QString& text) {
  std::string result;
  result.reserve(static_cast<size_t>(text.size()));
  // Whole code points, so that a character outside the basic plane gives one '?', not two.
  for (char32_t character : text.toUcs4())
    result += byteOfCharacter(character);
  return result;
}

QString fromNativePath(std::string_view path) {
  return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}

std::string toNativePath(const QString& path) {
  QByteArray bytes = QFile::encodeName(path);
  return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

}  // namespace zv::ui
