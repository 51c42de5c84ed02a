// Loading data sheets into game systems: reload by name, unload by id, dependencies, priorities,
// definitions reaching open sheets, nested loads through the macro processor, missing files.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/scratch_dir.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/data_sheet_document.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/datasheet/data_sheet_writer.h"
#include "formats/macro/macro_context.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/sheet/sheet_writer.h"
#include "formats/tokens/keywords.h"

namespace zv::testing {
namespace {

constexpr const char* kHead = "\"Data Sheet file v. 1\" gamesystem Tarnwick version 253 level 3\n";

class DataSheetLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    clearGameSystems();
    for (const char* name : {"brindle.cds", "ashgrove.cds", "tarnwick.chr", "pinewood.chr"})
      std::filesystem::copy_file(std::filesystem::path(ZV_TEST_DATA_DIR) / "datasheets" / name,
                                 dir / name);
    engine().dataSheets = DataSheetSettings{dir.path(), 0, false};
  }
  void TearDown() override {
    clearGameSystems();
    engine().dataSheets = DataSheetSettings{};
  }

  bool load(const std::string& name) { return loadDataSheet(dir / name, name); }
  GameSystem& tarnwick() { return *findGameSystem("Tarnwick"); }
  Category& tools() { return *tarnwick().findCategory("Tools"); }

  /// Names of a chain, members in brackets: "Chisel Kits[Awl Rasp] Mallet".
  static std::string names(const ItemChain& chain) {
    std::string out;
    for (const auto& item : chain) {
      if (!out.empty()) out += ' ';
      out += item->name;
      if (item->isSublist()) out += "[" + names(item->children) + "]";
    }
    return out;
  }
  static std::string optionNames(const OptionTree& level) {
    std::string out;
    for (const OptionTreeEntry& entry : level) {
      if (!out.empty()) out += ' ';
      out += entry.name;
      if (entry.isGroup()) out += "[" + optionNames(entry.entries) + "]";
    }
    return out;
  }
  long messagesTitled(std::string_view title) const {
    const std::string prefix = "[" + std::string(title) + "]";
    return std::count_if(host.transcript().begin(), host.transcript().end(),
                         [&](const std::string& line) { return line.rfind(prefix, 0) == 0; });
  }
  std::string lastMessage() const {
    return host.transcript().empty() ? std::string() : host.transcript().back();
  }

  /// Reads a sheet the way a document is opened, with its data sheets loaded.
  std::unique_ptr<FileInfo> openSheet(const std::string& name) {
    auto sheet = std::make_unique<FileInfo>(1, name, (dir / name).string());
    SheetReadOptions options;
    options.symbols = &exprSheetSymbols();
    enableDataSheetLoading(options);
    FileByteStream input((dir / name).string(), FileByteStream::Mode::Read);
    if (!readCharsheet(*sheet, input, options)) return nullptr;
    return sheet;
  }
  static double variable(const FileInfo& sheet, std::string_view name) {
    Symbol* symbol = sheet.symbols ? sheet.symbols->find(name) : nullptr;
    Value value;
    if (symbol == nullptr || getValue(*symbol, value) != 0) return -1;
    return valueToDouble(value);
  }

  test::ScratchDir dir;
  HeadlessHost host{nullptr};
  HostInstallation installed{host};
};

// ---- Load, reload, unload ------------------------------------------------------------------

TEST_F(DataSheetLoaderTest, LoadBringsDependenciesAndSkipsItsOwnName) {
  ASSERT_TRUE(load("brindle.cds")) << lastMessage();
  EXPECT_TRUE(host.transcript().empty()) << lastMessage();
  std::vector<std::string> loaded;
  for (const OpenDataSheet& sheet : tarnwick().dataSheets)
    loaded.push_back(sheet.name);
  EXPECT_EQ(loaded, (std::vector<std::string>{"brindle.cds", "ASHGROVE.cds"}));
  // ashgrove's Chisel (priority 3) drove out brindle's (priority 1); the Kits merged.
  EXPECT_EQ(names(tools().items), "Chisel Kits[Awl Rasp] Mallet");
  EXPECT_EQ(tools().items[0]->priority(), 3u);
  EXPECT_EQ(tools().items[1]->children[0]->cost, 1.0);  // the macro's KitCost
  EXPECT_EQ(optionNames(tarnwick().options), "Finishes[Limed Oiled Waxed]");
  EXPECT_EQ(tarnwick().options[0].entries[1].option->alias, "Oil");
  ASSERT_NE(tools().findItem("rasp"), nullptr);
  EXPECT_EQ(tools().findItem("rasp")->name, "Rasp");
  EXPECT_EQ(tools().findItem("Plane"), nullptr);
}

