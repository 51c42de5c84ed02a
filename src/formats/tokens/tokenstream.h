#pragma once
// The token stream: reader and writer of the token form shared by character sheets, templates and
// data sheets. One stream of keywords, strings and numbers exists in two forms:
//  - binary: little-endian numbers, keywords as id | 0x8000, strings with a 2-byte length;
//  - text: words separated by blanks and line ends, `#` comments, `"quoted"` words with escapes.
// The stream knows nothing of what the tokens mean; the sheet and data sheet grammars do.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/host.h"

namespace zv {

// Character classes returned by the character reader (besides the byte values 0 to 255).
inline constexpr int kEndOfFile = -1;
inline constexpr int kEndOfLine = -2;
inline constexpr int kNothing = -3;  ///< from a character source: skip it and read on
inline constexpr int kQuote = -5;    ///< an unescaped double quote

// Results of the token readers. A keyword reader returns the positive keyword id instead.
inline constexpr int kTokenOk = 0;
inline constexpr int kTokenEndOfFile = -1;
inline constexpr int kNotKeyword = -6;   ///< a text word that isn't a keyword; its text is kept
inline constexpr int kTokenFailed = -8;  ///< the reason has been shown already; unwind silently

// Results of the writers.
inline constexpr int kWriteOk = 0;
inline constexpr int kWriteError = -1;
inline constexpr int kWriteDiskFull = -2;  ///< fewer bytes written than asked
inline constexpr int kWriteUnknownKeyword = -3;
inline constexpr int kWriteStringTooLong = -4;
inline constexpr int kWriteNoStream = -8;

/// The first four bytes of a binary token file: 37 57 03 05.
inline constexpr uint32_t kTokenFileMagic = 84105015;

inline constexpr size_t kTokenBufferSize = 512;
/// Longest text that readText takes from the text form.
inline constexpr size_t kTextWordLimit = 4999;
/// Longest notes block that readBlock16 takes from the text form.
inline constexpr size_t kBlock16TextLimit = 32001;
/// Longest string of the binary form with a 2-byte length.
inline constexpr size_t kMaxBinaryString = 32767;
/// The text writer breaks the line after a word that ends at or beyond this column.
inline constexpr int kWrapColumn = 66;

/// A source or sink of raw bytes: a file, a pipe or a block of memory.
class ByteStream {
 public:
  virtual ~ByteStream() = default;
  /// Reads up to `count` bytes; the number read, 0 at the end, negative on error.
  virtual long read(char* buffer, long count) = 0;
  /// Writes up to `count` bytes; the number written (fewer when the disk is full), negative on
  /// error.
  virtual long write(const char* buffer, long count) = 0;
  /// Goes back to the first byte for reading again; false when the stream can't.
  virtual bool rewind() { return false; }
};

/// A file on disk, opened for reading or for writing (created or truncated).
class FileByteStream : public ByteStream {
 public:
  enum class Mode { Read, Write };
  FileByteStream(const std::string& path, Mode mode);

  bool isOpen() const { return file_ != nullptr; }
  long read(char* buffer, long count) override;
  long write(const char* buffer, long count) override;
  bool rewind() override;
  /// Closes the file; false when closing failed (data that could not be written out).
  bool close();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
};

/// A stream over a block of memory: reads from the start of its data, writes append to it.
/// Tests can limit what it accepts to imitate a full disk or a failing device, and can make reads
/// deliver small pieces as a pipe does.
class MemoryByteStream : public ByteStream {
 public:
  MemoryByteStream() = default;
  explicit MemoryByteStream(std::string data) : data_(std::move(data)) {}

  const std::string& data() const { return data_; }
  long read(char* buffer, long count) override;
  long write(const char* buffer, long count) override;
  bool rewind() override;

  /// Writes beyond this many bytes of data in all are cut short.
  void setWriteCapacity(size_t capacity) { writeCapacity_ = capacity; }
  /// Every write fails with -1 while this is on.
  void setFailWrites(bool fail) { failWrites_ = fail; }
  /// Each read delivers at most this many bytes.
  void setReadChunk(size_t chunk) { readChunk_ = chunk; }

