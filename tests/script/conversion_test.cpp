// Conversion scripts from a sample character to a new sheet of the Hollowmark template: the copy
// routines one by one and all at once, the list walk with copyitem and copyoption, and the report
// of what no part of a script handled. Maren Vell has 22 elements that are no sublist: 4 traits,
// 3 flaws, 5 skills, 5 pieces of gear (3 of them in the Pack), 3 rites and 2 bonds.

#include "core/numbers.h"
#include "rules/lists/list_ops.h"
#include "script_support.h"

namespace zv::script {
namespace {

using testing::ScriptTest;

class ScriptConversion : public ScriptTest {
 protected:
  void SetUp() override {
    maren_ = &character("Maren Vell");
    DocumentContext context;
    context.dataDir = testing::kSampleData;
    fresh_ = newSheetFromTemplate(testing::kSampleData + "/hollowmark.cst", kFileCharacterSheet,
                                  context);
    ASSERT_NE(fresh_, nullptr) << lines();
    host().clearTranscript();
  }

  RunOutcome convert(const std::string& body,
                     const std::string& systems = "Hollowmark Hollowmark") {
    writeFile("conv.cnv", "\"Conversion script v. 1\"\r\ngamesystem " + systems + "\r\n" + body);
    return runConversionScript(environment, *maren_, *fresh_, "conv.cnv", ConversionRequest{});
  }

  std::vector<std::string> names(FileInfo& sheet, const std::string& list) {
    std::vector<std::string> out;
    for (const auto& element : findListByName(sheet, list)->items)
      out.push_back(element->name);
    return out;
  }
  std::string total(FileInfo& sheet, const std::string& name) {
    const Symbol* symbol = sheet.symbols->find(name);
    return symbol != nullptr ? formatFloat(valueToDouble(symbol->value), false) : "(none)";
  }

