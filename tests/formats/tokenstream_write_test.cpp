// Writing the token stream: exact bytes of both forms, quoting and line breaking, failures, and
// round trips between the forms.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <vector>

#include "core/headless_host.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"
#include "token_fixtures.h"

namespace zv {
namespace {

using testing::bytes;
using testing::readerOver;
using testing::Writer;

TEST(TokenWriterBinary, ExactEncodings) {
  struct Case {
    const char* what;
    std::function<int(TokenStream&)> write;
    std::string expected;
  };
  const Case cases[] = {
      {"int 253", [](TokenStream& s) { return s.writeInt(253); }, bytes({0xFD, 0x00})},
      {"int -2", [](TokenStream& s) { return s.writeInt(-2); }, bytes({0xFE, 0xFF})},
      {"long 100000", [](TokenStream& s) { return s.writeLong(100000); },
       bytes({0xA0, 0x86, 0x01, 0x00})},
      {"magic", [](TokenStream& s) { return s.writeLong(kTokenFileMagic); },
       bytes({0x37, 0x57, 0x03, 0x05})},
      {"real 2.5", [](TokenStream& s) { return s.writeReal(2.5); },
       bytes({0, 0, 0, 0, 0, 0, 0x04, 0x40})},
      {"keyword end", [](TokenStream& s) { return s.writeKeyword(kEnd); }, bytes({0x03, 0x80})},
      {"keyword item", [](TokenStream& s) { return s.writeKeyword(kItem); }, bytes({0x0E, 0x80})},
      {"keyword begin", [](TokenStream& s) { return s.writeKeyword(kBegin); }, bytes({0x7F, 0x80})},
      {"string Tiny", [](TokenStream& s) { return s.writeString("Tiny"); },
       bytes({0x04, 0x00, 'T', 'i', 'n', 'y'})},
      {"empty string", [](TokenStream& s) { return s.writeString(""); }, bytes({0x00, 0x00})},
      {"long string", [](TokenStream& s) { return s.writeString("ab", true); },
       bytes({0x02, 0x00, 0x00, 0x00, 'a', 'b'})},
      {"gamesystem Tiny", [](TokenStream& s) { return s.writeKeywordString(kGamesystem, "Tiny"); },
       bytes({0x42, 0x80, 0x04, 0x00, 'T', 'i', 'n', 'y'})},
      {"version 253", [](TokenStream& s) { return s.writeKeywordInt(kVersion, 253); },
       bytes({0x6E, 0x80, 0xFD, 0x00})},
      {"var real", [](TokenStream& s) { return s.writeKeywordReal(kVar, 6.0); },
       bytes({0x19, 0x80, 0, 0, 0, 0, 0, 0, 0x18, 0x40})},
      {"long keyword", [](TokenStream& s) { return s.writeKeywordLong(kCost, -1); },
       bytes({0x0F, 0x80, 0xFF, 0xFF, 0xFF, 0xFF})},
      {"line break", [](TokenStream& s) { return s.writeLineBreak(); }, ""},
      {"raw bytes",
       [](TokenStream& s) {
         return s.writeBytes(bytes({1, '"', 0}));
       },
       bytes({1, '"', 0})},
      {"null block", [](TokenStream& s) { return s.writeKeywordBlock(kNotes, std::nullopt); }, ""},
      {"empty notes", [](TokenStream& s) { return s.writeKeywordBlock(kNotes, ""); },
       bytes({0x0A, 0x80, 0x00, 0x00})},
      {"richtext block", [](TokenStream& s) { return s.writeKeywordBlock(kRichtext, "r"); },
       bytes({0xB2, 0x80, 0x01, 0x00, 0x00, 0x00, 'r'})},
      {"empty keyword string", [](TokenStream& s) { return s.writeKeywordString(kHelp, ""); }, ""},
  };
  for (const Case& c : cases) {
    Writer writer(true);
    EXPECT_EQ(c.write(writer.stream), kWriteOk) << c.what;
    EXPECT_EQ(writer.output(), c.expected) << c.what;
    EXPECT_EQ(writer.stream.column(), 0) << c.what;
  }
}

TEST(TokenWriterBinary, StringLengthLimit) {
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  Writer writer(true);
  EXPECT_EQ(writer.stream.writeString(std::string(32767, 's')), kWriteOk);
  EXPECT_EQ(writer.output().substr(0, 2), bytes({0xFF, 0x7F}));
  EXPECT_TRUE(host.transcript().empty());
  EXPECT_EQ(writer.stream.writeString(std::string(32768, 's')), kWriteStringTooLong);
  EXPECT_EQ(host.transcript(), (std::vector<std::string>{"[Error] String too long to write out"}));
  EXPECT_EQ(writer.output().size(), 2u + 32767u);
  EXPECT_EQ(writer.stream.writeString(std::string(40000, 'l'), true), kWriteOk);
  EXPECT_EQ(writer.output().substr(2 + 32767, 4), bytes({0x40, 0x9C, 0x00, 0x00}));
}

TEST(TokenWriterText, QuotingAndEscapes) {
  const std::pair<std::string, std::string> cases[] = {
      {"plain", "plain "},
      {"", "\"\" "},
      {"$x", "\"$x\" "},
      {"a$", "a$ "},
      {"say \"hi\"", "\"say \\\"hi\\\"\" "},
      {"a\\b", "a\\\\b "},
      {"a#b", "\"a#b\" "},
      {"tab\there", "\"tab\there\" "},
      {"a\rb", "\"a\\rb\" "},
      {"a\nb", bytes({0x22, 0x61, 0x5C, 0x6E, 0x5C, 0x0D, 0x0A, 0x62, 0x22, 0x20})},
      {"2\xBD", "2\xBD "},
  };
  for (const auto& [text, expected] : cases) {
    Writer writer(false);
    EXPECT_EQ(writer.stream.writeString(text), kWriteOk);
    EXPECT_EQ(writer.output(), expected) << text;
    auto reader = readerOver(expected);
    std::string back;
    ASSERT_EQ(reader->readWord(back, 100), kTokenOk) << expected;
    EXPECT_EQ(back, text);
  }
}

TEST(TokenWriterText, NumbersAndKeywords) {
  Writer writer(false);
  EXPECT_EQ(writer.stream.writeInt(253), kWriteOk);
  EXPECT_EQ(writer.stream.writeInt(-1), kWriteOk);
  EXPECT_EQ(writer.stream.writeLong(100000), kWriteOk);
  EXPECT_EQ(writer.stream.writeReal(6.0), kWriteOk);
  EXPECT_EQ(writer.stream.writeReal(2.5), kWriteOk);
  EXPECT_EQ(writer.stream.writeReal(1.0 / 3.0), kWriteOk);
  EXPECT_EQ(writer.stream.writeKeyword(kItem), kWriteOk);
  EXPECT_EQ(writer.stream.writeKeyword(kMaxAttempts), kWriteOk);
  EXPECT_EQ(writer.stream.writeKeyword(85), kWriteUnknownKeyword);
  EXPECT_EQ(writer.stream.writeKeyword(0), kWriteUnknownKeyword);
  EXPECT_EQ(writer.stream.writeKeywordInt(199, 1), kWriteUnknownKeyword);
  EXPECT_EQ(writer.output(), "253 -1 100000 6 2.5 0.33333333 item maxAttempts ");
}

TEST(TokenWriterText, LinesBreakAfterColumn66) {
  Writer wrapped(false);
  for (int i = 0; i < 30; ++i)
    ASSERT_EQ(wrapped.stream.writeString("abcd"), kWriteOk);
  std::string line;
  for (int i = 0; i < 14; ++i)
    line += i < 13 ? "abcd " : "abcd\r\n";
  std::string expected = line + line + "abcd abcd ";
  EXPECT_EQ(wrapped.output(), expected);
  EXPECT_EQ(wrapped.stream.lineCount(), 2);
  EXPECT_EQ(wrapped.stream.column(), 10);

  for (size_t length : {65u, 66u}) {
    Writer edge(false);
    ASSERT_EQ(edge.stream.writeString(std::string(length, 'e')), kWriteOk);
    EXPECT_EQ(edge.output().substr(length), length == 65 ? " " : "\r\n") << length;
  }

  Writer flat(false);
  flat.stream.setNoWrap(true);
  for (int i = 0; i < 30; ++i)
    ASSERT_EQ(flat.stream.writeString("abcd"), kWriteOk);
  EXPECT_EQ(flat.output().find('\r'), std::string::npos);
  EXPECT_EQ(flat.stream.column(), 150);
}

TEST(TokenWriterText, LineBreaksAndEscapedNewlines) {
  Writer writer(false);
  ASSERT_EQ(writer.stream.writeString("a\nb"), kWriteOk);
  EXPECT_EQ(writer.stream.column(), 10);  // the CR LF inside the escape doesn't restart the count
  ASSERT_EQ(writer.stream.writeLineBreak(), kWriteOk);
  EXPECT_EQ(writer.stream.column(), 0);
  ASSERT_EQ(writer.stream.writeKeywordString(kHelp, ""), kWriteOk);
  ASSERT_EQ(writer.stream.writeKeywordBlock(kNotes, std::nullopt), kWriteOk);
  ASSERT_EQ(writer.stream.writeKeywordBlock(kNotes, ""), kWriteOk);
  EXPECT_EQ(writer.output(), "\"a\\n\\\r\nb\" \r\nnotes \"\" ");
  EXPECT_EQ(writer.stream.lineCount(), 2);
}

TEST(TokenWriterText, RawBytesAreFramedAndFlushedAtOnce) {
  Writer writer(false);
  ASSERT_EQ(writer.stream.writeString("picture"), kWriteOk);
  ASSERT_EQ(writer.stream.writeBytes(bytes({'x', '"', '\n', 0})), kWriteOk);
  EXPECT_EQ(writer.sink.data(), std::string("picture \"x\"\n") + bytes({0, '"', ' '}));
  auto reader = readerOver(writer.output());
  std::string word;
  ASSERT_EQ(reader->readWord(word, 64), kTokenOk);
  ASSERT_EQ(reader->readBytes(word, 4), kTokenOk);
  EXPECT_EQ(word, bytes({'x', '"', '\n', 0}));
}

TEST(TokenWriter, BufferFlushesAt512Bytes) {
  Writer writer(true);
  ASSERT_EQ(writer.stream.writeBytes(std::string(512, 'b')), kWriteOk);
  EXPECT_TRUE(writer.sink.data().empty());
  ASSERT_EQ(writer.stream.writeInt(1), kWriteOk);
  EXPECT_EQ(writer.sink.data().size(), 512u);
  EXPECT_EQ(writer.output().size(), 514u);

  Writer text(false);
  text.stream.setNoWrap(true);
  for (int i = 0; i < 128; ++i)
    ASSERT_EQ(text.stream.writeString("abc"), kWriteOk);
  EXPECT_TRUE(text.sink.data().empty());  // 128 words of four bytes
  ASSERT_EQ(text.stream.writeString("z"), kWriteOk);
  EXPECT_EQ(text.sink.data().size(), 512u);
}

TEST(TokenWriter, Failures) {
  Writer full(true);
  full.sink.setWriteCapacity(100);
  ASSERT_EQ(full.stream.writeBytes(std::string(512, 'f')), kWriteOk);
  EXPECT_EQ(full.stream.writeInt(1), kWriteDiskFull);

  Writer broken(false);
  broken.sink.setFailWrites(true);
  ASSERT_EQ(broken.stream.writeString("x"), kWriteOk);
  EXPECT_EQ(broken.stream.flush(), kWriteError);
  EXPECT_EQ(broken.stream.writeBytes("raw"), kWriteError);

  TokenStream nowhere;
  nowhere.beginWrite();
  EXPECT_EQ(nowhere.flush(), kWriteNoStream);
  EXPECT_EQ(nowhere.writeBytes("raw"), kWriteNoStream);
}

// A sheet-like sequence of tokens, written and read by kind as a grammar would.
struct Token {
  enum Kind { Keyword, Int, Long, Real, String, Text, Notes, RichText, Bytes, LineBreak };
  Token(Kind k, double n = 0, std::string t = {}) : kind(k), number(n), text(std::move(t)) {}
  Kind kind;
  double number;
  std::string text;
};

std::vector<Token> sampleTokens() {
  using T = Token;
  std::vector<Token> tokens = {
      {T::String, 0, "Character Sheet file v. 1"},
      {T::Keyword, kGamesystem},
      {T::String, 0, "Tiny"},
      {T::Keyword, kDescription},
      {T::String, 0, "Tiny test sheet"},
      {T::Keyword, kHelp},
      {T::String, 0, ""},
      {T::Keyword, kVersion},
      {T::Int, 253},
      {T::Keyword, kRealsize},
      {T::Int, 8},
      {T::Keyword, kIntsize},
      {T::Int, 2},
      {T::LineBreak},
      {T::Keyword, kVar},
      {T::String, 0, "SkillPoints"},
      {T::Real, 6.0},
      {T::Keyword, kVar},
      {T::String, 0, "$cost"},
      {T::Real, -2.5},
      {T::Keyword, kVar},
      {T::String, 0, "third"},
      {T::Real, 1.0 / 3.0},
      {T::Keyword, kPrereq},
      {T::Text, 0, "level >= 3 & \"Strength\" # not a comment\\"},
      {T::Keyword, kNotes},
      {T::Notes, 0, "line one\nline two\r\n\ttabbed"},
      {T::Keyword, kRichtext},
      {T::RichText, 0, "{\\rtf1 " + std::string(300, 'w') + "}"},
      {T::Keyword, kPicture},
      {T::Long, 5},
      {T::Bytes, 0, bytes({1, '"', '\n', '\r', 0xFF})},
      {T::Keyword, kMaxAttempts},
      {T::Int, -1},
      {T::LineBreak},
      {T::Keyword, kList},
      {T::String, 0, "Skills and Languages"},
      {T::Keyword, kItem},
      {T::String, 0, "end"},
      {T::Long, 100000},
  };
  for (int i = 0; i < 40; ++i)
    tokens.push_back({T::String, 0, "word" + std::to_string(i)});
  tokens.push_back({T::Keyword, kEnd});
  return tokens;
}

std::string writeAll(const std::vector<Token>& tokens, bool binary) {
  Writer writer(binary);
  TokenStream& s = writer.stream;
  if (binary) {
    EXPECT_EQ(s.writeLong(static_cast<int32_t>(kTokenFileMagic)), kWriteOk);
  }
  for (const Token& t : tokens) {
    int result = kWriteOk;
    switch (t.kind) {
      case Token::Keyword:
        result = s.writeKeyword(static_cast<int>(t.number));
        break;
      case Token::Int:
        result = s.writeInt(static_cast<int16_t>(t.number));
        break;
      case Token::Long:
        result = s.writeLong(static_cast<int32_t>(t.number));
        break;
      case Token::Real:
        result = s.writeReal(t.number);
        break;
      case Token::String:
      case Token::Text:
      case Token::Notes:
        result = s.writeString(t.text);
        break;
      case Token::RichText:
        result = s.writeString(t.text, true);
        break;
      case Token::Bytes:
        result = s.writeBytes(t.text);
        break;
      case Token::LineBreak:
        result = s.writeLineBreak();
        break;
    }
    EXPECT_EQ(result, kWriteOk);
  }
  return writer.output();
}

std::vector<Token> readAll(const std::vector<Token>& shape, std::string data) {
  auto s = readerOver(std::move(data));
  std::vector<Token> out;
  int lastKeyword = 0;
  for (const Token& want : shape) {
    Token got{want.kind};
    int result = kTokenOk;
    switch (want.kind) {
      case Token::Keyword: {
        std::string buffer;
        got.number = lastKeyword = s->readKeyword(buffer, 128);
        break;
      }
      case Token::Int: {
        int16_t v = 0;
        result = s->readInt(v);
        got.number = v;
        if (lastKeyword == kRealsize) s->setRealSize(v);
        break;
      }
      case Token::Long: {
        int32_t v = 0;
        result = s->readLong(v);
        got.number = v;
        break;
      }
      case Token::Real:
        result = s->readReal(got.number);
        break;
      case Token::String:
        result = s->readWord(got.text, 128);
        break;
      case Token::Text:
        result = s->readText(got.text) ? kTokenOk : kTokenFailed;
        break;
      case Token::Notes:
        got.text = s->readBlock16().value_or("<null>");
        break;
      case Token::RichText:
        got.text = s->readBlock32().value_or("<null>");
        break;
      case Token::Bytes:
        result = s->readBytes(got.text, want.text.size());
        break;
      case Token::LineBreak:
        break;
    }
    EXPECT_EQ(result, kTokenOk);
    out.push_back(got);
  }
  std::string rest;
  EXPECT_EQ(s->readWord(rest, 16), kTokenEndOfFile) << rest;
  return out;
}

void expectSameTokens(const std::vector<Token>& a, const std::vector<Token>& b, double tolerance) {
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i].number, b[i].number, tolerance) << "token " << i;
    EXPECT_EQ(a[i].text, b[i].text) << "token " << i;
  }
}

