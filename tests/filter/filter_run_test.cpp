#include <gtest/gtest.h>

#include "expr/symbols.h"
#include "run_test_support.h"

namespace zv {
namespace {

class FilterRunTest : public test::RunFixture {
 protected:
  void SetUp() override {
    RunFixture::SetUp();
    open();
  }
  struct Case {
    const char* body;
    const char* output;  ///< nullptr: the run fails
    const char* shown = "";
  };
  void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      quiet.clear();
      std::optional<std::string> output = runBody(c.body);
      if (c.output == nullptr) {
        EXPECT_FALSE(output.has_value()) << c.body << " gave " << output.value_or("");
      } else {
        EXPECT_EQ(output.value_or("(failed)"), c.output) << c.body;
      }
      EXPECT_EQ(quiet.lastShown(), c.shown) << c.body;
    }
  }
};

TEST_F(FilterRunTest, TextFieldsAndEscapes) {
  check({
      {"Hello %1+2%\n", "Hello 3\n"},
      {"Half %5/2%\n", "Half 2\xBD\n"},
      {"50\\% off\n", "50% off\n"},
      {"color=\\#ff0000 # kept\n", "color=#ff0000 # kept\n"},
      {"Shown # not shown\nNext\n", "Shown Next\n"},
      {"# a comment line\nText\n", "Text\n"},
      {"  # an indented one prints\n", "  "},
      {"a\\nb\n", "a\r\nb\n"},
      {"joined \\\r\nline\r\n", "joined line\r\n"},
      {"joined \\\nline\n", "joined line\n"},
      {"end \\", "end "},
      {"\\@bold \\? \\\\\n", "@bold ? \\\n"},
      {"%\"R&D\"%\n", "R&D\n"},
      {"%@gamesystem% %@sheettype% %@filename% %@currentversion%\n", "Tiny PC bob.chr 253\n"},
      {"%@datasheets%|%@charsheetlevel%|%@nosuchword%|\n", "a.cds,b.cds|1||\n"},
      {"%@date% %@datecreated%\n", "3/5/24 12/25/97\n"},
      {"%@Main.Name%\n", "Bob\n"},
      {"%@Main.Nope%\n", nullptr,
       "[Filter Error] Can't find dialog field Nope in Main\\n\\nLine: 2"},
      {"%\"a\\nb\"%|%\"\\%\"%\n", "a\nb|%\n"},
      {"100%%\n", nullptr,
       "[Filter Error] Bad expression or missing %: \\n\\nInternal error\\n\\nLine: 2"},
      {"%1+%\n", nullptr,
       "[Filter Error] Bad expression or missing %: 1+\\n\\nStack underflow or missing "
       "argument\\n\\nLine: 2"},
      {"open %1+2\n", nullptr, "[Filter Error] Missing % in filter\\n\\nLine: 2"},
      {std::string("%\"" + std::string(260, 'x') + "\"%\n").c_str(), nullptr,
       "[Filter Error] Name overflow in filter\\n\\nLine: 2"},
  });
}

TEST_F(FilterRunTest, Conditionals) {
  check({
      {"?1?yes?no?\n", "yes\n"},
      {"?0.9?yes?no?\n", "no\n"},
      {"?\"\"?yes?no?\n", "no\n"},
      {"?\"x\"?yes?no? after\n", "yes after\n"},
      {"?@Skills?has?none?\n", "has\n"},
      {"?@notes?N?-?\n", "-\n"},
      {"?@Main.Name?named?-?\n", "named\n"},
      {"?1?%2*3%??\n", "6\n"},
      {"?1?yes\n", nullptr, "[Filter Error] Missing ? in filter conditional.\\n\\nLine: 2"},
      {"?1+?a?b?\n", nullptr,
       "[Filter Error] Bad expression or missing %: 1+\\n\\nStack underflow or missing "
       "argument\\n\\nLine: 2"},
  });
}

