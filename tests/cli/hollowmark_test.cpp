// The bundled sample game system end to end: its data sheets compile from their macro sources to
// the same bytes and load in silence; each sample character's totals as dump prints them (worked
// out by hand from the data); byte-identical round trips through the binary form; a Recalculate
// that changes nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

const std::string kData = ZV_SAMPLE_DATA_DIR;
const std::string kTemplate = kData + "/hollowmark.cst";
std::string character(const std::string& name) {
  return kData + "/characters/" + name + ".chr";
}

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

/// Each part must appear in the JSON, in this order.
void expectInOrder(const std::string& json, const std::vector<std::string>& parts) {
  std::size_t from = 0;
  for (const std::string& part : parts) {
    const std::size_t at = json.find(part, from);
    EXPECT_NE(at, std::string::npos) << part << "\n" << json;
    if (at != std::string::npos) from = at + part.size();
  }
}

/// The sample's data directory for every command, whatever the settings say.
zv::testing::CliResult run(std::vector<std::string> args) {
  args.insert(args.begin(), {"--data-dir", kData});
  return runCli(args);
}

class Hollowmark : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-hollowmark-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string at(const std::string& name) const { return (dir_ / name).string(); }
  fs::path dir_;
};

TEST_F(Hollowmark, DataSheetsAreCompiledFromTheirSources) {
  // scripts/build-sample-data compiles each .mds; a source changed without a rebuild shows here.
  for (const char* name : {"hollowmark", "hollowmark-gear", "hollowmark-rites"}) {
    const std::string compiled = at(std::string(name) + ".cds");
    auto result = run({"convert", kData + "/" + name + ".mds", compiled, "--binary"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readFile(compiled), readFile(kData + "/" + name + ".cds"))
        << name << ".cds is stale: run scripts/build-sample-data";
  }
}

TEST_F(Hollowmark, DataSheetsLoadWithoutAMessage) {
  // The rites name the gear and the core in their datafile block, the gear names the core.
  auto result = run({"load-data", "hollowmark-rites.cds"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  expectInOrder(result.out, {
                                R"("name":"Hollowmark","level":1)",
                                R"({"name":"hollowmark-rites.cds","id":1,"level":1})",
                                R"({"name":"hollowmark.cds","id":2,"level":1})",
                                R"({"name":"hollowmark-gear.cds","id":3,"level":1})",
                                R"({"name":"Rites","sort":0,"items":46,"allItems":46})",
                                // 119 at the top: the rites' Blue Lamp of priority 2 replaced
                                // the gear's; the Reagent Pouch holds the members of both.
                                R"({"name":"Gear","sort":0,"items":120,"allItems":133})",
                                R"({"name":"Traits","sort":0,"items":40,"allItems":40})",
                                R"({"name":"Flaws","sort":0,"items":35,"allItems":35})",
                                R"({"name":"Skills","sort":0,"items":74,"allItems":74})",
                                R"({"name":"Bonds","sort":0,"items":19,"allItems":19})",
                                R"("Motto":"Keep the lights honest.")",
                                R"x({"kind":"func","name":"Farthings(v)","body":"round(v*4)/4")x",
                            });
  for (const char* group :
       {"Flaw severity", "Gear quality", "Rite workings", "Skill knacks", "Trait modifiers"}) {
    EXPECT_NE(result.out.find(std::string(R"("name":")") + group + "\""), std::string::npos)
        << group;
  }
}

struct SampleCharacter {
  const char* name;
  std::vector<std::string> inOrder;    // list totals and item costs, in dump order
  std::vector<std::string> variables;  // dialog values and formulas
};

void PrintTo(const SampleCharacter& c, std::ostream* os) {
  *os << c.name;
}

// Costs round halves down on these sheets (rounding 1) unless an item rounds its own way.
const SampleCharacter kCharacters[] = {
    // Traits: 4; Lantern Eye 6 lowered by a half (÷1.5): 4; 3 + 2: 5; Keen Ears degree 2 at 3
    // each, +25%: 7.5, so 7. Flaws: -6 halved: -3; -4; -5 (the depth only describes).
    // Skills: Fenwalking Agility-8 = 3 at 2 each: 6; 3×3: 9; Spear 2×3 = 6 plus the barbed head's
    // side cost 1×2: 8; Tracking at its default Wits-10 = 2 costs its default cost 1; Bargaining 2,
    // halved: 1. Gear: the Pack 3 and its members apart (2 + 5÷1.25 + 1.5 = 7.5); the spear
    // 12×1½ = 18; the cloak is a gift, out of the total. Rites: 2×4 = 8; 6 less 25% is 4.5,
    // rounded up by the item's own formula ceil(c*m): 5; 1×3+1 = 4 plus the reagents, switched
    // on, 2: 6. Bonds: 2 + 3. Attributes 10, 11, 12, 9 cost 2 a point above 8: 20. Spent: 20 +
    // 20 - 12 + 25 + 19 + 5 = 77 of 100. Coin: 40 - 28.5.
    {"Maren Vell",
     {
         R"("gameSystem":"Hollowmark","fileType":1)",
         R"({"name":"Traits","total":20,)",
         R"("name":"Lantern Eye","level":"","value":0,"cost":6,"totalCost":4})",
         R"("name":"Keen Ears","level":"2","value":2,"cost":6,"totalCost":7})",
         R"({"name":"Flaws","total":-12,)",
         R"("name":"Haunted","level":"","value":0,"cost":-6,"totalCost":-3})",
         R"({"name":"Skills","total":25,)",
         R"("name":"Fenwalking","level":"Agility-8","value":3,"cost":6,"totalCost":6})",
         R"("name":"Spear","level":"2","value":2,"cost":6,"totalCost":8})",
         R"("name":"Tracking","level":"","value":2,"cost":1,"totalCost":1})",
         R"("name":"Bargaining","level":"1","value":1,"cost":2,"totalCost":1})",
         R"({"name":"Gear","total":28.5,)",
         R"("name":"Pack","level":"","value":0,"cost":3,"totalCost":3,"childCost":7.5,)",
         R"("name":"Lantern","level":"","value":0,"cost":5,"totalCost":4})",
         R"("name":"Warden's Spear","level":"","value":0,"cost":12,"totalCost":18})",
         R"({"name":"Rites","total":19,)",
         R"("name":"Speak with the Drowned","level":"1","value":1,"cost":6,"totalCost":5})",
         R"("name":"Ashes of Naming","level":"1","value":1,"cost":4,"totalCost":6})",
         R"({"name":"Bonds","total":5,)",
         R"("name":"Old Tamsin, ferrywoman","level":"","value":0,"cost":2,"totalCost":2})",
     },
     {R"("AttrCost":20)", R"("Spent":77)", R"("Left":23)", R"("Vigor":29)", R"("Dread":21)",
      R"("Pace":13)", R"("CoinLeft":11.5)", R"("Calling":2)", R"("Sworn":1)", R"("Height":67)",
      R"("Omen":1)"}},
    // Traits: 3 + 4 + 5; Long Stride degree 2 at 2: 4; Standing 1 plus the count list's second
    // entry (Respected, +2): (1 + 2) × 1 = 3. Total 19. Flaws: -3; Drinker -4, mild (×½): -2; -2;
    // -4. Total -11. Skills: Punting 4×2 = 8; Ferrying 3×2 = 6; Boathook 4×3 = 12; Swimming 2×2 =
    // 4; Parrying at its default, the best of the Weapons category less 3 (Boathook 4): 1, for 1;
    // Wading at its default, the better of Fenwalking (absent) and Swimming less 1: 1, for 1;
    // Tidecraft 2×3 = 6; Weatherlore 2. Total 40. Gear: the kit costs nothing itself and passes
    // its -10% to each member: Boathook 5.4 and the cloak 5.4 round down to 5, the toll box 1.8
    // and the line 1.8 up to 2: 14 apart; the punt 30, second-hand (-½, ÷1.5): 20; rope 2; the
    // blessed water 2.5, rounded up by its own formula: 3; the ferry token is out of the total.
    // 14 + 20 + 2 + 3 = 39 of 40. Rites: 1×4 + 2×4 = 12. Bonds: 2 + 2, the shared debt's options
    // only divide it. Attributes 12, 9, 8, 11: 8 + 2 + 0 + 6 = 16. Spent: 16 + 19 - 11 + 40 + 12
    // + 4 = 80.
    {"Ossel Brack",
     {
         R"({"name":"Traits","total":19,)",
         R"("name":"Long Stride","level":"2","value":2,"cost":4,"totalCost":4})",
         R"("name":"Standing","level":"","value":0,"cost":1,"totalCost":3})",
         R"({"name":"Flaws","total":-11,)",
         R"("name":"Drinker","level":"","value":0,"cost":-4,"totalCost":-2})",
         R"({"name":"Skills","total":40,)",
         // Boathook wins Parrying's default, which gives it an autoID.
         R"("name":"Boathook","level":"4","value":4,"cost":12,"totalCost":12,"autoID":1})",
         R"("name":"Parrying","level":"","value":1,"cost":1,"totalCost":1})",
         R"("name":"Wading","level":"","value":1,"cost":1,"totalCost":1})",
         R"({"name":"Gear","total":39,)",
         R"("name":"Ferry-keeper's Kit","level":"","value":0,"cost":0,"totalCost":0,"childCost":14,)",
         R"("name":"Boathook","level":"","value":0,"cost":6,"totalCost":5})",
         R"("name":"Ferry Toll Box","level":"","value":0,"cost":2,"totalCost":2})",
         R"("name":"Punt","level":"","value":0,"cost":30,"totalCost":20})",
         R"("name":"Bell-blessed Water","level":"","value":0,"cost":2.5,"totalCost":3})",
         R"({"name":"Rites","total":12,)",
         R"({"name":"Bonds","total":4,)",
     },
     {R"("AttrCost":16)", R"("Spent":80)", R"("Left":20)", R"("Vigor":35)", R"("Dread":19)",
      R"("Pace":11)", R"("CoinLeft":1)", R"("Calling":3)", R"("Height":73)"}},
    // Traits: 2 + 3; Patience of Herons degree 3 at 2 = 6, only in the Hollow (-¼, ÷1.25): 4.8,
    // so 5; Reader of Tides 3, unreliable (-½, ÷1.5): 2. Total 12. Flaws: -4; Nightmares -3,
    // grave (×1½): -4.5, whose magnitude rounds down: -4; -2. Total -10. Skills: 3×2 + 4×2 + 3×3
    // + 2×2 + 2×3 + 1×2 = 35; Hiding at its default Wits-10 = 3, for 1; Weapon Drill 3×2 = 6
    // (its three shares of one rank each only describe). Total 42. Gear: the lamplighter's kit
    // is the sum of its members, 1 + 0.5 + 1 + 2 + 2 = 6.5; the satchel 2, its contents apart
    // (2 + 1 + 1 = 4); the amber bead 1.3 to the farthing, round(5.2)/4: 1.25; the storm lantern
    // 9, bell-blessed (+50%): 13.5, so 13; wax candles 3. 29.75 of 40. Rites: Lamp of Truth 2×3+1
    // = 7; Wake the Lamps 4 less 25%: 3; Circle of Lamps 2×5 = 10. Total 20. Bonds 3 + 3.
    // Attributes 7, 9, 13, 10: -2 + 2 + 10 + 4 = 14. Spent: 14 + 12 - 10 + 42 + 20 + 6 = 84.
    {"Ines Calloway",
     {
         R"({"name":"Traits","total":12,)",
         R"("name":"Patience of Herons","level":"3","value":3,"cost":6,"totalCost":5})",
         R"("name":"Reader of Tides","level":"","value":0,"cost":3,"totalCost":2})",
         R"({"name":"Flaws","total":-10,)",
         R"("name":"Nightmares","level":"","value":0,"cost":-3,"totalCost":-4})",
         R"({"name":"Skills","total":42,)",
         R"("name":"Star Lore","level":"3","value":3,"cost":9,"totalCost":9})",
         R"("name":"Hiding","level":"","value":3,"cost":1,"totalCost":1})",
         R"("name":"Weapon Drill","level":"3","value":3,"cost":6,"totalCost":6})",
         R"({"name":"Gear","total":29.75,)",
         R"("name":"Lamplighter's Kit","level":"","value":0,"cost":6.5,"totalCost":6.5,"childCost":6.5,)",
         R"("name":"Satchel","level":"","value":0,"cost":2,"totalCost":2,"childCost":4,)",
         R"("name":"Amber Bead","level":"","value":0,"cost":1.3,"totalCost":1.25})",
         R"("name":"Storm Lantern","level":"","value":0,"cost":9,"totalCost":13})",
         R"({"name":"Rites","total":20,)",
         R"("name":"Wake the Lamps","level":"1","value":1,"cost":4,"totalCost":3})",
         R"({"name":"Bonds","total":6,)",
     },
     {R"("AttrCost":14)", R"("Spent":84)", R"("Left":16)", R"("CoinLeft":10.25)", R"("Calling":5)",
      R"("Sworn":0)"}},
};

class SampleCharacters : public Hollowmark,
                         public ::testing::WithParamInterface<SampleCharacter> {};

TEST_P(SampleCharacters, TotalsAsWorkedOutByHand) {
  const SampleCharacter& c = GetParam();
  auto result = run({"dump", character(c.name)});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  expectInOrder(result.out, c.inOrder);
  expectInOrder(result.out,
                {R"("dataFiles":["hollowmark.cds","hollowmark-gear.cds","hollowmark-rites.cds"])"});
  for (const std::string& variable : c.variables)
    EXPECT_NE(result.out.find(variable), std::string::npos) << variable;
}

TEST_P(SampleCharacters, BinaryRoundTripsGiveTheSameBytes) {
  const std::string sample = character(GetParam().name);
  const std::string name = fs::path(sample).filename().string();
  auto stage = [&](const char* folder) {
    fs::create_directories(dir_ / folder);
    return (dir_ / folder / name).string();
  };
  ASSERT_EQ(run({"convert", sample, stage("b1"), "--binary"}).exitCode, 0);
  ASSERT_EQ(run({"convert", stage("b1"), stage("t2"), "--text"}).exitCode, 0);
  ASSERT_EQ(run({"convert", stage("t2"), stage("b2"), "--binary"}).exitCode, 0);
  EXPECT_EQ(readFile(stage("t2")), readFile(sample));
  EXPECT_EQ(readFile(stage("b2")), readFile(stage("b1")));
  EXPECT_EQ(readFile(stage("b1")).substr(0, 4), std::string("\x37\x57\x03\x05", 4));
  // The binary form opens to the same totals.
  auto text = run({"dump", sample});
  auto binary = run({"dump", stage("b1")});
  ASSERT_EQ(binary.exitCode, 0) << binary.err;
  EXPECT_EQ(binary.out.substr(binary.out.find("\"lists\"")),
            text.out.substr(text.out.find("\"lists\"")));
}

TEST_P(SampleCharacters, RecalculateChangesNothing) {
  const std::string sample = character(GetParam().name);
  const std::string original = readFile(sample);
  auto toOut = run({"recalc", sample, "-o", at("fresh.chr")});
  ASSERT_EQ(toOut.exitCode, 0) << toOut.err;
  EXPECT_EQ(toOut.err, "");
  EXPECT_EQ(readFile(at("fresh.chr")), original);
  EXPECT_EQ(readFile(sample), original);
}

INSTANTIATE_TEST_SUITE_P(Hollowmark, SampleCharacters, ::testing::ValuesIn(kCharacters),
                         [](const auto& info) {
                           std::string name = info.param.name;
                           name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
                           return name;
                         });

TEST_F(Hollowmark, TheTemplateStartsAtTheBudget) {
  auto result = run({"dump", kTemplate});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  expectInOrder(result.out, {R"("fileType":2)", R"({"name":"Gear","total":3,)"});
  for (const char* variable : {R"("Spent":0)", R"("Left":100)", R"("Vigor":24)", R"("Height":66)",
                               R"("CoinLeft":37)", R"("Omen":1)", R"("MaxRank":6)"})
    EXPECT_NE(result.out.find(variable), std::string::npos) << variable;

  // A template is written as text, whatever is asked, and names itself.
  fs::create_directories(dir_ / "t");
  const std::string copy = (dir_ / "t" / "hollowmark.cst").string();
  ASSERT_EQ(run({"convert", kTemplate, copy, "--binary"}).exitCode, 0);
  EXPECT_EQ(readFile(copy), readFile(kTemplate));
}

TEST_F(Hollowmark, InPlaceRecalcKeepsABackup) {
  fs::copy_file(character("Maren Vell"), at("maren.chr"));
  auto inPlace = run({"recalc", at("maren.chr")});
  ASSERT_EQ(inPlace.exitCode, 0) << inPlace.err;
  EXPECT_EQ(readFile(at("maren.chr")), readFile(character("Maren Vell")));
  EXPECT_EQ(readFile(at("maren.bak")), readFile(character("Maren Vell")));
}

TEST_F(Hollowmark, RecalcBringsStaleCostsUpToDate) {
  // An older save whose stored costs lag behind: the reader settles them on opening, and
  // recalc writes them back as they are now.
  const std::string sample = character("Maren Vell");
  std::string stale = readFile(sample);
  const std::string from = "cost 5 totalcost 4";
  ASSERT_NE(stale.find(from), std::string::npos);
  stale.replace(stale.find(from), from.size(), "cost 5 totalcost 9");
  std::ofstream(at("stale.chr"), std::ios::binary) << stale;
  ASSERT_EQ(run({"recalc", at("stale.chr")}).exitCode, 0);
  EXPECT_EQ(readFile(at("stale.chr")), readFile(sample));
  EXPECT_EQ(readFile(at("stale.bak")), stale);

  EXPECT_EQ(run({"recalc"}).exitCode, 2);
  EXPECT_EQ(run({"recalc", at("stale.chr"), "-o"}).exitCode, 2);
  auto missing = run({"recalc", at("none.chr")});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_FALSE(fs::exists(at("none.bak")));
}

TEST_F(Hollowmark, ACharacterOpensWithItsDataSheetsMissing) {
  // Its own copies of the items carry it: one warning per missing data sheet, the same totals.
  fs::create_directories(dir_ / "empty");
  auto result = runCli({"--data-dir", (dir_ / "empty").string(), "dump", character("Ossel Brack")});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("hollowmark-gear.cds"), std::string::npos) << result.err;
  EXPECT_NE(result.out.find(R"({"name":"Gear","total":39,)"), std::string::npos);
  EXPECT_NE(result.out.find(R"("Spent":80)"), std::string::npos);
}

}  // namespace
}  // namespace zv
