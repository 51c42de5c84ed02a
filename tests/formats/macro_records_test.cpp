// What the macro processor records for the data sheet editor: macro definitions with their
// argument descriptions and classes, argument types and their choices strings.

#include <gtest/gtest.h>

#include <ostream>

#include "formats/macro_fixture.h"

namespace zv {
namespace {

using testing::MacroHarness;

TEST(MacroRecords, DefinitionKeepsDescriptionsClassesAndBody) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(
      "$$argtype(Skill, choose, \"Pick\", \"Which skill?\", \"Climb|Swim|*\")\n"
      "$$macro Item(name, req, adj, cost, kind) {{\r\n"
      "$$macrodesc(\"Adds an item\\nwith cost \\\\ here\")\r\n"
      "$$argdesc(name, The item's \\\r\nname)\r\n"
      "$$argdesc( req : Requirement , \"Needs, this\")\r\n"
      "$$argdesc(adj:ADJ, adj)   \t\r\n"
      "$$argdesc(kind:skill, kind)\r\n"
      "$$argdesc(nosuch:text, ignored)\r\n"
      "$$hideMacro()\r\n"
      "item \"$(name)\" end\r\n"
      "}}\r\n");
  ASSERT_TRUE(run.boxes.empty()) << run.boxes.front();
  EXPECT_EQ(run.output, "\n");  // the line end behind $$argtype stays; the one behind }} goes

  const MacroDef* def = harness.context.macroFind("ITEM");
  ASSERT_NE(def, nullptr);
  EXPECT_EQ(def->name, "Item");
  EXPECT_EQ(def->description, "Adds an item\nwith cost \\ here");
  EXPECT_TRUE(def->hidden);
  EXPECT_EQ(def->body, "item \"$(name)\" end\r\n");
  ASSERT_EQ(def->args.size(), 5u);

  struct Expected {
    const char* name;
    const char* description;
    MacroArgClass argClass;
    int typeIndex;
  };
  const Expected expected[] = {
      {"name", "The item's name", MacroArgClass::Text, -1},
      {"req", "Needs, this", MacroArgClass::Requirement, -1},
      {"adj", "adj", MacroArgClass::Adjustment, -1},
      {"cost", "", MacroArgClass::Text, -1},
      {"kind", "kind", MacroArgClass::Custom, 0},
  };
  for (std::size_t i = 0; i < 5; ++i) {
    SCOPED_TRACE(expected[i].name);
    EXPECT_EQ(def->args[i].name, expected[i].name);
    EXPECT_EQ(def->args[i].description, expected[i].description);
    EXPECT_EQ(def->args[i].argClass, expected[i].argClass);
    EXPECT_EQ(def->args[i].typeIndex, expected[i].typeIndex);
  }
  EXPECT_EQ(harness.context.macroFind("Nothing"), nullptr);
}

TEST(MacroRecords, HideMacroWithoutParenthesesAndUnderscoreNames) {
  MacroHarness harness;
  testing::MacroRun run = harness.run("$$macro My_Item(the_arg) {{$$hideMacro x$(the_arg)}}\n");
  ASSERT_TRUE(run.boxes.empty());
  const MacroDef* def = harness.context.macroFind("my_item");
  ASSERT_NE(def, nullptr);
  EXPECT_TRUE(def->hidden);
  EXPECT_EQ(def->body, "x$(the_arg)");
}

TEST(MacroRecords, ReservedArgumentClassNames) {
  const std::pair<const char*, MacroArgClass> rows[] = {
      {"text", MacroArgClass::Text},
      {"req", MacroArgClass::Requirement},
      {"Requirement", MacroArgClass::Requirement},
      {"adj", MacroArgClass::Adjustment},
      {"ADJUSTMENT", MacroArgClass::Adjustment},
      {"auto", MacroArgClass::AutoItems},
      {"autoitems", MacroArgClass::AutoItems},
      {"cat", MacroArgClass::Category},
      {"categories", MacroArgClass::Category},
      {"Category", MacroArgClass::Category},
  };
  for (const auto& [name, argClass] : rows) {
    EXPECT_EQ(reservedArgClass(name), argClass) << name;
  }
  EXPECT_EQ(reservedArgClass("choose"), std::nullopt);
  EXPECT_EQ(reservedArgClass("texts"), std::nullopt);
  EXPECT_EQ(reservedArgClass(""), std::nullopt);
}

TEST(MacroRecords, ArgTypesOfEachKind) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(
      "$$define SEP ;\n"
      "$$argtype(Pick, choose, 'Title', \"Prompt $(SEP)\", \"a|b|?checkexp:$(SEP)\")\n"
      "$$argtype(Many, duplist, \"T\", \"P\",\n  \"$(SEP)\", \"x|y\")\n"
      "$$argtype(Few, list, \"T2\", \"P2\", \",\")\n"
      "$$argtype(pick, list, \"New\", \"P\", \"+\")\n"
      "$$macro M() {{$$if(0)$$argtype(Hidden, list, \"T\", \"P\", \"+\")$$endif}}\n$$M()");
  ASSERT_TRUE(run.boxes.empty()) << run.boxes.front();
  const auto& types = harness.context.argTypes();
  ASSERT_EQ(types.size(), 3u);

  // A later definition of the same name replaces the first in place.
  EXPECT_EQ(types[0].name, "pick");
  EXPECT_EQ(types[0].kind, MacroArgTypeKind::List);
  EXPECT_EQ(types[0].title, "New");
  EXPECT_EQ(types[0].terminator, "+");

