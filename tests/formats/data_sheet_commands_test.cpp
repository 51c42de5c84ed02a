// The commands over data sheets that the desktop program offers: the Load Data Sheet dialog's
// lists and defaults, and Merge Data Sheet with its conflict choices.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/scratch_dir.h"
#include "formats/data_sheet_merge.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/datasheet/load_data_sheet_dialog.h"

namespace zv::testing {
namespace {

constexpr const char* kHead = "\"Data Sheet file v. 1\" gamesystem Tarnwick version 253 level 3\n";

class DataSheetCommandsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    clearGameSystems();
    for (const char* name : {"brindle.cds", "ashgrove.cds", "pinewood.chr"})
      std::filesystem::copy_file(std::filesystem::path(ZV_TEST_DATA_DIR) / "datasheets" / name,
                                 dir / name);
    dir.write("notes.txt", "not a data sheet");
    engine().dataSheets = DataSheetSettings{dir.path(), 0, false};
  }
  void TearDown() override {
    clearGameSystems();
    engine().dataSheets = DataSheetSettings{};
  }

  static std::string joined(const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& name : names)
      out += (out.empty() ? "" : " ") + name;
    return out;
  }
  static std::string itemNames(const ItemChain& chain) {
    std::string out;
    for (const auto& item : chain) {
      out += (out.empty() ? "" : " ") + item->name;
      if (!item->formula.empty()) out += "=" + item->formula;
      if (item->isSublist()) out += "[" + itemNames(item->children) + "]";
    }
    return out;
  }
  std::string lastMessage() const {
    return host.transcript().empty() ? std::string() : host.transcript().back();
  }

  test::ScratchDir dir;
  HeadlessHost host{nullptr};
  HostInstallation installed{host};
};

TEST_F(DataSheetCommandsTest, TheDialogMovesLoadedNamesAndRewritesDefaultsWithoutGaps) {
  Settings settings = Settings::fromFile(dir / "settings.ini");
  ASSERT_TRUE(writeDefaultDataSheetNames(settings, {"ashgrove.cds", "pinewood.chr"}));
  EXPECT_EQ(loadDefaultDataSheets(settings), 2);  // two defaults, then the empty entry

  LoadDataSheetDialogModel dialog(settings);
  EXPECT_EQ(joined(dialog.available()), "brindle.cds");
  EXPECT_EQ(joined(dialog.loaded()), "ashgrove.cds pinewood.chr");
  ASSERT_TRUE(dialog.unload(0, LoadDataSheetDialogModel::Unload::Only));
  EXPECT_EQ(joined(dialog.available()), "ashgrove.cds brindle.cds");
  // brindle brings ashgrove along as its dependency: both move.
  ASSERT_TRUE(dialog.load(1));
  EXPECT_EQ(joined(dialog.available()), "");
  EXPECT_EQ(joined(dialog.loaded()), "pinewood.chr brindle.cds ASHGROVE.cds");
  const std::int32_t oldId = findLoadedDataSheet("pinewood.chr")->id;
  ASSERT_TRUE(dialog.unload(
      0, LoadDataSheetDialogModel::Unload::ThenLoadAgain));  // Shift: loaded again at once
  EXPECT_GT(findLoadedDataSheet("pinewood.chr")->id, oldId);

  dialog.addDefault("brindle.cds");
  dialog.addDefault("ASHGROVE.cds");  // there already
  EXPECT_EQ(joined(dialog.defaults()), "ashgrove.cds pinewood.chr brindle.cds");
  EXPECT_EQ(dialog.removeDefault(0), 0);
  EXPECT_EQ(dialog.removeDefault(1), 0);  // the last row goes: the selection moves up
  ASSERT_TRUE(dialog.close());
  EXPECT_EQ(joined(defaultDataSheetNames(settings)), "pinewood.chr");
  EXPECT_EQ(settings.getString("Data Sheets", "datasheet1", "missing"), "");
  EXPECT_EQ(dialog.removeDefault(0), -1);
}

