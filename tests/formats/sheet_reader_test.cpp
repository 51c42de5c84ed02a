// The top level of the sheet reader: header keywords, the info, data file and definition blocks,
// the checks at the end, and what a failed read leaves behind.

#include "core/game_system.h"
#include "formats/tokens/keywords.h"
#include "sheet_test_support.h"

namespace zv::testing {
namespace {

using SheetReader = SheetFixture;

struct FailureCase {
  const char* name;
  std::string file;
  std::string message;  ///< the last box shown, "[Title] text"
};

TEST_F(SheetReader, RefusesBadFilesWithTheirMessage) {
  const std::vector<FailureCase> cases = {
      {"empty", "", "[Empty File] The character sheet file tiny.chr is empty."},
      {"only blanks", "  \n# nothing\n",
       "[Empty File] The character sheet file tiny.chr is empty."},
      {"data sheet", "\"Data Sheet file v. 1\" gamesystem Tiny end",
       "[Error] File tiny.chr is not a character sheet file."},
      {"first word compared with case", "\"character sheet file v. 1\" gamesystem Tiny end",
       "[Error] File tiny.chr is not a character sheet file."},
      {"word at top level", sheetText("Foo"), "[Error] Keyword expected, found Foo instead"},
      {"keyword of another block", sheetText("cost 5"), "[Error] File inconsistency: cost"},
      {"value missing at the end", "\"Character Sheet file v. 1\" gamesystem Tiny rounding",
       "[Error] File inconsistency: rounding"},
      {"no game system", "\"Character Sheet file v. 1\" version 253 level 1 end",
       "[Error] No game system specified for this character sheet"},
      {"version 254", sheetText("version 254"),
       "[Error] This character sheet (version 254) cannot be read by this version of the "
       "application (253)"},
      {"stray keyword in info", sheetText("info notesloc 1 2 3 4 cost 5 end"),
       "[Error] Data file format error: cost"},
      {"word in info", sheetText("info Scribbles end"),
       "[Error] Data file format error: Scribbles"},
      {"data file list cut off", "\"Character Sheet file v. 1\" gamesystem Tiny datafile a.cds",
       "[Error] Error reading data file list."},
      {"associated file list cut off",
       "\"Character Sheet file v. 1\" gamesystem Tiny assocfiles a.png",
       "[Error] Error reading associated file list."},
      {"define with a stray token", sheetText("define cost 1 end"),
       "[Error] Unexpected token: cost"},
      {"define without a body", "\"Character Sheet file v. 1\" gamesystem Tiny define var X",
       "[Error] Error reading definition of 'X'"},
      {"define without a name", "\"Character Sheet file v. 1\" gamesystem Tiny define var",
       "[Error] Can't add name to define"},
      {"game system name too long", sheetText("gamesystem ABCDEFGHIJKLMNOPQRSTUVWXYZ"),
       "[Error] Keyword expected, found YZ instead"},
  };
  for (const FailureCase& c : cases) {
    SCOPED_TRACE(c.name);
    host.clearTranscript();
    EXPECT_FALSE(read(c.file));
    ASSERT_FALSE(messages().empty());
    EXPECT_EQ(messages().back(), c.message);
  }
}

TEST_F(SheetReader, BinaryFilesAreRecognisedByTheirMagic) {
  const std::string head = std::string("\x37\x57\x03\x05\x19\x00", 6) +
                           "Character Sheet file v. 1" + std::string("\x42\x80\x04\x00", 4) +
                           "Tiny";
  // An id that the keyword table lacks (85) is named by its number.
  EXPECT_FALSE(read(head + std::string("\x55\x80", 2)));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] File inconsistency: 85"});
  host.clearTranscript();
  // level 2 as a binary integer, then the end of the input.
  ASSERT_TRUE(read(head + std::string("\x14\x80\x02\x00", 4)));
  EXPECT_TRUE(sheet->binary());
  EXPECT_EQ(sheet->level, 2);
  EXPECT_EQ(sheet->gameSystemName, "Tiny");
}

TEST_F(SheetReader, VersionUpToTheFormatRevisionIsRead) {
  EXPECT_TRUE(read(sheetText("version 253")));
  EXPECT_TRUE(read(sheetText("version 100")));
  EXPECT_TRUE(messages().empty());
}

TEST_F(SheetReader, ReadsTheHeaderKeywords) {
  ASSERT_TRUE(read(sheetText(
      "description \"A test\" sheettype Rogue help tiny.hlp chargenScript gen.scp "
      "chargenTemplate base.cst ruleset picks maxAttempts 40 copyright \"(c) us\" "
      "totalcostformula cost*2 pixinx 96 pixiny 96 rounding 2 template base.cst filter f.flt "
      "ptemplate p.prt autoid 12 script s.scp shortcuts k.sct menupos 3 level 4")));
  const FileInfo& s = *sheet;
  EXPECT_EQ(s.gameSystemName, "Tiny");
  ASSERT_NE(s.gameSystem, nullptr);
  EXPECT_EQ(s.gameSystem->name, "Tiny");
  EXPECT_EQ(s.description, "A test");
  EXPECT_EQ(s.sheetType, "Rogue");
  EXPECT_EQ(s.helpFile, "tiny.hlp");
  EXPECT_EQ(s.chargenScript, "gen.scp");
  EXPECT_EQ(s.chargenTemplate, "base.cst");
  EXPECT_EQ(s.ruleSet, "picks");
  EXPECT_EQ(s.maxAttempts, 40);
  EXPECT_EQ(s.copyright, "(c) us");
  EXPECT_EQ(s.totalCostFormula, "cost*2");
  EXPECT_EQ(s.pixInX, 96);
  EXPECT_EQ(s.rounding, 2);
  EXPECT_EQ(s.templateName, "base.cst");
  EXPECT_EQ(s.filter, "f.flt");
  EXPECT_EQ(s.printTemplate, "p.prt");
  EXPECT_EQ(s.nextAutoID, 12);
  EXPECT_EQ(s.script, "s.scp");
  EXPECT_EQ(s.shortcuts, "k.sct");
  EXPECT_EQ(s.level, 4);
  EXPECT_FALSE(s.binary());
}

TEST_F(SheetReader, RealAndIntSizesKeepTheirLowFourBits) {
  ASSERT_TRUE(read(sheetText("realsize 24 intsize 18")));
  EXPECT_EQ(sheet->realSize(), 8u);
  EXPECT_EQ(sheet->intSize(), 2u);
}

TEST_F(SheetReader, ReadsTheInfoBlock) {
  ASSERT_TRUE(read(sheetText(
      "info notes \"One\\nTwo\" notesloc 1 2 300 200 richtext \"{\\\\rtf1}\" notesopen rtopen "
      "rtloc 5 6 7 8 9 10 created \"01/02/2024 10:11:12\" constcost runchargen end")));
  const FileInfo& s = *sheet;
  EXPECT_EQ(s.notes, "One\nTwo");
  EXPECT_EQ(s.notesLoc, (Rect16{1, 2, 300, 200}));
  EXPECT_EQ(s.richText, "{\\rtf1}");
  EXPECT_TRUE(s.notesOpen());
  EXPECT_TRUE(s.richTextOpen());
  EXPECT_EQ(s.richTextLoc, (Rect16{5, 6, 7, 8}));
  EXPECT_EQ(s.richTextSelStart, 9);
  EXPECT_EQ(s.richTextSelEnd, 10);
  EXPECT_EQ(s.created, "01/02/2024 10:11:12");
  EXPECT_TRUE(s.constCost());
  EXPECT_TRUE(s.runChargen());
}

TEST_F(SheetReader, CreatedIsTheTimeOfReadingUnlessTheFileHasOne) {
  ASSERT_TRUE(read(sheetText("")));
  EXPECT_EQ(sheet->created, "05/06/2024 07:08:09");
}

TEST_F(SheetReader, CoordinatesAreScaledToTheScreen) {
  ASSERT_TRUE(read(sheetText("pixinx 120 pixiny 192 info notesloc 120 96 65535 240 end")));
  EXPECT_EQ(sheet->notesLoc.x, 96);
  EXPECT_EQ(sheet->notesLoc.y, 48);
  EXPECT_EQ(static_cast<std::uint16_t>(sheet->notesLoc.width), 65535);
  EXPECT_EQ(sheet->notesLoc.height, 120);
}

TEST_F(SheetReader, DataFileNamesAreKeptAndLoadedForADocument) {
  std::vector<std::string> loaded;
  SheetReadOptions options;
  options.loadDataSheet = [&loaded](FileInfo&, const std::string& name) { loaded.push_back(name); };
  ASSERT_TRUE(
      read(sheetText("datafile core.cds \"Cost\" extra.cds end assocfiles a.png end"), 1, options));
  // A keyword other than `end` is kept as a name.
  EXPECT_EQ(sheet->dataFiles, (std::vector<std::string>{"core.cds", "Cost", "extra.cds"}));
  EXPECT_EQ(loaded, sheet->dataFiles);
  EXPECT_EQ(sheet->assocFiles, std::vector<std::string>{"a.png"});

  loaded.clear();
  options.loadData = false;
  ASSERT_TRUE(read(sheetText("datafile core.cds end"), 1, options));
  EXPECT_EQ(sheet->dataFiles, std::vector<std::string>{"core.cds"});
  EXPECT_TRUE(loaded.empty());
}

TEST_F(SheetReader, DefinitionsAreRecordedAndDefined) {
  SheetReadOptions options;
  options.sourceId = 5;
  ASSERT_TRUE(read(sheetText("define var Bonus 2 func Twice(n) n*2 scriptadded "
                             "array Mods[3] \"1,2,3\" end"),
                   1, options));
  ASSERT_EQ(sheet->defines.size(), 3u);
  const DefineRec& var = sheet->defines[0];
  EXPECT_EQ(var.kind, kVar);
  EXPECT_EQ(var.name, "Bonus");
  EXPECT_EQ(var.body, "2");
  EXPECT_EQ(var.sourceId, 5);
  EXPECT_FALSE(var.scriptAdded());
  EXPECT_EQ(RecordingBinder::nameOf(var.symbol), "Bonus");
  EXPECT_EQ(sheet->defines[1].kind, kFunc);
  EXPECT_TRUE(sheet->defines[1].scriptAdded());
  EXPECT_EQ(sheet->defines[2].kind, kArray);
  EXPECT_FALSE(sheet->defines[2].scriptAdded());
  ASSERT_EQ(binder.definitions.size(), 3u);
  EXPECT_EQ(binder.definitions[1].kind, "func");
  EXPECT_EQ(binder.definitions[1].name, "Twice(n)");
  EXPECT_EQ(binder.definitions[1].body, "n*2");
  EXPECT_EQ(binder.definitions[2].kind, "array");
}

TEST_F(SheetReader, AFailedDefinitionIsShownAndTheReadGoesOn) {
  binder.failing.insert("X");
  ASSERT_TRUE(read(sheetText("define var X \"1+\" var Y 3 end")));
  EXPECT_EQ(messages(),
            std::vector<std::string>{"[Error] Error: 'Incomplete expression': 'X': 1+"});
  ASSERT_EQ(sheet->defines.size(), 2u);
  EXPECT_EQ(sheet->defines[0].symbol, nullptr);
  EXPECT_NE(sheet->defines[1].symbol, nullptr);
}

TEST_F(SheetReader, LevelIsCheckedAgainstTheGameSystem) {
  struct Case {
    int systemLevel;
    int sheetLevel;
    std::string warning;  ///< empty: none
    int systemLevelAfter;
  };
  const std::vector<Case> cases = {
      {2, 1,
       "[Warning] The level of the character sheet (1) is less than the level of the game "
       "system (2).\\n\\nYou may wish to convert the character sheet to the current version "
       "with the File | Convert command.",
       2},
      {2, 3,
       "[Warning] The level of the character sheet (3) is greater than the level of the game "
       "system (2).\\n\\nItems in the loaded data sheets may not be compatible with this "
       "character sheet. Unload the data sheets and reopen this character sheet to obtain "
       "compatible items.",
       2},
      {2, 2, "", 2},
      {-1, 7, "", 7},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sheetLevel);
    clearGameSystems();
    host.clearTranscript();
    findOrCreateGameSystem("Tiny").level = c.systemLevel;
    ASSERT_TRUE(read("\"Character Sheet file v. 1\" gamesystem Tiny level " +
                     std::to_string(c.sheetLevel) + " end"));
    if (c.warning.empty()) {
      EXPECT_TRUE(messages().empty());
    } else {
      EXPECT_EQ(messages(), std::vector<std::string>{c.warning});
    }
    EXPECT_EQ(findGameSystem("Tiny")->level, c.systemLevelAfter);
  }
}