  FileInfo* maren_ = nullptr;
  std::unique_ptr<FileInfo> fresh_;
};

TEST_F(ScriptConversion, AScriptThatDoesNothingLeavesEveryElementUnconverted) {
  const RunOutcome outcome = convert("");
  EXPECT_TRUE(outcome.completed);
  EXPECT_TRUE(outcome.identical);
  EXPECT_EQ(lines(), "[Message] 22 item(s) not converted. Added to Traits list.\n");
  const std::vector<std::string> traits = names(*fresh_, "Traits");
  ASSERT_EQ(traits.size(), 22u);
  EXPECT_EQ(traits[0], "Unconverted: Marsh-born");
  EXPECT_EQ(traits[3], "Unconverted: Keen Ears-2");
  EXPECT_EQ(traits[7], "Unconverted: Fenwalking-Agility-8");
}

TEST_F(ScriptConversion, CopyallCopiesEverything) {
  const RunOutcome outcome = convert("copyall;\r\n");
  EXPECT_TRUE(outcome.completed);
  EXPECT_EQ(lines(), "");
  EXPECT_EQ(
      names(*fresh_, "Skills"),
      (std::vector<std::string>{"Fenwalking", "Lorekeeping", "Spear", "Tracking", "Bargaining"}));
  EXPECT_EQ(names(*fresh_, "Gear"),
            (std::vector<std::string>{"Pack", "Warden's Spear", "Oilskin Cloak"}));
  EXPECT_EQ(findListByName(*fresh_, "Gear")->items.front()->children.size(), 3u);
  EXPECT_EQ(names(*fresh_, "Bonds").size(), 2u);
  for (const char* variable : {"TraitPoints", "FlawPoints", "SkillPoints", "GearCost", "RitePoints",
                               "BondPoints", "Spent", "Left"}) {
    EXPECT_EQ(total(*fresh_, variable), total(*maren_, variable)) << variable;
  }
  EXPECT_EQ(findListByName(*fresh_, "Traits")->items[1]->totalCost, 4);
}

TEST_F(ScriptConversion, ADestinationAfterTheFirstGroupDoesntReachIt) {
  const RunOutcome outcome = convert(
      "list \"Skills\"\r\nSpear ~ copyitem Skills; end\r\ndestination Skills;\r\n"
      "default ~ add \"$n\"; end\r\nendlist\r\n");
  EXPECT_TRUE(outcome.completed) << lines();
  EXPECT_EQ(lines(), "[Message] 17 item(s) not converted. Added to Traits list.\n");
  EXPECT_EQ(
      names(*fresh_, "Skills"),
      (std::vector<std::string>{"Fenwalking", "Lorekeeping", "Spear", "Tracking", "Bargaining"}));
  // The first element meets its group before the destination: an add without a list fails.
  host().clearTranscript();
  const RunOutcome first = convert(
      "list \"Skills\"\r\nFenwalking ~ add \"$n\"; end\r\ndestination Skills;\r\nendlist\r\n");
  EXPECT_FALSE(first.completed);
  EXPECT_EQ(lines(),
            "[Script Error] Period missing between list and item names\\n\\nFile: conv.cnv, line: "
            "4\\nCurrent Item: Fenwalking\n");
}

TEST_F(ScriptConversion, OptionsAboveAGroupRunForEachMatchWithCopyoption) {
  const RunOutcome outcome = convert(
      "list \"Traits\"\r\noptions default ~ copyoption; end endoptions\r\n"
      "default ~ add \"Traits.$n\"; end\r\nendlist\r\nscriptmode;\r\n");
  EXPECT_TRUE(outcome.completed) << lines();
  EXPECT_EQ(lines(), "");
  const ListInfo& traits = *findListByName(*fresh_, "Traits");
  ASSERT_EQ(traits.items.size(), 4u);
  EXPECT_EQ(traits.items[1]->name, "Lantern Eye");
  ASSERT_EQ(traits.items[1]->options.size(), 1u);
  EXPECT_EQ(traits.items[1]->options[0]->name, "Only at dusk");
  EXPECT_EQ(traits.items[1]->totalCost, 4);
  EXPECT_EQ(traits.items[2]->totalCost, 5);
}

TEST_F(ScriptConversion, TheGameSystemsMustMatchTheHeader) {
  const RunOutcome outcome = convert("copyall;", "Hollowmark Other");
  EXPECT_FALSE(outcome.completed);
  EXPECT_EQ(lines(),
            "[Error] You have attempted to convert this Hollowmark character sheet to Hollowmark "
            "using a Hollowmark to Other conversion script.\\n\\nMake sure you select a "
            "destination template that uses the Other game system, or select another conversion "
            "script.\n");
}

TEST_F(ScriptConversion, IdenticalAndExitAndCopydefines) {
  EXPECT_FALSE(convert("identical = 0;").identical);
  host().clearTranscript();
  ASSERT_TRUE(run(*maren_, "$@Creed = \"Keep the lights\";")) << lines();
  const RunOutcome copied = convert("copydefines; scriptmode;");
  EXPECT_TRUE(copied.completed) << lines();
  ASSERT_FALSE(fresh_->defines.empty());
  EXPECT_EQ(fresh_->defines.back().name, "Creed");
  EXPECT_EQ(fresh_->defines.back().body, "\"Keep the lights\"");
  EXPECT_TRUE(fresh_->defines.back().scriptAdded());
  host().clearTranscript();
  const RunOutcome exited = convert("exit;");
  EXPECT_FALSE(exited.completed);
  EXPECT_TRUE(exited.errorReported);
  EXPECT_EQ(lines(), "");
}

TEST_F(ScriptConversion, ScriptsAreFoundByNameInTheDataDirectory) {
  const RunOutcome missing =
      runConversionScript(environment, *maren_, *fresh_, "nothere.cnv", ConversionRequest{});
  EXPECT_FALSE(missing.completed);
  EXPECT_EQ(lines(), "[Error] Conversion script nothere.cnv doesn't exist\n");
  host().clearTranscript();
  writeFile("bad.cnv", "\"Conversion script v. 2\"\r\n");
  EXPECT_FALSE(
      runConversionScript(environment, *maren_, *fresh_, "bad.cnv", ConversionRequest{}).completed);
  EXPECT_EQ(lines(),
            "[Script Error] The file bad.cnv is not formatted as a script.\\n\\nFile: bad.cnv, "
            "line: 1\n");
}

TEST_F(ScriptConversion, RunningOnASheetSaysSoWhenNothingElseDid) {
  writeFile("quiet.scp",
            "\"Conversion script v. 1\" gamesystem Hollowmark Hollowmark\r\n"
            "return 1;\r\n");
  EXPECT_FALSE(runScriptOnSheet(environment, *maren_, "quiet.scp"));
  EXPECT_EQ(lines(), "");
  writeFile("fine.scp", "\"Conversion script v. 1\" gamesystem Hollowmark Hollowmark\r\n");
  EXPECT_TRUE(runScriptOnSheet(environment, *maren_, "fine.scp"));
}

}  // namespace
}  // namespace zv::script
