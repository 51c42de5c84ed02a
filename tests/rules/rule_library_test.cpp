// Rule files: reading (which rules load, booleans, sets, default values, duplicates across
// files), the scan of the data directory, writing and deleting rules and rule sets with the
// editor's messages and round trips through the file, the rule sets a sheet switches on, and the
// ApplyRules choices.

#include <fstream>
#include <sstream>

#include "rules/selection/apply_rules.h"
#include "rules/selection/rule_sets.h"
#include "selection_support.h"

namespace zv::testing {
namespace {

const char* const kCampaign =
    "[Configuration]\r\nGameSystem=Testland\r\n\r\n"
    "[Rulesets]\r\nLow Magic=NoFire;NoCurse\r\nEverything=AllLists\r\n\r\n"
    "[DefaultValues]\r\nMaxCost=10\r\n\r\n"
    "; No fire in this campaign.\r\n"
    "[NoFire]\r\nType=Suppress Category\r\nValue=Fire\r\nDescription=No fire spells\r\n"
    "Not=TRUE\r\n\r\n"
    "[NoCurse]\r\nType=Suppress Item\r\nValue=Curse\r\nDescription=No curses\r\n"
    "DuplicatesOnly=yes\r\n\r\n"
    "[AllLists]\r\nType=Rules List\r\nValue=NoFire;Extra:Cheap;AllLists\r\n"
    "Description=Every restriction\r\n\r\n"
    "[Untyped]\r\nType=\r\nValue=x\r\nDescription=never read\r\n\r\n"
    "[Undescribed]\r\nType=Suppress Item\r\nValue=x\r\n\r\n"
    "[Unknown]\r\nType=Suppress Nothing\r\nValue=x\r\nDescription=never read\r\n";

const char* const kExtra =
    "[Cheap]\r\nType=Expression\r\nValue=@cost<=3\r\nDescription=Cheap things only\r\n"
    "[NoFire]\r\nType=Suppress Item\r\nValue=Fireball\r\nDescription=A second one\r\n";

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class RuleLibraryTest : public SelectionTest {
 protected:
  void readBoth() {
    campaign_ = readRules(kCampaign);
    extra_ = readRules(kExtra, "Extra.rules");
    ASSERT_NE(campaign_, nullptr);
    ASSERT_NE(extra_, nullptr);
  }

  /// The names of the rules that activeRules gives for a sheet's rule set text.
  std::string active(const std::string& ruleSet) {
    sheet_.ruleSet = ruleSet;
    std::string out;
    for (const Rule* rule : activeRules(library_, sheet_, "Spells").rules) {
      out += (out.empty() ? "" : ",") + rule->file + ":" + rule->name;
    }
    return out;
  }

  RuleFile* campaign_ = nullptr;
  RuleFile* extra_ = nullptr;
};

TEST_F(RuleLibraryTest, ReadsRulesSetsAndValues) {
  readBoth();
  std::vector<std::string> rules;
  for (const auto& rule : campaign_->rules)
    rules.push_back(rule->name + "/" + std::string(rule->typeWord()));
  // Without Type, Value and Description, or with an unknown Type, a rule isn't read.
  EXPECT_EQ(rules, (std::vector<std::string>{"NoFire/Suppress Category", "NoCurse/Suppress Item",
                                             "AllLists/Rules List"}));
  const Rule& noFire = *campaign_->findRule("nofire");
  EXPECT_TRUE(noFire.negated);  // "TRUE" reads as true
  EXPECT_FALSE(noFire.duplicatesOnly);
  EXPECT_FALSE(campaign_->findRule("NoCurse")->duplicatesOnly);  // only "true" is true
  EXPECT_EQ(noFire.getDescription(), "No fire spells");
  EXPECT_EQ(campaign_->gameSystem, "Testland");
  ASSERT_EQ(campaign_->ruleSets.size(), 2u);
  EXPECT_EQ(campaign_->ruleSets[0].entries(), (std::vector<std::string>{"NoFire", "NoCurse"}));
  EXPECT_EQ(campaign_->defaultValues.front(),
            (std::pair<std::string, std::string>{"MaxCost", "10"}));
  // The second file's NoFire is refused; its other rule is read.
  EXPECT_EQ(messages(), "[Duplicate Rule] The rule NoFire is duplicated in the file Extra.rules");
  ASSERT_EQ(extra_->rules.size(), 1u);
  EXPECT_EQ(extra_->rules.front()->name, "Cheap");
  EXPECT_EQ(library_.resolve("Testland", "extra:cheap", campaign_), extra_->rules.front().get());
  EXPECT_EQ(library_.resolve("Testland", "NoFire", extra_), &noFire);
}

TEST_F(RuleLibraryTest, ScanFindsEachGameSystemsFolder) {
  std::filesystem::create_directories(dir_ / "rules" / "Testland");
  std::filesystem::create_directories(dir_ / "rules" / "Otherland");
  std::ofstream(dir_ / "rules" / "Testland" / "b.RULES") << "[B]\nType=Expression\nValue=1\n"
                                                            "Description=b\n";
  std::ofstream(dir_ / "rules" / "Testland" / "a.rules") << "[A]\nType=Expression\nValue=1\n"
                                                            "Description=a\n";
  std::ofstream(dir_ / "rules" / "Testland" / "notes.txt") << "[C]\nType=Expression\n";
  std::ofstream(dir_ / "rules" / "Otherland" / "o.rules") << "[O]\nType=Expression\nValue=1\n"
                                                             "Description=o\n";
  EXPECT_EQ(library_.scanRuleFiles(dir_), 3);
  std::vector<std::string> files;
  for (const RuleFile* file : library_.filesOf("TESTLAND"))
    files.push_back(file->shortName);
  EXPECT_EQ(files, (std::vector<std::string>{"a.rules", "b.RULES"}));
  EXPECT_NE(library_.findRule("Otherland", "O"), nullptr);
  EXPECT_EQ(library_.findRule("Testland", "O"), nullptr);
}

TEST_F(RuleLibraryTest, WrittenRulesReadBackAndKeepTheFile) {
  readBoth();
  std::unique_ptr<Rule> rule = makeRule("Suppress Item Prefix");
  rule->name = "NoDark";
  rule->value = "Dark;!Night";
  rule->description = "Nothing of the dark";
  rule->negated = true;
  ASSERT_TRUE(library_.writeRule("Testland", *campaign_, *rule, false)) << messages();
  const std::string text = readFile(campaign_->path);
  // The comment and the rest of the file stay; the new section follows in the file's line form.
  EXPECT_NE(text.find("; No fire in this campaign.\r\n[NoFire]"), std::string::npos);
  EXPECT_NE(text.find("[NoDark]\r\nType=Suppress Item Prefix\r\nValue=Dark;!Night\r\n"
                      "Description=Nothing of the dark\r\nDuplicatesOnly=false\r\nNot=true\r\n"),
            std::string::npos)
      << text;
  // The tables hold what the file holds.
  RuleLibrary reread;
  ASSERT_TRUE(reread.readRuleFile("Testland", campaign_->path));
  const Rule* back = reread.findRule("Testland", "NoDark");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->typeWord(), "Suppress Item Prefix");
  EXPECT_EQ(back->value, rule->value);
  EXPECT_TRUE(back->negated);
  EXPECT_EQ(campaign_->findRule("NoDark")->value, rule->value);