 private:
  std::string data_;
  size_t readPos_ = 0;
  size_t writeCapacity_ = std::numeric_limits<size_t>::max();
  size_t readChunk_ = std::numeric_limits<size_t>::max();
  bool failWrites_ = false;
};

/// Characters that replace the raw bytes of a stream (the macro processor of text data sheets).
/// Returns a byte 0 to 255, kEndOfFile, or kNothing to be skipped.
class CharSource {
 public:
  virtual ~CharSource() = default;
  virtual int nextChar() = 0;
};

/// Process-wide line state for messages: `lineNumber` rises on line ends only while `macroInput`
/// is set (characters come from the macro processor).
struct TokenLineState {
  int lineNumber = 0;
  bool macroInput = false;
};
TokenLineState& tokenLineState();

class TokenStream {
 public:
  TokenStream() = default;
  TokenStream(const TokenStream&) = delete;
  TokenStream& operator=(const TokenStream&) = delete;
  TokenStream(TokenStream&&) = default;
  TokenStream& operator=(TokenStream&&) = default;

  // ---- The byte stream -------------------------------------------------------------------
  /// Uses a stream owned by someone else (it must outlive its use here).
  void setStream(ByteStream* stream);
  /// Uses and owns a stream.
  void setStream(std::unique_ptr<ByteStream> stream);
  ByteStream* stream() const { return ownedStream_ ? ownedStream_.get() : borrowedStream_; }
  bool hasStream() const { return stream() != nullptr; }
  /// Drops the stream (closing it when owned) and empties the buffer.
  void closeStream();
  /// Rewinds the stream and empties the buffer, for reading again from the first byte.
  bool rewind();

  /// When set, the character reader takes its characters from `source` instead of the raw bytes.
  void setCharSource(CharSource* source) { charSource_ = source; }
  CharSource* charSource() const { return charSource_; }

  // ---- Mode bits and state -----------------------------------------------------------------
  bool binary() const { return binary_; }
  void setBinary(bool on) { binary_ = on; }
  /// Bytes of a binary real: 8 for a double, anything else for a 4-byte float.
  int realSize() const { return realSize_; }
  void setRealSize(int size) { realSize_ = size; }
  /// Read and written by the grammars; it doesn't change how integers are stored.
  int intSize() const { return intSize_; }
  void setIntSize(int size) { intSize_ = size; }
  bool noWrap() const { return noWrap_; }
  void setNoWrap(bool on) { noWrap_ = on; }
  /// The name used in messages ("Unterminated string on line %d of %s").
  const std::string& name() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }

  /// Characters since the last line break written by the text writer.
  int column() const { return column_; }
  /// Carriage returns read, or line feeds written in text form.
  int lineCount() const { return lineCount_; }
  /// The character class that ended the last text token.
  int lastChar() const { return lastChar_; }

  // ---- Reading -----------------------------------------------------------------------------
  /// Starts reading: binary on, realSize 4, intSize 2, then the first 32-bit value decides. If it
  /// is `magic` the stream is binary; otherwise the same bytes are read again as text (no seek, so
  /// memory and pipes work). kTokenOk, or kTokenFailed without a stream.
  int openStream(uint32_t magic = kTokenFileMagic);

  /// Token results: kTokenOk, kTokenEndOfFile or kTokenFailed. In text numbers are words:
  /// readInt and readLong take the integer at the head of the word (0 for junk), readReal parses
  /// the word as a real, quarter glyphs included.
  int readInt(int16_t& value);
  int readLong(int32_t& value);
  int readReal(double& value);
  /// Reads an integer and scales it from `filePixels` (0 counts as 96) to `screenPixels` per inch;
  /// values above 65534 as unsigned ("not set") stay as they are.
  int readCoord(int16_t& value, int filePixels, int screenPixels);