  EXPECT_EQ(types[1].name, "Many");
  EXPECT_EQ(types[1].kind, MacroArgTypeKind::DupList);
  EXPECT_EQ(types[1].terminator, ";");
  EXPECT_EQ(types[1].valueList, "x|y");

  EXPECT_EQ(types[2].name, "Few");
  EXPECT_EQ(types[2].kind, MacroArgTypeKind::List);
  EXPECT_EQ(types[2].prompt, "P2");
  EXPECT_EQ(types[2].terminator, ",");
  EXPECT_EQ(types[2].valueList, "");
  EXPECT_EQ(harness.context.findArgType("hidden"), nullptr);
}

TEST(MacroRecords, ChooseTypeTakesItsChoicesWithDefinesReplaced) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(
      "$$define SEP ;\n"
      "$$argtype(Pick, choose, 'Title', \"Prompt $(SEP)\", \"a|b|?checkexp:x$(SEP)\")\n");
  ASSERT_TRUE(run.boxes.empty()) << run.boxes.front();
  const MacroArgType* type = harness.context.findArgType("PICK");
  ASSERT_NE(type, nullptr);
  EXPECT_EQ(type->kind, MacroArgTypeKind::Choose);
  EXPECT_EQ(type->title, "Title");
  EXPECT_EQ(type->prompt, "Prompt ;");
  EXPECT_EQ(type->choices.choices, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(type->choices.checkExpression, "x;");
}

struct ChoicesCase {
  const char* label;
  const char* text;
  bool valid;
  std::vector<std::string> choices;
  bool allowOther;
  const char* promptValue;
  const char* promptText;
  const char* checkExpression;
  const char* checkMessage;
};

void PrintTo(const ChoicesCase& c, std::ostream* os) {
  *os << c.label;
}

const ChoicesCase kChoices[] = {
    {"plain", "Climb|Swim", true, {"Climb", "Swim"}, false, "", "", "", ""},
    {"star_allows_other", "Climb|Swim|*", true, {"Climb", "Swim"}, true, "", "", "", ""},
    {"spaces_trimmed", "  a b  |  c ", true, {"a b", "c"}, false, "", "", "", ""},
    {"escaped_bar", "a\\|b|c", true, {"a|b", "c"}, false, "", "", "", ""},
    {"empty_entries_skipped", "a||b|", true, {"a", "b"}, false, "", "", "", ""},
    {"choose_prompt", "?choose:v:Pick one|x", true, {"x"}, true, "v", "Pick one", "", ""},
    {"choose_text_keeps_colons", "?choose:v:t:u", true, {}, true, "v", "t:u", "", ""},
    {"check", "?checkexp:x>1|?checkmsg:Too low|y", true, {"y"}, false, "", "", "x>1", "Too low"},
    {"list_directive_stays", "?list:Skills|z", true, {"?list:Skills", "z"}, false, "", "", "", ""},
    {"unknown_directive_stays", "?other", true, {"?other"}, false, "", "", "", ""},
    {"escaped_specials_are_literal", "\\*|\\?x", true, {"*", "?x"}, false, "", "", "", ""},
    {"trailing_backslash", "a\\", false, {}, false, "", "", "", ""},
    {"choose_without_text", "?choose:v", false, {}, false, "", "", "", ""},
    {"choose_without_value", "?choose", false, {}, false, "", "", "", ""},
    {"checkexp_without_value", "?checkexp", false, {}, false, "", "", "", ""},
    {"checkmsg_without_value", "a|?checkmsg", false, {}, false, "", "", "", ""},
};

class MacroChoicesTest : public ::testing::TestWithParam<ChoicesCase> {};

TEST_P(MacroChoicesTest, Parses) {
  const ChoicesCase& c = GetParam();
  std::optional<MacroChoices> parsed = parseMacroChoices(c.text);
  ASSERT_EQ(parsed.has_value(), c.valid);
  if (!parsed) return;
  EXPECT_EQ(parsed->choices, c.choices);
  EXPECT_EQ(parsed->allowOther, c.allowOther);
  EXPECT_EQ(parsed->promptValue, c.promptValue);
  EXPECT_EQ(parsed->promptText, c.promptText);
  EXPECT_EQ(parsed->checkExpression, c.checkExpression);
  EXPECT_EQ(parsed->checkMessage, c.checkMessage);
}

INSTANTIATE_TEST_SUITE_P(Cases, MacroChoicesTest, ::testing::ValuesIn(kChoices),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(MacroRecords, DefinesAreUniqueIgnoringCaseAndScanMakesDefines) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(
      "$$define Name first\n$$define NAME second\n"
      "$$macro S(v) {{$$scan(v, \"(.)-(.)\", left, right)}}\n$$S(a-b)");
  ASSERT_TRUE(run.boxes.empty());
  ASSERT_EQ(harness.context.defines().size(), 3u);
  EXPECT_EQ(harness.context.findDefine("name")->value, "second");
  EXPECT_EQ(harness.context.findDefine("LEFT")->value, "a");
  EXPECT_EQ(harness.context.findDefine("right")->value, "b");
}

TEST(MacroRecords, ClearFreesEverything) {
  MacroHarness harness;
  harness.run("$$define A 1\n$$macro M() {{}}\n$$argtype(T, list, \"a\", \"b\", \";\")\n");
  ASSERT_EQ(harness.context.macros().size(), 1u);
  harness.context.macroClear();
  EXPECT_TRUE(harness.context.macros().empty());
  EXPECT_TRUE(harness.context.defines().empty());
  EXPECT_TRUE(harness.context.argTypes().empty());
  EXPECT_EQ(harness.context.macroNextChar(), kEndOfFile);
}

}  // namespace
}  // namespace zv
