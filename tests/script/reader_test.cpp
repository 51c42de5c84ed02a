// The script reader: tokens, statement text, heads, call arguments and quote stripping, each as a
// table of texts and what the reader makes of them, worked out from the reading rules by hand.

#include <gtest/gtest.h>

#include <algorithm>

#include "core/item.h"
#include "core/text.h"
#include "reader_support.h"
#include "script/reader/keywords.h"

namespace zv::script {
namespace {

using testing::ReaderFixture;

/// Tokens as "kind:text": "w:" a plain word, "s:" a quoted string, "k:" a keyword as written,
/// "c:" a one-character token; then "!" and the message when the reader failed.
std::vector<std::string> tokensOf(ReaderFixture& fixture, std::size_t capacity = kTokenCapacity) {
  std::vector<std::string> out;
  ReadToken token;
  for (int guard = 0; guard < 100; ++guard) {
    if (!fixture.reader.readToken(token, capacity)) {
      out.push_back("!" + fixture.firstMessage());
      break;
    }
    if (token.is(Token::EndOfText)) break;
    const char* kind = token.is(Token::Plain)   ? (token.quote ? "s:" : "w:")
                       : isKeyword(token.token) ? "k:"
                                                : "c:";
    out.push_back(kind + token.text);
  }
  return out;
}

struct TokenCase {
  const char* text;
  std::vector<std::string> tokens;
};

TEST(ScriptReaderTokens, ReadsTheTokensOfEachText) {
  const TokenCase cases[] = {
      {"add Skills.Climb;", {"k:add", "w:Skills.Climb", "c:;"}},
      {"ADD Add aDd", {"k:ADD", "k:Add", "k:aDd"}},
      {"(),;={}~", {"c:(", "c:)", "c:,", "c:;", "c:=", "c:{", "c:}", "c:~"}},
      {"\"a b\" 'c\"d'", {"s:a b", "s:c\"d"}},
      {"\"if\" if", {"s:if", "k:if"}},
      {"x # a comment ; ( \r\n= 1", {"w:x", "c:=", "w:1"}},
      {"abc#def\r\nghi", {"w:abc", "w:ghi"}},
      {"a(b)c=d", {"w:a", "c:(", "w:b", "c:)", "w:c", "c:=", "w:d"}},
      {"x'y'", {"w:x", "s:y"}},
      // Escapes in strings: \n is CR LF, a backslash before a line end joins the lines, any
      // other pair stays as it is.
      {"\"a\\nb\"", {"s:a\r\nb"}},
      {"\"a\\tb\\\\\"", {"s:a\\tb\\\\"}},
      {"\"a\\\r\nb\" c", {"s:ab", "w:c"}},
      {"\"a\\\nb\"", {"s:ab"}},
      // The tilde: it ends a word of two or more characters, except behind "$$", "$*", "$@".
      {"Climb~ x", {"w:Climb", "c:~", "w:x"}},
      {"ab~", {"w:ab", "c:~"}},
      {"A~", {"w:A~"}},
      {"~A", {"c:~", "w:A"}},
      {"$$~count $*~level $@&base", {"w:$$~count", "w:$*~level", "w:$@&base"}},
      {"x$~y", {"w:x$", "c:~", "w:y"}},
      // Errors.
      {"\"abc\r\ndef\"", {"!Unterminated string (abc)."}},
      {"\"abc\ndef\"", {"!Unterminated string (abc)."}},
      {"'abc", {"!No terminator on string"}},
      {"\"abc\\", {"!No terminator on string"}},
  };
  for (const TokenCase& c : cases) {
    ReaderFixture fixture(c.text);
    EXPECT_EQ(tokensOf(fixture), c.tokens) << c.text;
  }
}

TEST(ScriptReaderTokens, ABufferHoldsOneByteLessThanItsSize) {
  ReaderFixture fits("\"abcd\" wxyz");
  EXPECT_EQ(tokensOf(fits, 5), (std::vector<std::string>{"s:abcd", "w:wxyz"}));
  ReaderFixture longString("\"abcde\"");
  EXPECT_EQ(tokensOf(longString, 5), (std::vector<std::string>{"!String too long"}));
  ReaderFixture longWord("vwxyz");
  EXPECT_EQ(tokensOf(longWord, 5), (std::vector<std::string>{"!Value too long"}));
}

TEST(ScriptReaderTokens, CountsLinesAndPutsATokenBack) {
  ReaderFixture fixture("\r\n# comment\r\n  first\nsecond third");
  ScriptReader& reader = fixture.reader;
  ReadToken token;
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_EQ(token.text, "first");
  EXPECT_EQ(reader.position.line, 3);
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_EQ(token.text, "second");
  EXPECT_EQ(reader.position.line, 4);
  reader.putBack();
  EXPECT_EQ(reader.position.line, 4);
  ASSERT_TRUE(reader.peekToken(token));
  EXPECT_EQ(token.text, "second");
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_EQ(token.text, "second");
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_EQ(token.text, "third");
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_TRUE(token.is(Token::EndOfText));
  ASSERT_TRUE(reader.readToken(token));
  EXPECT_TRUE(token.is(Token::EndOfText));
}

TEST(ScriptReaderTokens, ReplacesDollarNByTheCurrentItemsName) {
  Item climb(ItemKind::Item, "Climb");
  ReaderFixture fixture("\"$n rank\" $N-bonus $o");
  fixture.reader.position.currentItem = &climb;
  EXPECT_EQ(tokensOf(fixture), (std::vector<std::string>{"s:Climb rank", "w:Climb-bonus", "w:$o"}));

  ReaderFixture tooLong("$n$n");
  tooLong.reader.position.currentItem = &climb;
  EXPECT_EQ(tokensOf(tooLong, 10),
            (std::vector<std::string>{"!Error in replaceToken -- temporary string too small"}));

  ReaderFixture noItem("$n");
  EXPECT_EQ(tokensOf(noItem), (std::vector<std::string>{"w:$n"}));
}

TEST(ScriptReaderTokens, ANullTextIsAnInternalError) {
  std::vector<std::string> messages;
  ScriptReader reader(ScriptPosition{}, [&](std::string_view m) { messages.emplace_back(m); });
  ReadToken token;
  EXPECT_FALSE(reader.readToken(token));
  EXPECT_EQ(messages, (std::vector<std::string>{"Internal error: null pointer in readToken."}));
}

TEST(ScriptKeywords, TheTableHoldsTheWordsSortedAndTheSynonymsShareATokens) {
  const auto table = keywordTable();
  ASSERT_EQ(table.size(), 107u);
  for (std::size_t i = 1; i < table.size(); ++i) {
    EXPECT_LT(compareIgnoringCase(table[i - 1].word, table[i].word), 0) << table[i].word;
  }
  EXPECT_EQ(findKeyword("error"), Token::Fail);
  EXPECT_EQ(findKeyword("FAIL"), Token::Fail);
  EXPECT_EQ(findKeyword("warning"), Token::Warn);
  EXPECT_EQ(findKeyword("Warn"), Token::Warn);
  EXPECT_EQ(findKeyword("purgedatasheetitems"), Token::PurgeDataSheetItems);
  EXPECT_EQ(findKeyword("add"), Token::Add);
  EXPECT_EQ(findKeyword("while"), Token::While);
  EXPECT_EQ(findKeyword("whiles"), Token::Plain);
  EXPECT_EQ(findKeyword("ad"), Token::Plain);
  EXPECT_EQ(findKeyword(""), Token::Plain);
  EXPECT_EQ(tokenName(Token::EndIf), "endif");
  EXPECT_EQ(tokenName(Token::Semicolon), ";");
  // Every keyword token but the two synonyms' second words is reached by its own word.
  int distinct = 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (findKeyword(table[i].word) == table[i].token) ++distinct;
  }
  EXPECT_EQ(distinct, 107);
}

struct ScanCase {
  const char* text;
  const char* delimiters;
  const char* expected;  ///< the text copied, or "!" and the message
  char found;
  int line;  ///< the line after the scan
};

TEST(ScriptReaderScan, CopiesStatementTextToADelimiter) {
  const ScanCase cases[] = {
      {"  x + 1; y", ";", "x + 1", ';', 1},
      {"Skills.Climb = 3;", ";=", "Skills.Climb", '=', 1},
      {"\"a;b\" + 'c;d';", ";", "\"a;b\" + 'c;d'", ';', 1},
      {"a\r\n+ b;", ";", "a + b", ';', 2},
      {"a\n+ b;", ";", "a + b", ';', 2},
      {"x # note\r\n;", ";", "x # note", ';', 2},
      {"x    \t;", ";", "x", ';', 1},
      {"\"a\\nb\";", ";", "\"a\r\nb\"", ';', 1},
      {"\"a\\\r\nb\";", ";", "\"ab\"", ';', 2},
      {"\"a\\qb\";", ";", "\"a\\qb\"", ';', 1},
      {"\"a\nb\";", ";", "\"a\nb\"", ';', 2},
      {"x + 1", ";", "!Premature end found scanning for statement end", 0, 1},
      {"\"x;", ";", "!Premature end found scanning for statement end", 0, 1},
      {"\"a\r\nb\";", ";", "!Unterminated string", 0, 1},
      {"\"a\\", ";", "!Unterminated string.", 0, 1},
  };
  for (const ScanCase& c : cases) {
    ReaderFixture fixture(c.text);
    std::string out;
    char found = 0;
    const bool ok = fixture.reader.scanToDelimiter(c.delimiters, out, found);
    EXPECT_EQ(ok ? out : "!" + fixture.firstMessage(), c.expected) << c.text;
    if (ok) {
      EXPECT_EQ(found, c.found) << c.text;
      EXPECT_EQ(fixture.reader.position.line, c.line) << c.text;
    }
  }
}

TEST(ScriptReaderScan, StopsWhenTheBufferIsFull) {
  ReaderFixture fixture("abcdef;");
  std::string out;
  char found = 0;
  EXPECT_FALSE(fixture.reader.scanToDelimiter(";", out, found, 4));
  EXPECT_EQ(fixture.firstMessage(), "Buffer filled while scanning");
  ReaderFixture fits("abc;");
  EXPECT_TRUE(fits.reader.scanToDelimiter(";", out, found, 4));
  EXPECT_EQ(out, "abc");
}

TEST(ScriptReaderScan, StripsOneLevelOfDoubleQuotes) {
  const std::pair<const char*, const char*> cases[] = {
      {"\"abc\" def", "abc"}, {"\"\"", ""},       {"abc", "abc"},
      {"'abc'", "'abc'"},     {"\"a'b\"", "a'b"}, {"\"abc", "!Missing end quote on name"},
  };
  for (const auto& [text, expected] : cases) {
    ReaderFixture fixture("");
    std::string value = text;
    const bool ok = fixture.reader.unquote(value);
    EXPECT_EQ(ok ? value : "!" + fixture.firstMessage(), expected) << text;
  }
}

struct HeadCase {
  const char* text;
  std::size_t capacity;
  const char* expected;
  const char* next;  ///< the token after the head
};

TEST(ScriptReaderHeads, ReadsABracketedHead) {
  const HeadCase cases[] = {
      {"(a + (b * 2)) x", kHeadCapacity, "a + (b * 2)", "x"},
      {"  \r\n(x) y", kHeadCapacity, "x", "y"},
      {"(\")\" == a) z", kHeadCapacity, "\")\" == a", "z"},
      {"() z", kHeadCapacity, "", "z"},
      {"x)", kHeadCapacity, "!Missing '('", ""},
      {"(a\r\n)", kHeadCapacity, "!Missing ')' on if/for", ""},
      {"(a", kHeadCapacity, "!Missing ')' on if/for", ""},
      {"(abcd)", 5, "abcd", ""},
      {"(abcde)", 5, "!Expression too long", ""},
  };
  for (const HeadCase& c : cases) {
    ReaderFixture fixture(c.text);
    std::string out;
    const bool ok = fixture.reader.readHead(out, c.capacity);
    EXPECT_EQ(ok ? out : "!" + fixture.firstMessage(), c.expected) << c.text;
    if (ok) {
      ReadToken next;
      ASSERT_TRUE(fixture.reader.readToken(next));
      EXPECT_EQ(next.text, c.next) << c.text;
    }
  }
}

struct ArgumentCase {
  const char* text;  ///< behind the "("
  std::size_t capacity;
  std::vector<std::string> expected;  ///< or one "!message"
};

TEST(ScriptReaderArguments, SplitsACallsArgumentsAtDepthZero) {
  const ArgumentCase cases[] = {
      {"a, b);", 1024, {"a", "b"}},
      {");", 1024, {}},
      {"  );", 1024, {}},
      {"f(1, 2), \"x, y\", 'p)q');", 1024, {"f(1, 2)", "\"x, y\"", "'p)q'"}},
      {"a, );", 1024, {"a", ""}},
      {"a,\r\n b)", 1024, {"a", "b"}},
      {"a;", 1024, {"!Missing ) in subroutine call."}},
      {"a, (b", 1024, {"!Missing ) in subroutine call."}},
      {"abcd, e)", 5, {"abcd", "e"}},
      {"abcde)", 5, {"!Argument 1 is too long."}},
      {"a, bcdefg)", 5, {"!Argument 2 is too long."}},
  };
  for (const ArgumentCase& c : cases) {
    ReaderFixture fixture(c.text);
    std::vector<std::string> arguments;
    if (!fixture.reader.readCallArguments(arguments, c.capacity)) {
      arguments = {"!" + fixture.firstMessage()};
    }
    EXPECT_EQ(arguments, c.expected) << c.text;
  }
  ReaderFixture after("x, y); next");
  std::vector<std::string> arguments;
  ASSERT_TRUE(after.reader.readCallArguments(arguments));
  ReadToken token;
  ASSERT_TRUE(after.reader.readToken(token));
  EXPECT_TRUE(token.is(Token::Semicolon));
}

}  // namespace
}  // namespace zv::script
