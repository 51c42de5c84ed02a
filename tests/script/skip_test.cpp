// Passing over statements: each keyword's rule, and the messages that a statement's shape gives
// even where it doesn't run; then the script header.

#include <gtest/gtest.h>

#include <string>

#include "reader_support.h"
#include "script/reader/script_file.h"
#include "script/reader/skip.h"

namespace zv::script {
namespace {

using testing::ReaderFixture;

struct SkipCase {
  std::string text;      ///< a statement, then "next"
  std::string expected;  ///< "next" when it was passed over, else the message
};

/// Reads the first token and passes over its statement; then the next token's text, or the
/// message.
std::string skipOne(const std::string& text) {
  ReaderFixture fixture(text);
  ReadToken first;
  if (!fixture.reader.readToken(first)) return fixture.firstMessage();
  if (!skipStatement(fixture.reader, first)) return fixture.firstMessage();
  ReadToken next;
  if (!fixture.reader.readToken(next)) return fixture.firstMessage();
  // A command passed over to its ";" leaves the ";" for the statement loop.
  if (next.is(Token::Semicolon) && !fixture.reader.readToken(next)) return fixture.firstMessage();
  return next.text;
}

TEST(ScriptSkip, PassesOverEachStatementByItsKeyword) {
  const SkipCase cases[] = {
      {"add Skills.\"a;b\"[x] = 2; next", "next"},
      {"option Edge = \"x;y\"; next", "next"},
      {"set level = 3; next", "next"},
      {"copyitem Gear; next", "next"},
      {"x = a + b(1); next", "next"},
      {"f(1, 2); next", "next"},
      {"title \"T\" next", "next"},
      {"destination Gear next", "next"},
      {"if (a) x = 1; elseif (b) y = 2; else z = 3; endif next", "next"},
      {"if (a) if (b) x = 1; endif else endif next", "next"},
      {"for (i = 0; i < 3; i = i + 1) x = i; endfor next", "next"},
      {"foreach (Skills) set level = 1; endforeach next", "next"},
      {"while (x) x = x - 1; endwhile next", "next"},
      {"context (source) x = 1; endcontext next", "next"},
      {"item (Skills, \"Climb\") set level = 2; enditem next", "next"},
      {"switch (x) 1, 2 ~ y = 1; end default ~ end endswitch next", "next"},
      {"list \"Skills\" destination Gear; Climb, Swim ~ set level = 1; end skip; "
       "options default ~ copyoption; end endoptions default ~ end endlist next",
       "next"},
      {"options ; Edge ~ copyoption; end default ~ end endoptions next", "next"},
      {"func twice { x * 2 } next", "next"},
      {"func twice = x * 2; next", "next"},
      {"menuitem \"Roll\" { x = 1; } next", "next"},
      {"submenu \"Dice\"; menuitem \"A\" { a; } submenu \"B\"; endsubmenu endsubmenu next", "next"},
      {"end next", "next"},
      {"; next", "next"},
      // Messages of the shape.
      {"add Skills.Climb", "Premature end of command."},
      {"if (a) x = 1;", "Error in if -- endif may be missing."},
      {"if (0) sub f() { } endif", "Subroutine may not be define here."},
      {"while (1) x = 1;", "Premature end of script"},
      {"list \"Skills\" default ~ x = 1; end", "Missing endlist"},
      {"list \"Skills\"\r\nClimb ~ x = 1;", "Missing end after ~ (started around line 2)"},
      {"options default ~ end", "Missing endoptions"},
      {"switch (x) 1 ~ end", "Missing endswitch"},
      {"endif", "Unmatched endif found"},
      {"ENDWHILE", "Unmatched ENDWHILE found"},
      {"else", "Unmatched else found"},
      {"x = if;", "Keyword \"if\" found; expecting semicolon"},
      {"menuitem \"Roll\"; x", "Never found body of menuitem -- no '{' found."},
      {"submenu \"Dice\"; x = 1;", "Expected submenu; found 'x'."},
      {"for i = 0", "Missing '('"},
  };
  for (const SkipCase& c : cases) {
    EXPECT_EQ(skipOne(c.text), c.expected) << c.text;
  }
}

TEST(ScriptSkip, DeepNestingStopsWithAMessageInsteadOfExhaustingTheStack) {
  std::string text;
  for (int i = 0; i < 5000; ++i)
    text += "if (1) ";
  EXPECT_EQ(skipOne(text), "Statements nested too deeply (more than 200 levels).");
  std::string groups = "switch (x)";
  for (int i = 0; i < 5000; ++i)
    groups += " a ~ switch (y)";
  EXPECT_EQ(skipOne(groups), "Statements nested too deeply (more than 200 levels).");
}

TEST(ScriptSkip, SkipToTokenStopsAtTheFirstOfItsTokens) {
  ReaderFixture fixture("x = 1; if (a) else endif elseif y");
  ReadToken found;
  ASSERT_TRUE(skipToToken(fixture.reader, {Token::Else, Token::ElseIf}, found));
  EXPECT_TRUE(found.is(Token::ElseIf));
  ReaderFixture end("x = 1;");
  EXPECT_FALSE(skipToToken(end.reader, {Token::EndIf}, found));
  EXPECT_EQ(end.firstMessage(), "Premature end of script");
}

TEST(ScriptHeaderReading, ReadsTheHeaderItemsInAnyOrder) {
  ReaderFixture fixture(
      "\"CONVERSION SCRIPT V. 1\"\r\n; title \"Muster\" convlevels 1 2\r\n"
      "gamesystem Hollowmark \"Other\"\r\nmenuitem \"x\" { y; }\r\nx = 1;");
  ScriptHeader header;
  ASSERT_TRUE(readScriptHeader(fixture.reader, header)) << fixture.firstMessage();
  EXPECT_EQ(header.title, "Muster");
  EXPECT_EQ(header.sourceSystem, "Hollowmark");
  EXPECT_EQ(header.destSystem, "Other");
  EXPECT_TRUE(header.hasGameSystems);
  EXPECT_EQ(header.sourceLevel, 1);
  EXPECT_EQ(header.destLevel, 2);
  EXPECT_TRUE(header.hasMenu);
  ReadToken first;
  ASSERT_TRUE(fixture.reader.readToken(first));
  EXPECT_EQ(first.text, "x");
  EXPECT_EQ(fixture.reader.position.line, 5);
}

TEST(ScriptHeaderReading, CutsLongNamesAndReportsBadHeaders) {
  const std::string longTitle(70, 't');
  ReaderFixture cut("\"Conversion script v. 1\" title \"" + longTitle +
                    "\" gamesystem \"abcdefghijklmnopqrstuvwxyz\" b");
  ScriptHeader header;
  ASSERT_TRUE(readScriptHeader(cut.reader, header));
  EXPECT_EQ(header.title, std::string(64, 't'));
  EXPECT_EQ(header.sourceSystem, "abcdefghijklmnopqrstuvwx");

  const std::pair<std::string, std::string> cases[] = {
      {"\"Conversion script v. 2\"", "The file t.scp is not formatted as a script."},
      {"Conversion script", "The file t.scp is not formatted as a script."},
      {"", "The file t.scp is not formatted as a script."},
      {"\"Conversion script v. 1\" gamesystem ( x", "Game system string expected"},
      {"\"Conversion script v. 1\" gamesystem a ;", "Game system string expected"},
      {"\"Conversion script v. 1\" title ;", "Script title expected."},
  };
  for (const auto& [text, message] : cases) {
    ReaderFixture fixture(text);
    EXPECT_FALSE(readScriptHeader(fixture.reader, header)) << text;
    EXPECT_EQ(fixture.firstMessage(), message) << text;
  }
}

}  // namespace
}  // namespace zv::script
