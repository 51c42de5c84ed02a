#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

class IdentifyTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-identify-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string write(const std::string& name, const std::string& bytes) {
    fs::path p = dir_ / name;
    std::ofstream(p, std::ios::binary) << bytes;
    return p.string();
  }
  fs::path dir_;
};

TEST_F(IdentifyTest, OneLinePerFileWithCodeAndGameSystem) {
  std::string sheet =
      write("hero.chr", "\"Character Sheet file v. 1\" gamesystem Tiny version 253");
  std::string text = write("notes.txt", "hello");
  std::string junk = write("junk.chr", "junk");
  auto result = runCli({"identify", sheet, text, junk});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "1\tTiny\t" + sheet + "\n5\t\t" + text + "\n-3\t\t" + junk + "\n");
  EXPECT_EQ(result.err,
            "[Unrecognizable Format] The format of this file cannot be recognized. This "
            "application cannot open it.\n");
}

TEST_F(IdentifyTest, MissingFileFailsTheRun) {
  auto result = runCli({"identify", (dir_ / "gone.chr").string()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "-2\t\t" + (dir_ / "gone.chr").string() + "\n");
}

TEST(CliUsage, HelpAndBadUsage) {
  auto help = runCli({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("identify FILE..."), std::string::npos);

  for (const auto& args : std::vector<std::vector<std::string>>{
           {}, {"frobnicate"}, {"identify"}, {"--bogus", "identify", "x"}, {"--data-dir"}}) {
    auto result = runCli(args);
    EXPECT_EQ(result.exitCode, 2) << (args.empty() ? "" : args[0]);
    EXPECT_NE(result.err.find("Usage: zarvelin-cli"), std::string::npos);
  }
}

}  // namespace
}  // namespace zv
