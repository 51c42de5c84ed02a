// Satisfying requirements: the satisfying value of each comparison, adding or raising the item a
// requirement names, options, dialog fields, counts chosen by the user, the failures with their
// boxes and the chain that stops a requirement coming round; the requirements dialog's rows and
// buttons; the check of a sheet's requirements after a level change.

#include "rules/requirements/prereq_satisfy.h"
#include "rules/requirements/prereq_dialog.h"
#include "rules/requirements/requirements_check.h"
#include "selection_support.h"

namespace zv::testing {
namespace {

class SatisfyTest : public SelectionTest {
 protected:
  SatisfyTest() {
    Category& skills = category("Skills");
    master(skills, "Sword", "Combat").formula = "x*2";
    master(skills, "Axe", "Combat").formula = "x*3";
    master(skills, "Lore", "Knowledge");
    Item& bow = master(skills, "Bow", "Combat");
    bow.checkExp = "x>=3";
    bow.level = "1";
    skills_ = &addList("Skills");
    skills_->catName = "Skills";
    feats_ = &addList("Feats");
    feat_ = &addTo(*feats_, "Feat");
  }

  Prereq parse(const std::string& text) {
    std::optional<std::vector<Prereq>> parsed =
        parsePrereqs(PrereqContext{&sheet_, feats_, feat_, true, false}, text);
    EXPECT_TRUE(parsed && parsed->size() == 1) << text;
    return parsed && !parsed->empty() ? parsed->front() : Prereq{};
  }

  /// Satisfies one requirement of the feat; the prereq afterwards in `out`.
  bool satisfy(const std::string& text, Prereq* out = nullptr) {
    Prereq prereq = parse(text);
    SatisfyContext context{sheet_, appender()};
    const bool done = insertPrereq(context, feats_, prereq, *feat_);
    if (out != nullptr) *out = prereq;
    return done;
  }

  Item* onSkills(const std::string& name) {
    for (const auto& item : skills_->items) {
      if (item->name == name) return item.get();
    }
    return nullptr;
  }

