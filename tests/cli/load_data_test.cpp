// load-data, and dump and convert of data sheets, end to end through zarvelin-cli.

#include <gtest/gtest.h>

#include <filesystem>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

const fs::path kDataSheets = fs::path(ZV_TEST_DATA_DIR) / "datasheets";

TEST(LoadDataCommand, LoadsByShortNameWithDependenciesAndReportsMissingOnes) {
  auto ok = runCli({"--data-dir", kDataSheets.string(), "load-data", "BRINDLE.CDS"});
  EXPECT_EQ(ok.exitCode, 0) << ok.err;
  EXPECT_EQ(ok.err, "");
  EXPECT_NE(ok.out.find("\"dataSheets\":[{\"name\":\"BRINDLE.CDS\",\"id\":1,\"level\":3},"
                        "{\"name\":\"ASHGROVE.cds\",\"id\":2,\"level\":3}]"),
            std::string::npos)
      << ok.out;
  EXPECT_NE(ok.out.find("{\"name\":\"Tools\",\"sort\":0,\"items\":3,\"allItems\":5}"),
            std::string::npos)
      << ok.out;
  EXPECT_NE(ok.out.find("\"strings\":{\"Maker\":\"Brindle\"}"), std::string::npos) << ok.out;

  auto missing = runCli({"--data-dir", kDataSheets.string(), "load-data", "lostbook.cds"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "[Error] Cannot open data sheet 'lostbook.cds'.\n");
  EXPECT_EQ(missing.out, "{\"gameSystems\":[]}\n");

  EXPECT_EQ(runCli({"load-data"}).exitCode, 2);
}

TEST(LoadDataCommand, ASheetOpensWithItsDataSheetsAndWarnsOnceOfAMissingOne) {
  auto dump =
      runCli({"--data-dir", kDataSheets.string(), "dump", (kDataSheets / "tarnwick.chr").string()});
  EXPECT_EQ(dump.exitCode, 0) << dump.err;
  EXPECT_EQ(dump.err,
            "[Data Sheet Not Found] The data sheet file lostbook.cds cannot be found. It should "
            "be located in the directory where the application was installed.\n");
  EXPECT_NE(dump.out.find("\"dataFiles\":[\"brindle.cds\",\"lostbook.cds\",\"LOSTBOOK.cds\"]"),
            std::string::npos)
      << dump.out;
  EXPECT_NE(dump.out.find("\"Grain\":10"), std::string::npos) << dump.out;
  EXPECT_NE(dump.out.find("\"Sap\":1"), std::string::npos) << dump.out;
}

TEST(LoadDataCommand, ConvertCompilesATextDataSheetThatThenLoads) {
  const fs::path dir = fs::temp_directory_path() / ("zv-load-data-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  auto convert =
      runCli({"--data-dir", kDataSheets.string(), "convert", (kDataSheets / "brindle.cds").string(),
              (dir / "brindle.cds").string(), "--binary"});
  ASSERT_EQ(convert.exitCode, 0) << convert.err;
  auto dump = runCli({"dump", (dir / "brindle.cds").string()});
  EXPECT_EQ(dump.exitCode, 0) << dump.err;
  EXPECT_NE(dump.out.find("\"binary\":1"), std::string::npos) << dump.out;
  EXPECT_NE(dump.out.find("{\"name\":\"Chisel\",\"source\":1,\"priority\":1}"), std::string::npos)
      << dump.out;
  EXPECT_NE(dump.out.find("{\"kind\":\"add\",\"name\":\"Oiled\",\"value\":\"1\",\"source\":1}"),
            std::string::npos)
      << dump.out;
  fs::copy_file(kDataSheets / "ashgrove.cds", dir / "ashgrove.cds");
  auto load = runCli({"--data-dir", dir.string(), "load-data", "brindle.cds"});
  EXPECT_EQ(load.exitCode, 0) << load.err;
  EXPECT_NE(load.out.find("{\"name\":\"Tools\",\"sort\":0,\"items\":3,\"allItems\":5}"),
            std::string::npos)
      << load.out;
  fs::remove_all(dir);
}

}  // namespace
}  // namespace zv