TEST_F(DataSheetLoaderTest, LoadingTheSameNameTwiceLeavesOneCopy) {
  ASSERT_TRUE(load("ashgrove.cds"));
  const std::int32_t firstId = tarnwick().dataSheets[0].id;
  ASSERT_TRUE(load("ashgrove.cds"));
  ASSERT_EQ(tarnwick().dataSheets.size(), 1u);
  EXPECT_GT(tarnwick().dataSheets[0].id, firstId);
  EXPECT_EQ(names(tools().items), "Chisel Kits[Rasp]");
  EXPECT_EQ(optionNames(tarnwick().options), "Finishes[Limed]");
  EXPECT_EQ(tarnwick().defines.size(), 2u);
}

TEST_F(DataSheetLoaderTest, UnloadingOneOfTwoSheetsSharingASublistKeepsTheOthersItems) {
  ASSERT_TRUE(load("brindle.cds"));
  ASSERT_TRUE(unloadDataSheet("tarnwick", "ashgrove.cds"));
  EXPECT_FALSE(unloadDataSheet("Tarnwick", "ashgrove.cds"));
  EXPECT_FALSE(unloadDataSheet("Nowhere", "brindle.cds"));
  // brindle's Chisel was dropped at load for the higher priority; it does not come back.
  EXPECT_EQ(names(tools().items), "Kits[Awl] Mallet");
  EXPECT_EQ(optionNames(tarnwick().options), "Finishes[Oiled Waxed]");
  std::vector<std::string> defines;
  for (const DefineRec& define : tarnwick().defines)
    defines.push_back(define.name);
  EXPECT_EQ(defines, (std::vector<std::string>{"Grain", "Edge(n)"}));
  EXPECT_EQ(tools().findItem("Rasp"), nullptr);

  ASSERT_TRUE(unloadDataSheet("Tarnwick", "C:\\data\\BRINDLE.cds"));
  EXPECT_EQ(names(tools().items), "Kits[]");  // a sublist survives, empty
  EXPECT_EQ(optionNames(tarnwick().options), "Finishes[]");
  EXPECT_TRUE(tarnwick().defines.empty());
  EXPECT_EQ(tarnwick().level, 3);  // the game system stays, level unchanged
}

TEST_F(DataSheetLoaderTest, ReloadAllReadsTheFilesAgain) {
  ASSERT_TRUE(load("brindle.cds"));
  dir.write("ashgrove.cds", std::string(kHead) + "cat Tools item Saw end end");
  reloadAllDataSheets();
  EXPECT_EQ(tarnwick().dataSheets.size(), 2u);
  EXPECT_EQ(names(tools().items), "Chisel Kits[Awl] Mallet Saw");
  EXPECT_EQ(tools().items[0]->priority(), 1u);
}

TEST_F(DataSheetLoaderTest, ACharacterSheetStandsInAsADataSheet) {
  ASSERT_TRUE(load("ashgrove.cds"));
  ASSERT_TRUE(load("pinewood.chr")) << lastMessage();
  EXPECT_EQ(names(tools().items), "Chisel Kits[Gouge Rasp] Plane");
  const OpenDataSheet& pine = tarnwick().dataSheets[1];
  EXPECT_EQ(pine.helpFile.str(), "pine.hlp");
  EXPECT_EQ(tools().findItem("Plane")->sourceId, pine.id);
  EXPECT_EQ(tools().findItem("Plane")->owner, nullptr);
  ASSERT_TRUE(unloadDataSheet("Tarnwick", "pinewood.chr"));
  EXPECT_EQ(names(tools().items), "Chisel Kits[Rasp]");
}

// ---- Priorities ----------------------------------------------------------------------------