TEST_F(FilterRunTest, StreamsAndOutputState) {
  check({
      {"body\n@footer\nfoot\n@header\nh1\n@header\nh2\n", "h2\nbody\nfoot\n"},
      {"a\n@dest side\nb\n@dest\nc\n", "a\nc\nb\n"},
      // A named header stands where it was made, not in front.
      {"a\n@header top\nt\n@dest\nb\n", "a\nb\nt\n"},
      {"A\n@exit\nB\n", ""},
      {"A\n@output off\nB\n@output on\nC\n", "A\nC\n"},
      {"@output off\n@output Now %1+1%\nHidden\n@output on\n", "Now 2\n"},
      {"@output @bold\n", nullptr,
       "[Filter Error] @output may not contain a command.\\n\\nLine: 2"},
      {"@fail Nope\nX\n", nullptr, "[Copy Filter Error] Nope"},
      {"@message \"hi\"\nX\n", "X\n", "[Note] hi"},
      {"@message 1+\nX\n", "X\n", "[Note] 1+"},
      {"@message 7\nX\n", "X\n", "[Note] 7"},
      {"Body\n@bold Heavy\n@margins 1in\n", "Body\nHeavy\n1in\n"},
      {"@frobnicate\n", nullptr, "[Filter Error] Bad filter command: frobnicate\\n\\nLine: 2"},
      {"@endwhile\n", nullptr, "[Filter Error] Bad filter command: endwhile\\n\\nLine: 2"},
  });
}

TEST_F(FilterRunTest, OutputSuppressedShowsOncePerProgram) {
  EXPECT_EQ(runBody("A\n@output off\nB\n"), "A\n");
  EXPECT_EQ(quiet.lastShown(),
            "[Output Suppressed] The output was suppressed when this filter ended.\\n\\nThis "
            "probably means that there is an error in the filter: an @output off appeared, but no "
            "@output on appeared to turn output back on.");
  quiet.clear();
  EXPECT_EQ(runBody("A\n@output off\nB\n"), "A\n");
  EXPECT_TRUE(quiet.shown().empty());
}

TEST_F(FilterRunTest, Translations) {
  check({
      {"@trans & &amp;\nR&D %\"R&D\"%\n", "R&D R&amp;D\n"},
      {"@trans & &amp;\n@translate false\n%\"R&D\"%\n@translate 1\n%\"<&>\"%\n", "R&D\n<&amp;>\n"},
  });
  EXPECT_EQ(run("@gamesystem Tiny\n@trans < &lt;\n@trans < [lt]\n%\"<\"%\n"), "[lt]\n");
  EXPECT_EQ(run("@gamesystem Tiny\n@trans \\t \\\\t\n%\"a\tb\"%\n"), "a\\tb\n");
}

TEST_F(FilterRunTest, IfWhileFor) {
  check({
      {"@if 0\nA\n@elseif 1\nB\n@else\nC\n@endif\n", "B\n"},
      {"@if 1\nA\n@elseif 1\nB\n@else\nC\n@end\nD\n", "A\nD\n"},
      {"@if 0\nA\n@else\nC\n@endif\n", "C\n"},
      {"@if 1\nA\n", "A\n"},
      {"@if 0\n@foreach(Skills)\n@if 1\n@endif\n@endfor\nX\n@endif\nY\n", "Y\n"},
      {"@if 0\n@foreach(Skills)\nX\n", nullptr,
       "[Filter Processing Error] Could not find closing command for @foreach, starting around "
       "line 3."},
      {"@if \"\"\nA\n@endif\n", ""},
      {"@if 1+\nA\n@endif\n", nullptr,
       "[Filter Error] Bad if conditional in filter: 1+\\n\\nLine: 2"},
      {"@if 0\n@elseif 1+\n@endif\n", nullptr,
       "[Filter Error] Bad if conditional in elseif: 1+\\n\\nLine: 3"},
      {"@while 0\nX\n@endwhile\nY\n", "Y\n"},
      {"@n = 0\n@while n < 3\n%n%\n@n = n + 1\n@endwhile\nend\n", "0\n1\n2\nend\n"},
      {"@while 1\nX\n", nullptr, "[Filter Error] Missing endwhile\\n\\nLine: 2"},
      {"@for (i = 1; i <= 3; i = i + 1)\n%i%\n@endfor\n", "1\n2\n3\n"},
      {"@for j = 3; j > 1; j = j - 1\n%j%\n@endfor\n", "3\n2\n"},
      {"@for (k = 5; k < 3; k = k + 1)\n%k%\n@endfor\ndone\n", "done\n"},
      {"@for\n", nullptr, "[Filter Error] Empty @for\\n\\nLine: 2"},
      {"@for (i = 1; i < 2)\n@endfor\n", nullptr,
       "[Filter Error] Missing semicolon in for: i = 1; i < 2\\n\\nLine: 2"},
      {"@for (i = 1; i < 3; i = i + 1)\n", nullptr, "[Filter Error] Missing @endfor\\n\\nLine: 2"},
  });
  // @for and @assign leave their variables in the sheet's table.
  EXPECT_NE(sheet->symbols->findHere("i"), nullptr);
}

