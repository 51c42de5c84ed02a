// The token readers, in both forms.

#include <algorithm>
#include <cstring>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

namespace {

// Capacity of the word that holds a number in the text form.
constexpr size_t kNumberWordCapacity = 256;
constexpr size_t kUnlimited = std::numeric_limits<size_t>::max();

bool isWordEnd(int c) {
  return c == ' ' || c == '\t' || c == kEndOfLine || c == kEndOfFile;
}

}  // namespace

int TokenStream::openStream(uint32_t magic) {
  binary_ = true;
  realSize_ = 4;
  intSize_ = 2;
  lineCount_ = 0;
  lastChar_ = 0;
  bufferPos_ = 0;
  bufferCount_ = 0;
  ByteStream* source = stream();
  if (source == nullptr) return kTokenFailed;
  // Gather at least four bytes, as a pipe may deliver fewer in one read, so that going back to the
  // first byte never needs a seek.
  while (bufferCount_ < 4) {
    long got = source->read(buffer_.data() + bufferCount_,
                            static_cast<long>(kTokenBufferSize) - bufferCount_);
    if (got <= 0) break;
    bufferCount_ += static_cast<int32_t>(got);
  }
  uint32_t head = 0;
  if (bufferCount_ >= 4) {
    for (int i = 3; i >= 0; --i)
      head = head << 8 | static_cast<unsigned char>(buffer_[i]);
  }
  if (bufferCount_ >= 4 && head == magic) {
    bufferPos_ = 4;
  } else {
    binary_ = false;
  }
  return kTokenOk;
}

// Copies `count` raw bytes from the stream into `target` (when not null), refilling the buffer.
int TokenStream::readRawBytes(char* target, size_t count) {
  while (count > 0) {
    if (bufferPos_ >= static_cast<uint32_t>(bufferCount_)) {
      int result = fillBuffer();
      if (result != kTokenOk) return result == kTokenFailed ? kTokenFailed : kTokenEndOfFile;
    }
    size_t take = std::min(count, static_cast<size_t>(bufferCount_) - bufferPos_);
    const char* from = buffer_.data() + bufferPos_;
    lineCount_ += static_cast<int>(std::count(from, from + take, '\r'));
    if (target != nullptr) {
      std::memcpy(target, from, take);
      target += take;
    }
    bufferPos_ += static_cast<uint32_t>(take);
    count -= take;
  }
  return kTokenOk;
}

namespace {

template <typename T>
int readLittleEndian(TokenStream& stream, T& value, int bytes) {
  uint64_t bits = 0;
  for (int i = 0; i < bytes; ++i) {
    int byte = stream.readByte();
    if (byte < 0) return byte == kTokenFailed ? kTokenFailed : kTokenEndOfFile;
    bits |= static_cast<uint64_t>(byte) << (8 * i);
  }
  value = static_cast<T>(bits);
  return kTokenOk;
}

}  // namespace

int TokenStream::readTextWord(std::string& out, size_t capacity) {
  out.clear();
  if (!hasStream() && charSource_ == nullptr) return kTokenFailed;
  const size_t limit = capacity > 0 ? capacity - 1 : 0;
  int c = skip();
  if (c == kEndOfFile) {
    lastChar_ = c;
    return kTokenEndOfFile;
  }
  if (c == kQuote) {
    for (;;) {
      c = readChar();
      if (c == kQuote) break;
      if (c == kEndOfLine || c == kEndOfFile) {
        lastChar_ = c;
        out.clear();
        showError(
            strprintf("Unterminated string on line %d of %s", tokenLineState().lineNumber, name_));
        return kTokenFailed;
      }
      if (out.size() >= limit) break;  // the word is full: this character is lost
      out.push_back(static_cast<char>(c));
    }
    lastChar_ = c;
    return kTokenOk;
  }
  for (;;) {
    if (isWordEnd(c)) break;
    if (c == '#') {
      int end;
      do {
        end = readChar();
      } while (end != kEndOfLine && end != kEndOfFile);
      break;
    }
    if (out.size() >= limit) break;  // the word is full: this character is lost
    out.push_back(c == kQuote ? '"' : static_cast<char>(c));
    c = readChar();
  }
  lastChar_ = c;
  return kTokenOk;
}

// A binary string: a 2-byte length (a keyword there gives its name) or a 32-bit one, then the
// bytes. What doesn't fit in capacity - 1 is skipped; a length equal to the capacity counts as too
// long, so the buffer never receives more than capacity - 1 bytes.
int TokenStream::readBinaryString(std::string& out, size_t capacity, bool longLength) {
  out.clear();
  uint32_t length = 0;
  if (longLength) {
    int result = readLittleEndian(*this, length, 4);
    if (result != kTokenOk) return result;
  } else {
    uint16_t head = 0;
    int result = readLittleEndian(*this, head, 2);
    if (result != kTokenOk) return result;
    if (head & 0x8000) {
      out = std::string(keywordName(head & 0x7FFF));
      if (capacity != kUnlimited) out = out.substr(0, capacity > 0 ? capacity - 1 : 0);
      return kTokenOk;
    }
    length = head;
  }
  return readStringBytes(out, capacity, length);
}

