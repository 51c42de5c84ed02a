// The sheet writer: what it emits and when, templates, results, and round trips through both
// forms.

#include "core/game_system.h"
#include "formats/tokens/keywords.h"
#include "sheet_test_support.h"

namespace zv::testing {
namespace {

using SheetWriter = SheetFixture;

const std::string kSample = ZV_TEST_DATA_DIR "/sheets/wayfarer.chr";

/// The text form with its line breaks as blanks and runs of blanks as one, so that the tests can
/// look for token sequences wherever the writer broke the lines.
std::string flat(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      ++i;
      c = ' ';
    }
    if (c == ' ' && !out.empty() && out.back() == ' ') continue;
    out.push_back(c);
  }
  return out;
}

bool contains(const std::string& text, const std::string& piece) {
  return flat(text).find(piece) != std::string::npos;
}

TEST_F(SheetWriter, TextRoundTripIsByteIdentical) {
  ASSERT_TRUE(read(readFile(kSample)));
  const std::string first = write(false);
  ASSERT_FALSE(first.empty());
  ASSERT_TRUE(read(first)) << messages().front();
  const std::string second = write(false);
  EXPECT_EQ(first, second);
  EXPECT_TRUE(messages().empty());
}

TEST_F(SheetWriter, TextToBinaryToTextIsByteIdentical) {
  ASSERT_TRUE(read(readFile(kSample)));
  const std::string text = write(false);
  ASSERT_TRUE(read(text));
  const std::string binary = write(true);
  ASSERT_EQ(binary.substr(0, 4), std::string("\x37\x57\x03\x05", 4));
  ASSERT_TRUE(read(binary)) << messages().front();
  EXPECT_TRUE(sheet->binary());
  EXPECT_EQ(write(false), text);
  // And binary -> binary.
  ASSERT_TRUE(read(binary));
  EXPECT_EQ(write(true), binary);
}

TEST_F(SheetWriter, WritesTheSampleSheetInTheWritersOrder) {
  ASSERT_TRUE(read(readFile(kSample)));
  const std::string text = write(false);
  EXPECT_EQ(text.rfind("\"Character Sheet file v. 1\" \r\ngamesystem Wayfarer ", 0), 0u) << text;
  const std::vector<std::string> pieces = {
      "description \"Test sheet for the reader\" sheettype Adventurer help wayfarer.hlp ",
      "chargenScript makehero.scp chargenTemplate hero.cst ruleset \"standard picks\" "
      "version 253 level 3 maxAttempts 40 copyright \"(c) the Wayfarer authors\" "
      "totalcostformula cost*1 pixinx 96 pixiny 96 rounding 1 ",
      "info notes \"First line\\n\\ Second line\" notesloc 20 30 300 200 ",
      "richtext \"{\\\\rtf1 plain}\" notesopen rtopen rtloc 40 50 400 300 2 7 ",
      "created \"03/04/2024 10:11:12\" constcost runchargen end ",
      "datafile wayfarer.cds extras.cds end assocfiles portrait.png end template hero.cst "
      "filter brief.flt ptemplate sheet.prt autoid 101 script hero.scp shortcuts hero.sct "
      "menuposition 4 2 0 3 0 1 0 1 1 ",
      "define var Bonus 2 func Twice(n) n*2 scriptadded array Mods[3] 1,2,3 end ",
      "list Skills catname Skills open var SkillPoints 14.25 listprompt \"Skill points\" ",
      "item Climb adj \"+1 Rope;+1 Boots\" autoitems Rope dsid WAY1 autoadded",
      "defbaseable usedefault 1 defbased rand 88 editdlg 1 sort 1 autoid 100 autoparent 7 ",
      "noautodup priority 4 size 40 12 keepcost",
      "opt adj Grip x*2 ?:2;Weak,1;Firm,2; text Note \"hand holds\" begin mult Harness x1.5 "
      "exp x+1 end begin percent Luck +10 alias Fortune ",
      "noprint editdlg 3 noedit usemsg noinherit keepold end end level 3 cost 6 totalcost 7.25",
      "item Swim intotal 0 cat Athletic formula x*3 varname Swim level 1 cost 2 totalcost 2 ",
      "sublist Pack memlist item Rope cost 1 totalcost 1 sublist Pouch memlist item Flint cost "
      "0.5 totalcost 0.5 end cost 0.25 totalcost 0.25 end childcostsseparate inheritopts open cost "
      "3 ",
      "list Gear var GearCost 0 listprompt Total end ",
      "dialog Overview 400 300 loc 10 10 open font Tahoma 8 charset 0 pitch 1 fontcolor 65280 "
      "fontlist 2 font Courier 10 charset 0 end font Verdana 12 charset 1 pitch 2 fontcolor "
      "16711680 end end ",
      "combobox 1 10 120 80 20 sort Stature Small;1;Large;3;Huge;5 ",
      "list Tally 220 40 150 100 list Notions var NotionCount 2 listprompt Total item Idea cost 2",
      "picture Portrait 300 10 64 64 0 picture Crest 300 80 16 16 5 \"a\"bcd\" ",
      "begin text Framed 10 180 60 20 center noborder transparent script frame.scp fontindex 1 "
      "fontexp Bonus>1 bgcolor 255 end ",
      "begin button Go 5 5 40 20 GoCount \"\" \"\" \"\" fontindex 1 end end end ",
  };
  for (const std::string& piece : pieces)
    EXPECT_TRUE(contains(text, piece)) << piece << "\n---\n" << flat(text);
  // Settled totals: Climb 7.25 + Pack 3, Swim out of the total, Ride 4.
  EXPECT_DOUBLE_EQ(list(0).total, 14.25);
}