TEST_F(FilterRunTest, EndlessLoopCanBeCancelled) {
  quiet.headless.setInterruptAfterPolls(50);
  EXPECT_FALSE(runBody("@while 1\nX\n@endwhile\n"));
  EXPECT_EQ(quiet.lastShown(), "[Filter Canceled] Filter canceled by user.");
}

TEST_F(FilterRunTest, Assignments) {
  check({
      {"@x = 2*3\n%x%\n", "6\n"},
      {"@assign y = \"a\"\n%y%%y%\n", "aa\n"},
      {"@assign = 3\n", nullptr,
       "[Filter Error] Missing '=' or variable in filter assignment\\n\\nLine: 2"},
      {"@assign z 3\n", nullptr,
       "[Filter Error] Missing '=' or variable in filter assignment\\n\\nLine: 2"},
      {"@var a, b = 4, c = concat(\"x,\", \"y\")\n%a%|%b%|%c%\n", "0|4|x,y\n"},
      {"@var q, r\n@q = 5\n%q%.%r%\n", "5.0\n"},
      {"@var t = 2\n@t = t + 1\n%t%\n", "3\n"},
      {"@var L[3] = 4, 5, 6\n%L[2]%\n", "5\n"},
      {"@array G[2] = 7, 8\n%G[1] + G[2]%\n", "15\n"},
      {"@array G = 1\n", nullptr, "[Filter Error] Missing '[' in array definition\\n\\nLine: 2"},
      {"@array TraitCost[2] = 1, 2\n", nullptr,
       "[Filter Error] Array TraitCost is already defined as something else\\n\\nLine: 2"},
      {"@x = 1 +\n", nullptr, "[Filter Error] Error setting x to 1 +\\n\\nLine: 2"},
  });
}

TEST_F(FilterRunTest, GetText) {
  quiet.headless.addAnswer("Zed");
  EXPECT_EQ(runBody("@gettext who, Name?\n%who%\n"), "Zed\n");
  EXPECT_EQ(quiet.lastShown(), "[Filter Input] Name?");
  quiet.headless.addAnswer("Cancel");
  EXPECT_FALSE(runBody("@gettext who, Name?\n%who%\n"));
  quiet.clear();
  EXPECT_FALSE(runBody("@gettext who\n"));
  EXPECT_EQ(quiet.lastShown(), "[Filter Error] Missing , in @gettext command.\\n\\nLine: 2");
}