  rule->value = "Dusk";
  ASSERT_TRUE(library_.writeRule("Testland", *campaign_, *rule, true));
  EXPECT_EQ(campaign_->findRule("NoDark")->value, "Dusk");
  EXPECT_EQ(readFile(campaign_->path).find("Dark;!Night"), std::string::npos);

  // A rule of a game system without a file goes to one of its name, made with its game system.
  RuleFile& own = library_.defaultFile("Testland");
  EXPECT_EQ(own.shortName, "Testland.rules");
  rule->name = "Elsewhere";
  ASSERT_TRUE(library_.writeRule("Testland", own, *rule, false));
  EXPECT_EQ(readFile(dir_ / "Rules" / "Testland" / "Testland.rules").substr(0, 38),
            "[Configuration]\r\nGameSystem=Testland\r\n");

  ASSERT_TRUE(library_.deleteRule(*campaign_, "nodark"));
  EXPECT_EQ(campaign_->findRule("NoDark"), nullptr);
  EXPECT_EQ(readFile(campaign_->path).find("NoDark"), std::string::npos);
  EXPECT_FALSE(library_.deleteRule(*campaign_, "NoDark"));
}

TEST_F(RuleLibraryTest, TheEditorRefusesBadRules) {
  readBoth();
  host_.clearTranscript();
  struct Case {
    const char* name;
    const char* value;
    const char* gameSystem;
    const char* shown;
  };
  const Case cases[] = {
      {"Fresh", "x", "Otherland",
       "[Incompatible Game System] The file Campaign.rules uses the Testland game system. This "
       "rule uses Otherland and cannot be written into this file."},
      {"Fresh", " ", "Testland", "[Missing Value] All fields in the rule must have a value"},
      {"", "x", "Testland", "[Missing Value] All fields in the rule must have a value"},
      {"cheap", "x", "Testland",
       "[Duplicate Rule Name] A rule by the name of 'cheap' already exist"},
  };
  const std::string before = readFile(campaign_->path);
  for (const Case& c : cases) {
    std::unique_ptr<Rule> rule = makeRule("Expression");
    rule->name = c.name;
    rule->value = c.value;
    rule->description = "d";
    host_.clearTranscript();
    EXPECT_FALSE(library_.writeRule(c.gameSystem, *campaign_, *rule, false)) << c.shown;
    EXPECT_EQ(messages(), c.shown);
  }
  EXPECT_EQ(readFile(campaign_->path), before);
}

TEST_F(RuleLibraryTest, RuleSetsAreNamedAddedAndDeleted) {
  readBoth();
  host_.clearTranscript();
  struct Case {
    const char* name;
    const char* shown;
  };
  const Case refused[] = {
      {"a=b",
       "[Error] The rule set name a=b is not allowed. The characters =, (, ~, \\ and ; are "
       "illegal."},
      {"(None)",
       "[Error] The rule set name (None) is not allowed. The characters =, (, ~, \\ and ; are "
       "illegal."},
      {"low magic", "[Name Already Defined] The rule set name low magic is already defined."},
      {"whole-file", "[Name Already Defined] The rule set name whole-file is already defined."},
  };
  for (const Case& c : refused) {
    host_.clearTranscript();
    EXPECT_FALSE(library_.writeRuleSet(*campaign_, c.name, "NoFire", false));
    EXPECT_EQ(messages(), c.shown);
  }
  ASSERT_TRUE(library_.writeRuleSet(*campaign_, "Cheap Fire", "NoFire;Extra:Cheap", false));
  EXPECT_NE(readFile(campaign_->path).find("Cheap Fire=NoFire;Extra:Cheap\r\n"), std::string::npos);

  host_.clearTranscript();
  EXPECT_FALSE(library_.deleteRuleSet(*campaign_, "whole-file"));
  EXPECT_EQ(messages(), "[Cannot Delete] This rule set cannot be deleted.");
  host_.clearTranscript();
  host_.addAnswer("No");
  EXPECT_FALSE(library_.deleteRuleSet(*campaign_, "Cheap Fire"));
  host_.addAnswer("Yes");
  EXPECT_TRUE(library_.deleteRuleSet(*campaign_, "Cheap Fire"));
  EXPECT_EQ(messages(),
            "[Delete Rule Set?] Do you want to delete the rule set 'Cheap Fire'?|"
            "[Delete Rule Set?] Do you want to delete the rule set 'Cheap Fire'?");
  EXPECT_EQ(campaign_->findRuleSet("Cheap Fire"), nullptr);
  EXPECT_EQ(readFile(campaign_->path).find("Cheap Fire"), std::string::npos);

  ASSERT_TRUE(library_.setDefaultValue(*campaign_, "MaxCost", "12"));
  EXPECT_NE(readFile(campaign_->path).find("MaxCost=12\r\n"), std::string::npos);
}

TEST_F(RuleLibraryTest, SheetsSwitchOnTheirSets) {
  readBoth();
  struct Case {
    const char* ruleSet;
    const char* active;
  };
  const Case cases[] = {
      {"", ""},
      {"(None)", ""},
      {"Low Magic", "Campaign.rules:NoFire,Campaign.rules:NoCurse"},
      {"campaign:low magic", "Campaign.rules:NoFire,Campaign.rules:NoCurse"},
      {"Extra.rules:whole-file", "Extra.rules:Cheap"},
      // A list passes its flag on, across files, and ends where it names itself.
      {"Everything", "Campaign.rules:NoFire,Extra.rules:Cheap"},
      // An entry naming a rule rather than a set switches the rule on.
      {"NoCurse; Nowhere:NoFire", "Campaign.rules:NoCurse"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(active(c.ruleSet), c.active) << c.ruleSet;
  }
  // With the preference ApplyRules off nothing is active.
  engineContext_->preferences.applyRules = false;
  EXPECT_EQ(active("Low Magic"), "");
  EXPECT_FALSE(campaign_->findRule("NoFire")->isActive());
}

TEST_F(RuleLibraryTest, ApplyRulesChoosesTheSheetsSets) {
  readBoth();
  sheet_.ruleSet = "Campaign.rules:Low Magic";
  ApplyRulesModel model(library_, sheet_);
  std::vector<std::string> labels;
  for (const RuleSetChoice& choice : model.choices())
    labels.push_back(choice.label + (choice.on ? "*" : ""));
  EXPECT_EQ(labels, (std::vector<std::string>{
                        "(None)", "Low Magic (Campaign.rules)*", "Everything (Campaign.rules)",
                        "whole-file (Campaign.rules)", "whole-file (Extra.rules)"}));
  model.toggle(4);
  EXPECT_EQ(model.ruleSetText(), "Campaign.rules:Low Magic;Extra.rules:whole-file");
  model.toggle(0);  // "(None)" turns every set off
  EXPECT_EQ(model.ruleSetText(), "");
  model.toggle(2);
  EXPECT_FALSE(model.choices()[0].on);
  model.toggle(2);
  EXPECT_TRUE(model.choices()[0].on);
  model.toggle(2);
  sheet_.setChangedFlag(false);
  EXPECT_TRUE(model.apply(sheet_));
  EXPECT_EQ(sheet_.ruleSet, "Campaign.rules:Everything");
  EXPECT_TRUE(sheet_.changed());
  EXPECT_FALSE(model.apply(sheet_));
}

}  // namespace
}  // namespace zv::testing
