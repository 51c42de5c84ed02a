// The data sheet writer: what it writes reads back the same, in text and in binary form.

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "core/game_systems.h"
#include "core/headless_host.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/datasheet/data_sheet_writer.h"

namespace zv::testing {
namespace {

std::string sampleText() {
  std::ifstream in(std::string(ZV_TEST_DATA_DIR) + "/datasheets/marsh.cds", std::ios::binary);
  std::stringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

class DataSheetWriterTest : public ::testing::Test {
 protected:
  void SetUp() override { clearGameSystems(); }
  void TearDown() override { clearGameSystems(); }

  /// Reads `data` into a fresh registry and writes it back in the given form.
  std::string roundTrip(const std::string& data, bool binary) {
    clearGameSystems();
    DataSheetFile file;
    file.name = "marsh.cds";
    MemoryByteStream input(data);
    EXPECT_TRUE(readDataSheet(input, file));
    if (file.gameSystem == nullptr) return {};
    MemoryByteStream output;
    EXPECT_EQ(writeDataSheet(file, *file.gameSystem, output, binary), kWriteOk);
    return output.data();
  }

  HeadlessHost host{nullptr};
  HostInstallation installed{host};
};

TEST_F(DataSheetWriterTest, TextRoundTripIsStable) {
  const std::string first = roundTrip(sampleText(), false);
  const std::string second = roundTrip(first, false);
  EXPECT_EQ(first, second);
  EXPECT_EQ(first.rfind("\"Data Sheet file v. 1\" gamesystem Fenwick", 0), 0u) << first;
  EXPECT_NE(first.find("pageinfo lm 1080 rm 1080 tm 1080 bm 1080 tabwidth 0 columns 0"),
            std::string::npos)
      << first;
  EXPECT_NE(first.find("strings"), std::string::npos);
  EXPECT_TRUE(host.transcript().empty());
}

TEST_F(DataSheetWriterTest, BinaryRoundTripGivesTheSameText) {
  const std::string text = roundTrip(sampleText(), false);
  const std::string binary = roundTrip(text, true);
  ASSERT_GE(binary.size(), 4u);
  EXPECT_EQ(binary.substr(0, 4), std::string("\x37\x57\x03\x05", 4));
  EXPECT_EQ(roundTrip(binary, false), text);
  EXPECT_EQ(roundTrip(binary, true), binary);
  EXPECT_TRUE(host.transcript().empty());
}

TEST_F(DataSheetWriterTest, WrittenSheetKeepsItsContent) {
  const std::string text = roundTrip(sampleText(), true);
  clearGameSystems();
  DataSheetFile file;
  file.name = "marsh.cds";
  MemoryByteStream input(text);
  ASSERT_TRUE(readDataSheet(input, file));
  EXPECT_TRUE(file.binary);
  EXPECT_EQ(file.title, "Fenwick marsh lore");
  EXPECT_EQ(file.level, 2);
  EXPECT_EQ(file.pageInfo, PageInfo::forNewDataSheet());
  EXPECT_EQ(file.dataFiles, std::vector<std::string>{"reeds.cds"});
  ASSERT_EQ(file.defines.size(), 1u);
  EXPECT_EQ(file.defines[0].name, "Damp");
  const GameSystem& system = *file.gameSystem;
  ASSERT_EQ(system.categories.size(), 2u);
  EXPECT_EQ(system.categories[1]->items[1]->children.size(), 1u);
  ASSERT_EQ(system.strings.size(), 2u);
  EXPECT_EQ(system.strings[0].value, "Well met");
}

}  // namespace
}  // namespace zv::testing