TEST(TokenRoundTrip, TextToBinaryToTextIsByteIdentical) {
  const std::vector<Token> tokens = sampleTokens();
  const std::string text = writeAll(tokens, false);
  const std::vector<Token> fromText = readAll(tokens, text);
  expectSameTokens(fromText, tokens, 1e-8);

  const std::string binary = writeAll(fromText, true);
  ASSERT_EQ(binary.substr(0, 4), bytes({0x37, 0x57, 0x03, 0x05}));
  const std::vector<Token> fromBinary = readAll(tokens, binary);
  expectSameTokens(fromBinary, fromText, 0.0);

  EXPECT_EQ(writeAll(fromBinary, false), text);
  EXPECT_EQ(writeAll(fromBinary, true), binary);
}

TEST(TokenRoundTrip, FilesOnDisk) {
  const auto dir =
      std::filesystem::temp_directory_path() /
      ("zv_tokens_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
  std::filesystem::create_directories(dir);
  for (bool binary : {false, true}) {
    const std::string path = (dir / (binary ? "sheet.bin" : "sheet.txt")).string();
    {
      FileByteStream out(path, FileByteStream::Mode::Write);
      ASSERT_TRUE(out.isOpen());
      TokenStream writer;
      writer.setStream(&out);
      writer.setBinary(binary);
      writer.beginWrite();
      if (binary) {
        ASSERT_EQ(writer.writeLong(static_cast<int32_t>(kTokenFileMagic)), kWriteOk);
      }
      ASSERT_EQ(writer.writeKeywordString(kGamesystem, "Tiny"), kWriteOk);
      ASSERT_EQ(writer.writeKeywordLong(kCost, 100000), kWriteOk);
      ASSERT_EQ(writer.writeKeyword(kEnd), kWriteOk);
      ASSERT_EQ(writer.flush(), kWriteOk);
      ASSERT_TRUE(out.close());
    }
    TokenStream reader;
    auto file = std::make_unique<FileByteStream>(path, FileByteStream::Mode::Read);
    ASSERT_TRUE(file->isOpen());
    reader.setStream(std::move(file));
    ASSERT_EQ(reader.openStream(), kTokenOk);
    EXPECT_EQ(reader.binary(), binary);
    std::string buffer;
    EXPECT_EQ(reader.readKeyword(buffer, 64), kGamesystem);
    ASSERT_EQ(reader.readWord(buffer, 64), kTokenOk);
    EXPECT_EQ(buffer, "Tiny");
    EXPECT_EQ(reader.readKeyword(buffer, 64), kCost);
    int32_t cost = 0;
    ASSERT_EQ(reader.readLong(cost), kTokenOk);
    EXPECT_EQ(cost, 100000);
    EXPECT_EQ(reader.readKeyword(buffer, 64), kEnd);
    EXPECT_EQ(reader.readKeyword(buffer, 64), kTokenEndOfFile);
    ASSERT_TRUE(reader.rewind());
    ASSERT_EQ(reader.openStream(), kTokenOk);
    EXPECT_EQ(reader.readKeyword(buffer, 64), kGamesystem);
  }
  std::filesystem::remove_all(dir);
  EXPECT_FALSE(FileByteStream((dir / "missing").string(), FileByteStream::Mode::Read).isOpen());
}

}  // namespace
}  // namespace zv
