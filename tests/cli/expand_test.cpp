#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

TEST(ExpandCommand, PrintsTheExpansionOrFails) {
  fs::path dir = fs::temp_directory_path() / ("zv-expand-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  std::ofstream(dir / "blades.inc", std::ios::binary) << "$$define Edge 3\n";
  std::ofstream(dir / "arms.mds", std::ios::binary) << "\"Data Sheet file v. 1\"\n"
                                                       "$$include blades.inc\n"
                                                       "$$macro Blade(name, cost) {{\n"
                                                       "item $(name) cost $(cost) level $(Edge)\n"
                                                       "}}\n"
                                                       "$$Blade(Longsword, 15)\n"
                                                       "$$Blade\tDirk\t2\n";
  std::ofstream(dir / "bad.mds", std::ios::binary) << "$$Nowhere(1)\n";

  auto ok = runCli({"--data-dir", dir.string(), "expand", (dir / "arms.mds").string()});
  EXPECT_EQ(ok.exitCode, 0) << ok.err;
  EXPECT_NE(ok.out.find("item Longsword cost 15 level 3"), std::string::npos) << ok.out;
  EXPECT_NE(ok.out.find("item Dirk cost 2 level 3"), std::string::npos) << ok.out;
  EXPECT_EQ(ok.out.find("$$"), std::string::npos) << ok.out;

  auto bad = runCli({"expand", (dir / "bad.mds").string()});
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_NE(bad.err.find("[Macro Error] Undefined macro: 'Nowhere' (line 1)"), std::string::npos)
      << bad.err;

  auto missing = runCli({"expand", (dir / "gone.mds").string()});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err,
            "[File Not Found] The file '" + (dir / "gone.mds").string() + "' does not exist.\n");

  EXPECT_EQ(runCli({"expand"}).exitCode, 2);
  fs::remove_all(dir);
}

}  // namespace
}  // namespace zv
