// The macro processor with files: include files, the token reader reading through it, the
// process-wide context moved aside for a nested load, and the expansion of a whole file.

#include <gtest/gtest.h>

#include "core/scratch_dir.h"
#include "formats/macro_fixture.h"

namespace zv {
namespace {

using testing::macroBox;
using testing::MacroHarness;

class MacroIncludeTest : public ::testing::Test {
 protected:
  testing::MacroRun runMain(const std::string& text) {
    std::filesystem::path main = dir.write("sheets/main.cds", text);
    return harness.run(text, main, dir / "data");
  }

  test::ScratchDir dir;
  MacroHarness harness;
};

TEST_F(MacroIncludeTest, IncludeIsReadInPlace) {
  dir.write("sheets/part.inc", "b1\nb2\n");
  testing::MacroRun run = runMain("a\n$$include part.inc\nc\n");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "a\nb1\nb2\nc\n");
}

TEST_F(MacroIncludeTest, NameIsMatchedIgnoringCase) {
  dir.write("sheets/Part.Inc", "b");
  testing::MacroRun run = runMain("$$include PART.INC\n.");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "b.");
}

TEST_F(MacroIncludeTest, SourceDirectoryComesBeforeDataDirectory) {
  dir.write("sheets/x.inc", "near");
  dir.write("data/x.inc", "far");
  dir.write("data/only.inc", "shared");
  testing::MacroRun run = runMain("$$include x.inc\n $$include only.inc\n");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "near shared");
}

TEST_F(MacroIncludeTest, DifferentFilesNestAndMacrosCarryOver) {
  dir.write("sheets/a.inc", "$$macro A(x) {{<$(x)>}}\nA1\n$$include b.inc\nA2\n");
  dir.write("sheets/b.inc", "$$A(b)\n");
  testing::MacroRun run = runMain("$$include a.inc\n$$A(z)");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "A1\n<b>\nA2\n<z>");
}

TEST_F(MacroIncludeTest, SameFileAgainAfterItClosed) {
  dir.write("sheets/a.inc", "A\n");
  testing::MacroRun run = runMain("$$include a.inc\n$$include a.inc\n");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "A\nA\n");
}

TEST_F(MacroIncludeTest, IncludeOfItselfIsRefused) {
  dir.write("sheets/a.inc", "$$include A.INC\n");
  testing::MacroRun run = runMain("x\n$$include a.inc\n");
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0], macroBox("Include files may not be nested (line 3)", 3));
}

TEST_F(MacroIncludeTest, LinesOfIncludesAreNotCounted) {
  dir.write("sheets/a.inc", "\n\n\n$$Nope()");
  testing::MacroRun run = runMain("\n$$include a.inc\n");
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0], macroBox("Undefined macro: 'Nope' (line 3)", 3));
}

TEST_F(MacroIncludeTest, MissingFile) {
  testing::MacroRun run = runMain("\n$$include none.inc\n");
  ASSERT_EQ(run.boxes.size(), 1u);
  // The line end that ends the name has been read: the message names the line reached.
  EXPECT_EQ(run.boxes[0], macroBox("Unable to open include file 'none.inc' (line 3)", 3));
}

TEST_F(MacroIncludeTest, ReadErrorOnADirectory) {
  std::filesystem::create_directories(dir / "sheets/folder.inc");
  testing::MacroRun run = runMain("$$include folder.inc\n");
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0], macroBox("Read error on include file: expected EOF.", 2));
}

TEST_F(MacroIncludeTest, SkippedBranchOpensNothing) {
  testing::MacroRun run = runMain("$$macro M() {{$$if(0)$$include none.inc\n$$endif.}}\n$$M()");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, ".");
}

TEST_F(MacroIncludeTest, IncludeInABodyIsReadAfterTheExpansion) {
  dir.write("sheets/part.inc", "inc");
  testing::MacroRun run = runMain("$$macro M() {{[$$include part.inc\n]}}\n$$M()tail");
  EXPECT_TRUE(run.boxes.empty());
  EXPECT_EQ(run.output, "[]inctail");
}

// The token reader takes its characters from the macro processor.
class MacroTokenTest : public ::testing::Test {
 protected:
  MacroTokenTest() : savedLines_(tokenLineState()) {}
  ~MacroTokenTest() override { tokenLineState() = savedLines_; }

  std::vector<std::string> words(const std::string& text) {
    stream_.setStream(std::make_unique<MemoryByteStream>(text));
    stream_.setName("tiny.cds");
    stream_.openStream();
    context_.macroStart("tiny.cds", [this] { return stream_.readByte(); });
    stream_.setCharSource(&context_);
    tokenLineState() = TokenLineState{1, true};
    std::vector<std::string> out;
    std::string word;
    while (stream_.readWord(word, 128) == kTokenOk)
      out.push_back(word);
    return out;
  }

  HeadlessHost host_{nullptr};
  HostInstallation installed_{host_};
  TokenStream stream_;
  MacroContext context_;

 private:
  TokenLineState savedLines_;
};

