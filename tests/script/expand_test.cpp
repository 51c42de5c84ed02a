// The $ preprocessor: each sequence and $+ function, as the text a statement's expression becomes
// (seen through the variable it is assigned to) or the message it gives.

#include "script/expand/expand.h"
#include "core/numbers.h"
#include "script/expand/plus_functions.h"
#include "script_support.h"

namespace zv::script {
namespace {

using testing::ScriptTest;

struct ExpandCase {
  std::string body;
  std::string variable;  ///< the variable to look at
  std::string expected;  ///< its value, or the first box when it starts with "["
};

class ScriptExpansion : public ScriptTest {
 protected:
  void check(FileInfo& sheet, const std::vector<ExpandCase>& cases) {
    for (const ExpandCase& c : cases) {
      SCOPED_TRACE(c.body);
      host().clearTranscript();
      const bool completed = run(sheet, c.body);
      if (!c.expected.empty() && c.expected.front() == '[') {
        EXPECT_FALSE(completed);
        EXPECT_EQ(firstLine(), c.expected);
      } else {
        EXPECT_TRUE(completed) << lines();
        EXPECT_EQ(variable(c.variable), c.expected);
      }
    }
  }
};

TEST_F(ScriptExpansion, SequencesOnABlankSheet) {
  check(
      blankSheet(),
      {
          {"c = $+canceled;", "c", "0"},
          {"v = \"$+canceled\";", "v", "\"0\""},
          {"x = \"[$$nosuch]\";", "x", "\"[]\""},
          {"y = 5; x = \"$$y$$y\";", "x", "\"55\""},
          {"\n\nx = $#;", "x", "3"},
          {"q = 'say \"hi\"'; x = \"<$$q>\";", "x", "\"<say ''hi''>\""},
          {"x = \"a$zb\";", "x", "\"a$zb\""},
          {"t = \"$+tickcount()\"; x = t > 0;", "x", "1"},
          {"x = $+foo(1);", "", "[Script Error] Unknown function: $+foo\\n\\nFile: t.scp, line: 1"},
          {"x = $+listCount;", "",
           "[Script Error] Missing '(' after $+listCount\\n\\nFile: t.scp, line: 1"},
          {"x = $+(1);", "",
           "[Script Error] Couldn't read function after $+\\n\\nFile: t.scp, line: 1"},
          {"x = $+inlist(a;", "",
           "[Script Error] Bad arguments for $+inlist\\n\\nFile: t.scp, line: 1"},
          {"x = $l;", "",
           "[Script Error] No current item, $l, $o, $n, $v or $c reference found\\n\\nFile: "
           "t.scp, line: 1"},
          {"x = 5 $;", "",
           "[Script Error] Missing character after $ in expression\\n\\nFile: t.scp, line: 1"},
      });
}

TEST_F(ScriptExpansion, ACurrentFieldWithoutAnAnswerStopsSilently) {
  EXPECT_FALSE(run("x = $+currentField();"));
  EXPECT_EQ(lines(), "");
  EXPECT_TRUE(lastOutcome.errorReported);
}

TEST_F(ScriptExpansion, TheBaseValueRule) {
  FileInfo& sheet = blankSheet();
  Symbol* stipend = defineVariable(*sheet.symbols, "Stipend", "0");
  ASSERT_NE(stipend, nullptr);
  ASSERT_EQ(setBaseValue(*sheet.symbols, *stipend, 10.0), 0);
  Symbol* purse = defineVariable(*sheet.symbols, "Purse", "40");
  ASSERT_EQ(setBaseValue(*sheet.symbols, *purse, 15.0), 0);
  // A zero value gives the base; "~" is the value less the base and "&" the base.
  check(sheet, {
                   {"x = $@Stipend;", "x", "10"},
                   {"x = $*Purse;", "x", "40"},
                   {"x = $$~Purse;", "x", "25"},
                   {"x = $$&Purse;", "x", "15"},
                   {"x = \"$*@gamesystem\";", "x", "\"Tiny\""},
               });
}

TEST_F(ScriptExpansion, ExpressionOverflow) {
  std::string body = "big = \"" + std::string(600, 'a') + "\";\nx = \"";
  for (int i = 0; i < 20; ++i)
    body += "$$big";
  body += "\";";
  EXPECT_FALSE(run(body));
  EXPECT_EQ(firstLine(), "[Script Error] Expression overflow\\n\\nFile: t.scp, line: 2");
}

TEST_F(ScriptExpansion, TheItemSequencesAndQuotesInsideQuotes) {
  FileInfo& sheet = blankSheet();
  ListInfo& list = *sheet.addList();
  list.name = "Things";
  auto item = std::make_unique<Item>(ItemKind::Item, "The \"Big\" One");
  item->original = "Big One";
  item->level = "3";
  item->value = Value(3);
  auto option = std::make_unique<Option>();
  option->kind = kOptionText;
  option->name = "Edge";
  option->value = "keen";
  item->options.push_back(std::move(option));
  list.appendItem(std::move(item));
  check(sheet, {
                   {"foreach (Things) x = \"$n\"; endforeach", "x", "\"The ''Big'' One\""},
                   {"foreach (Things) x = \"$o|$l\"; endforeach", "x", "\"Big One|3\""},
                   {"foreach (Things) options Edge ~ x = \"$n=$v\"; end endoptions endforeach", "x",
                    "\"Edge=keen\""},
               });
}

TEST_F(ScriptExpansion, TheDateCountsTheMonthFromZero) {
  LocalTime time;
  time.year = 2024;
  time.month = 3;
  time.day = 15;
  EXPECT_EQ(scriptDateText(time), "2/15/24");
  EXPECT_EQ(scriptDateText(time, "dd/mm/yyyy"), "15/02/2024");
  EXPECT_EQ(scriptDateText(time, "D.M.Y"), "15.2.24");
  time.year = 95;
  EXPECT_EQ(scriptDateText(time, "yyyy"), "1995");
  host().setFixedTime(time);
  ASSERT_TRUE(run("d = \"$+date()\";"));
  EXPECT_EQ(variable("d"), "\"2/15/95\"");
}

TEST_F(ScriptExpansion, FunctionsOverTheListsOfASampleCharacter) {
  FileInfo& sheet = character("Maren Vell");
  check(sheet,
        {
            {"n = $+listCount(Ski);", "n", "5"},
            {"a = $+inlist(Skills,spear);", "a", "1"},
            {"a = $+inlist(Gear, Lantern);", "a", "1"},
            {"a = $+insourcelist(Skills, Swimming);", "a", "0"},
            {"b = $+available(Skills,Swimming);", "b", "1"},
            {"b = $+available(Skills,Jump);", "b", "0"},
            {"v = \"$+value(Skills.Swimming,formula)\";", "v", "\"x*2\""},
            {"v = \"$+value(Skills.Jump,formula)\";", "v", "\"\""},
            {"i = $+selectedIndex(Skills);", "i", "-1"},
            // The arguments are plain text: a function inside another's arguments is not called.
            {"r = $+available(Bonds, $+randselect(Bonds));", "r", "0"},
            {"n = \"$+randselect(Bonds)\"; r = $+available(Bonds, $$n);", "r", "1"},
            {"x = $+inlist(Skills);", "",
             "[Script Error] ',' missing after list name in $+inlist\\n\\nFile: t.scp, line: 1"},
            {"x = $+inlist(Skills,);", "",
             "[Script Error] Item name missing in $+inlist\\n\\nFile: t.scp, line: 1"},
            {"x = $+available(Nope, Spear);", "",
             "[Script Error] 'Nope' is not a list name.\\n\\nFile: t.scp, line: 1"},
            {"x = $+value(Skills,formula);", "",
             "[Script Error] '.' missing after list name in $+value\\n\\nFile: t.scp, line: 1"},
            {"x = $+value(Skills.Spear);", "",
             "[Script Error] Field name missing in $+value\\n\\nFile: t.scp, line: 1"},
            {"x = $+randselect(Skills.Spear);", "",
             "[Script Error] 'Spear' is not a sublist\\n\\nFile: t.scp, line: 1"},
            {"x = $+randselect(Skills.Nothing);", "",
             "[Script Error] Can't find sublist 'Nothing'\\n\\nFile: t.scp, line: 1"},
            {"x = $+listCount();", "",
             "[Script Error] ')' missing after list name in $+listCount\\n\\nFile: t.scp, line: 1"},
        });
}

}  // namespace
}  // namespace zv::script