TEST_F(SheetReader, LevelCheckStaysQuietWhenWarningsAreOff) {
  findOrCreateGameSystem("Tiny").level = -1;
  {
    ScopedEngineContext quiet;
    quiet->preferences.levelWarnings = false;
    ASSERT_TRUE(read(sheetText("level 5")));
  }
  EXPECT_TRUE(engine().preferences.levelWarnings);
  EXPECT_TRUE(messages().empty());
  // Only the check takes the sheet's level, so the game system stays unset.
  EXPECT_EQ(findGameSystem("Tiny")->level, -1);
}

TEST_F(SheetReader, DataMenuIsTheFilesOrTheDefaultOrder) {
  const std::string lists = "list A var TA 0 end list B var TB 0 end ";
  const std::string dialogs = "dialog D1 100 100 loc 0 0 end dialog D2 100 100 loc 0 0 end ";
  ASSERT_TRUE(read(sheetText(lists + dialogs)));
  const std::vector<DataMenuEntry> defaultOrder = {{DataMenuKind::Dialog, 0},
                                                   {DataMenuKind::Dialog, 1},
                                                   {DataMenuKind::Separator, 0},
                                                   {DataMenuKind::List, 0},
                                                   {DataMenuKind::List, 1}};
  EXPECT_EQ(sheet->dataMenu.entries(), defaultOrder);

  ASSERT_TRUE(read(sheetText("menuposition 3 1 1 3 0 2 0 " + lists + dialogs)));
  const std::vector<DataMenuEntry> fileOrder = {
      {DataMenuKind::List, 1}, {DataMenuKind::Separator, 0}, {DataMenuKind::Dialog, 0}};
  EXPECT_EQ(sheet->dataMenu.entries(), fileOrder);
}