TEST_F(MacroTokenTest, WordsOfTheExpandedText) {
  std::vector<std::string> got = words(
      "$$macro It(n, c) {{item \"$(n)\" cost $(c) end\r\n}}\r\n"
      "cat Skills # comment $5\r\n"
      "$$It(Climb, 3)\r\n"
      "$$It\t\"Rope, long\"\t1\r\n"
      "end\r\n");
  const std::vector<std::string> expected = {"cat", "Skills", "item", "Climb",      "cost",
                                             "3",   "end",    "item", "Rope, long", "cost",
                                             "1",   "end",    "end"};
  EXPECT_EQ(got, expected);
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(MacroTokenTest, AFailureReadsAsTheEndOfInput) {
  std::vector<std::string> got = words("cat Skills\r\n$$Nope(1)\r\nend\r\n");
  EXPECT_EQ(got, (std::vector<std::string>{"cat", "Skills"}));
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0], macroBox("Undefined macro: 'Nope' (line 2)", 2));
}

TEST_F(MacroTokenTest, LineNumbersFollowTheBaseFile) {
  // A macro delivering five line ends doesn't move the line of later messages.
  words(
      "$$macro Five() {{$$repeat(\"a,b,c,d,e\", x, \",\", \"\\n\")$(x)$$endrepeat}}\n"
      "$$Five()\n"
      "x \"open\n"
      "y\n");
  // Line 3 holds the open string; the reader names the line it has reached, as in a plain file.
  const std::vector<std::string> expected = {"[Error] Unterminated string on line 4 of tiny.cds"};
  EXPECT_EQ(host_.transcript(), expected);
}

TEST(MacroContextScope, MovesTheStateAsideAndBack) {
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  const TokenLineState savedLines = tokenLineState();
  MacroContext& context = macroContext();

  std::string outer = "$$define A outer\n$$macro M() {{m}}\nrest";
  std::size_t outerPos = 0;
  context.macroStart("outer.cds", [&] {
    return outerPos < outer.size() ? static_cast<unsigned char>(outer[outerPos++]) : -1;
  });
  EXPECT_EQ(context.macroNextChar(), 'r');
  tokenLineState() = TokenLineState{7, true};
  {
    MacroContextScope scope;
    EXPECT_TRUE(context.macros().empty());
    EXPECT_EQ(context.findDefine("A"), nullptr);
    std::string inner = "$$define A inner\n$(A)";
    std::size_t innerPos = 0;
    context.macroStart("inner.cds", [&] {
      return innerPos < inner.size() ? static_cast<unsigned char>(inner[innerPos++]) : -1;
    });
    std::string got;
    for (int c = context.macroNextChar(); c >= 0; c = context.macroNextChar())
      got.push_back(c);
    EXPECT_EQ(got, "inner");
    context.macroClear();
    tokenLineState() = TokenLineState{1, false};
  }
  EXPECT_EQ(tokenLineState().lineNumber, 7);
  EXPECT_TRUE(tokenLineState().macroInput);
  ASSERT_NE(context.findDefine("A"), nullptr);
  EXPECT_EQ(context.findDefine("A")->value, "outer");
  EXPECT_NE(context.macroFind("M"), nullptr);
  std::string rest;
  for (int c = context.macroNextChar(); c >= 0; c = context.macroNextChar())
    rest.push_back(c);
  EXPECT_EQ(rest, "est");
  EXPECT_EQ(tokenLineState().lineNumber, 3);  // the base file's line, once reading goes on
  context.macroClear();
  tokenLineState() = savedLines;
  EXPECT_TRUE(host.transcript().empty());
}

TEST(MacroExpandFile, WholeFileWithIncludeFromTheDataDirectory) {
  test::ScratchDir dir;
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  dir.write("data/common.inc", "$$macro Sk(n) {{item \"$(n)\" end\r\n}}\r\n");
  std::filesystem::path sheet =
      dir.write("sheets/tiny.cds", "$$include common.inc\r\ncat Skills\r\n$$Sk(Climb)\r\nend\r\n");
  std::optional<std::string> text = expandMacroFile(sheet, dir / "data");
  ASSERT_TRUE(text.has_value());
  EXPECT_EQ(*text, "cat Skills\r\nitem \"Climb\" end\r\n\r\nend\r\n");
  EXPECT_TRUE(host.transcript().empty());
}

TEST(MacroExpandFile, FailureGivesNothingAfterItsBox) {
  test::ScratchDir dir;
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  std::filesystem::path sheet = dir.write("bad.cds", "cat Skills\n$$Nope(1)\n");
  EXPECT_EQ(expandMacroFile(sheet, dir.path()), std::nullopt);
  ASSERT_EQ(host.transcript().size(), 1u);
  EXPECT_EQ(host.transcript()[0], macroBox("Undefined macro: 'Nope' (line 2)", 2));

  host.clearTranscript();
  EXPECT_EQ(expandMacroFile(dir / "missing.cds", dir.path()), std::nullopt);
  EXPECT_TRUE(host.transcript().empty());
}

}  // namespace
}  // namespace zv
