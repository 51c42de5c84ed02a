// Requirements: the text grammar read and written back, each kind of requirement and each
// connector tested against a sheet, the display texts, the excluded test and the flags that waive
// the check.

#include "rules/requirements/requirements.h"

#include "sheet_lists_support.h"

namespace zv::testing {
namespace {

class RequirementsTest : public SheetListsTest {
 protected:
  RequirementsTest() {
    ListInfo& skills = addList("Skills");
    sword_ = &addTo(skills, "Sword", Value(12), "Combat");
    addTo(skills, "Axe", Value(9), "Combat;*Marked");
    addTo(skills, "Lore", Value(4), "Knowledge");
    ListInfo& feats = addList("Feats");
    feat_ = &addTo(feats, "Feat", Value(1));
    addTo(addList("Gear"), "Rope", Value(1));
    Option& edge = addOption(*sword_, kOptionAddition, "Edge", "+3");
    (void)edge;
    addField("Main", 31, "Race").text = "Elf";
  }

  std::optional<std::vector<Prereq>> parse(std::string_view text, bool evaluate = true) {
    return parsePrereqs(PrereqContext{&sheet_, feat_->list, feat_, evaluate, false}, text);
  }

  /// Whether the requirement text holds for the feat.
  bool holds(std::string_view text) {
    return prereqSatisfied(sheet_, feat_->list, *feat_, PrereqMode{}, text);
  }

