// Reading the token stream: form detection, binary decoding, the text character and word rules.

#include "formats/tokens/tokenstream.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/headless_host.h"
#include "formats/tokens/keywords.h"
#include "token_fixtures.h"

namespace zv {
namespace {

using testing::bytes;
using testing::readerOver;

// Every word of a text stream, read with a large buffer until the end or a failure.
std::vector<std::string> wordsOf(TokenStream& stream) {
  std::vector<std::string> words;
  std::string word;
  while (stream.readWord(word, 1000) == kTokenOk)
    words.push_back(word);
  return words;
}

TEST(TokenStreamOpen, FirstFourBytesDecideTheForm) {
  struct Case {
    std::string data;
    size_t readChunk;
    bool binary;
  };
  const Case cases[] = {
      {bytes({0x37, 0x57, 0x03, 0x05, 0x04, 0x00}), 512, true},
      {bytes({0x37, 0x57, 0x03, 0x05}), 1, true},  // a pipe that delivers one byte at a time
      {"\"Character Sheet file v. 1\"", 512, false},
      {"abc", 512, false},
      {"", 512, false},
      {bytes({0x37, 0x57, 0x03}), 512, false},
      {bytes({0x05, 0x03, 0x57, 0x37}), 512, false},  // the magic in the wrong byte order
  };
  for (const Case& c : cases) {
    TokenStream stream;
    auto memory = std::make_unique<MemoryByteStream>(c.data);
    memory->setReadChunk(c.readChunk);
    stream.setStream(std::move(memory));
    EXPECT_EQ(stream.openStream(), kTokenOk);
    EXPECT_EQ(stream.binary(), c.binary) << c.data;
    EXPECT_EQ(stream.realSize(), 4);
    EXPECT_EQ(stream.intSize(), 2);
  }
}

TEST(TokenStreamOpen, TextIsReadAgainFromTheFirstByte) {
  TokenStream stream;
  auto memory = std::make_unique<MemoryByteStream>("abcdef ghi");
  memory->setReadChunk(2);
  stream.setStream(std::move(memory));
  ASSERT_EQ(stream.openStream(), kTokenOk);
  EXPECT_EQ(wordsOf(stream), (std::vector<std::string>{"abcdef", "ghi"}));
}

TEST(TokenStreamOpen, WithoutAStreamReadersFail) {
  TokenStream stream;
  EXPECT_EQ(stream.openStream(), kTokenFailed);
  std::string word;
  EXPECT_EQ(stream.readWord(word, 10), kTokenFailed);
  EXPECT_EQ(stream.readByte(), kTokenFailed);
}

TEST(TokenStreamBinary, NumbersAndKeywordsDecodeLowByteFirst) {
  const std::string magic = bytes({0x37, 0x57, 0x03, 0x05});
  auto stream = readerOver(magic + bytes({0xFD, 0x00, 0xFF, 0xFF, 0xA0, 0x86, 0x01, 0x00, 0x03,
                                          0x80, 0x0E, 0x80, 0x00, 0x00, 0x20, 0x40}));
  int16_t small = 0;
  ASSERT_EQ(stream->readInt(small), kTokenOk);
  EXPECT_EQ(small, 253);
  ASSERT_EQ(stream->readInt(small), kTokenOk);
  EXPECT_EQ(small, -1);
  int32_t large = 0;
  ASSERT_EQ(stream->readLong(large), kTokenOk);
  EXPECT_EQ(large, 100000);
  std::string buffer;
  EXPECT_EQ(stream->readKeyword(buffer, 64), kEnd);
  EXPECT_EQ(stream->readKeyword(buffer, 64), kItem);
  EXPECT_EQ(buffer, "item");
  double real = 0;
  ASSERT_EQ(stream->readReal(real), kTokenOk);  // no realsize token yet: a 4-byte float
  EXPECT_EQ(real, 2.5);
  EXPECT_EQ(stream->readInt(small), kTokenEndOfFile);
}

TEST(TokenStreamBinary, RealsOfEightBytesAfterRealSize) {
  auto stream = readerOver(
      bytes({0x37, 0x57, 0x03, 0x05, 0, 0, 0, 0, 0, 0, 0x04, 0x40, 0, 0, 0, 0, 0, 0, 0x18, 0x40}));
  stream->setRealSize(8);
  double real = 0;
  ASSERT_EQ(stream->readReal(real), kTokenOk);
  EXPECT_EQ(real, 2.5);
  ASSERT_EQ(stream->readReal(real), kTokenOk);
  EXPECT_EQ(real, 6.0);
  EXPECT_EQ(stream->readReal(real), kTokenEndOfFile);
}

TEST(TokenStreamBinary, StringsAreCutToTheBufferAndTheRestSkipped) {
  struct Case {
    size_t length;
    size_t capacity;
    size_t kept;
  };
  const Case cases[] = {{4, 5, 4}, {5, 5, 4}, {10, 5, 4}, {0, 5, 0}, {600, 128, 127}};
  for (const Case& c : cases) {
    std::string text;
    for (size_t i = 0; i < c.length; ++i)
      text.push_back(static_cast<char>('a' + i % 26));
    std::string data = bytes({0x37, 0x57, 0x03, 0x05, static_cast<int>(c.length & 0xFF),
                              static_cast<int>(c.length >> 8)}) +
                       text + bytes({0x03, 0x80});
    auto stream = readerOver(data);
    std::string word;
    ASSERT_EQ(stream->readKeyword(word, c.capacity), 0) << c.length;
    EXPECT_EQ(word, text.substr(0, c.kept));
    EXPECT_EQ(stream->readKeyword(word, 64), kEnd) << "no stray token after " << c.length;
  }
}

TEST(TokenStreamBinary, ATruncatedStringIsTheEnd) {
  auto stream = readerOver(bytes({0x37, 0x57, 0x03, 0x05, 0x08, 0x00, 'a', 'b'}));
  std::string word = "old";
  EXPECT_EQ(stream->readWord(word, 64), kTokenEndOfFile);
  EXPECT_EQ(word, "");
}

TEST(TokenStreamBinary, TextsAndBlocks) {
  std::string big(40000, 'x');
  std::string data = bytes({0x37, 0x57, 0x03, 0x05, 0x03, 0x00, 'a', 'b', 'c'}) +
                     bytes({0x02, 0x00, 'h', 'i'}) + bytes({0x40, 0x9C, 0x00, 0x00}) +
                     big +  // 40,000 with a 32-bit length
                     bytes({0x00, 0x00}) + bytes({0x01, 0x02, 0x03});
  auto stream = readerOver(data);
  std::string text;
  ASSERT_TRUE(stream->readText(text));
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(stream->readBlock16(), std::optional<std::string>("hi"));
  EXPECT_EQ(stream->readBlock32(), std::optional<std::string>(big));
  EXPECT_EQ(stream->readBlock16(), std::optional<std::string>(""));
  std::string raw;
  EXPECT_EQ(stream->readBytes(raw, 3), kTokenOk);
  EXPECT_EQ(raw, bytes({1, 2, 3}));
  EXPECT_EQ(stream->readBytes(raw, 1), -1);
  EXPECT_EQ(stream->readBlock32(), std::nullopt);
}

TEST(TokenStreamBinary, ADamagedLongLengthEndsTheInputWithoutHugeAllocations) {
  auto stream = readerOver(bytes({0x37, 0x57, 0x03, 0x05, 0xFF, 0xFF, 0xFF, 0x7F, 'a'}));
  EXPECT_EQ(stream->readBlock32(), std::nullopt);
}

TEST(TokenStreamBinary, SkippingIsAnAlarmButGoesOn) {
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  auto stream = readerOver(bytes({0x37, 0x57, 0x03, 0x05, ' ', 'x'}));
  EXPECT_EQ(stream->skip(), 'x');
  EXPECT_EQ(host.transcript(), (std::vector<std::string>{"[Error] Skipping in binary file!"}));
}

TEST(TokenStreamText, CharacterReaderClasses) {
  struct Case {
    std::string input;
    std::vector<int> classes;
  };
  const Case cases[] = {
      {"a\nb", {'a', kEndOfLine, 'b', kEndOfFile}},
      {"a\r\nb", {'a', kEndOfLine, 'b', kEndOfFile}},
      {"a\rXb", {'a', kEndOfLine, 'b', kEndOfFile}},  // CR swallows whatever follows
      {"\"x\"", {kQuote, 'x', kQuote}},
      {"\\n\\r\\\\\\\"\\q", {'\n', '\r', '\\', '"', 'q', kEndOfFile}},
      {"a\\\nb", {'a', 'b'}},
      {"a\\\r\nb", {'a', 'b'}},
      {"a\\", {'a', kEndOfFile}},
      {"\xBD", {0xBD}},
  };
  for (const Case& c : cases) {
    auto stream = readerOver(c.input);
    std::vector<int> got;
    for (size_t i = 0; i < c.classes.size(); ++i)
      got.push_back(stream->readChar());
    EXPECT_EQ(got, c.classes) << c.input;
  }
}

TEST(TokenStreamText, WordRules) {
  struct Case {
    std::string input;
    std::vector<std::string> words;
  };
  const Case cases[] = {
      {"\"a\\nb\"", {"a\nb"}},
      {"abc#def\nxyz", {"abc", "xyz"}},
      {"# whole line\n  one\ttwo  \n", {"one", "two"}},
      {"ab\\\ncd", {"abcd"}},
      {"ab\r\ncd", {"ab", "cd"}},
      {"\"with space\" \"\" tail", {"with space", "", "tail"}},
      {"\"say \\\"hi\\\"\"", {"say \"hi\""}},
      {"a\\\\b", {"a\\b"}},
      {"abc\"def", {"abc\"def"}},
      {"\"a#b\" c", {"a#b", "c"}},
      {"\"x\"y", {"x", "y"}},
      {"\"tab\there\"", {"tab\there"}},
      {"word", {"word"}},
      {"   \n\n# only a comment", {}},
  };
  for (const Case& c : cases) {
    auto stream = readerOver(c.input);
    EXPECT_EQ(wordsOf(*stream), c.words) << c.input;
  }
}

TEST(TokenStreamText, LongWordsAreCutSilentlyAndTheRestIsTheNextToken) {
  std::string word(127, 'a');
  word += "bc";  // 129 characters
  auto stream = readerOver(word + " next");
  std::string out;
  ASSERT_EQ(stream->readWord(out, 128), kTokenOk);
  EXPECT_EQ(out, std::string(127, 'a'));
  ASSERT_EQ(stream->readWord(out, 128), kTokenOk);
  EXPECT_EQ(out, "c");  // the 128th character was lost
  ASSERT_EQ(stream->readWord(out, 128), kTokenOk);
  EXPECT_EQ(out, "next");

  auto exact = readerOver(std::string(127, 'z') + " next");
  ASSERT_EQ(exact->readWord(out, 128), kTokenOk);
  EXPECT_EQ(out.size(), 127u);
  ASSERT_EQ(exact->readWord(out, 128), kTokenOk);
  EXPECT_EQ(out, "next");
}

TEST(TokenStreamText, UnterminatedStringIsAFailureWithItsMessage) {
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  tokenLineState().lineNumber = 7;
  for (const char* input : {"\"abc\nrest\"", "\"abc"}) {
    host.clearTranscript();
    auto stream = readerOver(input, "Tiny.cds");
    std::string word = "old";
    EXPECT_EQ(stream->readWord(word, 64), kTokenFailed) << input;
    EXPECT_EQ(word, "");
    EXPECT_EQ(host.transcript(),
              (std::vector<std::string>{"[Error] Unterminated string on line 7 of Tiny.cds"}));
  }
}

TEST(TokenStreamText, KeywordsIgnoreCaseAndKeepTheirText) {
  auto stream = readerOver("END End end \"end\" univar hello \"\" ");
  std::string buffer;
  for (const char* spelled : {"END", "End", "end", "end"}) {
    EXPECT_EQ(stream->readKeyword(buffer, 64), kEnd);
    EXPECT_EQ(buffer, spelled);
  }
  EXPECT_EQ(stream->readKeyword(buffer, 64), kItem);
  EXPECT_EQ(buffer, "univar");
  EXPECT_EQ(stream->readKeyword(buffer, 64), kNotKeyword);
  EXPECT_EQ(buffer, "hello");
  EXPECT_EQ(stream->readKeyword(buffer, 64), kNotKeyword);
  EXPECT_EQ(buffer, "");
  EXPECT_EQ(stream->readKeyword(buffer, 64), kTokenEndOfFile);
}

TEST(TokenStreamText, NumbersAreWords) {
  auto stream = readerOver("12abc abc -7 100000 2\xBD 1\xBC 6 \"3.5\"");
  int16_t small = -1;
  ASSERT_EQ(stream->readInt(small), kTokenOk);
  EXPECT_EQ(small, 12);
  ASSERT_EQ(stream->readInt(small), kTokenOk);
  EXPECT_EQ(small, 0);
  ASSERT_EQ(stream->readInt(small), kTokenOk);
  EXPECT_EQ(small, -7);
  int32_t large = 0;
  ASSERT_EQ(stream->readLong(large), kTokenOk);
  EXPECT_EQ(large, 100000);
  const double reals[] = {2.5, 1.25, 6.0, 3.5};
  for (double expected : reals) {
    double real = 0;
    ASSERT_EQ(stream->readReal(real), kTokenOk);
    EXPECT_EQ(real, expected);
  }
  double real = 0;
  EXPECT_EQ(stream->readReal(real), kTokenEndOfFile);
}

TEST(TokenStreamText, CoordinatesScaleToTheScreen) {
  struct Case {
    const char* word;
    int filePixels;
    int screenPixels;
    int16_t expected;
  };
  const Case cases[] = {
      {"120", 120, 96, 96}, {"100", 120, 96, 80},     {"65535", 120, 96, -1}, {"-1", 120, 96, -1},
      {"100", 0, 96, 100},  {"100", 0, 120, 125},     {"101", 96, 96, 101},   {"5", 96, 144, 8},
      {"-10", 120, 96, -7}, {"32767", 96, 48, 16384},
  };
  for (const Case& c : cases) {
    auto stream = readerOver(c.word);
    int16_t value = 0;
    ASSERT_EQ(stream->readCoord(value, c.filePixels, c.screenPixels), kTokenOk);
    EXPECT_EQ(value, c.expected) << c.word << " " << c.filePixels << "->" << c.screenPixels;
  }
}

TEST(TokenStreamText, TextAndBlockLimits) {
  std::string long5000(5000, 'r');
  auto stream = readerOver(long5000 + " ok");
  std::string text;
  ASSERT_TRUE(stream->readText(text));
  EXPECT_EQ(text.size(), 4999u);
  ASSERT_TRUE(stream->readText(text));
  EXPECT_EQ(text, "ok");
  EXPECT_FALSE(stream->readText(text));

  std::string notes(32005, 'n');
  auto blocks = readerOver(notes + " " + notes + " \"quoted #block\"");
  auto first = blocks->readBlock16();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->size(), 32001u);
  EXPECT_EQ(blocks->readBlock16(), std::optional<std::string>("nnn"));
  EXPECT_EQ(blocks->readBlock32(), std::optional<std::string>(notes));
  EXPECT_EQ(blocks->readBlock32(), std::optional<std::string>("quoted #block"));
  EXPECT_EQ(blocks->readBlock32(), std::nullopt);
}

TEST(TokenStreamText, RawBytesBetweenQuotes) {
  struct Case {
    std::string input;
    size_t count;
    int result;
    std::string bytes;
  };
  const Case cases[] = {
      {"junk \"a\"\nb\\\" tail", 5, kTokenOk, "a\"\nb\\"},
      {"\"abc\"", 3, kTokenOk, "abc"},
      {"\"abcd\"", 3, -1, ""},  // no closing quote after three bytes
      {"\"ab", 3, -1, ""},
      {"no quote at all", 1, -1, ""},
  };
  for (const Case& c : cases) {
    auto stream = readerOver(c.input);
    std::string out;
    EXPECT_EQ(stream->readBytes(out, c.count), c.result) << c.input;
    EXPECT_EQ(out, c.bytes) << c.input;
  }
}

TEST(TokenStreamText, LineCountFollowsCarriageReturns) {
  auto crlf = readerOver("ab\r\ncd\r\n");
  EXPECT_EQ(wordsOf(*crlf).size(), 2u);
  EXPECT_EQ(crlf->lineCount(), 2);
  auto lf = readerOver("ab\ncd\n");
  EXPECT_EQ(wordsOf(*lf).size(), 2u);
  EXPECT_EQ(lf->lineCount(), 0);
}

TEST(TokenStreamText, LineNumberRisesOnlyWithMacroInput) {
  TokenLineState& state = tokenLineState();
  state.lineNumber = 1;
  state.macroInput = false;
  auto plain = readerOver("a\nb\r\nc \\\nd");
  wordsOf(*plain);
  EXPECT_EQ(state.lineNumber, 1);
  state.macroInput = true;
  auto macro = readerOver("a\nb\r\nc \\\nd");
  wordsOf(*macro);
  EXPECT_EQ(state.lineNumber, 4);
  state.macroInput = false;
}

// Characters from a source in place of the raw bytes, with gaps to be skipped.
class ScriptedSource : public CharSource {
 public:
  explicit ScriptedSource(std::vector<int> chars) : chars_(std::move(chars)) {}
  int nextChar() override { return pos_ < chars_.size() ? chars_[pos_++] : kEndOfFile; }