TEST_F(DataSheetLoaderTest, DuplicatesOfLowerPriorityGoAcrossSheets) {
  struct Case {
    std::vector<int> priorities;  ///< of the item "Lathe" in sheet 1, 2, ...
    std::string expected;         ///< priorities left, in order
  };
  const Case cases[] = {
      {{1, 3}, "3"}, {{3, 1}, "3"}, {{2, 2}, "2 2"}, {{1, 2, 3}, "3"}, {{0, 0, 4}, "4"},
  };
  for (const Case& c : cases) {
    clearGameSystems();
    for (std::size_t i = 0; i < c.priorities.size(); ++i) {
      const std::string name = "lathe" + std::to_string(i) + ".cds";
      dir.write(name, std::string(kHead) + "cat Tools item Lathe priority " +
                          std::to_string(c.priorities[i]) + " end end");
      ASSERT_TRUE(load(name)) << lastMessage();
    }
    std::string left;
    for (const auto& item : tools().items)
      left += (left.empty() ? "" : " ") + std::to_string(item->priority());
    EXPECT_EQ(left, c.expected);
  }
}

// ---- Failures ------------------------------------------------------------------------------

TEST_F(DataSheetLoaderTest, AFailedLoadIsUndoneByItsId) {
  struct Case {
    const char* body;
    const char* message;
  };
  const Case cases[] = {
      {"cat Tools item Lathe end\nstrings Grit fine end\nbogus end",
       "[Error] Improper data sheet format: broken.cds (line 4, token: bogus)"},
      {"cat Tools item Lathe end version 254 end",
       "[Error] This datasheet (version 254) cannot be read by this version of the application "
       "(253)"},
      {"cat Tools item Lathe end options list Finishes add Raw 1 end", "[Error] End missing"},
  };
  for (const Case& c : cases) {
    clearGameSystems();
    host.clearTranscript();
    ASSERT_TRUE(load("ashgrove.cds"));
    dir.write("broken.cds", std::string(kHead) + c.body);
    EXPECT_FALSE(load("broken.cds"));
    EXPECT_EQ(lastMessage(), c.message);
    EXPECT_EQ(tarnwick().dataSheets.size(), 1u);
    EXPECT_EQ(names(tools().items), "Chisel Kits[Rasp]");
    EXPECT_EQ(optionNames(tarnwick().options), "Finishes[Limed]");
    EXPECT_TRUE(tarnwick().strings.empty());
  }
  host.clearTranscript();
  EXPECT_FALSE(loadDataSheet(dir / "absent.cds", "absent.cds"));
  EXPECT_EQ(lastMessage(), "[Error] Cannot open data sheet 'absent.cds'.");
}

TEST_F(DataSheetLoaderTest, EnsureWarnsOfAMissingFileAndKeepsTheName) {
  FileInfo sheet(1, "hero.chr", "");
  EXPECT_FALSE(ensureDataSheet(&sheet, "Sub\\lostbook.cds", true));
  EXPECT_EQ(lastMessage(),
            "[Data Sheet Not Found] The data sheet file lostbook.cds cannot be found. It should "
            "be located in the directory where the application was installed.");
  EXPECT_EQ(sheet.dataFiles, std::vector<std::string>{"Sub\\lostbook.cds"});
  EXPECT_TRUE(ensureDataSheet(&sheet, "HERO.chr", true));  // its own name
  EXPECT_TRUE(ensureDataSheet(&sheet, "Ashgrove.CDS", true));
  EXPECT_EQ(sheet.dataFiles.size(), 2u);
  EXPECT_TRUE(ensureDataSheet(&sheet, "ashgrove.cds", true));  // loaded, listed
  EXPECT_EQ(sheet.dataFiles.size(), 2u);
  EXPECT_EQ(tarnwick().dataSheets.size(), 1u);
}

// ---- Definitions and open sheets -----------------------------------------------------------

TEST_F(DataSheetLoaderTest, OpeningASheetLoadsItsDataSheetsAndItsOwnDefinitionWins) {
  std::unique_ptr<FileInfo> sheet = openSheet("tarnwick.chr");
  ASSERT_NE(sheet, nullptr) << lastMessage();
  EXPECT_EQ(messagesTitled("Data Sheet Not Found"), 1);  // lostbook.cds is named twice
  EXPECT_EQ(sheet->dataFiles,
            (std::vector<std::string>{"brindle.cds", "lostbook.cds", "LOSTBOOK.cds"}));
  EXPECT_EQ(tarnwick().dataSheets.size(), 2u);
  EXPECT_EQ(variable(*sheet, "Grain"), 10);  // the sheet's own
  EXPECT_EQ(variable(*sheet, "Sap"), 1);     // from ashgrove
  std::vector<std::string> defines;
  for (const DefineRec& define : sheet->defines)
    defines.push_back(define.name + "/" + std::to_string(define.sourceId != 0));
  EXPECT_EQ(defines, (std::vector<std::string>{"Grain/0", "Sap/1", "Edge(n)/1"}));
  MemoryByteStream saved;
  ASSERT_EQ(writeCharsheet(*sheet, saved), kWriteOk);
  EXPECT_NE(saved.data().find("datafile brindle.cds lostbook.cds LOSTBOOK.cds"), std::string::npos)
      << saved.data();

  // A data sheet loaded while the sheet is open offers its definitions to it.
  dir.write("knots.cds", std::string(kHead) + "define var Knots 7 var Grain 99 end end");
  ASSERT_TRUE(load("knots.cds"));
  EXPECT_EQ(variable(*sheet, "Knots"), 7);
  EXPECT_EQ(variable(*sheet, "Grain"), 10);
  // The game system's table holds the definitions of the first sheet that made each one.
  Symbol* grain = tarnwick().symbols ? tarnwick().symbols->find("Grain") : nullptr;
  ASSERT_NE(grain, nullptr);
  Value value;
  ASSERT_EQ(getValue(*grain, value), 0);
  EXPECT_EQ(valueToDouble(value), 5);
}