  Item* sword_ = nullptr;
  Item* feat_ = nullptr;
};

TEST_F(RequirementsTest, TextsReadAndWriteBack) {
  struct Case {
    const char* text;
    PrereqKind kind;
    const char* written;
  };
  const Case cases[] = {
      {"$Grit > 10", PrereqKind::Expression, "$Grit > 10"},
      {"Sword", PrereqKind::ItemExists, "Sword"},
      {" Skills : Sword ", PrereqKind::ItemExists, "Skills:Sword"},
      {"Sword >= 12", PrereqKind::ItemCompared, "Sword>=12"},
      {"Skills:Sword<3", PrereqKind::ItemCompared, "Skills:Sword<3"},
      {"Sword<=3", PrereqKind::ItemCompared, "Sword<=3"},
      {"Sword>3", PrereqKind::ItemCompared, "Sword>3"},
      {"#2,Skills", PrereqKind::ListCount, "#2,Skills"},
      {"#2,Skills>=9", PrereqKind::ListCount, "#2,Skills>=9"},
      {"#2,Skills:Combat>=12", PrereqKind::CategoryCount, "#2,Skills:Combat>=12"},
      {"#1,2,Skills", PrereqKind::CategoriesCount, "#1,2,Skills"},
      {"Foo@@*Bar=3", PrereqKind::Option, "Foo@@*Bar=3"},
      {"Skills:Foo@@Bar", PrereqKind::Option, "Skills:Foo@@Bar"},
      {"!Foo::Not with a foo", PrereqKind::ItemExists, "!Foo::Not with a foo"},
      {"Sw\\;ord\\|s", PrereqKind::ItemExists, "Sw\\;ord\\|s"},
      {"\\!Bang", PrereqKind::ItemExists, "\\!Bang"},
  };
  for (const Case& c : cases) {
    std::optional<std::vector<Prereq>> prereqs = parse(c.text, false);
    ASSERT_TRUE(prereqs && prereqs->size() == 1) << c.text << " " << messages();
    EXPECT_EQ((*prereqs)[0].kind, c.kind) << c.text;
    EXPECT_EQ(formatPrereq((*prereqs)[0]), c.written) << c.text;
  }
  std::optional<std::vector<Prereq>> escaped = parse("Sw\\;ord");
  EXPECT_EQ((*escaped)[0].name, "Sw;ord");
  EXPECT_EQ(messages(), "");
}

TEST_F(RequirementsTest, ConnectorsAndValues) {
  std::optional<std::vector<Prereq>> prereqs = parse(";;a|b;c~d;");
  ASSERT_TRUE(prereqs);
  ASSERT_EQ(prereqs->size(), 4u) << "empty requirements are skipped";
  EXPECT_EQ((*prereqs)[0].connector, PrereqConnector::Or);
  EXPECT_EQ((*prereqs)[1].connector, PrereqConnector::And);
  EXPECT_EQ((*prereqs)[2].connector, PrereqConnector::Then);
  EXPECT_EQ((*prereqs)[3].connector, PrereqConnector::And);

  prereqs = parse("Sword>=2*6");
  EXPECT_EQ((*prereqs)[0].value, Value(12)) << "evaluated in the item's context";
  prereqs = parse("Sword>=2*6", false);
  EXPECT_EQ((*prereqs)[0].value, Value("2*6")) << "kept as text while a data sheet loads";
  EXPECT_EQ((*prereqs)[0].valueText, "2*6");
  prereqs = parse("Main:Race=\"Elf\"");
  EXPECT_NE((*prereqs)[0].field, nullptr) << "a dialog field of that name";
  EXPECT_EQ((*prereqs)[0].listFound, nullptr);
  prereqs = parse("Skills:Sword");
  EXPECT_EQ((*prereqs)[0].listFound, sheet_.lists[0].get());
}

TEST_F(RequirementsTest, SyntaxErrors) {
  for (const char* text : {"#x,Skills", "#2", "#2,", "Sword>", "@@Bar", "Foo@@",
                           "#2,Skills:", "Sword;!", "$", "Skills:"}) {
    host_.clearTranscript();
    EXPECT_FALSE(parse(text)) << text;
    EXPECT_NE(messages().find("[Error] Syntax error in requirement: "), std::string::npos) << text;
    EXPECT_FALSE(holds(text)) << text;
  }
}

TEST_F(RequirementsTest, EachKindAgainstTheSheet) {
  struct Case {
    const char* text;
    bool holds;
  };
  const Case cases[] = {
      // Expressions.
      {"$1+1=2", true},
      {"$0", false},
      {"$0.5", true},
      // Items that exist, in the feat's own list or a named one.
      {"Sword", false},
      {"Skills:Sword", true},
      {"Skills:Bow", false},
      {"!Skills:Bow", true},
      {"Gear:Sword", false},
      {"Nowhere:Sword", false},
      // Items compared.
      {"Skills:Sword>=12", true},
      {"Skills:Sword>12", false},
      {"Skills:Sword<13", true},
      {"Skills:Sword=12", true},
      {"Skills:Sword<=11", false},
      {"Skills:Bow>1", false},
      {"!Skills:Sword>12", true},
      // Counts in a list, in a category, across categories.
      {"#3,Skills", true},
      {"#4,Skills", false},
      {"#2,Skills>=9", true},
      {"#2,Skills>9", false},
      {"#2,Skills:Combat>=9", true},
      {"#2,Skills:Combat>=12", false},
      {"#1,Skills:knowledge", true},
      {"#1,Skills:Marked", false},
      {"#1,2,Skills", true},
      {"#2,2,Skills", false},
      {"#2,1,Skills", true},
      {"!#1,Skills:Magic", true},
      // Options of an item.
      {"Skills:Sword@@Edge", true},
      {"Skills:Sword@@Ed", false},
      {"Skills:Sword@@*Ed", true},
      {"Skills:Sword@@Edge=3", true},
      {"Skills:Sword@@Edge>3", false},
      {"Skills:Lore@@Edge", false},
      // A dialog field.
      {"Main:Race=\"elf\"", true},
      {"Main:Race=\"Dwarf\"", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(holds(c.text), c.holds) << c.text << " " << messages();
}

TEST_F(RequirementsTest, Connectors) {
  // Skills:Sword holds, Skills:Bow doesn't, Skills:Lore holds.
  struct Case {
    const char* text;
    bool holds;
  };
  const Case cases[] = {
      {"Skills:Bow|Skills:Sword", true},
      {"Skills:Sword;Skills:Bow", false},
      {"Skills:Bow;Skills:Sword", false},
      {"Skills:Bow|Skills:Sword;Skills:Lore", true},  // (a or b) and c
      {"Skills:Sword|Skills:Bow;Skills:Bow", false},  // not a or (b and c)
      {"Skills:Sword~Skills:Bow", false},
      {"Skills:Sword~Skills:Lore", true},
      {"Skills:Bow|Skills:Sword~Skills:Lore|Skills:Bow", true},
      {"Skills:Bow~Skills:Sword", false},
      {";;Skills:Sword;", true},
      {"Skills:Bow|", false},
      {"Skills:Sword|", true},
      {"", true},
  };
  for (const Case& c : cases)
    EXPECT_EQ(holds(c.text), c.holds) << c.text;
}

TEST_F(RequirementsTest, DisplayTexts) {
  struct Case {
    const char* text;
    const char* shown;
  };
  const Case cases[] = {
      {"$Grit>1", "Grit>1"},
      {"!Foo", "NOT Foo"},
      {"Skills:Sword>=12", "Skills: Sword>=12"},
      {"#2,Skills", "2 Skills"},
      {"#2,Skills<3", "2 Skills<3"},
      {"!#1,Skills:Combat", "No Combat Skills"},
      {"!#3,Skills:Combat", "No more than 2 Combat Skills"},
      {"#2,Skills:Combat>=12", "2 Combat Skills>=12"},
      {"#1,2,Skills", "1 item(s) in 2 categories in Skills"},
      {"Foo@@Bar=3", "Foo (Option: Bar=3)"},
      {"Skills:Foo@@*Bar", "Skills: Foo (Option: *Bar)"},
      {"Foo::Needs a foo", "Needs a foo"},
      {"Foo::$concat(\"a\", \"b\")", "ab"},
  };
  for (const Case& c : cases) {
    std::optional<std::vector<Prereq>> prereqs = parse(c.text, false);
    ASSERT_TRUE(prereqs && prereqs->size() == 1) << c.text;
    EXPECT_EQ(prereqText((*prereqs)[0], feat_), c.shown) << c.text;
  }
}

TEST_F(RequirementsTest, WritingIncompleteRecords) {
  Prereq count;
  count.kind = PrereqKind::ListCount;
  EXPECT_FALSE(formatPrereq(count));
  count.kind = PrereqKind::CategoryCount;
  count.list = "Skills";
  EXPECT_FALSE(formatPrereq(count));
  Prereq excluded;
  excluded.kind = PrereqKind::Excluded;
  EXPECT_FALSE(formatPrereq(excluded));
  excluded.kind = PrereqKind::ItemExists;
  excluded.comparison = static_cast<PrereqComparison>(9);
  EXPECT_FALSE(formatPrereq(excluded));
  EXPECT_EQ(messages(),
            "[Error] List name missing|[Error] Category or list name missing|[Error] Internal "
            "Error in formatPrereq|[Error] error in formatPrereq");
}

TEST_F(RequirementsTest, ExcludedItemsAndWaivers) {
  sword_->prereq = "!Feats:Feat";
  std::optional<Prereq> exclusion = findExclusion(sheet_, *feat_);
  ASSERT_TRUE(exclusion);
  EXPECT_EQ(prereqText(*exclusion, feat_), "Skills:Sword excludes this item.");
  EXPECT_FALSE(prereqSatisfied(sheet_, feat_->list, *feat_, PrereqMode{true, false}, ""));
  EXPECT_TRUE(prereqSatisfied(sheet_, feat_->list, *feat_, PrereqMode{false, false}, ""));
  sword_->prereq = "!Gear:Feat";
  EXPECT_FALSE(findExclusion(sheet_, *feat_)) << "it excludes a Feat of another list";

  feat_->checkExp = "x>5";
  feat_->level = "3";
  EXPECT_FALSE(holds("")) << "the item's level must pass its check";
  EXPECT_TRUE(feat_->checkFailed);
  feat_->level = "6";
  EXPECT_TRUE(holds(""));
  EXPECT_FALSE(feat_->checkFailed);

  feat_->setNoPrereq(true);
  EXPECT_TRUE(holds("Skills:Bow"));
  feat_->setNoPrereq(false);
  feat_->setNoCheckOnInsert(true);
  EXPECT_FALSE(holds("Skills:Bow"));
  EXPECT_TRUE(prereqSatisfied(sheet_, feat_->list, *feat_, PrereqMode{false, true}, "Skills:Bow"));
}

TEST_F(RequirementsTest, CheckOfTheWholeSheet) {
  EXPECT_TRUE(checkAllPrereq(sheet_).empty());
  EXPECT_EQ(unsatisfiedCountText(0), "No unsatisfied requirements");
  feat_->prereq = "Skills:Bow";
  std::vector<UnsatisfiedItem> unsatisfied = checkAllPrereq(sheet_);
  ASSERT_EQ(unsatisfied.size(), 1u);
  EXPECT_EQ(unsatisfied[0].line, "Feats: Feat");
  EXPECT_EQ(unsatisfiedCountText(unsatisfied.size()), "1 item with unsatisfied requirements");

  feat_->prereq.clear();
  sword_->prereq = "!Feats:Feat";  // neither holds while both stand: Sword excludes Feat
  unsatisfied = checkAllPrereq(sheet_);
  ASSERT_EQ(unsatisfied.size(), 2u);
  EXPECT_EQ(unsatisfied[0].line, "Skills: Sword");
  EXPECT_EQ(unsatisfied[1].line, "Feats: Feat");
  EXPECT_EQ(unsatisfiedCountText(unsatisfied.size()), "2 items with unsatisfied requirements");
}

TEST_F(RequirementsTest, EditorOrderOfOperators) {
  struct Case {
    const char* text;
    const char* title;  // null: accepted
  };
  const Case cases[] = {
      {"a|b~c;d", nullptr},      {"a|;b", nullptr},     {"a\\|", nullptr},
      {"a||b", "OR Error"},      {"a~|b", "OR Error"},  {"a|~b", "Then Error"},
      {"a~ ; ~b", "Then Error"}, {"a|", "Order Error"}, {"a~ ;", "Order Error"},
  };
  for (const Case& c : cases) {
    std::optional<PrereqOrderError> error = checkPrereqOrder(c.text);
    if (c.title == nullptr) {
      EXPECT_FALSE(error) << c.text;
    } else {
      ASSERT_TRUE(error) << c.text;
      EXPECT_EQ(error->title, c.title) << c.text;
    }
  }
  EXPECT_EQ(checkPrereqOrder("a||b")->text, "OR cannot directly follow another OR or THEN");
  EXPECT_EQ(checkPrereqOrder("a|~b")->text, "THEN cannot directly follow an OR or another THEN");
  EXPECT_EQ(checkPrereqOrder("a|")->text, "OR and THEN cannot be last.");
}

}  // namespace
}  // namespace zv::testing