 private:
  std::vector<int> chars_;
  size_t pos_ = 0;
};

TEST(TokenStreamText, ACharacterSourceReplacesTheBytes) {
  auto stream = readerOver("ignored raw bytes");
  ScriptedSource source({kNothing, 'l', 'i', kNothing, 's', 't', ' ', '"', 'a', kNothing, ' ', 'b',
                         '"', '\\', '\n', kNothing, 'e', 'n', 'd'});
  stream->setCharSource(&source);
  std::string buffer;
  EXPECT_EQ(stream->readKeyword(buffer, 64), kList);
  EXPECT_EQ(stream->readKeyword(buffer, 64), kNotKeyword);
  EXPECT_EQ(buffer, "a b");
  EXPECT_EQ(stream->readKeyword(buffer, 64), kEnd);
  EXPECT_EQ(stream->readKeyword(buffer, 64), kTokenEndOfFile);
}

TEST(TokenStreamText, RewindReadsAgainFromTheStart) {
  auto stream = readerOver("first second");
  std::string word;
  ASSERT_EQ(stream->readWord(word, 64), kTokenOk);
  ASSERT_TRUE(stream->rewind());
  ASSERT_EQ(stream->openStream(), kTokenOk);
  ASSERT_EQ(stream->readWord(word, 64), kTokenOk);
  EXPECT_EQ(word, "first");
}

TEST(TokenStreamText, AMovedStreamReadsOnAndTheOldOneHasNoStream) {
  auto original = readerOver("one two");
  std::string word;
  ASSERT_EQ(original->readWord(word, 64), kTokenOk);
  TokenStream moved = std::move(*original);
  EXPECT_FALSE(original->hasStream());
  EXPECT_EQ(original->readWord(word, 64), kTokenFailed);
  ASSERT_EQ(moved.readWord(word, 64), kTokenOk);
  EXPECT_EQ(word, "two");
}

TEST(DateString, CreatedForms) {
  LocalTime time;
  time.year = 2024;
  time.month = 3;
  time.day = 9;
  time.hour = 7;
  time.minute = 5;
  time.second = 4;
  time.valid = true;
  EXPECT_EQ(dateString(time), "03/09/2024 07:05:04");
  time.valid = false;
  EXPECT_EQ(dateString(time), "01/01/1997 01:00:00");
}

}  // namespace
}  // namespace zv