TEST_F(DataSheetLoaderTest, ClearAllFreesTheGameSystemsAndLoadsTheDefaults) {
  std::unique_ptr<FileInfo> sheet = openSheet("tarnwick.chr");
  ASSERT_NE(sheet, nullptr);
  Settings settings = Settings::fromFile(dir / "settings.ini");
  ASSERT_TRUE(writeDefaultDataSheetNames(settings, {"ashgrove.cds", "lostbook.cds"}));
  host.clearTranscript();
  clearAllDataSheets(settings);
  EXPECT_EQ(lastMessage(), "[Error] Cannot open data sheet 'lostbook.cds'.");
  EXPECT_EQ(sheet->gameSystem, &tarnwick());
  EXPECT_EQ(tarnwick().dataSheets.size(), 1u);
  EXPECT_EQ(names(tools().items), "Chisel Kits[Rasp]");
}

// ---- Text, binary and the macro processor --------------------------------------------------

TEST_F(DataSheetLoaderTest, ALoadInsideAMacroReadRestoresTheOuterContext) {
  std::string outer = "$$define Outer 4\n";
  std::size_t cursor = 0;
  macroContext().macroStart(dir / "outer.mds", [&]() -> int {
    return cursor < outer.size() ? static_cast<unsigned char>(outer[cursor++]) : -1;
  });
  EXPECT_EQ(macroContext().macroNextChar(), MacroContext::kEnd);
  ASSERT_NE(macroContext().findDefine("Outer"), nullptr);

  ASSERT_TRUE(load("brindle.cds")) << lastMessage();
  EXPECT_EQ(dataSheetLoadDepth(), 0);
  ASSERT_NE(macroContext().findDefine("Outer"), nullptr);
  EXPECT_EQ(macroContext().findDefine("Outer")->value, "4");
  EXPECT_EQ(macroContext().findDefine("KitCost"), nullptr);
  macroContext().macroClear();
}

TEST_F(DataSheetLoaderTest, BinaryDataSheetsNeverPassThroughTheMacroProcessor) {
  dir.write("odd.cds", std::string(kHead) + "cat Tools item Lathe end end");
  std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(dir / "odd.cds");
  ASSERT_TRUE(document);
  document->findCategory("Tools")->children[0]->name = "Lathe $(Size)";
  MemoryByteStream binary;
  ASSERT_EQ(writeDataSheetDocument(*document, binary, true), kWriteOk);
  dir.write("odd.cds", binary.data());
  ASSERT_TRUE(load("odd.cds")) << lastMessage();
  EXPECT_EQ(names(tools().items), "Lathe $(Size)");
}

TEST_F(DataSheetLoaderTest, TheCopyrightDelayWaitsThroughTheHostOnceAGameSystem) {
  ASSERT_TRUE(load("ashgrove.cds"));
  const long first = host.waitedForInputMs();
  EXPECT_GT(first, 1000);
  EXPECT_LE(first, 1500);
  ASSERT_TRUE(load("brindle.cds"));  // and ashgrove again, behind it
  EXPECT_EQ(host.waitedForInputMs(), first);
  engine().dataSheets.copyrightDelay = 60000;
  dir.write("quick.cds", std::string(kHead) + "cdelay 0 end");
  ASSERT_TRUE(load("quick.cds"));
  EXPECT_EQ(host.waitedForInputMs(), first);
}

}  // namespace
}  // namespace zv::testing
