// zarvelin-cli offer and requirements on the Hollowmark sample: the items Select Item would offer
// a list, trimmed by the sample's rule sets, and each item's requirement verdicts.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

using zv::testing::runCli;

const std::string kData = ZV_SAMPLE_DATA_DIR;
const std::string kMaren = kData + "/characters/Maren Vell.chr";
const std::string kTamsin = std::string(ZV_TEST_DATA_DIR) + "/sheets/tamsin.chr";

zv::testing::CliResult run(std::vector<std::string> args) {
  args.insert(args.begin(), {"--data-dir", kData});
  return runCli(args);
}

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start);
    out.push_back(text.substr(start, end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return out;
}

bool offers(const std::vector<std::string>& rows, const std::string& name) {
  return std::find(rows.begin(), rows.end(), name) != rows.end();
}

TEST(OfferCommand, RuleSetsTrimTheOffer) {
  struct Case {
    std::string sheet;
    std::string list;
    std::string rules;  // "" for the sheet's own, which apply only with ApplyRules on
    std::size_t count;
    std::vector<std::string> offered;
    std::vector<std::string> refused;
  };
  const Case cases[] = {
      {kMaren, "Rites", "", 46, {"Speak with the Drowned", "Circle of Lamps"}, {}},
      {kMaren,
       "Rites",
       "No Drowned Rites",
       43,
       {"Circle of Lamps"},
       {"Speak with the Drowned", "Drowned Sleep", "Call the Drowned Bell"}},
      // The campaign is a list of rules: no drowned rites, nothing of the hills.
      {kTamsin,
       "Skills",
       "Hollowmark.rules:Saltreach Campaign",
       71,
       {"Tongue (Saltreach)", "Swimming"},
       {"Horsemanship", "Tongue (Hill)", "Tongue (Drowned)"}},
      // Tamsin's Lamp of Truth is in its first circle and her Bell-ringing at 2.
      {kTamsin,
       "Rites",
       "Strict Circles",
       44,
       {"Hollow Sight", "Lamp of Truth"},
       {"Circle of Lamps", "Call the Drowned Bell"}},
      {kMaren, "Gear", "Poor Warden", 122, {"Bell Rope", "Lantern"}, {"Punt", "Blue Lamp"}},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args{"offer", c.sheet, c.list};
    if (!c.rules.empty()) args.insert(args.end(), {"--rules", c.rules});
    auto result = run(args);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const std::vector<std::string> rows = lines(result.out);
    EXPECT_EQ(rows.size(), c.count) << c.list << " " << c.rules;
    for (const std::string& name : c.offered)
      EXPECT_TRUE(offers(rows, name)) << name << " " << c.rules;
    for (const std::string& name : c.refused)
      EXPECT_FALSE(offers(rows, name)) << name << " " << c.rules;
  }
}

TEST(OfferCommand, TheSheetsOwnRuleSetAppliesWithThePreference) {
  const std::filesystem::path settings =
      std::filesystem::temp_directory_path() / ("zv-offer-" + std::to_string(::getpid()) + ".ini");
  std::ofstream(settings) << "[zarvel]\nApplyRules=1\n";
  auto result = run({"--settings", settings.string(), "offer", kTamsin, "Skills"});
  std::filesystem::remove(settings);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_FALSE(offers(lines(result.out), "Horsemanship"));
  EXPECT_TRUE(offers(lines(result.out), "Tongue (Cant)"));
}

TEST(OfferCommand, GroupsIndentTheirMembersAndCategoriesCanBeChosen) {
  auto result = run({"offer", kMaren, "Gear"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.out.find("\nReagent Pouch\n  Ash Bundle\n  Bell Rope\n  Candle of Naming\n"),
            std::string::npos)
      << result.out;
  result = run({"offer", kMaren, "Gear", "--category", "Bonds"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(lines(result.out).size(), 19u);
  result = run({"offer", kMaren, "Gear", "--category", "(All)"});
  EXPECT_EQ(lines(result.out).size(), 347u);
}

TEST(OfferCommand, BadArgumentsSayWhy) {
  struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string err;
  };
  const Case cases[] = {
      {{"offer", kMaren, "Spells"}, 1, "[Error] 'Spells' is not a list name.\n"},
      {{"offer", kMaren, "Rites", "--category", "Spells"},
       1,
       "[Error] 'Spells' is not a category of the Hollowmark game system.\n"},
      {{"offer", kMaren, "Rites", "--rules", "NoSuchSet"}, 0, ""},
  };
  for (const Case& c : cases) {
    auto result = run(c.args);
    EXPECT_EQ(result.exitCode, c.exitCode) << c.err;
    EXPECT_EQ(result.err, c.err);
  }
  EXPECT_EQ(run({"offer", kMaren}).exitCode, 2);
  EXPECT_EQ(run({"offer", kMaren, "Rites", "--rules"}).exitCode, 2);
}

TEST(RequirementsCommand, EachItemsVerdicts) {
  auto result = run({"requirements", kTamsin});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "Traits: Ghost-deaf: unsatisfied\n"
            "  [ ] NOT Flaws: Haunted\n"
            "Traits: Saint's Favour: satisfied\n"
            "  [x] No saint favours an oathbreaker.\n"
            "Flaws: Haunted: unsatisfied\n"
            "  [ ] Traits:Ghost-deaf excludes this item.\n"
            "Skills: Bell Lore: satisfied\n"
            "  [x] Bell-ringing>=2\n"
            "Rites: Circle of Lamps: unsatisfied\n"
            "  [ ] Lamp of Truth>=2\n"
            "Rites: Hollow Sight: satisfied\n"
            "  [x] Skills: Lorekeeping>=2\n"
            "  --- OR ---\n"
            "  [ ] Skills: Grave Lore>=2\n"
            "3 items with unsatisfied requirements\n");
  // The sample characters were built before their items had requirements.
  result = run({"requirements", kMaren});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "No unsatisfied requirements\n");
  EXPECT_EQ(run({"requirements"}).exitCode, 2);
}

}  // namespace
}  // namespace zv