TEST_F(SheetWriter, BinaryFormCarriesTheSizesOfItsNumbers) {
  ASSERT_TRUE(read(sheetText("level 2")));
  const std::string binary = write(true);
  const std::string sizes = std::string("\xC4\x80\x08\x00\xC5\x80\x02\x00", 8);
  EXPECT_NE(binary.find(sizes), std::string::npos);
  EXPECT_EQ(write(false).find("realsize"), std::string::npos);
}

TEST_F(SheetWriter, KeywordsAreWrittenOnlyWhenSet) {
  ASSERT_TRUE(
      read(sheetText("list S var P 0 univar \"X\" usedefault 2 intotal 5 rand 0 "
                     "item Y opt begin mult N 2 exp \"x+1\" end mult M 3 end "
                     "sublist Z memlist end adj \"+1\" autoitems Z2 prereq \"never\" end")));
  const std::string text = write(false);
  EXPECT_TRUE(contains(text, "item X item Y opt begin mult N 2 exp x+1 end mult M 3 end "));
  EXPECT_TRUE(contains(text, "sublist Z memlist end adj +1 autoitems Z2 end "));
  for (const char* absent : {"usedefault", "intotal", "rand", "defbased", "univar", "prereq"})
    EXPECT_FALSE(contains(text, absent)) << absent;
}

TEST_F(SheetWriter, AnEmptyListKeepsItsVariableAndEnd) {
  ASSERT_TRUE(read(sheetText("list Empty var Nothing 0 end")));
  EXPECT_TRUE(contains(write(false), "list Empty var Nothing 0 listprompt Total end "));
}

TEST_F(SheetWriter, ScreenPixelsAndTheClockComeFromTheHost) {
  ASSERT_TRUE(read(sheetText("pixinx 96 pixiny 96")));
  host.setPixelsPerInch({120, 144});
  std::string text = write(false);
  EXPECT_TRUE(contains(text, "pixinx 120 pixiny 144 "));
  EXPECT_EQ(sheet->pixInX, 120);
  EXPECT_EQ(sheet->pixInY, 144);
  EXPECT_TRUE(contains(text, "created \"05/06/2024 07:08:09\" "));

  // A record that was never read gets the time of writing.
  sheet = std::make_unique<FileInfo>(1, "new.chr", "/data/new.chr");
  host.setFixedTime({2023, 12, 31, 23, 59, 58, true});
  EXPECT_TRUE(contains(write(false), "created \"12/31/2023 23:59:58\" "));
}

