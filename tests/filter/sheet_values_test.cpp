#include <gtest/gtest.h>

#include "filter/run/output_streams.h"
#include "filter/run/save_filtered.h"
#include "filter/run/sheet_values.h"
#include "filter/run/short_date.h"
#include "filter_test_support.h"

namespace zv {
namespace {

TEST(ShortDate, PatternRuns) {
  struct Case {
    const char* pattern;
    int month, day, year;
    const char* text;
  };
  const Case cases[] = {
      {"m/d/yy", 3, 5, 2024, "3/5/24"},        {"dd.mm.yyyy", 3, 5, 2024, "05.03.2024"},
      {"d/m/y", 3, 5, 2024, "5/3/24"},         {"M/d/yy", 12, 25, 97, "12/25/97"},
      {"yyy-MM-dd", 1, 9, 2009, "2009-01-09"}, {"mm/dd/yyyy", 12, 25, 97, "12/25/1997"},
      {"d. MMMM yy", 7, 4, 1999, "4. 07 99"},  {"[x]", 1, 1, 2000, "[x]"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(formatShortDate(c.pattern, c.month, c.day, c.year), c.text) << c.pattern;
  }
  EXPECT_EQ(createdDateText("mm/dd/yyyy", "12/25/97"), "12/25/1997");
  EXPECT_EQ(createdDateText("d.m.yy", "03/04/2024 10:11:12"), "4.3.24");
  EXPECT_EQ(createdDateText("m/d/yy", "Yule\nday"), "Yule");
  EXPECT_EQ(createdDateText("m/d/yy", "12/25"), "12/25");
}

TEST(OutputStreams, JoinOrder) {
  OutputStreams streams;
  streams.current().text = "body ";
  streams.select("", StreamKind::Footer).text = "foot";
  streams.select("side", StreamKind::Body).text = "side ";
  streams.select("note", StreamKind::Footer).text = "note ";
  streams.select("", StreamKind::Header).text = "head ";
  streams.select("top", StreamKind::Header).text = "top ";
  // The same name and kind is the same stream, ignoring case.
  streams.select("SIDE", StreamKind::Body).text += "more ";
  EXPECT_EQ(streams.join(), "head body side more note top foot");
}

class SheetValuesTest : public test::SheetFixture {};

TEST_F(SheetValuesTest, WordsListsAndFields) {
  FileInfo& sheet = open();
  SheetValueSettings settings;
  settings.pageNumber = 3;
  struct Case {
    const char* word;
    const char* text;
  };
  const Case cases[] = {
      {"gamesystem", "Tiny"},
      {"SheetType", "PC"},
      {"filename", "bob.chr"},
      {"currentversion", "253"},
      {"pagenumber", "3"},
      {"blankcharsheet", "0"},
      {"datasheets", "a.cds,b.cds"},
      {"datecreated", "12/25/97"},
      {"date", "3/5/24"},
      {"notes", ""},
      {"detailstext", ""},
      {"charsheetlevel", "1"},
  };
  for (const Case& c : cases) {
    SheetValue value = sheetValue(sheet, c.word, settings);
    ASSERT_EQ(value.status, SheetValue::Status::Found) << c.word;
    EXPECT_EQ(valueToText(value.value), c.text) << c.word;
  }
  EXPECT_EQ(sheetValue(sheet, "nosuch", settings).status, SheetValue::Status::Unknown);
  sheet.richText = "{\\rtf1 a \\b b\\b0\\par}";
  EXPECT_EQ(valueToText(sheetValue(sheet, "detailshtml", settings).value), "<p>a <b>b</b></p>\r\n");
  EXPECT_EQ(valueToText(sheetValue(sheet, "detailstext", settings).value), "a b\r\n");
  sheet.richText = "{\\rtf1 broken";
  SheetValue broken = sheetValue(sheet, "detailsrtf", settings);
  EXPECT_EQ(broken.status, SheetValue::Status::Failed);
  EXPECT_EQ(broken.error, "The rich text of bob.chr can't be read (error 4).");

  EXPECT_EQ(findSheetList(sheet, "sk")->name.str(), "Skills");
  EXPECT_EQ(findSheetList(sheet, "Gear")->name.str(), "Gear");
  EXPECT_EQ(findSheetList(sheet, "Nope"), nullptr);
  EXPECT_EQ(findSheetList(sheet, ""), nullptr);
  EXPECT_EQ(countElements(findSheetList(sheet, "Skills")->items), 5);
  DlgItem* name = findDialogField(sheet, "main", "NAME");
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(dialogFieldText(sheet, *name), "Bob");
  EXPECT_EQ(findDialogField(sheet, "Other", "Name"), nullptr);
}

TEST_F(SheetValuesTest, SaveAsTypesAndFilteredFiles) {
  FileInfo& sheet = open();
  dir.write("list.flt", "@gamesystem Tiny\r\n@description Skill list\r\n@extension csv\r\nX\r\n");
  dir.write("page.flt", "@gamesystem tiny\r\n# a page\r\n@extension html\r\n");
  dir.write("bare.flt", "@gamesystem Tiny\r\n");
  dir.write("other.flt", "@gamesystem Other\r\n@description Not ours\r\n");
  FilterContext context;
  context.dataDir = dir.path();
  SaveAsTypes types = saveAsTypes(sheet, context);
  ASSERT_EQ(types.types.size(), 5u);
  EXPECT_EQ(types.types[0].patterns, "*.chr");
  EXPECT_EQ(types.types[1].patterns, "*.cst");
  EXPECT_EQ(types.types[2].description, "bare.flt");
  EXPECT_EQ(types.types[2].patterns, "*.txt");
  EXPECT_EQ(types.types[3].description, "Skill list");
  EXPECT_EQ(types.types[3].patterns, "*.csv");
  EXPECT_EQ(types.types[4].patterns, "*.html");
  EXPECT_EQ(types.filterFiles, (std::vector<std::string>{"bare.flt", "list.flt", "page.flt"}));

  // A filtered text file replaces the old one whole; a folder that doesn't exist gives message 18.
  dir.write("out.csv", "old");
  ASSERT_TRUE(writeFilteredFile(dir / "out.csv", "new bytes"));
  EXPECT_EQ(test::ScratchDir::read(dir / "out.csv"), "new bytes");
  EXPECT_FALSE(writeFilteredFile(dir / "none" / "out.csv", "x"));
  EXPECT_EQ(quiet.lastShown(), "[Error] Unable to create character sheet " +
                                   (dir / "none" / "out.csv").string() + ".");
  // Save As through the host: the type by the name's extension; the sheet stays unsaved.
  sheet.setChangedFlag(true);
  const std::string target = (dir / "bob.csv").string();
  quiet.headless.addAnswer(target);
  DocumentContext document;
  document.dataDir = dir.path();
  ASSERT_TRUE(saveSheetAs(sheet, document, FilterRunOptions(), context));
  EXPECT_EQ(test::ScratchDir::read(target), "X\r\n");
  EXPECT_TRUE(sheet.changed());
  EXPECT_EQ(sheet.name.str(), "bob.chr");
  quiet.headless.addAnswer("Cancel");
  EXPECT_FALSE(saveSheetAs(sheet, document, FilterRunOptions(), context));
}

}  // namespace
}  // namespace zv