int TokenStream::readStringBytes(std::string& out, size_t capacity, uint32_t length) {
  out.clear();
  size_t keep = length < capacity ? length : (capacity > 0 ? capacity - 1 : 0);
  // Grow as the bytes arrive, so that a damaged length can't ask for more memory than the input.
  constexpr size_t kPiece = 64 * 1024;
  for (size_t done = 0; done < keep;) {
    size_t piece = std::min(kPiece, keep - done);
    out.resize(done + piece);
    int result = readRawBytes(out.data() + done, piece);
    if (result != kTokenOk) {
      out.clear();
      return result;
    }
    done += piece;
  }
  int result = readRawBytes(nullptr, length - keep);
  if (result != kTokenOk) out.clear();
  return result;
}

int TokenStream::readInt(int16_t& value) {
  if (binary_) return readLittleEndian(*this, value, 2);
  std::string word;
  int result = readTextWord(word, kNumberWordCapacity);
  if (result != kTokenOk) return result;
  value = static_cast<int16_t>(leadingInteger(word));
  return kTokenOk;
}

int TokenStream::readLong(int32_t& value) {
  if (binary_) return readLittleEndian(*this, value, 4);
  std::string word;
  int result = readTextWord(word, kNumberWordCapacity);
  if (result != kTokenOk) return result;
  value = static_cast<int32_t>(leadingInteger(word));
  return kTokenOk;
}

int TokenStream::readReal(double& value) {
  if (binary_) {
    if (realSize_ == 8) {
      uint64_t bits = 0;
      int result = readLittleEndian(*this, bits, 8);
      if (result == kTokenOk) std::memcpy(&value, &bits, sizeof value);
      return result;
    }
    uint32_t bits = 0;
    int result = readLittleEndian(*this, bits, 4);
    if (result == kTokenOk) {
      float narrow = 0;
      std::memcpy(&narrow, &bits, sizeof narrow);
      value = narrow;
    }
    return result;
  }
  std::string word;
  int result = readTextWord(word, kNumberWordCapacity);
  if (result != kTokenOk) return result;
  value = parseReal(word);
  return kTokenOk;
}

int TokenStream::readCoord(int16_t& value, int filePixels, int screenPixels) {
  int result = readInt(value);
  if (result != kTokenOk) return result;
  if (filePixels == 0) filePixels = 96;
  if (filePixels == screenPixels || static_cast<uint16_t>(value) > 65534) return kTokenOk;
  double scaled = static_cast<double>(value) * screenPixels / filePixels + 0.5;
  value = static_cast<int16_t>(static_cast<int>(scaled));
  return kTokenOk;
}

int TokenStream::readWord(std::string& out, size_t capacity) {
  if (binary_) return readBinaryString(out, capacity, false);
  return readTextWord(out, capacity);
}

int TokenStream::readKeyword(std::string& buffer, size_t capacity) {
  if (binary_) {
    buffer.clear();
    uint16_t head = 0;
    int result = readLittleEndian(*this, head, 2);
    if (result != kTokenOk) return result;
    if (head & 0x8000) {
      int id = head & 0x7FFF;
      buffer = std::string(keywordName(id)).substr(0, capacity > 0 ? capacity - 1 : 0);
      return id > 0 ? id : kNotKeyword;
    }
    return readStringBytes(buffer, capacity, head);
  }
  int result = readTextWord(buffer, capacity);
  if (result != kTokenOk) return result;
  int id = keywordId(buffer);
  return id > 0 ? id : kNotKeyword;
}

bool TokenStream::readText(std::string& out) {
  if (binary_) return readBinaryString(out, kUnlimited, false) == kTokenOk;
  return readTextWord(out, kTextWordLimit + 1) == kTokenOk;
}

std::optional<std::string> TokenStream::readBlock16() {
  std::string block;
  int result = binary_ ? readBinaryString(block, kUnlimited, false)
                       : readTextWord(block, kBlock16TextLimit + 1);
  if (result != kTokenOk) return std::nullopt;
  block.shrink_to_fit();
  return block;
}

std::optional<std::string> TokenStream::readBlock32() {
  std::string block;
  int result =
      binary_ ? readBinaryString(block, kUnlimited, true) : readTextWord(block, kUnlimited);
  if (result != kTokenOk) return std::nullopt;
  block.shrink_to_fit();
  return block;
}

int TokenStream::readBytes(std::string& out, size_t count) {
  out.clear();
  if (binary_) {
    if (count > std::numeric_limits<uint32_t>::max()) return -1;
    return readStringBytes(out, kUnlimited, static_cast<uint32_t>(count)) == kTokenOk ? kTokenOk
                                                                                      : -1;
  }
  for (;;) {
    int c = readChar();
    if (c == kQuote) break;
    if (c == kEndOfFile) return -1;
  }
  std::string bytes;
  for (size_t done = 0; done < count; ++done) {
    int c = sourceChar();
    if (c == kEndOfFile) return -1;
    bytes.push_back(static_cast<char>(c));
  }
  if (sourceChar() != '"') return -1;
  out = std::move(bytes);
  return kTokenOk;
}

}  // namespace zv