TEST_F(SheetWriter, TemplatesAreTextWithTheirOwnNameAndNoDate) {
  findOrCreateGameSystem("Tiny").defines.push_back({kVar, 0, 4, "FromData", "1", nullptr});
  ASSERT_TRUE(read(sheetText("info notesloc 20 30 300 200 end template other.cst "
                             "define var Own 1 end list S loc 5 6 70 80 var P 0 end "
                             "dialog D 100 100 loc 7 8 open end"),
                   2));
  ASSERT_EQ(sheet->defines.size(), 2u);  // the game system's was merged in
  const std::string text = write(true);
  EXPECT_EQ(text.rfind("\"Character Sheet file v. 1\"", 0), 0u);
  EXPECT_FALSE(sheet->binary());
  EXPECT_TRUE(contains(text, "notesloc 65535 65535 300 200 "));
  EXPECT_FALSE(contains(text, "created"));
  EXPECT_TRUE(contains(text, "template tiny.cst "));
  EXPECT_TRUE(contains(text, "define var Own 1 end "));
  EXPECT_FALSE(contains(text, "FromData"));
  // One open window only: every window goes back to its default place, in the record too.
  EXPECT_TRUE(contains(text, "loc 65535 65535 70 80 "));
  EXPECT_TRUE(contains(text, "dialog D 100 100 loc 65535 65535 open "));
  EXPECT_EQ(sheet->dlgs[0]->x, -1);
  EXPECT_EQ(sheet->lists[0]->loc.y, -1);
}

TEST_F(SheetWriter, TemplatePlacesStayWhenTwoWindowsAreOpen) {
  ASSERT_TRUE(read(sheetText("list S open loc 5 6 70 80 var P 0 end dialog D 100 100 loc 7 8 "
                             "open end"),
                   2));
  const std::string text = write(false);
  EXPECT_TRUE(contains(text, "loc 5 6 70 80 "));
  EXPECT_TRUE(contains(text, "dialog D 100 100 loc 7 8 open "));
}

TEST_F(SheetWriter, SheetsNameTheDataSheetsTheirItemsCameFrom) {
  GameSystem& system = findOrCreateGameSystem("Tiny");
  const std::int32_t core = system.addDataSheet("core.cds").id;
  system.addDataSheet("unused.cds");
  const std::int32_t extra = system.addDataSheet("extra.cds").id;
  ASSERT_TRUE(
      read(sheetText("datafile old.cds CORE.cds end list S var P 0 item A "
                     "sublist B memlist item C end end")));
  item(0, 0).sourceId = core;
  item(0, 1).children[0]->sourceId = extra;
  const std::string text = write(false);
  EXPECT_TRUE(contains(text, "datafile old.cds CORE.cds extra.cds end "));
  EXPECT_EQ(sheet->dataFiles, (std::vector<std::string>{"old.cds", "CORE.cds", "extra.cds"}));
}

TEST_F(SheetWriter, FieldsAreWrappedWhenTheirTailHasSomething) {
  ASSERT_TRUE(
      read(sheetText("dialog D 100 100 loc 0 0 "
                     "editvar 1 1 1 1 1 noborder Val "
                     "begin checkbox Box 1 1 1 1 Ticked 0 bgcolor 255 end "
                     "button Go 1 1 1 1 Clicks go.scp \"\" \"\" "
                     "text Plain 1 1 1 1 left end")));
  const std::string text = write(false);
  EXPECT_TRUE(contains(text, "begin editvar 1 1 1 1 1 Val noborder end "));
  EXPECT_TRUE(contains(text, "begin checkbox Box 1 1 1 1 Ticked 0 bgcolor 255 end "));
  EXPECT_TRUE(contains(text, "button Go 1 1 1 1 Clicks go.scp \"\" \"\" text Plain"));
}

TEST_F(SheetWriter, WriteFailuresAreReported) {
  ASSERT_TRUE(read(sheetText("")));
  struct Case {
    bool diskFull;
    int result;
    std::string message;
  };
  for (const Case& c : {Case{true, kWriteDiskFull, "[Error] No disk space to write file tiny.chr"},
                        Case{false, kWriteError, "[Error] Error writing file tiny.chr"}}) {
    host.clearTranscript();
    MemoryByteStream output;
    if (c.diskFull) {
      output.setWriteCapacity(10);
    } else {
      output.setFailWrites(true);
    }
    EXPECT_EQ(writeCharsheet(*sheet, output), c.result);
    EXPECT_EQ(messages(), std::vector<std::string>{c.message});
  }
}

TEST_F(SheetWriter, ReportsOtherResultsAsInternalErrors) {
  reportSheetWriteResult(kWriteUnknownKeyword, "a.chr");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_NE(messages()[0].find("Internal error: file Fileio"), std::string::npos);
  host.clearTranscript();
  reportSheetWriteResult(kWriteOk, "a.chr");
  EXPECT_TRUE(messages().empty());
}

}  // namespace
}  // namespace zv::testing