TEST_F(SheetReader, TheThirteenthListOrDialogStopsTheRead) {
  std::string lists;
  std::string dialogs;
  for (int i = 0; i < 13; ++i) {
    lists += "list L" + std::to_string(i) + " var T" + std::to_string(i) + " 0 end ";
    dialogs += "dialog D" + std::to_string(i) + " 10 10 loc 0 0 end ";
  }
  EXPECT_FALSE(read(sheetText(lists)));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] Too many lists."});
  host.clearTranscript();
  EXPECT_FALSE(read(sheetText(dialogs)));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] Too many dialogs!"});
}

TEST_F(SheetReader, ASuccessfulReadSettlesAndRegistersTheSheet) {
  ASSERT_TRUE(
      read(sheetText("list Skills var Points 99 item A cost 3 item B intotal 0 cost 5 "
                     "sublist C memlist item D cost 1 end childcostsseparate cost 2 end")));
  EXPECT_TRUE(sheet->loaded());
  EXPECT_FALSE(sheet->changed());
  EXPECT_EQ(findSheet(sheet->sheetId), sheet.get());
  EXPECT_GT(sheet->sheetId, 0);
  // The list adds up the stored total costs; the file's 99 is replaced.
  EXPECT_DOUBLE_EQ(list(0).total, 5.0);
  EXPECT_EQ(list(0).listPrompt, "Total");
  EXPECT_EQ(binder.numbers["Points"], 99.0);
  EXPECT_FALSE(binder.reading);
  EXPECT_EQ(binder.readingSwitches, 2);
  EXPECT_EQ(binder.tablesCreated, 1);
}

