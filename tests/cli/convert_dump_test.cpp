#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class ConvertTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-convert-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string out(const std::string& name) { return (dir_ / name).string(); }
  int convert(const std::vector<std::string>& args) {
    std::vector<std::string> full{"convert"};
    full.insert(full.end(), args.begin(), args.end());
    auto result = runCli(full);
    EXPECT_EQ(result.err, "") << args[0];
    return result.exitCode;
  }
  const std::string sheet_ = std::string(ZV_TEST_DATA_DIR) + "/sheets/wayfarer.chr";
  fs::path dir_;
};

TEST_F(ConvertTest, TextAndBinaryRoundTripsAreByteIdentical) {
  ASSERT_EQ(convert({sheet_, out("t1.chr"), "--text"}), 0);
  ASSERT_EQ(convert({out("t1.chr"), out("b1.chr"), "--binary"}), 0);
  ASSERT_EQ(convert({out("b1.chr"), out("b2.chr")}), 0);  // keeps the form it was read in
  ASSERT_EQ(convert({out("b1.chr"), out("t2.chr"), "--text"}), 0);
  ASSERT_EQ(convert({out("t2.chr"), out("b3.chr"), "--binary"}), 0);

  std::string text = readFile(out("t1.chr"));
  std::string binary = readFile(out("b1.chr"));
  EXPECT_EQ(text.rfind("\"Character Sheet file v. 1\"", 0), 0u);
  EXPECT_EQ(binary.substr(0, 4), std::string("\x37\x57\x03\x05", 4));
  EXPECT_EQ(readFile(out("t2.chr")), text);
  EXPECT_EQ(readFile(out("b2.chr")), binary);
  EXPECT_EQ(readFile(out("b3.chr")), binary);
}

TEST_F(ConvertTest, TemplatesStayText) {
  ASSERT_EQ(convert({sheet_, out("hero.cst"), "--text"}), 0);
  ASSERT_EQ(convert({out("hero.cst"), out("again.cst"), "--binary"}), 0);
  EXPECT_EQ(readFile(out("again.cst")).rfind("\"Character Sheet file v. 1\"", 0), 0u);
}

TEST_F(ConvertTest, FailuresLeaveNoOutput) {
  std::ofstream(out("junk.chr")) << "junk";
  auto junk = runCli({"convert", out("junk.chr"), out("never.chr")});
  EXPECT_EQ(junk.exitCode, 1);
  EXPECT_FALSE(fs::exists(out("never.chr")));

  auto unwritable = runCli({"convert", sheet_, out("no/such/dir/x.chr")});
  EXPECT_EQ(unwritable.exitCode, 1);
  EXPECT_EQ(unwritable.err, "[Error] Error writing file " + out("no/such/dir/x.chr") + "\n");

  EXPECT_EQ(runCli({"convert", sheet_}).exitCode, 2);
}

TEST(DumpCommand, ListsItemsAndVariablesAsJson) {
  auto result = runCli({"dump", std::string(ZV_TEST_DATA_DIR) + "/sheets/wayfarer.chr"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const std::string& json = result.out;
  EXPECT_EQ(json.rfind("{\"gameSystem\":\"Wayfarer\",\"fileType\":1,\"level\":3,\"lists\":[", 0),
            0u)
      << json;
  EXPECT_NE(json.find("{\"name\":\"Skills\",\"total\":14.25,\"items\":[{\"name\":\"Climb\""),
            std::string::npos)
      << json;
  EXPECT_NE(json.find("\"children\":[{\"name\":\"Rope\""), std::string::npos) << json;
  EXPECT_NE(json.find("\"variables\":{"), std::string::npos);
  EXPECT_NE(json.find("\"SkillPoints\":14.25"), std::string::npos) << json;
  EXPECT_NE(json.find("\"Bonus\":2"), std::string::npos) << json;
  EXPECT_EQ(json.back(), '\n');
}

}  // namespace
}  // namespace zv
