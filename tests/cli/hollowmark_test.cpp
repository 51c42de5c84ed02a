// The bundled sample game system end to end: the sample character's totals as dump prints them
// (worked out by hand from its data), byte-identical round trips through the binary form, and a
// Recalculate that changes nothing.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

const std::string kCharacter = std::string(ZV_SAMPLE_DATA_DIR) + "/characters/Maren Vell.chr";
const std::string kTemplate = std::string(ZV_SAMPLE_DATA_DIR) + "/hollowmark.cst";

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

TEST_F(Hollowmark, TheSampleCharactersTotals) {
  auto result = runCli({"dump", kCharacter});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  // Traits: 4; 6 lowered by a half (÷1.5) is 4; 3 + 2 is 5; rank 2 at 3 each, +25% is 7.5,
  // halves rounding down on this sheet: 7.
  // Flaws: -6 halved is -3; -4; -5. Skills: Fenwalking rank Agility-8 = 3 at 2 each: 6; 3×3: 9;
  // Spear 2×3 = 6 plus its barbed head's side cost 1×2: 8; Tracking at its default (Wits-10)
  // costs its default cost 1; Bargaining 2, halved: 1.
  // Gear: the Pack 3 and its members apart (2 + 5÷1.25 + 1.5 = 7.5); the spear 12×1½ = 18; the
  // cloak is a gift, out of the total. Rites: 2×4 = 8; 6 less 25% is 4.5, rounded up by the
  // item's own formula: 5; 1×3+1 = 4 plus the reagents' side cost 2: 6. Bonds: 2 + 3.
  expectInOrder(
      result.out,
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
      });
  // Attributes 10, 11, 12, 9 cost 2 for each point above 8: 20. Spent: 20 + 20 - 12 + 25 + 19
  // + 5 = 77 of a budget of 100.
  for (const char* variable :
       {R"("AttrCost":20)", R"("Spent":77)", R"("Left":23)", R"("Vigor":29)", R"("Dread":21)",
        R"("Pace":13)", R"("CoinLeft":11.5)", R"("Calling":2)", R"("Sworn":1)"}) {
    EXPECT_NE(result.out.find(variable), std::string::npos) << variable;
  }
}

TEST_F(Hollowmark, TheTemplateStartsAtTheBudget) {
  auto result = runCli({"dump", kTemplate});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  expectInOrder(result.out, {R"("fileType":2)", R"({"name":"Gear","total":3,)"});
  for (const char* variable : {R"("Spent":0)", R"("Left":100)", R"("Vigor":24)"})
    EXPECT_NE(result.out.find(variable), std::string::npos) << variable;
}

TEST_F(Hollowmark, BinaryRoundTripsGiveTheSameBytes) {
  // Each stage keeps the file's name in a folder of its own, since a template names itself.
  for (const std::string& sample : {kCharacter, kTemplate}) {
    const std::string name = fs::path(sample).filename().string();
    auto stage = [&](const char* folder) {
      fs::create_directories(dir_ / folder);
      return (dir_ / folder / name).string();
    };
    ASSERT_EQ(runCli({"convert", sample, stage("b1"), "--binary"}).exitCode, 0);
    ASSERT_EQ(runCli({"convert", stage("b1"), stage("t2"), "--text"}).exitCode, 0);
    ASSERT_EQ(runCli({"convert", stage("t2"), stage("b2"), "--binary"}).exitCode, 0);
    EXPECT_EQ(readFile(stage("t2")), readFile(sample)) << sample;
    EXPECT_EQ(readFile(stage("b2")), readFile(stage("b1"))) << sample;
    // A sheet is binary when asked; a template stays text.
    const std::string head = readFile(stage("b1")).substr(0, 4);
    EXPECT_EQ(head, sample == kCharacter ? std::string("\x37\x57\x03\x05", 4) : "\"Cha");
  }
}

TEST_F(Hollowmark, RecalculateChangesNothing) {
  const std::string original = readFile(kCharacter);
  auto toOut = runCli({"recalc", kCharacter, "-o", at("fresh.chr")});
  ASSERT_EQ(toOut.exitCode, 0) << toOut.err;
  EXPECT_EQ(toOut.err, "");
  EXPECT_EQ(readFile(at("fresh.chr")), original);
  EXPECT_EQ(readFile(kCharacter), original);

  fs::copy_file(kCharacter, at("maren.chr"));
  auto inPlace = runCli({"recalc", at("maren.chr")});
  ASSERT_EQ(inPlace.exitCode, 0) << inPlace.err;
  EXPECT_EQ(readFile(at("maren.chr")), original);
  EXPECT_EQ(readFile(at("maren.bak")), original);
}

TEST_F(Hollowmark, RecalcBringsStaleCostsUpToDate) {
  // An older save whose stored costs lag behind: the reader settles them on opening, and
  // recalc writes them back as they are now.
  std::string stale = readFile(kCharacter);
  const std::string from = "cost 5 totalcost 4";
  ASSERT_NE(stale.find(from), std::string::npos);
  stale.replace(stale.find(from), from.size(), "cost 5 totalcost 9");
  std::ofstream(at("stale.chr"), std::ios::binary) << stale;
  ASSERT_EQ(runCli({"recalc", at("stale.chr")}).exitCode, 0);
  EXPECT_EQ(readFile(at("stale.chr")), readFile(kCharacter));
  EXPECT_EQ(readFile(at("stale.bak")), stale);

  EXPECT_EQ(runCli({"recalc"}).exitCode, 2);
  EXPECT_EQ(runCli({"recalc", at("stale.chr"), "-o"}).exitCode, 2);
  auto missing = runCli({"recalc", at("none.chr")});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_FALSE(fs::exists(at("none.bak")));
}

}  // namespace
}  // namespace zv