TEST_F(SheetReader, ASettleHookReplacesTheStoredCostSettling) {
  SheetReadOptions options;
  int calls = 0;
  options.settle = [&calls](FileInfo&) {
    ++calls;
    return true;
  };
  ASSERT_TRUE(read(sheetText("list Skills var Points 99 item A cost 3 end"), 1, options));
  EXPECT_EQ(calls, 1);
  EXPECT_DOUBLE_EQ(list(0).total, 99.0);
  EXPECT_TRUE(sheet->loaded());

  options.settle = [](FileInfo&) { return false; };
  EXPECT_FALSE(read(sheetText("list Skills var Points 99 item A cost 3 end"), 1, options));
  EXPECT_TRUE(sheet->lists.empty());
}

TEST_F(SheetReader, AFailedReadLeavesNoDocument) {
  EXPECT_FALSE(
      read(sheetText("define var Bonus 2 end list Skills var P 0 item A cost 3 end "
                     "dialog D 10 10 loc 0 0 end menuposition 1 1 0 version 300")));
  EXPECT_TRUE(sheet->lists.empty());
  EXPECT_TRUE(sheet->dlgs.empty());
  EXPECT_TRUE(sheet->defines.empty());
  EXPECT_TRUE(sheet->dataMenu.empty());
  EXPECT_EQ(sheet->symbols, nullptr);
  EXPECT_EQ(sheet->gameSystem, nullptr);
  EXPECT_FALSE(sheet->loaded());
  EXPECT_EQ(findSheet(sheet->sheetId), nullptr);
  EXPECT_EQ(binder.tablesFreed, 1);
  EXPECT_FALSE(binder.reading);
}