  ListInfo* skills_ = nullptr;
  ListInfo* feats_ = nullptr;
  Item* feat_ = nullptr;
};

TEST_F(SatisfyTest, SatisfyingValues) {
  struct Case {
    const char* text;
    std::optional<std::string> value;
  };
  const Case cases[] = {
      {"Sword<12", "11"},
      {"Sword<=12", "12"},
      {"Sword=12", "12"},
      {"Sword>=12", "12"},
      {"Sword>12", "13"},
      {"Sword>12.5", "13"},
      {"Rank=\"Expert\"", "Expert"},
      {"Rank<\"Expert\"", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(satisfyingValue(parse(c.text)), c.value) << c.text;
  }
  EXPECT_EQ(messages(),
            "[Incorrect Requirement] Only equals allowed in requirements using string values: "
            "Rank<\"Expert\"");
}

TEST_F(SatisfyTest, AddsTheNamedItemAtTheLevelAsked) {
  struct Case {
    const char* text;
    const char* name;
    const char* level;
    double cost;
  };
  const Case cases[] = {
      {"Skills:Sword>12", "Sword", "13", 26},
      {"Skills:Axe=4", "Axe", "4", 12},
      // An unlevelled copy (0) already holds "<12": it comes as it is.
      {"Skills:Lore<12", "Lore", "", 0},
      // "exists" takes the first level the item's check accepts.
      {"Skills:Bow", "Bow", "3", 0},
  };
  for (const Case& c : cases) {
    Prereq prereq;
    sheet_.setChangedFlag(false);
    ASSERT_TRUE(satisfy(c.text, &prereq)) << c.text << " " << messages();
    EXPECT_TRUE(prereq.satisfiedByUser);
    const Item* added = onSkills(c.name);
    ASSERT_NE(added, nullptr) << c.text;
    EXPECT_EQ(added->level, c.level) << c.text;
    EXPECT_DOUBLE_EQ(added->cost, c.cost) << c.text;
    EXPECT_TRUE(sheet_.changed());
  }
  EXPECT_EQ(placed_, 4);
  // An item on the list is raised in place, or left as it is when it already holds.
  ASSERT_TRUE(satisfy("Skills:Sword>=20"));
  EXPECT_EQ(onSkills("Sword")->level, "20");
  ASSERT_TRUE(satisfy("Skills:Sword>1"));
  EXPECT_EQ(onSkills("Sword")->level, "20");
  EXPECT_EQ(placed_, 4);
}

TEST_F(SatisfyTest, WhatCantBeSatisfiedSaysWhy) {
  skills_->maxItems = 1;
  addTo(*skills_, "Dagger");
  ListInfo& junk = addList("Junk");
  junk.catName = "Nowhere";
  struct Case {
    const char* text;
    const char* shown;
  };
  const Case cases[] = {
      {"$1>2", ""},
      {"!Skills:Sword", ""},
      {"Spells:Fire", "[Error] List 'Spells' doesn't exist -- can't add item."},
      {"Skills:Sword", "[Error] List 'Skills' is full; cannot add 'Sword'"},
      {"Junk:Sword", "[Error] Category 'Nowhere' doesn't exist (specified for list 'Junk')."},
      {"#2,Skills", "[Error] List 'Skills' is full; cannot add any more"},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    Prereq prereq;
    EXPECT_FALSE(satisfy(c.text, &prereq)) << c.text;
    EXPECT_FALSE(prereq.satisfiedByUser);
    EXPECT_EQ(messages(), c.shown) << c.text;
  }
  skills_->maxItems = 0;
  host_.clearTranscript();
  EXPECT_FALSE(satisfy("Skills:Spear"));
  EXPECT_EQ(messages(), "[Error] Item 'Spear' not found in category 'Skills'.");
  EXPECT_EQ(placed_, 0);
}

TEST_F(SatisfyTest, AddedItemsBringWhatTheyNeed) {
  Category& skills = category("Skills");
  skills.findItem("Sword")->prereq = "Skills:Lore>=2";
  ASSERT_TRUE(satisfy("Skills:Sword>=1")) << messages();
  EXPECT_EQ(names(skills_->items), (std::vector<std::string>{"Lore", "Sword"}));
  EXPECT_EQ(onSkills("Lore")->level, "2");

  // Two items that need each other: the second round stops.
  skills.findItem("Axe")->prereq = "Skills:Bow";
  skills.findItem("Bow")->prereq = "Skills:Axe";
  host_.clearTranscript();
  ASSERT_TRUE(satisfy("Skills:Axe"));
  EXPECT_EQ(messages(), "[Recursive Requirement] Recursive item requirement for 'Axe'");
  EXPECT_NE(onSkills("Bow"), nullptr);
}

TEST_F(SatisfyTest, DialogFieldsAndOptionsAreSet) {
  DlgItem& race = addField("Main", 31, "Race");
  race.text = "Human";
  Option& keen =
      *system_->options
           .emplace_back(OptionTreeEntry{0, "Keen", 0, 0, std::make_unique<Option>(), {}})
           .option;
  keen.kind = kOptionAddition;
  keen.name = "Keen";
  keen.value = "+1";
  addTo(*skills_, "Sword", Value(3));

  Prereq prereq;
  ASSERT_TRUE(satisfy("Main:Race=\"Elf\"", &prereq)) << messages();
  EXPECT_EQ(race.text, "Elf");
  EXPECT_TRUE(prereq.satisfiedByUser);
  ASSERT_TRUE(satisfy("Skills:Sword@@Keen"));
  ASSERT_EQ(onSkills("Sword")->options.size(), 1u);
  EXPECT_EQ(onSkills("Sword")->options.front()->name, "Keen");
  EXPECT_FALSE(satisfy("Skills:Sword@@Nimble"));
  EXPECT_EQ(messages(), "[Unknown Option] Cannot find option Nimble in data sheet");
}

TEST_F(SatisfyTest, CountsAreChosenByTheUser) {
  addTo(*skills_, "Lore", Value(4), "Knowledge");
  host_.addAnswer("Sword");
  host_.addAnswer("Axe;Bow");
  Prereq prereq;
  ASSERT_TRUE(satisfy("#3,Skills:Combat>=2", &prereq)) << messages();
  EXPECT_TRUE(prereq.satisfiedByUser);
  // Each round offers what isn't listed yet, the items of the category asked for.
  EXPECT_EQ(messages(), "[Combat >= 2] 3 needed|[Combat >= 2] 3 needed");
  EXPECT_EQ(names(skills_->items), (std::vector<std::string>{"Lore", "Sword", "Axe", "Bow"}));
  EXPECT_EQ(onSkills("Axe")->level, "2");
  // A cancelled choice leaves what was added.
  host_.addAnswer("Cancel");
  EXPECT_FALSE(satisfy("#9,Skills"));
  EXPECT_EQ(skills_->items.size(), 4u);
}

TEST_F(SatisfyTest, TheDialogShowsRowsAndSatisfies) {
  addTo(*skills_, "Lore", Value(1), "Knowledge");
  addTo(addList("Flaws"), "Coward").prereq = "!Feats:Feat";
  feat_->prereq = "Skills:Sword>=2|Skills:Axe;$0~Skills:Lore";
  RequirementsDialog dialog(sheet_, feats_, *feat_, false);
  ASSERT_TRUE(dialog.readable());
  EXPECT_EQ(dialog.title(), "Feat");
  EXPECT_EQ(dialog.rowsText(),
            "[ ] Flaws:Coward excludes this item.\r\n"
            "[ ] Skills: Sword>=2\r\n--- OR ---\r\n[ ] Skills: Axe\r\n[ ] 0\r\n--- THEN ---\r\n"
            "[x] Skills: Lore");
  EXPECT_FALSE(dialog.satisfied());
  EXPECT_EQ(dialog.note(), "");
  EXPECT_TRUE(dialog.accept());  // not adding: OK closes it

  EXPECT_EQ(dialog.satisfy(appender()), 2);
  EXPECT_EQ(names(skills_->items), (std::vector<std::string>{"Lore", "Sword", "Axe"}));
  ASSERT_GE(dialog.rows().size(), 4u);
  EXPECT_TRUE(dialog.rows()[1].met);
  EXPECT_TRUE(dialog.rows()[1].satisfiedByUser);
  EXPECT_FALSE(dialog.satisfied());  // the expression and the exclusion still stand
}

TEST_F(SatisfyTest, TheHostAnswersTheDialog) {
  feat_->prereq = "Skills:Lore";
  RuleChoices preferences;
  preferences.disallowIfNotSatisfied = true;
  setPreferences(preferences);
  struct Case {
    const char* answers;
    bool accepted;
    std::size_t listed;
  };
  const Case cases[] = {{"Cancel", false, 0}, {"OK", false, 0}, {"Satisfy\nOK", true, 1}};
  for (const Case& c : cases) {
    skills_->items.clear();
    for (const std::string& answer : split(c.answers, '\n'))
      host_.addAnswer(answer);
    RequirementsDialog dialog(sheet_, feats_, *feat_, true);
    EXPECT_EQ(runRequirementsDialog(dialog, appender()), c.accepted) << c.answers;
    EXPECT_EQ(skills_->items.size(), c.listed) << c.answers;
  }
  // The desktop program's window replaces the host's choice.
  engineContext_->dialogs.runRequirementsDialog = [](RequirementsDialog& dialog, const PlaceItem&) {
    return dialog.title() == "Feat" ? PrereqDialogAnswer::Ok : PrereqDialogAnswer::Cancel;
  };
  RequirementsDialog dialog(sheet_, feats_, *feat_, true);
  EXPECT_TRUE(runRequirementsDialog(dialog, appender()));
}

TEST_F(SatisfyTest, LevelChangesMeetTheSheetsRequirements) {
  Item& sword = addTo(*skills_, "Sword", Value(3));
  feat_->prereq = "Skills:Sword>=3";
  EXPECT_EQ(unmetRequirementsAfterChange(sheet_, sword), std::nullopt);
  sword.value = Value(2);
  const std::optional<BadValue> bad = unmetRequirementsAfterChange(sheet_, sword);
  ASSERT_TRUE(bad.has_value());
  EXPECT_EQ(bad->title, "Skills");
  EXPECT_EQ(bad->message, "1 item with unsatisfied requirements\r\n\r\nFeats: Feat");
  feat_->prereq.clear();
  EXPECT_EQ(unmetRequirementsAfterChange(sheet_, sword), std::nullopt);
}

}  // namespace
}  // namespace zv::testing