TEST_F(FilterRunTest, Subroutines) {
  check({
      {"@sub greet(who)\nHello %who%\n@endsub\n@greet(\"Bob\")\n@call greet(\"Al\")\n",
       "Hello Bob\nHello Al\n"},
      {"@sub two(a, b)\n%a%-%b%\n@endsub two\n@two(concat(\"x\", \"y\"), \"p, q\")\n", "xy-p, q\n"},
      {"@sub none()\nN\n@endsub\n@none()\n@none()\n", "N\nN\n"},
      // A subroutine's locals are gone after the call: the name outside is a new variable.
      {"@sub local(a)\n@var inner = a * 2\n%inner%\n@endsub\n@local(4)\n%inner%\n", "8\n0\n"},
      {"@greet(\"Bob\")\n@sub greet(who)\n@endsub\n", nullptr,
       "[Filter Error] Filter subroutine greet is not defined.\\n\\nLine: 2"},
      {"@sub f(a, a)\n@endsub\n", nullptr,
       "[Filter Error] Duplicate argument name a on subroutine f\\n\\nLine: 2"},
      {"@sub if()\n@endsub\n", nullptr,
       "[Filter Error] The name if cannot be used for a subroutine.\\n\\nLine: 2"},
      {"@sub bold()\n@endsub\n", nullptr,
       "[Filter Error] The name bold cannot be used for a subroutine.\\n\\nLine: 2"},
      {"@endsub\n", nullptr,
       "[Filter Error] @endsub encountered outside subroutine definition.\\n\\nLine: 2"},
      {"@sub (a)\n", nullptr, "[Filter Error] Empty subroutine name found.\\n\\nLine: 2"},
      {"@sub f(a\n", nullptr, "[Filter Error] Missing ')' in @sub definition for f\\n\\nLine: 2"},
      {"@sub f(a,)\n", nullptr,
       "[Filter Error] Empty argument names not allowed in @sub definition: f\\n\\nLine: 2"},
      {"@sub f()\nX\n", nullptr, "[Filter Error] Missing endsub for f\\n\\nLine: 3"},
      {"@sub f()\n@sub g()\n@endsub\n", nullptr,
       "[Filter Error] @sub found before @endsub in f. Probably missing @endsub for f.\\n\\nLine: "
       "3"},
      {"@sub f()\n@endsub g\n", nullptr,
       "[Filter Error] The name on @endsub (g) does not match the current subroutine "
       "(f)\\n\\nLine: 3"},
      {"@sub f()\n@endsub\n@sub f()\n@endsub\n", nullptr,
       "[Filter Error] Filter Subroutine f is already defined.\\n\\nLine: 4"},
      {"@sub r()\n@r()\n@endsub\n@r()\n", nullptr,
       "[Filter Error] Subroutine r called recursively.\\n\\nLine: 3"},
      {"@sub f(a)\n@endsub\n@f(1, 2)\n", nullptr,
       "[Filter Error] Too many parameters found for f.\\n\\nLine: 4"},
      {"@sub f(a, b)\n@endsub\n@f(1)\n", nullptr,
       "[Filter Error] Incorrect number of parameters in call to f.\\n\\nLine: 4"},
      {"@sub f(a)\n@endsub\n@f(1\n", nullptr,
       "[Filter Error] Missing ) in subroutine call.\\n\\nLine: 4"},
      {"@sub f(a)\n@endsub\n@f(1+)\n", nullptr,
       "[Filter Error] Error in argument expression: 1+\\n\\nLine: 4"},
  });
}

TEST_F(FilterRunTest, LineRules) {
  EXPECT_FALSE(runBody(std::string(kMaxFilterLine, 'x') + "\n"));
  EXPECT_EQ(quiet.lastShown(),
            "[Filter Error] Filter line too long. Maximum line length is 10239.\\n\\nLine: 2");
  EXPECT_EQ(runBody(std::string(kMaxFilterLine - 2, 'y') + "\n")->size(), kMaxFilterLine - 1);
  // Line numbers count the header, also with comments moved out of it.
  quiet.clear();
  EXPECT_FALSE(run("# about\n@gamesystem Tiny\n# note\n@description D\nOne\n@nope\n"));
  EXPECT_EQ(quiet.lastShown(), "[Filter Error] Bad filter command: nope\\n\\nLine: 6");
  // With the caller's flag, header words in the body give nothing.
  options.headerWords = HeaderWordsInBody::Silent;
  EXPECT_EQ(runBody("Text\n@bold Heavy\n"), "Text\n");
}

TEST_F(FilterRunTest, RunFilterTextOnAString) {
  std::optional<std::string> out = runFilterText(*sheet, "Name: %@Main.Name%", 0, options, context);
  EXPECT_EQ(out, "Name: Bob");
  EXPECT_FALSE(runFilterText(*sheet, "%@Main.X%", 4, options, context));
  EXPECT_EQ(quiet.lastShown(), "[Filter Error] Can't find dialog field X in Main\\n\\nLine: 5");
}

TEST_F(FilterRunTest, OutputFileNameIsRemovedBeforeARun) {
  defineVariable(*sheet->symbols, "outputFileName", "\"old.txt\"");
  EXPECT_EQ(runBody("?outputFileName?set?unset?\n"), "unset\n");
}

TEST_F(FilterRunTest, BlankSheet) {
  options.blankSheet = true;
  check({
      {"A%@Main.Name%B\n", "AB\n"},
      {"@foreach(Skills)\nX\n@endfor\nY\n", "Y\n"},
      {"?@blankcharsheet?blank?full?\n", "blank\n"},
  });
}

}  // namespace
}  // namespace zv