TEST_F(SheetReader, TheEndOfTheInputEndsEveryBlock) {
  // Cut just before the final `end`, and inside a list: both read as complete.
  std::string file = sheetText("list Skills var P 0 item A cost 3 end");
  ASSERT_TRUE(read(file.substr(0, file.rfind("end"))));
  ASSERT_TRUE(read(file.substr(0, file.find("item A cost 3") + 13)));
  EXPECT_EQ(list(0).items.size(), 1u);
  EXPECT_TRUE(messages().empty());
}

TEST_F(SheetReader, AutoIdsRaiseTheNextAutoId) {
  ASSERT_TRUE(read(sheetText("autoid 12 list S var P 0 item A autoid 100 item B autoid 40 end")));
  EXPECT_GE(sheet->nextAutoID, 101);
  ASSERT_TRUE(read(sheetText("list S var P 0 item A autoid 7 end autoid 3")));
  EXPECT_EQ(sheet->nextAutoID, 8);
}

TEST_F(SheetReader, GameSystemsAreCreatedAndTheirNamesRegistered) {
  std::vector<std::string> names;
  SheetReadOptions options;
  options.registerGameSystemName = [&names](std::string_view name) { names.emplace_back(name); };
  ASSERT_TRUE(read(sheetText(""), 1, options));
  EXPECT_EQ(names, std::vector<std::string>{"Tiny"});
  EXPECT_EQ(findGameSystem("tiny"), sheet->gameSystem);
}

TEST_F(SheetReader, GameSystemDefinitionsAreMergedUnlessTheSheetHasThem) {
  GameSystem& system = findOrCreateGameSystem("Tiny");
  system.defines.push_back({kVar, 0, 3, "Bonus", "9", nullptr});
  system.defines.push_back({kArray, 0, 3, "Table[2]", "1,2", nullptr});
  system.defines.push_back({kFunc, 0, 3, "bonus(x)", "x", nullptr});
  ASSERT_TRUE(read(sheetText("define var Bonus 2 end")));
  ASSERT_EQ(sheet->defines.size(), 2u);
  EXPECT_EQ(sheet->defines[0].body, "2");
  EXPECT_EQ(sheet->defines[1].name, "Table[2]");
  EXPECT_EQ(sheet->defines[1].sourceId, 3);
  EXPECT_EQ(binder.bodyOf("Table[2]"), "1,2");
}

TEST_F(SheetReader, ReadsTheSampleSheet) {
  ASSERT_TRUE(read(readFile(ZV_TEST_DATA_DIR "/sheets/wayfarer.chr")));
  EXPECT_TRUE(messages().empty()) << messages().front();
  EXPECT_EQ(sheet->lists.size(), 2u);
  EXPECT_EQ(sheet->dlgs.size(), 2u);
  EXPECT_EQ(sheet->dataMenu.size(), 4u);
  EXPECT_EQ(sheet->dataFiles, (std::vector<std::string>{"wayfarer.cds", "extras.cds"}));
  EXPECT_EQ(sheet->notes, "First line\nSecond line");
}

}  // namespace
}  // namespace zv::testing
