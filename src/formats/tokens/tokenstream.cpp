#include "formats/tokens/tokenstream.h"

#include "core/messages.h"
#include "core/strfmt.h"

namespace zv {

TokenLineState& tokenLineState() {
  static TokenLineState state;
  return state;
}

std::string dateString(const LocalTime& time) {
  if (!time.valid) return "01/01/1997 01:00:00";
  return strprintf("%02d/%02d/%04d %02d:%02d:%02d", time.month, time.day, time.year, time.hour,
                   time.minute, time.second);
}

void TokenStream::setStream(ByteStream* stream) {
  ownedStream_.reset();
  borrowedStream_ = stream;
  bufferPos_ = 0;
  bufferCount_ = 0;
}

void TokenStream::setStream(std::unique_ptr<ByteStream> stream) {
  ownedStream_ = std::move(stream);
  borrowedStream_ = nullptr;
  bufferPos_ = 0;
  bufferCount_ = 0;
}

void TokenStream::closeStream() {
  borrowedStream_ = nullptr;
  ownedStream_.reset();
  bufferPos_ = 0;
  bufferCount_ = 0;
}

bool TokenStream::rewind() {
  bufferPos_ = 0;
  bufferCount_ = 0;
  return hasStream() && stream()->rewind();
}

int TokenStream::fillBuffer() {
  bufferPos_ = 0;
  bufferCount_ = 0;
  ByteStream* source = stream();
  if (source == nullptr) return kTokenFailed;
  long got = source->read(buffer_.data(), static_cast<long>(kTokenBufferSize));
  if (got <= 0) return kEndOfFile;
  bufferCount_ = static_cast<int32_t>(got);
  return kTokenOk;
}

int TokenStream::readByte() {
  if (bufferPos_ >= static_cast<uint32_t>(bufferCount_)) {
    int result = fillBuffer();
    if (result != kTokenOk) return result;
  }
  auto byte = static_cast<unsigned char>(buffer_[bufferPos_++]);
  if (byte == '\r') ++lineCount_;
  return byte;
}

// The next character before escape processing: from the character source when one is set,
// otherwise the next raw byte. kNothing is skipped here; any failure reads as the end.
int TokenStream::sourceChar() {
  for (;;) {
    int c = charSource_ != nullptr ? charSource_->nextChar() : readByte();
    if (c == kNothing) continue;
    if (c < 0 || c > 255) return kEndOfFile;
    return c;
  }
}

void TokenStream::noteLineEnd() {
  TokenLineState& state = tokenLineState();
  if (state.macroInput) ++state.lineNumber;
}

int TokenStream::readChar() {
  for (;;) {
    int c = sourceChar();
    switch (c) {
      case '\n':
        noteLineEnd();
        return kEndOfLine;
      case '\r':
        sourceChar();  // the byte after a carriage return is dropped, whatever it is
        noteLineEnd();
        return kEndOfLine;
      case '"':
        return kQuote;
      case '\\': {
        int next = sourceChar();
        if (next == '\n') {
          noteLineEnd();
          continue;  // a continuation line
        }
        if (next == '\r') {
          sourceChar();
          noteLineEnd();
          continue;
        }
        if (next == 'n') return '\n';
        if (next == 'r') return '\r';
        return next;  // the byte itself (also kEndOfFile)
      }
      default:
        return c;
    }
  }
}

int TokenStream::skip() {
  if (binary_) showError("Skipping in binary file!");
  for (;;) {
    int c = readChar();
    if (c == ' ' || c == '\t' || c == kEndOfLine) continue;
    if (c == '#') {
      do {
        c = readChar();
      } while (c != kEndOfLine && c != kEndOfFile);
      if (c == kEndOfFile) return c;
      continue;
    }
    return c;
  }
}

}  // namespace zv