  /// One string, at most capacity - 1 characters. In text a longer word is cut silently, one more
  /// character is lost and the rest becomes the next token; in binary the rest is skipped. A
  /// keyword in binary gives its name.
  int readWord(std::string& out, size_t capacity);
  /// A keyword id (> 0); in binary 0 with a string in `buffer`; in text kNotKeyword with the word
  /// in `buffer`. The word's text stays in `buffer` also when it is a keyword. Text words, quoted
  /// or not, are looked up ignoring case.
  int readKeyword(std::string& buffer, size_t capacity);
  /// A string of any length (at most 4,999 characters in text). True on success.
  [[nodiscard]] bool readText(std::string& out);
  /// A block with a 2-byte length in binary; in text one word of at most 32,001 characters.
  /// nullopt at the end of the input or after a failure.
  std::optional<std::string> readBlock16();
  /// A block with a 32-bit length in binary; in text one word of any length.
  std::optional<std::string> readBlock32();
  /// `count` raw bytes. In text: everything up to the next `"` is skipped, `count` bytes are taken
  /// as they are, and a closing `"` must follow. kTokenOk or -1.
  int readBytes(std::string& out, size_t count);

  /// The character reader of the text form: a byte, kEndOfFile, kEndOfLine or kQuote. Line ends,
  /// quotes and backslash escapes are handled here.
  int readChar();
  /// Drops blanks, line ends and `#` comments; returns the first other character class.
  int skip();
  /// The next raw byte (0 to 255), kEndOfFile, or kTokenFailed without a stream. Counts carriage
  /// returns in lineCount. The macro processor reads the file through this.
  int readByte();

  // ---- Writing -----------------------------------------------------------------------------
  /// Starts writing: column and buffer position 0. The form is the current binary() setting; a
  /// binary file begins with writeLong(kTokenFileMagic).
  void beginWrite();

  /// Writer results: kWriteOk or one of the negative kWrite* values.
  int writeInt(int16_t value);
  int writeLong(int32_t value);
  int writeReal(double value);
  /// The id in binary; in text the table's name (`item` for 14). kWriteUnknownKeyword if the id
  /// isn't in the table.
  int writeKeyword(int id);
  /// A string. Text: quoted and escaped as needed, then a space or a line break. Binary: 2-byte
  /// length (at most 32,767 bytes, else "String too long to write out"), or with `longLength` a
  /// 32-bit length without limit.
  int writeString(std::string_view text, bool longLength = false);
  /// Raw bytes. Text: `"`, the bytes, `"` and a space, flushed at once past the buffer.
  int writeBytes(std::string_view bytes);
  /// CR LF in text; nothing in binary.
  int writeLineBreak();
  int writeKeywordInt(int id, int16_t value);
  int writeKeywordLong(int id, int32_t value);
  int writeKeywordReal(int id, double value);
  /// Writes nothing for empty text.
  int writeKeywordString(int id, std::string_view text);
  /// Writes nothing for a null block; `richtext` blocks get the 32-bit length in binary.
  int writeKeywordBlock(int id, const std::optional<std::string>& block);
  /// Writes out the buffered bytes.
  int flush();

 private:
  int fillBuffer();
  int sourceChar();
  void noteLineEnd();
  int readTextWord(std::string& out, size_t capacity);
  int readBinaryString(std::string& out, size_t capacity, bool longLength);
  int readStringBytes(std::string& out, size_t capacity, uint32_t length);
  int readRawBytes(char* target, size_t count);
  int putByte(char byte);
  int putBytes(std::string_view bytes);
  int putTextString(std::string_view text);

  std::array<char, kTokenBufferSize> buffer_{};
  int32_t bufferCount_ = 0;
  uint32_t bufferPos_ = 0;
  int column_ = 0;
  int lineCount_ = 0;
  int lastChar_ = 0;

  bool binary_ = false;
  int realSize_ = 4;
  int intSize_ = 2;
  bool noWrap_ = false;
  std::string name_;

  ByteStream* borrowedStream_ = nullptr;
  std::unique_ptr<ByteStream> ownedStream_;
  CharSource* charSource_ = nullptr;
};

/// The `created` form of a time: "%02d/%02d/%04d %02d:%02d:%02d" (month, day, year, hour, minute,
/// second), or "01/01/1997 01:00:00" when the clock could not be read.
std::string dateString(const LocalTime& time);

}  // namespace zv