TEST_F(DataSheetCommandsTest, MergeSkipsIdenticalEntriesAndAsksAboutDifferentOnes) {
  struct Case {
    std::vector<std::string> answers;
    std::string items;  ///< the Tools of the document afterwards
    int changes;
    bool changed;  ///< the document is marked changed
  };
  dir.write("base.cds", std::string(kHead) +
                            "cat Tools item Adze formula x*2 item Brace formula x*3\n"
                            "sublist Kits memlist item Awl end end\n"
                            "options list Finishes add Oiled 1 end end end");
  dir.write("more.cds", std::string(kHead) +
                            "cat Tools item Adze formula x*2 item Brace formula x*4 "
                            "item Clamp formula x\n"
                            "sublist Kits memlist item Awl formula x item Bit end end\n"
                            "cat Woods item Oak end\n"
                            "options list Finishes add Oiled 2 add Limed 1 end end end");
  const Case cases[] = {
      {{"Keep Old", "Keep Old", "Keep Old"}, "Adze=x*2 Brace=x*3 Kits[Awl Bit] Clamp=x", 4, true},
      {{"Take New for All"}, "Adze=x*2 Kits[Awl=x Bit] Brace=x*4 Clamp=x", 7, true},
      {{"Keep Both", "Keep Old for All"},
       "Adze=x*2 Brace=x*3 Kits[Awl Bit] Brace=x*4 Clamp=x",
       5,
       true},
      {{"Cancel"}, "Adze=x*2 Brace=x*3 Kits[Awl]", -1, false},
      // Clamp came in before the Cancel at Awl: it stays, and the document is changed.
      {{"Keep Old", "Cancel"}, "Adze=x*2 Brace=x*3 Kits[Awl] Clamp=x", -1, true},
  };
  for (const Case& c : cases) {
    host.clearTranscript();
    for (const std::string& answer : c.answers)
      host.addAnswer(answer);
    std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(dir / "base.cds");
    ASSERT_TRUE(document);
    EXPECT_EQ(mergeDataSheetFile(*document, dir / "more.cds"), c.changes);
    EXPECT_EQ(itemNames(document->findCategory("Tools")->children), c.items);
    EXPECT_EQ(document->record().changed(), c.changed);
    if (c.changes >= 0) {
      EXPECT_NE(document->findCategory("Woods"), nullptr);
    }
    EXPECT_FALSE(host.transcript().empty());
    EXPECT_EQ(host.transcript().front(),
              "[Merge Conflict] 'Brace' differs from the entry of the same name.");
  }
}

TEST_F(DataSheetCommandsTest, MergeRefusesOtherFilesAndOtherGameSystems) {
  dir.write("base.cds", std::string(kHead) + "cat Tools item Adze end end");
  dir.write("other.cds",
            "\"Data Sheet file v. 1\" gamesystem Fenwick version 253 level 3 cat Tools end end");
  std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(dir / "base.cds");
  ASSERT_TRUE(document);
  EXPECT_EQ(mergeDataSheetFile(*document, dir / "other.cds"), -1);
  EXPECT_EQ(lastMessage(),
            "[Error] The selected data sheet uses the 'Fenwick' game system. The current data "
            "sheet uses 'Tarnwick.'");
  EXPECT_EQ(mergeDataSheetFile(*document, dir / "pinewood.chr"), -1);
  EXPECT_EQ(lastMessage(),
            "[Error] '" + (dir / "pinewood.chr").string() + "' is not a data sheet file");
  host.addAnswer((dir / "ashgrove.cds").string());
  // Chisel and the sublist Kits are new; so are the group Finishes and its option Limed.
  EXPECT_FALSE(document->record().changed());
  EXPECT_EQ(mergeDataSheetCommand(*document, dir.path()), 4);
  EXPECT_TRUE(document->record().changed());
}

}  // namespace
}  // namespace zv::testing
