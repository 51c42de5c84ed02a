// The token writers, in both forms.

#include <algorithm>
#include <cstring>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

namespace {

// Whether the text form must put a string in quotes: it holds a character that would end or
// comment out an unquoted word, it is empty, or it begins with `$` (which the macro processor of
// data sheets would take as its own).
bool needsQuotes(std::string_view text) {
  if (text.empty() || text.front() == '$') return true;
  return text.find_first_of(std::string_view(" \t\n\r\"#", 6)) != std::string_view::npos;
}

}  // namespace

void TokenStream::beginWrite() {
  column_ = 0;
  bufferPos_ = 0;
  bufferCount_ = static_cast<int32_t>(kTokenBufferSize);
}

int TokenStream::flush() {
  ByteStream* sink = stream();
  if (sink == nullptr) return kWriteNoStream;
  if (bufferPos_ == 0) return kWriteOk;
  const long pending = static_cast<long>(bufferPos_);
  bufferPos_ = 0;
  long written = sink->write(buffer_.data(), pending);
  if (written < 0) return kWriteError;
  if (written < pending) return kWriteDiskFull;
  return kWriteOk;
}

int TokenStream::putByte(char byte) {
  if (bufferPos_ >= kTokenBufferSize) {
    int result = flush();
    if (result != kWriteOk) return result;
  }
  buffer_[bufferPos_++] = byte;
  if (!binary_) {
    ++column_;
    if (byte == '\n') ++lineCount_;
  }
  return kWriteOk;
}

int TokenStream::putBytes(std::string_view bytes) {
  if (!binary_) {
    for (char byte : bytes) {
      int result = putByte(byte);
      if (result != kWriteOk) return result;
    }
    return kWriteOk;
  }
  while (!bytes.empty()) {
    if (bufferPos_ >= kTokenBufferSize) {
      int result = flush();
      if (result != kWriteOk) return result;
    }
    size_t take = std::min(bytes.size(), kTokenBufferSize - bufferPos_);
    std::memcpy(buffer_.data() + bufferPos_, bytes.data(), take);
    bufferPos_ += static_cast<uint32_t>(take);
    bytes.remove_prefix(take);
  }
  return kWriteOk;
}

namespace {

std::string littleEndian(uint64_t bits, int bytes) {
  std::string out(static_cast<size_t>(bytes), '\0');
  for (int i = 0; i < bytes; ++i)
    out[static_cast<size_t>(i)] = static_cast<char>(bits >> (8 * i));
  return out;
}

}  // namespace

int TokenStream::putTextString(std::string_view text) {
  const bool quoted = needsQuotes(text);
  std::string word;
  word.reserve(text.size() + 8);
  if (quoted) word.push_back('"');
  for (char c : text) {
    switch (c) {
      case '\n':
        // An escape that keeps the line feed in the data, then a continuation that breaks the
        // line in the file.
        word.append("\\n\\\r\n");
        break;
      case '\r':
        word.append("\\r");
        break;
      case '"':
        word.append("\\\"");
        break;
      case '\\':
        word.append("\\\\");
        break;
      default:
        word.push_back(c);
    }
  }
  if (quoted) word.push_back('"');
  int result = putBytes(word);
  if (result != kWriteOk) return result;
  if (noWrap_ || column_ < kWrapColumn) return putByte(' ');
  return writeLineBreak();
}

int TokenStream::writeString(std::string_view text, bool longLength) {
  if (!binary_) return putTextString(text);
  if (longLength) {
    int result = putBytes(littleEndian(text.size(), 4));
    return result != kWriteOk ? result : putBytes(text);
  }
  if (text.size() > kMaxBinaryString) {
    showError("String too long to write out");
    return kWriteStringTooLong;
  }
  int result = putBytes(littleEndian(text.size(), 2));
  return result != kWriteOk ? result : putBytes(text);
}

int TokenStream::writeInt(int16_t value) {
  if (binary_) return putBytes(littleEndian(static_cast<uint16_t>(value), 2));
  return putTextString(strprintf("%d", static_cast<int>(value)));
}

int TokenStream::writeLong(int32_t value) {
  if (binary_) return putBytes(littleEndian(static_cast<uint32_t>(value), 4));
  return putTextString(strprintf("%ld", static_cast<long>(value)));
}

int TokenStream::writeReal(double value) {
  if (binary_) {
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return putBytes(littleEndian(bits, 8));
  }
  return putTextString(formatRealForFile(value));
}

int TokenStream::writeKeyword(int id) {
  std::string_view name = keywordName(id);
  if (name.empty()) return kWriteUnknownKeyword;
  if (binary_) return putBytes(littleEndian(static_cast<uint16_t>(id | 0x8000), 2));
  return putTextString(name);
}

int TokenStream::writeBytes(std::string_view bytes) {
  if (binary_) return putBytes(bytes);
  int result = flush();
  if (result != kWriteOk) return result;
  std::string framed;
  framed.reserve(bytes.size() + 3);
  framed.push_back('"');
  framed.append(bytes);
  framed.append("\" ");
  const long count = static_cast<long>(framed.size());
  long written = stream()->write(framed.data(), count);
  if (written < 0) return kWriteError;
  if (written < count) return kWriteDiskFull;
  return kWriteOk;
}

int TokenStream::writeLineBreak() {
  if (binary_) return kWriteOk;
  int result = putByte('\r');
  if (result == kWriteOk) result = putByte('\n');
  column_ = 0;
  return result;
}

int TokenStream::writeKeywordInt(int id, int16_t value) {
  int result = writeKeyword(id);
  return result != kWriteOk ? result : writeInt(value);
}

int TokenStream::writeKeywordLong(int id, int32_t value) {
  int result = writeKeyword(id);
  return result != kWriteOk ? result : writeLong(value);
}

int TokenStream::writeKeywordReal(int id, double value) {
  int result = writeKeyword(id);
  return result != kWriteOk ? result : writeReal(value);
}

int TokenStream::writeKeywordString(int id, std::string_view text) {
  if (text.empty()) return kWriteOk;
  int result = writeKeyword(id);
  return result != kWriteOk ? result : writeString(text);
}

int TokenStream::writeKeywordBlock(int id, const std::optional<std::string>& block) {
  if (!block) return kWriteOk;
  int result = writeKeyword(id);
  return result != kWriteOk ? result : writeString(*block, id == kRichtext);
}

}  // namespace zv
